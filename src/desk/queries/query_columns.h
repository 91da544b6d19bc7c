// SPDX-License-Identifier: Apache-2.0
// The columns that saved queries search by, as people name them and as a stored query
// keeps what is asked of them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "desk/queries/query_lookup.h"

namespace kv::desk {

struct QueryColumn {
  std::string option;
  std::string name;       // in the table that is searched
  std::string criterion;  // the stored query's columns: the value,
  std::string code;       // the operator,
  std::string upper;      // and the end of a range where there are ranges
};

[[nodiscard]] const std::vector<QueryColumn>& queryColumns(Queried of);

// By option or name; raises WrongInput for one that there is not.
[[nodiscard]] const QueryColumn& queryColumn(Queried of, const std::string& name);

}  // namespace kv::desk
