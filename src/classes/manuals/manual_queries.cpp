// SPDX-License-Identifier: Apache-2.0
// The saved queries of clsVeskManual.
#include "classes/manuals/manual.h"
#include "data/operation.h"

namespace kv {

Ref<clsManualQuery> clsVeskManual::GetQuery(std::int32_t QueryID) {
  auto query = makeRef<clsManualQuery>();
  query->LoadQuery(dataServer_->Queries()->Open(QueryID));
  return query;
}

Ref<clsManualQuery> clsVeskManual::NewQuery() {
  Operation operation(dataServer_->Connection());
  auto query = GetQuery(dataServer_->Queries()->Add("<<New Query>>"));
  operation.commit();
  return query;
}

void clsVeskManual::SaveQuery(const Ref<clsManualQuery>& oquery) {
  const auto rs = dataServer_->Queries()->Open(oquery->id());
  oquery->SaveQuery(rs);
}

}  // namespace kv
