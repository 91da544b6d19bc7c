// SPDX-License-Identifier: Apache-2.0
#include "cli/copies/copy_change.h"

#include <fmt/format.h>

#include <iostream>

#include "cli/answers/answer_set.h"
#include "desk/copies/give_copies.h"
#include "desk/copies/take_copies_back.h"

namespace kv::cli {

namespace {

std::string documents(std::int32_t count) {
  return count == 1 ? "1 document" : fmt::format("{} documents", count);
}

void done(const std::string& sentence, const desk::DocumentCopy& copy, Format format) {
  writeDone(std::cout, fmt::format("{}, release {}", sentence, copy.release),
            {{"ReleaseID", copy.release}, {"DocumentID", copy.documentId}, {"UserID", copy.userId}},
            format);
}

void doneByNumber(const std::string& sentence, const desk::ManualCopy& copy, Format format) {
  writeDone(std::cout, fmt::format("{}, with {}", sentence, documents(copy.documents)),
            {{"ManualID", copy.manualId},
             {"UserID", copy.userId},
             {"CopyNumber", copy.number},
             {"Documents", copy.documents}},
            format);
}

void doneOnList(const std::string& sentence, const desk::ManualCopy& copy, Format format) {
  writeDone(std::cout, fmt::format("{}, with {}", sentence, documents(copy.documents)),
            {{"ManualID", copy.manualId}, {"UserID", copy.userId}, {"Documents", copy.documents}},
            format);
}

void giveManual(const Session& session, const CopyChange& change, Format format) {
  if (!change.hard) {
    const auto copy = desk::listManual(session, *change.manual, change.user);
    return doneOnList(
        fmt::format("put the manual {} on the personal list of {}", copy.manualId, copy.userId),
        copy, format);
  }
  const auto copy = desk::giveHardManual(session, *change.manual, change.user, change.copy);
  doneByNumber(fmt::format("released copy {} of the manual {} to {}", copy.number, copy.manualId,
                           copy.userId),
               copy, format);
}

}  // namespace

void requireOneThing(const CopyChange& change) {
  if (change.document.has_value() == change.manual.has_value())
    throw UsageError("give either --document or --manual");
}

void giveCopy(const Session& session, const CopyChange& change, Format format) {
  if (!change.document) return giveManual(session, change, format);
  const auto copy = desk::giveDocument(session, *change.document, change.user, change.hard);
  done(change.hard ? fmt::format("released the document {} to {}", copy.documentId, copy.userId)
                   : fmt::format("put the document {} on the personal list of {}", copy.documentId,
                                 copy.userId),
       copy, format);
}

void takeManualBack(const Session& session, const CopyChange& change, Format format) {
  const auto copy = desk::collectManual(session, *change.manual, change.user, change.copy);
  const std::string which = copy.number.empty() ? "every hard copy" : "copy " + copy.number;
  doneByNumber(
      fmt::format("collected {} of the manual {} from {}", which, copy.manualId, copy.userId), copy,
      format);
}

void takeOffList(const Session& session, const CopyChange& change, Format format) {
  if (!change.document) {
    const auto copy = desk::takeManualOffList(session, *change.manual, change.user);
    return doneOnList(
        fmt::format("took the manual {} off the personal list of {}", copy.manualId, copy.userId),
        copy, format);
  }
  const auto copy = desk::takeDocumentOffList(session, *change.document, change.user);
  done(
      fmt::format("took the document {} off the personal list of {}", copy.documentId, copy.userId),
      copy, format);
}

}  // namespace kv::cli
