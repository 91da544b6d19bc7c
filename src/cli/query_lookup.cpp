#include "cli/query_lookup.h"

#include <charconv>
#include <optional>

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/table_value.h"

namespace kv::cli {

namespace {

std::optional<std::int32_t> numberOf(const std::string& text) {
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [read, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || read != end) return std::nullopt;
  return number;
}

Ref<Recordset> queriesWhere(const Session& session, const std::string& condition) {
  return openOwn(session.database(), "Select QueryID From DocumentQuerys Where " + condition,
                 kReadOnly);
}

Ref<Recordset> queriesNamed(const Session& session, const std::string& name) {
  return queriesWhere(session, "QueryName = '" + doubledQuotes(name) + "'");
}

}  // namespace

std::int32_t findQuery(const Session& session, const std::string& query) {
  if (const auto number = numberOf(query))
    if (queriesWhere(session, "QueryID = " + std::to_string(*number))->RecordCount() > 0)
      return *number;
  const auto named = queriesNamed(session, query);
  if (named->RecordCount() == 1) return toInt32(named->Fields(0)->Value());
  throw Error(kInvalidCall, "kvvesk",
              named->RecordCount() == 0 ? "There is no document query '" + query + "'."
                                        : "Several document queries have the name '" + query +
                                              "'; give the query's number.");
}

bool isQueryName(const Session& session, const std::string& name, std::int32_t except) {
  const auto named = queriesNamed(session, name);
  for (; !named->Eof(); named->MoveNext())
    if (toInt32(named->Fields(0)->Value()) != except) return true;
  return false;
}

}  // namespace kv::cli
