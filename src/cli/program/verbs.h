// SPDX-License-Identifier: Apache-2.0
// How a verb is declared, and all that are. A verb is a structure of the words it takes, which its
// options and positional words are written to, and which carries itself out:
//
//   struct Show : RegisterVerb {
//     std::string document;
//
//     void describe(Command& verb) { addKey(verb, document); }
//     void run(const Session& session) const { ... }
//   };
//
// The function that the table of verbs names declares it: declare<Show>(verb).
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

#include "cli/program/command.h"
#include "cli/program/options.h"

namespace kv::cli {

// What answers may be written as besides tables: CSV and JSON; a JSON object per line as well.
enum class Formats : std::uint8_t { None, Rows, Lines };

// REGISTER, --user and --trace, which every verb has, and the options for these formats.
void addCommon(Command& verb, Options& options, Formats formats = Formats::Rows);
// --json alone, for verbs that answer with more than one result.
void addJson(Command& verb, Options& options, const std::string& help);

// What nearly every verb takes. Those for which other formats make sense say so by a kFormats of
// their own.
struct RegisterVerb {
  static constexpr Formats kFormats = Formats::Rows;
  Options options;
};

// Carries out a verb whose words were taken. Words that make no sense together are refused by its
// check, before anybody is asked for a password; then it runs, in a session where it asks for one.
template <class Words>
[[nodiscard]] int carriedOut(const Words& words) {
  if constexpr (requires { words.check(); }) words.check();
  if constexpr (requires { words.run(); }) {
    return words.run();
  } else {
    const Session session(words.options);
    if constexpr (requires {
                    { words.run(session) } -> std::same_as<int>;
                  }) {
      return words.run(session);
    } else {
      words.run(session);
      return kDone;
    }
  }
}

// Makes a verb of a structure, which lives as long as the command.
template <class Words>
void declare(Command& verb) {
  const auto words = std::make_shared<Words>();
  if constexpr (std::is_base_of_v<RegisterVerb, Words>)
    addCommon(verb, words->options, Words::kFormats);
  if constexpr (requires { words->describe(verb); }) words->describe(verb);
  verb.onRun([words] { return carriedOut(*words); });
}

void registerNew(Command& verb);
void registerConfig(Command& verb);
void registerImport(Command& verb);
void registerExport(Command& verb);
void registerCopy(Command& verb);
void registerSql(Command& verb);
void keywordShow(Command& verb);
void keywordAdd(Command& verb);
void keywordDelete(Command& verb);
void labelShow(Command& verb);
void labelSet(Command& verb);

void documentList(Command& verb);
void documentShow(Command& verb);
void documentAdd(Command& verb);
void documentEdit(Command& verb);
void documentDelete(Command& verb);

void revisionList(Command& verb);
void revisionShow(Command& verb);
void revisionAdd(Command& verb);
void revisionEdit(Command& verb);
void revisionStatus(Command& verb);
void revisionRoute(Command& verb);
void revisionApprove(Command& verb);
void revisionReject(Command& verb);
void revisionSetCurrent(Command& verb);
void revisionDelete(Command& verb);

void manualList(Command& verb);
void manualShow(Command& verb);
void manualAdd(Command& verb);
void manualEdit(Command& verb);
void manualDelete(Command& verb);
void manualContents(Command& verb);
void manualCopies(Command& verb);
void manualPut(Command& verb);
void manualTake(Command& verb);
void manualMove(Command& verb);

void copyRelease(Command& verb);
void copyCollect(Command& verb);
void copyHoldings(Command& verb);
void copyReleases(Command& verb);
void copyStale(Command& verb);
void personalAdd(Command& verb);
void personalRemove(Command& verb);

void ownerShow(Command& verb);
void ownerAdd(Command& verb);
void ownerRemove(Command& verb);
void approverShow(Command& verb);
void approverAdd(Command& verb);
void approverRemove(Command& verb);
void approverMove(Command& verb);
void actionList(Command& verb);
void actionComplete(Command& verb);
void actionClose(Command& verb);
void userList(Command& verb);
void userShow(Command& verb);
void userAdd(Command& verb);
void userEdit(Command& verb);
void userPassword(Command& verb);
void userDelete(Command& verb);
void workgroupList(Command& verb);
void rightsShow(Command& verb);
void rightsEdit(Command& verb);

void queryList(Command& verb);
void queryShow(Command& verb);
void queryAdd(Command& verb);
void querySet(Command& verb);
void queryEdit(Command& verb);
void queryDelete(Command& verb);

void programCompletion(Command& verb);
void programManualPage(Command& verb);

}  // namespace kv::cli
