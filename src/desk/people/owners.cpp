// SPDX-License-Identifier: Apache-2.0
#include "desk/people/owners.h"

#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/people/document_people.h"
#include "desk/people/user_lookup.h"
#include "desk/transaction.h"

namespace kv::desk {

Ref<Recordset> listOwners(const Session& session, const std::string& document) {
  session.requireRight(urviewdocumentdetail);
  const DocumentKey key = findDocument(session, document);
  return namedMembers(session, membersIn(session->Document()->Owners(key.joined)));
}

DocumentUser addOwner(const Session& session, const std::string& document,
                      const std::string& user) {
  Transaction transaction(session);
  const std::string which = findDocument(session, document).id;
  const std::string id = findAndHoldUser(session, transaction, user);
  const DocumentKey key = findAndHoldDocument(session, transaction, which);
  session->Document()->AddOwner(key.joined, doubledQuotes(id));
  transaction.commit();
  return {.documentId = key.id, .userId = id};
}

DocumentUser removeOwner(const Session& session, const std::string& document,
                         const std::string& user) {
  Transaction transaction(session);
  const DocumentKey key = findDocument(session, document);
  const std::string id =
      findMember(session, membersIn(session->Document()->Owners(key.joined)), user);
  session->Document()->RemoveOwner(key.joined, doubledQuotes(id));
  transaction.commit();
  return {.documentId = key.id, .userId = id};
}

}  // namespace kv::desk
