// SPDX-License-Identifier: Apache-2.0
#include "desk/copies/take_copies_back.h"

#include "common/text.h"
#include "desk/copies/released_copies.h"
#include "desk/transaction.h"

namespace kv::desk {

DocumentCopy collectDocument(const Session& session, std::int32_t release) {
  Transaction transaction(session);
  const ReleasedDocument released = findHardCopy(session, release);
  session->Document()->CollectCopy(release);
  transaction.commit();
  return {.release = release, .documentId = released.document.id, .userId = released.userId};
}

ManualCopy collectManual(const Session& session, const std::string& manual, const Holder& user,
                         const std::optional<std::string>& number) {
  Transaction transaction(session);
  const ManualKey key = findManual(session, manual);
  transaction.lock("Manuals", "ManualID", key.id);
  ManualCopy copy{
      .manualId = key.id, .userId = holderOf(session, user), .number = number.value_or("")};
  copy.documents = documentsHeld(session, key, copy.userId, true, copy.number);
  session->Manual()->CollectCopy(key.joined, doubledQuotes(copy.userId),
                                 doubledQuotes(copy.number));
  transaction.commit();
  return copy;
}

DocumentCopy takeDocumentOffList(const Session& session, const std::string& document,
                                 const Holder& user) {
  Transaction transaction(session);
  const DocumentKey key = findDocument(session, document);
  DocumentCopy copy{.documentId = key.id, .userId = holderOf(session, user)};
  const auto releases = listedReleases(session, key, copy.userId);
  // With none the register is asked all the same: it says whether the user might.
  copy.release = releases.empty() ? 0 : releases.front();
  session->DocumentUserRelation(key.joined, doubledQuotes(copy.userId), false, true, copy.release);
  transaction.commit();
  return copy;
}

ManualCopy takeManualOffList(const Session& session, const std::string& manual,
                             const Holder& user) {
  Transaction transaction(session);
  const ManualKey key = findManual(session, manual);
  transaction.lock("Manuals", "ManualID", key.id);
  ManualCopy copy{.manualId = key.id, .userId = holderOf(session, user), .number = {}};
  copy.documents = documentsHeld(session, key, copy.userId, false);
  // Whatever its rows have for a number.
  session->ManualUserRelation(key.joined, doubledQuotes(copy.userId), false, {}, true);
  transaction.commit();
  return copy;
}

}  // namespace kv::desk
