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

struct List : RegisterVerb {
  std::optional<std::string> members;

  void describe(Command& verb) {
    addText(verb, "--members", members, "List the members of this workgroup, by number or title")
        ->typeName("GROUP");
  }
  [[nodiscard]] int run() const { return list(options, members); }
};

}  // namespace

void workgroupList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
