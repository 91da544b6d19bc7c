// SPDX-License-Identifier: Apache-2.0
// Text between the library, which has UTF-8, and the platform, which has UTF-16.
#pragma once

#include <string>
#include <string_view>

#include "com/platform.h"

namespace kv::com {

// Raises 5 for text that is not well-formed. No text is the empty one.
[[nodiscard]] std::string fromBstr(BSTR text);
// A new string, which the caller frees. Throws std::bad_alloc.
[[nodiscard]] BSTR toBstr(std::string_view text);
// Bytes that are not well-formed, as a message of the system may have, become U+FFFD.
[[nodiscard]] std::wstring wideText(std::string_view text);

}  // namespace kv::com
