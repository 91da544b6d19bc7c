// SPDX-License-Identifier: Apache-2.0
#include "desk/documents/delete_document.h"

#include "classes/rights/rights.h"
#include "desk/documents/document_access.h"
#include "desk/transaction.h"

namespace kv::desk {

std::string deleteDocument(const Session& session, const std::string& document) {
  session.requireRight(urdeletedocument);
  Transaction transaction(session);
  const DocumentKey key = findDocument(session, document);
  transaction.lock("Documents", "DocumentID", key.id);
  session->Document()->Delete(key.joined, true);
  transaction.commit();
  return key.id;
}

}  // namespace kv::desk
