// SPDX-License-Identifier: Apache-2.0
#include "desk/queries/saved_query.h"

namespace kv::desk {

SavedQuery SavedQuery::load(const Session& session, const QueryKind& kind, std::int32_t id) {
  switch (kind.of) {
    case Queried::Documents: return SavedQuery(session->Document()->GetQuery(id));
    case Queried::Manuals: return SavedQuery(session->Manual()->GetQuery(id));
    case Queried::Users: break;
  }
  auto query = session->User()->GetQuery(id);
  // Without them it gives no condition.
  query->LoadFieldTypes(session->User()->Labels(session.profile()));
  return SavedQuery(std::move(query));
}

SavedQuery SavedQuery::add(const Session& session, const QueryKind& kind) {
  switch (kind.of) {
    case Queried::Documents: return SavedQuery(session->Document()->AddQuery());
    case Queried::Manuals: return SavedQuery(session->Manual()->NewQuery());
    case Queried::Users: break;
  }
  return SavedQuery(session->User()->NewQuery());
}

void SavedQuery::remove(const Session& session, const QueryKind& kind, std::int32_t id) {
  switch (kind.of) {
    case Queried::Documents: session->Document()->DeleteQuery(id); return;
    // The other classes leave that to the store.
    case Queried::Manuals: session->Manual()->DataServer()->Queries()->Delete(id); return;
    case Queried::Users: session->MainUser()->DataServer()->Queries()->Delete(id); return;
  }
}

StoredQuery& SavedQuery::operator*() const {
  return std::visit([](const auto& query) -> StoredQuery& { return *query; }, query_);
}

void SavedQuery::save(const Session& session) const {
  if (const auto* ofDocuments = std::get_if<Ref<clsDocumentQuery>>(&query_))
    session->Document()->SaveQuery(*ofDocuments);
  else if (const auto* ofManuals = std::get_if<Ref<clsManualQuery>>(&query_))
    session->Manual()->SaveQuery(*ofManuals);
  else
    session->User()->SaveQuery(std::get<Ref<clsUserQuery>>(query_));
}

}  // namespace kv::desk
