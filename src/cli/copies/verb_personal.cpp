// SPDX-License-Identifier: Apache-2.0
#include "cli/copies/copy_change.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"

namespace kv::cli {

namespace {

using Change = void (*)(const Session&, const CopyChange&, Format);

template <Change make>
struct ListChange : RegisterVerb {
  CopyChange change;

  void describe(Command& verb) {
    addText(verb, "--document", change.document, "The document, by identifier or number");
    addText(verb, "--manual", change.manual, "The manual, by identifier or name");
    addText(verb, "--of", change.user, "Whose list, by ID or name; one's own when left out");
  }
  void check() const { requireOneThing(change); }
  void run(const Session& session) const { make(session, change, options.format); }
};

}  // namespace

void personalAdd(Command& verb) { declare<ListChange<giveCopy>>(verb); }
void personalRemove(Command& verb) { declare<ListChange<takeOffList>>(verb); }

}  // namespace kv::cli
