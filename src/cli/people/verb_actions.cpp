// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/people/actions.h"

namespace kv::cli {

namespace {

struct List : RegisterVerb {
  std::optional<std::string> of;
  bool all = false;

  void describe(Command& verb) {
    addText(verb, "--of", of, "The user, by ID or name; whoever logs in when left out")
        ->typeName("USER");
    verb.addFlag("--all", all, "Also those that are closed");
  }
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listActions(session, of, all), options.format);
  }
};

}  // namespace

void actionList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
