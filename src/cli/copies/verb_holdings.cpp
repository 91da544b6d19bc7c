#include <iostream>

#include "cli/answers/output.h"
#include "cli/copies/copy_list.h"
#include "cli/people/user_lookup.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "common/text.h"

namespace kv::cli {

namespace {

int list(const Options& options, const std::optional<std::string>& user, CopyFilter filter) {
  const Session session(options);
  filter.user = doubledQuotes(userToLookAt(session, user));
  AnswerSet answer({{"ReleaseID", kTypeInteger},
                    {"HardCopy", kTypeBoolean},
                    {"ManualName", kTypeVarWChar},
                    {"CopyNumber", kTypeVarWChar},
                    {"DocumentID", kTypeVarWChar},
                    {"DocumentNumber", kTypeVarWChar},
                    {"DocumentTitle", kTypeLongVarWChar},
                    {"RevisionLevel", kTypeVarWChar},
                    {"CurrentRevisionLevel", kTypeVarWChar},
                    {"State", kTypeVarWChar}});
  for (const auto& copy : copiesHeld(session, filter))
    answer.add({copy.release, copy.hard, copy.manual, copy.number, copy.documentId,
                copy.documentNumber, copy.title, copy.level, copy.currentLevel, copy.stateText()});
  sortCopies(session, answer);
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

struct List : RegisterVerb {
  std::optional<std::string> user;
  CopyFilter filter;

  void describe(Command& verb) {
    addText(verb, "holder", user, "The user, by ID or name; whoever logs in when left out")
        ->typeName("USER");
    addCopyKinds(verb, filter);
  }
  [[nodiscard]] int run() const { return list(options, user, filter); }
};

}  // namespace

void copyHoldings(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
