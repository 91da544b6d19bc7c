// SPDX-License-Identifier: Apache-2.0
#include "desk/queries/save_query.h"

#include "common/convert.h"
#include "desk/queries/saved_query.h"
#include "desk/refusal.h"
#include "desk/transaction.h"

namespace kv::desk {

namespace {

constexpr const char* kName = "QueryName";

// Queries are found by their names.
void requireFreeName(const Session& session, const QueryKind& kind, const std::string& name,
                     std::int32_t except = -1) {
  if (isQueryName(session, name, kind, except))
    refuse(std::string("There is a ") + kind.kind + " query '" + name + "' already.");
}

void apply(const Session& session, const QueryKind& kind, const QueryCriteria& criteria,
           StoredQuery& query) {
  const auto typeOf = [&](const QueryColumn& column) {
    const auto types = session->User()->Labels(session.profile());
    const std::string type = "Type" + column.name;
    for (std::int32_t i = 0; i < types->Fields().Count(); ++i)
      if (types->Fields(i)->Name() == type) return userFieldType(types->Fields(i)->Value());
    return UserFieldType::Text;  // name, alias and title
  };
  applyCriteria(criteria, kind.of, typeOf, query);
}

// Registers that share their users share the queries of users, too, and lock there.
void lockNames(Transaction& transaction, const QueryKind& kind) {
  if (kind.of == Queried::Users)
    transaction.lock("Users");
  else
    transaction.lockNewNames();
}

QuerySaved save(const Session& session, const QueryKind& kind, const std::string& name,
                const QueryCriteria& criteria, bool replace) {
  QueryChange{.name = name, .criteria = criteria}.check(kind);
  session.requireRight(kind.changeRight);
  Transaction transaction(session);
  lockNames(transaction, kind);
  if (!replace) requireFreeName(session, kind, name);
  const bool known = isQueryName(session, name, kind);
  const auto query = known ? SavedQuery::load(session, kind, findQueryNamed(session, name, kind))
                           : SavedQuery::add(session, kind);
  if (!known) query->SetQueryValue(kName, name);
  apply(session, kind, criteria, *query);
  query.save(session);
  transaction.commit();
  return {.query = query->id(), .known = known};
}

}  // namespace

void QueryChange::check(const QueryKind& kind) const {
  if (name && name->empty()) throw WrongInput("a query needs a name");
  checkCriteria(criteria, kind.of);
}

void QueryChange::checkChange(const QueryKind& kind) const {
  if (!name && !criteria.any())
    throw WrongInput("nothing to change: give a name or at least one criterion");
  check(kind);
}

QuerySaved addQuery(const Session& session, const QueryKind& kind, const std::string& name,
                    const QueryCriteria& criteria) {
  return save(session, kind, name, criteria, false);
}

QuerySaved setQuery(const Session& session, const QueryKind& kind, const std::string& name,
                    const QueryCriteria& criteria) {
  return save(session, kind, name, criteria, true);
}

std::int32_t editQuery(const Session& session, const QueryKind& kind, const std::string& query,
                       const QueryChange& change) {
  change.checkChange(kind);
  session.requireRight(kind.changeRight);
  Transaction transaction(session);
  lockNames(transaction, kind);
  const auto saved = SavedQuery::load(session, kind, findQuery(session, query, kind));
  if (change.name) {
    requireFreeName(session, kind, *change.name, saved->id());
    saved->SetQueryValue(kName, *change.name);
  }
  apply(session, kind, change.criteria, *saved);
  saved.save(session);
  transaction.commit();
  return saved->id();
}

std::int32_t deleteQuery(const Session& session, const QueryKind& kind, const std::string& query) {
  session.requireRight(kind.changeRight);
  Transaction transaction(session);
  lockNames(transaction, kind);
  const std::int32_t id = findQuery(session, query, kind);
  SavedQuery::remove(session, kind, id);
  transaction.commit();
  return id;
}

}  // namespace kv::desk
