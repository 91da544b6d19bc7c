// SPDX-License-Identifier: Apache-2.0
// Workgroups as people name them, and the one that makes administrators.
#pragma once

#include <cstdint>
#include <string>

#include "desk/session.h"

namespace kv::desk {

// Its members are administrators.
inline constexpr std::int32_t kSuperUsers = -1;
// Where users are who have been put nowhere else.
inline constexpr std::int32_t kViewOnlyUsers = 0;

// The number of the workgroup with this number or, when there is none, with this title. Raises 5
// when there is none, and when several have the title.
[[nodiscard]] std::int32_t findWorkgroup(const Session& session, const std::string& workgroup);

// The title of a workgroup; empty for one that is gone.
[[nodiscard]] std::string workgroupTitle(const Session& session, std::int32_t workgroup);

}  // namespace kv::desk
