// SPDX-License-Identifier: Apache-2.0
#include "desk/queries/query_lookup.h"

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "common/whole_number.h"
#include "data/table_value.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

Ref<Recordset> queriesWhere(const Session& session, const QueryKind& from,
                            const std::string& condition) {
  return openOwn(session.database(),
                 std::string("Select QueryID From ") + from.table + " Where " + condition,
                 kReadOnly);
}

Ref<Recordset> queriesNamed(const Session& session, const QueryKind& from,
                            const std::string& name) {
  return queriesWhere(session, from, "QueryName = '" + doubledQuotes(name) + "'");
}

}  // namespace

std::int32_t findQuery(const Session& session, const std::string& query, const QueryKind& from) {
  if (const auto number = wholeNumber(query))
    if (queriesWhere(session, from, "QueryID = " + std::to_string(*number))->RecordCount() > 0)
      return *number;
  return findQueryNamed(session, query, from);
}

std::int32_t findQueryNamed(const Session& session, const std::string& query,
                            const QueryKind& from) {
  const auto named = queriesNamed(session, from, query);
  if (named->RecordCount() == 1) return toInt32(named->Fields(0)->Value());
  const std::string kind = from.kind;
  refuse(named->RecordCount() == 0 ? "There is no " + kind + " query '" + query + "'."
                                   : "Several " + kind + " queries have the name '" + query +
                                         "'; give the query's number.");
}

bool isQueryName(const Session& session, const std::string& name, const QueryKind& from,
                 std::int32_t except) {
  const auto named = queriesNamed(session, from, name);
  for (; !named->Eof(); named->MoveNext())
    if (toInt32(named->Fields(0)->Value()) != except) return true;
  return false;
}

}  // namespace kv::desk
