#include "desk/revisions/add_revision.h"

#include "desk/documents/document_access.h"
#include "desk/people/user_lookup.h"
#include "desk/transaction.h"

namespace kv::desk {

AddedRevision addRevision(const Session& session, const std::string& document,
                          const RevisionFields& fields,
                          const std::optional<std::string>& responsible) {
  Transaction transaction(session);
  const DocumentKey key = findDocument(session, document);
  requireOwner(key.owned);
  const std::string user =
      responsible ? findUser(session.database(), *responsible) : session.profile()->UserID();
  const std::int32_t revision = session->Revision()->Add(
      key.id, fields.level.value_or(""), fields.field1.value_or(""), fields.field2.value_or(""),
      fields.description.value_or(""), fields.location.value_or(""), false, user,
      fields.effective.value_or(""));
  transaction.commit();
  return {.revision = revision, .documentId = key.id};
}

}  // namespace kv::desk
