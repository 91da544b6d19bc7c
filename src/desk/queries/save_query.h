// SPDX-License-Identifier: Apache-2.0
// Saving, changing and deleting saved queries. All of it takes the right to create queries of the
// kind.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "desk/queries/query_criteria.h"
#include "desk/queries/query_lookup.h"
#include "desk/session.h"

namespace kv::desk {

// A query as it is to be saved.
struct QueryChange {
  std::optional<std::string> name;
  QueryCriteria criteria;

  // Raises WrongInput for an empty name, and for what makes no criterion whatever the columns hold.
  void check(const QueryKind& kind) const;
  // The same, and when there is nothing to change.
  void checkChange(const QueryKind& kind) const;
};

struct QuerySaved {
  std::int32_t query = 0;
  bool known = false;  // there was one of that name
};

// A new query; raises 5 when there is one of that name.
QuerySaved addQuery(const Session& session, const QueryKind& kind, const std::string& name,
                    const QueryCriteria& criteria);
// A query of that name, whether there is one or not.
QuerySaved setQuery(const Session& session, const QueryKind& kind, const std::string& name,
                    const QueryCriteria& criteria);

// Changes the name or criteria of a query, by number or name; criteria that are not given stay.
// Returns its number.
std::int32_t editQuery(const Session& session, const QueryKind& kind, const std::string& query,
                       const QueryChange& change);

// Returns the number of the query, which was given by number or name.
std::int32_t deleteQuery(const Session& session, const QueryKind& kind, const std::string& query);

}  // namespace kv::desk
