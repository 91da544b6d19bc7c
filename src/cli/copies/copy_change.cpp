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

int done(const std::string& sentence, const desk::DocumentCopy& copy, Format format) {
  writeDone(std::cout, fmt::format("{}, release {}", sentence, copy.release),
            {{"ReleaseID", copy.release}, {"DocumentID", copy.documentId}, {"UserID", copy.userId}},
            format);
  return kDone;
}

int doneByNumber(const std::string& sentence, const desk::ManualCopy& copy, Format format) {
  writeDone(std::cout, fmt::format("{}, with {}", sentence, documents(copy.documents)),
            {{"ManualID", copy.manualId},
             {"UserID", copy.userId},
             {"CopyNumber", copy.number},
             {"Documents", copy.documents}},
            format);
  return kDone;
}

int doneOnList(const std::string& sentence, const desk::ManualCopy& copy, Format format) {
  writeDone(std::cout, fmt::format("{}, with {}", sentence, documents(copy.documents)),
            {{"ManualID", copy.manualId}, {"UserID", copy.userId}, {"Documents", copy.documents}},
            format);
  return kDone;
}

int giveManual(const Options& options, const Session& session, const CopyChange& change) {
  if (!change.hard) {
    const auto copy = desk::listManual(session, *change.manual, change.user);
    return doneOnList(
        fmt::format("put the manual {} on the personal list of {}", copy.manualId, copy.userId),
        copy, options.format);
  }
  const auto copy = desk::giveHardManual(session, *change.manual, change.user, change.copy);
  return doneByNumber(fmt::format("released copy {} of the manual {} to {}", copy.number,
                                  copy.manualId, copy.userId),
                      copy, options.format);
}

}  // namespace

int giveCopy(const Options& options, const CopyChange& change) {
  const Session session(options);
  if (!change.document) return giveManual(options, session, change);
  const auto copy = desk::giveDocument(session, *change.document, change.user, change.hard);
  return done(change.hard
                  ? fmt::format("released the document {} to {}", copy.documentId, copy.userId)
                  : fmt::format("put the document {} on the personal list of {}", copy.documentId,
                                copy.userId),
              copy, options.format);
}

int takeManualBack(const Options& options, const CopyChange& change) {
  const Session session(options);
  const auto copy = desk::collectManual(session, *change.manual, change.user, change.copy);
  const std::string which = copy.number.empty() ? "every hard copy" : "copy " + copy.number;
  return doneByNumber(
      fmt::format("collected {} of the manual {} from {}", which, copy.manualId, copy.userId), copy,
      options.format);
}

int takeOffList(const Options& options, const CopyChange& change) {
  const Session session(options);
  if (!change.document) {
    const auto copy = desk::takeManualOffList(session, *change.manual, change.user);
    return doneOnList(
        fmt::format("took the manual {} off the personal list of {}", copy.manualId, copy.userId),
        copy, options.format);
  }
  const auto copy = desk::takeDocumentOffList(session, *change.document, change.user);
  return done(
      fmt::format("took the document {} off the personal list of {}", copy.documentId, copy.userId),
      copy, options.format);
}

}  // namespace kv::cli
