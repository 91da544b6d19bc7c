// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/copies/copy_change.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "common/text.h"
#include "desk/copies/take_copies_back.h"

namespace kv::cli {

namespace {

constexpr std::int32_t kNoRelease = 0;

struct Release : RegisterVerb {
  CopyChange change;

  void describe(Command& verb) {
    addText(verb, "--document", change.document, "The document, by identifier or number");
    addText(verb, "--manual", change.manual, "The manual, by identifier or name");
    addText(verb, "--to", change.user, "The user, by ID or name")->required();
    verb.addFlag("--hard", change.hard, "As a hard copy; on the user's personal list without it");
    addText(verb, "--copy", change.copy,
            "The number of a manual's hard copy; the next one when left out");
  }
  void check() const {
    requireOneThing(change);
    if (change.copy && (!change.manual || !change.hard))
      throw UsageError(
          "only hard copies of manuals have numbers: --copy needs --manual and --hard");
    if (change.copy && trimmed(*change.copy).empty())
      throw UsageError("--copy needs a number; without --copy the next one is taken");
  }
  void run(const Session& session) const { giveCopy(session, change, options.format); }
};

struct Collect : RegisterVerb {
  std::int32_t number = kNoRelease;
  CopyChange change;

  void describe(Command& verb) {
    addNumber(verb, "--release", number, "A document's hard copy, by its release number");
    addText(verb, "--manual", change.manual, "The manual, by identifier or name");
    addText(verb, "--from", change.user, "The user who has the manual, by ID or name");
    addText(verb, "--copy", change.copy,
            "The number of the manual's copy; every hard copy that the user has when left out");
  }
  void check() const {
    const bool byNumber = number != kNoRelease;
    if (byNumber == change.manual.has_value())
      throw UsageError("give either --release, or --manual and --from");
    if (byNumber && (change.user || change.copy))
      throw UsageError("--from and --copy go with --manual; a release has its number");
    if (!byNumber && !change.user) throw UsageError("say from whom: --manual needs --from");
  }
  void run(const Session& session) const {
    if (number == kNoRelease) return takeManualBack(session, change, options.format);
    const auto copy = desk::collectDocument(session, number);
    writeDone(std::cout,
              fmt::format("collected the document {} from {}, release {}", copy.documentId,
                          copy.userId, number),
              {{"ReleaseID", number}, {"DocumentID", copy.documentId}, {"UserID", copy.userId}},
              options.format);
  }
};

}  // namespace

void copyRelease(Command& verb) { declare<Release>(verb); }
void copyCollect(Command& verb) { declare<Collect>(verb); }

}  // namespace kv::cli
