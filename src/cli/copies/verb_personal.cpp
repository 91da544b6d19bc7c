#include "cli/copies/copy_change.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"

namespace kv::cli {

namespace {

using Change = int (*)(const Options&, const CopyChange&);

template <Change make>
struct ListChange : RegisterVerb {
  CopyChange change;

  void describe(Command& verb) {
    addText(verb, "--document", change.document, "The document, by identifier or number");
    addText(verb, "--manual", change.manual, "The manual, by identifier or name");
    addText(verb, "--of", change.user, "Whose list, by ID or name; one's own when left out");
  }
  [[nodiscard]] int run() const {
    if (change.document.has_value() == change.manual.has_value())
      throw UsageError("give either --document or --manual");
    return make(options, change);
  }
};

}  // namespace

void personalAdd(Command& verb) { declare<ListChange<giveCopy>>(verb); }
void personalRemove(Command& verb) { declare<ListChange<takeOffList>>(verb); }

}  // namespace kv::cli
