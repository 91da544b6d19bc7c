// SPDX-License-Identifier: Apache-2.0
// Passwords as they are kept: argon2id hashes in their own text form, which carries parameters and
// salt.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/export.h"

namespace kv {

// What one verification costs: 19 MiB of memory, two passes, one lane. A constant of the system,
// except that tests use less.
struct PasswordCost {
  std::uint32_t memoryKiB = 19 * 1024;
  std::uint32_t passes = 2;
};

class KVVESK_API Passwords {
 public:
  explicit Passwords(PasswordCost cost = {}) : cost_(cost) {}

  // A new hash of a password, with a random salt.
  [[nodiscard]] std::string hash(std::string_view password) const;
  // Whether the password belongs to the hash. A text that is no hash lets nobody in.
  [[nodiscard]] bool verify(std::string_view hash, std::string_view password) const;
  // Takes as long as verify and fails: for users who are not there or have no password.
  [[nodiscard]] bool verifyNobody(std::string_view password) const;

  // How many verifications there have been, those of nobody counted.
  [[nodiscard]] std::uint64_t verifications() const noexcept { return verifications_; }

  // Whether a stored text is a hash; anything else is a password in clear text.
  [[nodiscard]] static bool isHash(std::string_view stored) noexcept;

 private:
  PasswordCost cost_;
  mutable std::uint64_t verifications_ = 0;
  mutable std::string nobody_;  // the hash that belongs to no user, made when first needed
};

}  // namespace kv
