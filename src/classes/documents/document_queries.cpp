// SPDX-License-Identifier: Apache-2.0
// The saved queries of clsVeskDocument.
#include "classes/documents/document.h"
#include "data/operation.h"

namespace kv {

Ref<clsDocumentQuery> clsVeskDocument::GetQuery(std::int32_t QueryID) {
  auto query = makeRef<clsDocumentQuery>();
  query->LoadQuery(dataServer_->Queries()->Open(QueryID));
  return query;
}

Ref<clsDocumentQuery> clsVeskDocument::AddQuery() {
  Operation operation(dataServer_->Connection());
  auto query = GetQuery(dataServer_->Queries()->Add("<<New Query>>"));
  operation.commit();
  return query;
}

void clsVeskDocument::SaveQuery(const Ref<clsDocumentQuery>& oquery) {
  const auto rs = dataServer_->Queries()->Open(oquery->id());
  oquery->SaveQuery(rs);
}

void clsVeskDocument::DeleteQuery(std::int32_t id) { dataServer_->Queries()->Delete(id); }

}  // namespace kv
