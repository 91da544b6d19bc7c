// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/people/view_workgroups.h"

namespace kv::cli {

namespace {

struct List : RegisterVerb {
  std::optional<std::string> members;

  void describe(Command& verb) {
    addText(verb, "--members", members, "List the members of this workgroup, by number or title")
        ->typeName("GROUP");
  }
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listWorkgroups(session, members), options.format);
  }
};

}  // namespace

void workgroupList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
