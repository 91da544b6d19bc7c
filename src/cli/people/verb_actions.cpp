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

struct List : RegisterVerb {
  std::optional<std::string> of;
  bool all = false;

  void describe(Command& verb) {
    addText(verb, "--of", of, "The user, by ID or name; whoever logs in when left out")
        ->typeName("USER");
    verb.addFlag("--all", all, "Also those that are closed");
  }
  [[nodiscard]] int run() const { return list(options, of, all); }
};

}  // namespace

void actionList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
