// SPDX-License-Identifier: Apache-2.0
// Where a revision stands.
#pragma once

#include <cstdint>
#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// Where the revision stands on whose row a set is, in the register's own words; for a row that
// they cannot be found for, as old registers have them, the reason in parentheses.
[[nodiscard]] std::string standingText(const Session& session, const Ref<Recordset>& revision);

// One row: the revision, its document, where it stands and by which codes.
[[nodiscard]] Ref<Recordset> standingOf(const Session& session, std::int32_t revision);

}  // namespace kv::desk
