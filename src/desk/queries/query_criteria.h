// SPDX-License-Identifier: Apache-2.0
// What a saved query asks for, in the words of those who keep a register.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "classes/queries/stored_query.h"
#include "desk/queries/query_columns.h"
#include "desk/queries/user_field_type.h"

namespace kv::desk {

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

// What a column holds; only those of users hold anything but text.
using TypeOfColumn = std::function<UserFieldType(const QueryColumn&)>;

// Raises WrongInput for what makes no criterion whatever the columns hold.
void checkCriteria(const QueryCriteria& criteria, Queried of);
// Sets the criteria given in a query; the others stay. Raises WrongInput for a value or operator
// that does not go with what the column holds; the query is not to be saved then.
void applyCriteria(const QueryCriteria& criteria, Queried of, const TypeOfColumn& typeOf,
                   StoredQuery& query);

// Which documents a query is for: controlled, uncontrolled or all.
[[nodiscard]] std::string kindOf(const StoredQuery& query);

}  // namespace kv::desk
