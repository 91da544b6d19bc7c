// SPDX-License-Identifier: Apache-2.0
#include "desk/copies/give_copies.h"

#include <fmt/format.h>

#include "common/text.h"
#include "desk/copies/released_copies.h"
#include "desk/people/user_lookup.h"
#include "desk/refusal.h"
#include "desk/transaction.h"

namespace kv::desk {

namespace {

// Releases a manual as a hard copy under the number asked for, or the next one; which it was.
std::string releaseNumbered(const Session& session, const ManualKey& manual,
                            const std::string& user, const std::optional<std::string>& number) {
  const auto& manuals = session->Manual();
  if (!number) return session->User()->ReleaseMan(user, manual.joined, true);
  if (manuals->DuplicateCopyNumber(manual.joined, doubledQuotes(*number)))
    refuse(fmt::format("There is a copy {} of the manual {} already.", *number, manual.id));
  manuals->ReleaseCopy(manual.joined, user, doubledQuotes(*number));
  return *number;
}

// Who is given a copy.
std::string holdReceiver(const Session& session, Transaction& transaction, const Holder& user) {
  return user ? findAndHoldUser(session, transaction, *user) : session.profile()->UserID();
}

}  // namespace

DocumentCopy giveDocument(const Session& session, const std::string& document, const Holder& user,
                          bool hard) {
  Transaction transaction(session);
  const DocumentKey key = findDocument(session, document);
  DocumentCopy copy{.documentId = key.id, .userId = holdReceiver(session, transaction, user)};
  session->DocumentUserRelation(key.joined, doubledQuotes(copy.userId), hard, false, copy.release);
  transaction.commit();
  return copy;
}

ManualCopy giveHardManual(const Session& session, const std::string& manual, const Holder& user,
                          const std::optional<std::string>& number) {
  if (number && trimmed(*number).empty()) throw WrongInput("a hard copy needs a number");
  Transaction transaction(session);
  const ManualKey key = findManual(session, manual);
  ManualCopy copy{
      .manualId = key.id, .userId = holdReceiver(session, transaction, user), .number = {}};
  // Nobody else takes the number meanwhile.
  transaction.lock("Manuals", "ManualID", key.id);
  copy.number = releaseNumbered(session, key, doubledQuotes(copy.userId), number);
  copy.documents = documentsHeld(session, key, copy.userId, true, copy.number);
  transaction.commit();
  return copy;
}

ManualCopy listManual(const Session& session, const std::string& manual, const Holder& user) {
  Transaction transaction(session);
  const ManualKey key = findManual(session, manual);
  ManualCopy copy{
      .manualId = key.id, .userId = holdReceiver(session, transaction, user), .number = {}};
  transaction.lock("Manuals", "ManualID", key.id);
  session->Manual()->AddUser(key.joined, doubledQuotes(copy.userId));
  copy.documents = documentsHeld(session, key, copy.userId, false);
  transaction.commit();
  return copy;
}

}  // namespace kv::desk
