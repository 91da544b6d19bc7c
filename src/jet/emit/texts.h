// SPDX-License-Identifier: Apache-2.0
// Joining pieces of a statement's text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv::jet {

[[nodiscard]] std::string joinTexts(const std::vector<std::string>& parts,
                                    std::string_view between = ", ");
// A name in the form both engines take: in double quotes, inner ones doubled.
[[nodiscard]] std::string quotedName(std::string_view name);

}  // namespace kv::jet
