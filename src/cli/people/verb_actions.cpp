#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/people/user_lookup.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "common/text.h"

namespace kv::cli {

namespace {

int list(const Options& options, const std::optional<std::string>& of, bool all) {
  const Session session(options);
  const auto actions = session->GetActions(doubledQuotes(userToLookAt(session, of)), all);
  AnswerSet answer({{"ActionID", kTypeInteger},
                    {"Subject", kTypeVarWChar},
                    {"Originator", kTypeVarWChar},
                    {"DateOpened", kTypeDate},
                    {"DateDue", kTypeDate},
                    {"DateCompleted", kTypeDate},
                    {"DateClosed", kTypeDate},
                    {"Reference", kTypeVarWChar},
                    {"Description", kTypeLongVarWChar}});
  for (; !actions->Eof(); actions->MoveNext()) {
    const auto value = [&](const char* column) { return actions->Fields(column)->Value(); };
    answer.add({value("ActionID"), value("Subject"), value("Originator"), value("DateOpened"),
                value("DateDue"), value("DateCompleted"), value("DateClosed"), value("Reference"),
                value("Description")});
  }
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

}  // namespace

void addActions(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand("actions", "List what somebody has been asked to do");
  const auto options = std::make_shared<Options>();
  const auto of = std::make_shared<std::optional<std::string>>();
  const auto all = std::make_shared<bool>(false);
  addCommon(*verb, *options);
  addFormats(*verb, *options, false);
  addText(*verb, "--of", *of, "The user, by ID or name; whoever logs in when left out")
      ->typeName("USER");
  verb->addFlag("--all", *all, "Also those that are closed");
  verb->footer(
      "Reference is the document or the revision that an action is about.\n"
      "'kvvesk action' completes and closes actions.");
  verb->callback([&chosen, options, of, all] {
    chosen = [options, of, all] { return list(*options, *of, *all); };
  });
}

}  // namespace kv::cli
