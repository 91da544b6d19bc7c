// SPDX-License-Identifier: Apache-2.0
// Profile: who is logged in and what they may do, and the connection that goes with it.
#pragma once

#include <cstdint>
#include <string>

#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "data/connection.h"

namespace kv {

// Characters of a rights text: one "0" or "1" for each right from 1.
inline constexpr std::size_t kRightsLength = 255;

class KVVESK_API kvProfile : public Object {
 public:
  // Empty while nobody is logged in.
  [[nodiscard]] const std::string& UserID() const noexcept { return userId_; }
  [[nodiscard]] const std::string& UserName() const noexcept { return userName_; }
  // The user's rights, character N for right N, "1" for granted. Empty until a log-in or a setter
  // fills it.
  [[nodiscard]] const std::string& Rights() const noexcept { return rights_; }
  void Rights(const std::string& rights) { rights_ = rights; }
  // Whether the user holds a right; administrators hold every one. Raises 5 for a number below 1; a
  // number beyond the text is a right not held.
  [[nodiscard]] bool HasRight(std::int16_t Number) const;
  [[nodiscard]] std::int16_t Administrator() const noexcept { return administrator_; }  // -1 or 0
  // -1 where the user counts as owner of everything, else 0.
  [[nodiscard]] std::int32_t OwnerOverride() const noexcept { return ownerOverride_; }
  // A column of the user's row in VeskProfiles. Raises 3265 for an unknown one, 3709 without a
  // connection; Empty for Null and for a user without a row. Storing for a user without a row
  // raises 3021.
  [[nodiscard]] Variant Value(const std::string& Key) const;
  void Store(const std::string& Key, const Variant& Value);
  // The default member: the string the connection was opened with; empty without one.
  [[nodiscard]] std::string ConnectionString() const;
  // Closes the connection for all who share this profile, and logs the user out.
  void Close();

  // For the user component and data servers:

  [[nodiscard]] const Ref<kvConnection>& connection() const noexcept { return connection_; }
  void attach(Ref<kvConnection> connection) { connection_ = std::move(connection); }
  void setUser(std::string userId, std::string userName, std::string rights, bool administrator);

 private:
  std::string userId_;
  std::string userName_;
  std::string rights_;
  std::int16_t administrator_ = 0;
  std::int32_t ownerOverride_ = 0;
  Ref<kvConnection> connection_;
};

}  // namespace kv
