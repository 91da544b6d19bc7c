// SPDX-License-Identifier: Apache-2.0
// Looking at saved queries. Takes the right to view the list of what they find.
#pragma once

#include <string>

#include "desk/queries/query_lookup.h"
#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// Every saved query of a kind with its condition.
[[nodiscard]] Ref<Recordset> listQueries(const Session& session, const QueryKind& kind);
// One of them, by number or name, as a row of that list.
[[nodiscard]] Ref<Recordset> viewQuery(const Session& session, const QueryKind& kind,
                                       const std::string& query);

}  // namespace kv::desk
