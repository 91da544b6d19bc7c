// SPDX-License-Identifier: Apache-2.0
// What the program's help texts list.
#pragma once

#include <set>
#include <string>

namespace kv::test {

// The names listed under a heading of a help text, such as "Options:", each at the beginning of its
// line; of an option its last name.
[[nodiscard]] std::set<std::string> listedIn(const std::string& help, const std::string& heading);

}  // namespace kv::test
