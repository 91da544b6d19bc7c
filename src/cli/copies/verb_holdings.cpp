// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/copies/copy_kinds.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/copies/view_copies.h"

namespace kv::cli {

namespace {

struct List : RegisterVerb {
  std::optional<std::string> user;
  desk::CopyKinds kinds;

  void describe(Command& verb) {
    addText(verb, "holder", user, "The user, by ID or name; whoever logs in when left out")
        ->typeName("USER");
    addCopyKinds(verb, kinds);
  }
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listHoldings(session, user, kinds), options.format);
  }
};

}  // namespace

void copyHoldings(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
