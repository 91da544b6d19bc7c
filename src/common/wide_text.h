// SPDX-License-Identifier: Apache-2.0
// Windows has its own text in UTF-16.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kv {

// Nothing where the text is not well-formed.
[[nodiscard]] std::optional<std::string> fromWide(std::wstring_view text);
[[nodiscard]] std::optional<std::wstring> toWide(std::string_view text);

}  // namespace kv
