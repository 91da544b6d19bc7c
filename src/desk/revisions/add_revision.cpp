// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/add_revision.h"

#include "common/text.h"
#include "desk/documents/document_access.h"
#include "desk/people/user_lookup.h"
#include "desk/transaction.h"

namespace kv::desk {

AddedRevision addRevision(const Session& session, const std::string& document,
                          const RevisionFields& fields,
                          const std::optional<std::string>& responsible) {
  Transaction transaction(session);
  const DocumentKey found = findDocument(session, document);
  requireOwner(found.owned);
  const std::string user = responsible ? findAndHoldUser(session, transaction, *responsible)
                                       : session.profile()->UserID();
  const DocumentKey key = findAndHoldDocument(session, transaction, found.id);
  const std::int32_t revision = session->Revision()->Add(
      key.joined, fields.level.value_or(""), fields.field1.value_or(""), fields.field2.value_or(""),
      fields.description.value_or(""), fields.location.value_or(""), false, doubledQuotes(user),
      fields.effective.value_or(""));
  transaction.commit();
  return {.revision = revision, .documentId = key.id};
}

}  // namespace kv::desk
