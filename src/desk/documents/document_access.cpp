// SPDX-License-Identifier: Apache-2.0
#include "desk/documents/document_access.h"

#include <vector>

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "common/text.h"
#include "common/text_key.h"
#include "data/table_value.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

// The identifiers of the documents with a value in a column, those left out that are secured from
// the user.
std::vector<std::string> seenBy(const Session& session, const char* column,
                                const std::string& value) {
  const auto rs = openOwn(session.database(),
                          std::string("Select DocumentID, SecurityLevel From Documents Where ") +
                              column + " = '" + doubledQuotes(value) + "'",
                          kReadOnly);
  std::vector<std::string> ids;
  for (; !rs->Eof(); rs->MoveNext()) {
    std::string id = joinText(rs->Fields(0)->Value());
    if (!toBoolean(rs->Fields(1)->Value()) || session.isAdministrator() || isOwner(session, id))
      ids.push_back(std::move(id));
  }
  return ids;
}

}  // namespace

bool isOwner(const Session& session, const std::string& documentId) {
  if (session->UserAccess(urActAsDocumentOwner)) return true;
  const auto rs =
      openOwn(session.database(),
              "Select UserID From Owners Where DocumentID = '" + doubledQuotes(documentId) +
                  "' and UserID = '" + doubledQuotes(session.profile()->UserID()) + "'",
              kReadOnly);
  return rs->RecordCount() > 0;
}

bool isHidden(const Session& session, const std::string& documentId) {
  if (session.isAdministrator()) return false;
  const auto rs = openOwn(session.database(),
                          "Select ID From Documents Where DocumentID = '" +
                              doubledQuotes(documentId) + "' and SecurityLevel <> 0",
                          kReadOnly);
  return rs->RecordCount() > 0 && !isOwner(session, documentId);
}

HiddenDocuments::HiddenDocuments(const Session& session) {
  if (session.isAdministrator() || session->UserAccess(urActAsDocumentOwner)) return;
  const auto idsIn = [&](const std::string& rest) {
    return openOwn(session.database(), "Select DocumentID From " + rest, kReadOnly);
  };
  const auto secured = idsIn("Documents Where SecurityLevel <> 0");
  for (; !secured->Eof(); secured->MoveNext())
    ids_.insert(foldKey(joinText(secured->Fields(0)->Value())));
  const auto owned =
      idsIn("Owners Where UserID = '" + doubledQuotes(session.profile()->UserID()) + "'");
  for (; !owned->Eof(); owned->MoveNext()) ids_.erase(foldKey(joinText(owned->Fields(0)->Value())));
}

bool HiddenDocuments::contains(std::string_view documentId) const {
  return ids_.contains(foldKey(documentId));
}

DocumentKey findDocument(const Session& session, const std::string& document) {
  auto found = seenBy(session, "DocumentID", document);
  if (found.empty()) {
    found = seenBy(session, "DocumentNumber", document);
    if (found.empty()) refuse("There is no document '" + document + "'.");
    if (found.size() > 1)
      refuse("Several documents have the number '" + document +
             "'; give the document's identifier.");
  }
  const std::string id = found.front();
  DocumentKey key{.id = id, .joined = doubledQuotes(id), .owned = isOwner(session, id)};
  // What the library does to an identifier it does to every document that has it.
  const auto same =
      openOwn(session.database(),
              "Select ID From Documents Where DocumentID = '" + key.joined + "'", kReadOnly);
  if (same->RecordCount() == 0) refuse("The document '" + document + "' has no identifier.");
  if (same->RecordCount() > 1) refuse("Several documents have the identifier '" + id + "'.");
  return key;
}

DocumentKey findAndHoldDocument(const Session& session, Transaction& transaction,
                                const std::string& document) {
  const std::string id = findDocument(session, document).id;
  transaction.lock("Documents", "DocumentID", id);
  return findDocument(session, id);  // unless somebody was quicker
}

void requireFieldRight(const Session& session, const DocumentKey& document, std::int16_t userRight,
                       std::int16_t ownerRight) {
  if (session->UserAccess(userRight)) return;
  if (!document.owned) deny(session->urDescription(userRight));
  if (!session->OwnerAccess(ownerRight)) deny(session->orDescription(ownerRight));
}

void requireOwner(bool owned) {
  if (!owned) deny(userRightText(urActAsDocumentOwner));
}

}  // namespace kv::desk
