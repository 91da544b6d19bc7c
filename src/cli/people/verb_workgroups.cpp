#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/people/view_workgroups.h"

namespace kv::cli {

namespace {

int list(const Options& options, const std::optional<std::string>& members) {
  const Session session(options);
  writeRows(std::cout, *desk::listWorkgroups(session, members), options.format);
  return kDone;
}

struct List {
  Options options;
  std::optional<std::string> members;

  void describe(Command& verb) {
    addCommon(verb, options);
    addText(verb, "--members", members, "List the members of this workgroup, by number or title")
        ->typeName("GROUP");
    verb.footer(
        "Who is in -1, Super Users, is an administrator; 0, View Only Users, is where new users "
        "are.\nEvery register has these two. 'kvvesk user edit --workgroup' puts a user into "
        "one.");
  }
  [[nodiscard]] int run() const { return list(options, members); }
};

}  // namespace

void workgroupList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
