// SPDX-License-Identifier: Apache-2.0
// Connection strings: "Provider=Microsoft.Jet.OLEDB.3.51;...;Data Source=LOCATION", or a location
// alone.
#pragma once

#include <string_view>

#include "engine/open.h"

namespace kv {

// A text that holds no "Data Source=" is a location as it stands. Of the other keys these count,
// the rest is accepted and means nothing here: "Lock Timeout" (seconds to wait for another writer),
// "Page Cache" and "Memory Map" (MiB). Values may stand in double or single quotes. Raises 3001 for
// a malformed string, 3709 for one without a location.
[[nodiscard]] engine::OpenOptions parseConnectionString(std::string_view text);

}  // namespace kv
