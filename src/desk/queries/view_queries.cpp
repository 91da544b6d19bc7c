// SPDX-License-Identifier: Apache-2.0
#include "desk/queries/view_queries.h"

#include "common/convert.h"
#include "common/error.h"
#include "data/table_value.h"
#include "desk/answer_set.h"
#include "desk/queries/query_criteria.h"
#include "desk/queries/saved_query.h"

namespace kv::desk {

namespace {

constexpr const char* kKey = "QueryID";
constexpr const char* kName = "QueryName";

// Only those of documents are for a kind of them.
bool haveKinds(const QueryKind& kind) { return kind.of == Queried::Documents; }

AnswerSet answerOfQueries(const QueryKind& kind) {
  if (haveKinds(kind))
    return AnswerSet({{kKey, kTypeInteger},
                      {kName, kTypeVarWChar},
                      {"Kind", kTypeVarWChar},
                      {"Condition", kTypeLongVarWChar}});
  return AnswerSet(
      {{kKey, kTypeInteger}, {kName, kTypeVarWChar}, {"Condition", kTypeLongVarWChar}});
}

// The condition as it goes into statements; in parentheses why there is none.
std::string conditionOf(const StoredQuery& query) {
  try {
    return query.JetSQL();
  } catch (const Error& e) {
    return "(" + e.description() + ")";
  }
}

void addTo(AnswerSet& answer, const QueryKind& kind, const StoredQuery& query) {
  const Variant name = query.GetQueryValue(kName);
  if (haveKinds(kind))
    answer.add({query.id(), name, kindOf(query), conditionOf(query)});
  else
    answer.add({query.id(), name, conditionOf(query)});
}

}  // namespace

Ref<Recordset> listQueries(const Session& session, const QueryKind& kind) {
  session.requireRight(kind.viewRight);
  AnswerSet answer = answerOfQueries(kind);
  const auto all =
      openOwn(session.database(),
              std::string("Select QueryID From ") + kind.table + " Order By QueryID", kReadOnly);
  for (; !all->Eof(); all->MoveNext())
    addTo(answer, kind, *SavedQuery::load(session, kind, toInt32(all->Fields(0)->Value())));
  return answer.take();
}

Ref<Recordset> viewQuery(const Session& session, const QueryKind& kind, const std::string& query) {
  session.requireRight(kind.viewRight);
  AnswerSet answer = answerOfQueries(kind);
  addTo(answer, kind, *SavedQuery::load(session, kind, findQuery(session, query, kind)));
  return answer.take();
}

}  // namespace kv::desk
