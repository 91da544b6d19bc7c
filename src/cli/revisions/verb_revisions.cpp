// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/verbs.h"
#include "desk/revisions/view_revisions.h"

namespace kv::cli {

namespace {

struct List : RegisterVerb {
  std::string document;

  void describe(Command& verb) {
    verb.addOption("document", document, "The document, by identifier or number")->required();
  }
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listRevisions(session, document), options.format);
  }
};

}  // namespace

void revisionList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
