// SPDX-License-Identifier: Apache-2.0
// The fields of a revision that its keepers may write.
#pragma once

#include <optional>
#include <string>

namespace kv::desk {

// What is given; the others stay as they are, or are empty in a new revision.
struct RevisionFields {
  std::optional<std::string> level;
  std::optional<std::string> field1;
  std::optional<std::string> field2;
  std::optional<std::string> description;
  std::optional<std::string> location;   // the path of its file
  std::optional<std::string> effective;  // year-month-day, or empty for none

  [[nodiscard]] bool any() const {
    return level || field1 || field2 || description || location || effective;
  }
};

}  // namespace kv::desk
