// SPDX-License-Identifier: Apache-2.0
// Where users and actions are kept, as the configuration says it.
#pragma once

#include <string>

namespace kv::desk {

// The place as it is stored: a file's whole path, so that it is found from everywhere; a server's
// location as it is. Raises WrongInput for a path that a connection string cannot hold.
[[nodiscard]] std::string storedLocation(const std::string& place);

}  // namespace kv::desk
