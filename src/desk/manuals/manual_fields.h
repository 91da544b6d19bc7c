// SPDX-License-Identifier: Apache-2.0
// The fields of a manual that its keepers may write.
#pragma once

#include <optional>
#include <string>

namespace kv::desk {

// What is given; the others stay as they are, or are empty in a new manual.
struct ManualFields {
  std::optional<std::string> name;
  std::optional<std::string> field1;
  std::optional<std::string> field2;
  std::optional<std::string> field3;
  std::optional<std::string> field4;
  std::optional<std::string> notes;

  [[nodiscard]] bool any() const { return name || field1 || field2 || field3 || field4 || notes; }
};

}  // namespace kv::desk
