// SPDX-License-Identifier: Apache-2.0
// The fields of a user that the keepers of a register may write.
#pragma once

#include <optional>
#include <string>

namespace kv::desk {

// What is given; the others stay as they are, or are empty in a new user.
struct UserFields {
  std::optional<std::string> name;  // by which the user logs in
  std::optional<std::string> alias;
  std::optional<std::string> title;
  std::optional<std::string> email;
  std::optional<std::string> workgroup;  // by number or title

  [[nodiscard]] bool any() const { return name || alias || title || email || workgroup; }
  // Raises WrongInput for an empty name or workgroup.
  void check() const;
  // The same, and for no name at all.
  void checkNew() const;
};

}  // namespace kv::desk
