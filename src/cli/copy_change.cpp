#include "cli/copy_change.h"

#include <fmt/format.h>

#include <iostream>

#include "cli/answer_set.h"
#include "cli/client_transaction.h"
#include "cli/released_copies.h"
#include "cli/user_lookup.h"
#include "common/error.h"
#include "common/text.h"

namespace kv::cli {

namespace {

[[noreturn]] void refuse(const std::string& why) { throw Error(kInvalidCall, "kvvesk", why); }

std::string documents(std::int32_t count) {
  return count == 1 ? "1 document" : fmt::format("{} documents", count);
}

// Who is given a copy.
std::string holdReceiver(const Session& session, ClientTransaction& transaction,
                         const CopyChange& change) {
  return change.user ? findAndHoldUser(session, transaction, *change.user)
                     : session.profile()->UserID();
}

int giveDocument(const Options& options, const Session& session, const CopyChange& change) {
  ClientTransaction transaction(session);
  const DocumentKey document = findDocument(session, *change.document);
  const std::string user = holdReceiver(session, transaction, change);
  std::int32_t release = 0;
  session->DocumentUserRelation(document.joined, doubledQuotes(user), change.hard, false, release);
  transaction.commit();
  writeDone(
      std::cout,
      change.hard
          ? fmt::format("released the document {} to {}, release {}", document.id, user, release)
          : fmt::format("put the document {} on the personal list of {}, release {}", document.id,
                        user, release),
      {{"ReleaseID", release}, {"DocumentID", document.id}, {"UserID", user}}, options.format);
  return kDone;
}

// Releases a manual as a hard copy under the number asked for, or the next one; which it was.
std::string releaseNumbered(const Session& session, const ManualKey& manual,
                            const std::string& user, const std::optional<std::string>& copy) {
  const auto& manuals = session->Manual();
  if (!copy) return session->User()->ReleaseMan(user, manual.joined, true);
  if (manuals->DuplicateCopyNumber(manual.joined, doubledQuotes(*copy)))
    refuse(fmt::format("There is a copy {} of the manual {} already.", *copy, manual.id));
  manuals->ReleaseCopy(manual.joined, user, doubledQuotes(*copy));
  return *copy;
}

int giveManual(const Options& options, const Session& session, const CopyChange& change) {
  ClientTransaction transaction(session);
  const ManualKey manual = findManual(session, *change.manual);
  const std::string user = holdReceiver(session, transaction, change);
  // Nobody else takes the number meanwhile.
  transaction.lock("Manuals", "ManualID", manual.id);
  if (!change.hard) {
    session->Manual()->AddUser(manual.joined, doubledQuotes(user));
    const std::int32_t rows = documentsHeld(session, manual, user, false);
    transaction.commit();
    writeDone(std::cout,
              fmt::format("put the manual {} on the personal list of {}, with {}", manual.id, user,
                          documents(rows)),
              {{"ManualID", manual.id}, {"UserID", user}, {"Documents", rows}}, options.format);
    return kDone;
  }
  const std::string number = releaseNumbered(session, manual, doubledQuotes(user), change.copy);
  const std::int32_t rows = documentsHeld(session, manual, user, true, number);
  transaction.commit();
  writeDone(
      std::cout,
      fmt::format("released copy {} of the manual {} to {}, with {}", number, manual.id, user,
                  documents(rows)),
      {{"ManualID", manual.id}, {"UserID", user}, {"CopyNumber", number}, {"Documents", rows}},
      options.format);
  return kDone;
}

int takeDocumentOffList(const Options& options, const Session& session, const CopyChange& change) {
  ClientTransaction transaction(session);
  const DocumentKey document = findDocument(session, *change.document);
  const std::string user = holderOf(session, change.user);
  const auto releases = listedReleases(session, document, user);
  // With none the register is asked all the same: it says whether the user might.
  std::int32_t release = releases.empty() ? 0 : releases.front();
  session->DocumentUserRelation(document.joined, doubledQuotes(user), false, true, release);
  transaction.commit();
  writeDone(std::cout,
            fmt::format("took the document {} off the personal list of {}, release {}", document.id,
                        user, release),
            {{"ReleaseID", release}, {"DocumentID", document.id}, {"UserID", user}},
            options.format);
  return kDone;
}

}  // namespace

int giveCopy(const Options& options, const CopyChange& change) {
  const Session session(options);
  return change.document ? giveDocument(options, session, change)
                         : giveManual(options, session, change);
}

int takeManualBack(const Options& options, const CopyChange& change) {
  const Session session(options);
  ClientTransaction transaction(session);
  const ManualKey manual = findManual(session, *change.manual);
  transaction.lock("Manuals", "ManualID", manual.id);
  const std::string user = holderOf(session, change.user);
  const std::string copy = change.copy.value_or("");
  const std::int32_t rows = documentsHeld(session, manual, user, true, copy);
  session->Manual()->CollectCopy(manual.joined, doubledQuotes(user), doubledQuotes(copy));
  transaction.commit();
  const std::string which = copy.empty() ? "every hard copy" : "copy " + copy;
  writeDone(std::cout,
            fmt::format("collected {} of the manual {} from {}, with {}", which, manual.id, user,
                        documents(rows)),
            {{"ManualID", manual.id}, {"UserID", user}, {"CopyNumber", copy}, {"Documents", rows}},
            options.format);
  return kDone;
}

int takeOffList(const Options& options, const CopyChange& change) {
  const Session session(options);
  if (change.document) return takeDocumentOffList(options, session, change);
  ClientTransaction transaction(session);
  const ManualKey manual = findManual(session, *change.manual);
  transaction.lock("Manuals", "ManualID", manual.id);
  const std::string user = holderOf(session, change.user);
  const std::int32_t rows = documentsHeld(session, manual, user, false);
  // Whatever its rows have for a number.
  session->ManualUserRelation(manual.joined, doubledQuotes(user), false, {}, true);
  transaction.commit();
  writeDone(std::cout,
            fmt::format("took the manual {} off the personal list of {}, with {}", manual.id, user,
                        documents(rows)),
            {{"ManualID", manual.id}, {"UserID", user}, {"Documents", rows}}, options.format);
  return kDone;
}

}  // namespace kv::cli
