// SPDX-License-Identifier: Apache-2.0
#include "desk/documents/view_documents.h"

#include "classes/rights/rights.h"
#include "desk/column_list.h"
#include "desk/documents/document_access.h"
#include "desk/queries/query_lookup.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

constexpr const char* kTable = "Documents";

std::int32_t queryOf(const Session& session, const std::optional<std::string>& query) {
  if (query) return findQuery(session, *query);
  if (!isQueryName(session, kAllDocuments))
    refuse("There is no document query '" + std::string(kAllDocuments) +
           "' to list by; add it with 'kvvesk queries add', or give --query.");
  return findQuery(session, kAllDocuments);
}

}  // namespace

Detail viewDocument(const Session& session, const std::string& document) {
  session.requireRight(urviewdocumentdetail);
  const DocumentKey key = findDocument(session, document);
  return {.row = session->Document()->Record(key.joined),
          .labels = labelsIn(session.database(), "DocumentConfig")};
}

Ref<Recordset> listDocuments(const Session& session, const DocumentListing& listing) {
  session.requireRight(urViewDocumentList);
  const auto& database = *session.database();
  std::string sort = listing.sort;
  if (sort.empty()) sort = session->AppOption(aoDocSortByNum) ? "DocumentNumber" : "DocumentTitle";
  return session->Document()->Records(queryOf(session, listing.query),
                                      sortList(database, kTable, sort), {},
                                      selectList(database, kTable, listing.fields));
}

}  // namespace kv::desk
