#include "cli/copies/copy_change.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"

namespace kv::cli {

namespace {

using Change = int (*)(const Options&, const CopyChange&);

void addPart(Command& verb, Action& chosen, const char* name, const char* help, Change run) {
  auto* sub = verb.addSubcommand(name, help);
  const auto options = std::make_shared<Options>();
  const auto change = std::make_shared<CopyChange>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addText(*sub, "--document", change->document, "The document, by identifier or number");
  addText(*sub, "--manual", change->manual, "The manual, by identifier or name");
  addText(*sub, "--of", change->user, "Whose list, by ID or name; one's own when left out");
  sub->callback([&chosen, options, change, run] {
    if (change->document.has_value() == change->manual.has_value())
      throw UsageError("give either --document or --manual");
    chosen = [options, change, run] { return run(*options, *change); };
  });
}

}  // namespace

void addPersonal(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand("personal", "Change what is on a user's personal list");
  verb->requireSubcommand();
  addPart(*verb, chosen, "add", "Put a document or a manual on a personal list", giveCopy);
  addPart(*verb, chosen, "remove", "Take a document or a manual off a personal list", takeOffList);
}

}  // namespace kv::cli
