// SPDX-License-Identifier: Apache-2.0
// The fields of a document that its keepers may write.
#pragma once

#include <optional>
#include <string>

namespace kv::desk {

// What is given; the others stay as they are, or are empty in a new document. A new document is
// controlled and not secured unless it says otherwise.
struct DocumentFields {
  std::optional<std::string> title;
  std::optional<std::string> number;
  std::optional<std::string> field1;
  std::optional<std::string> field2;
  std::optional<std::string> field3;
  std::optional<std::string> field4;
  std::optional<std::string> notes;
  std::optional<std::string> location;
  std::optional<bool> secured;
  std::optional<bool> controlled;

  [[nodiscard]] bool any() const {
    return title || number || field1 || field2 || field3 || field4 || notes || location ||
           secured || controlled;
  }
};

}  // namespace kv::desk
