// The criteria of saved queries as options.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/people/user_field_type.h"
#include "cli/program/command.h"
#include "cli/queries/query_columns.h"
#include "queries/stored_query.h"

namespace kv::cli {

struct QueryCriteria {
  std::optional<std::string> kind;
  std::vector<std::string> where;  // column, operator, value, and so on
  std::vector<std::string> drop;   // columns that lose their criterion
  std::optional<std::string> on;
  std::optional<std::string> after;
  std::optional<std::string> before;

  [[nodiscard]] bool any() const {
    return kind || !where.empty() || !drop.empty() || on || after || before;
  }
};

// --kind, --where, --on, --after and --before.
void addCriteria(Command& verb, QueryCriteria& criteria);
// --drop, for a query that has criteria already.
void addDropping(Command& verb, QueryCriteria& criteria);

// What a column holds; only those of users hold anything but text.
using TypeOfColumn = std::function<UserFieldType(const QueryColumn&)>;

// Raises UsageError for what makes no criterion whatever the columns hold.
void checkCriteria(const QueryCriteria& criteria, Queried of);
// Sets the criteria given in a query; the others stay. Raises UsageError for a value or operator
// that does not go with what the column holds; the query is not to be saved then.
void applyCriteria(const QueryCriteria& criteria, Queried of, const TypeOfColumn& typeOf,
                   StoredQuery& query);

// Which documents a query is for: controlled, uncontrolled or all.
[[nodiscard]] std::string kindOf(const StoredQuery& query);

}  // namespace kv::cli
