// SPDX-License-Identifier: Apache-2.0
#include "user/password.h"

#include <argon2.h>

#include <array>
#include <random>

#include "common/error.h"

namespace kv {

namespace {

constexpr std::size_t kSaltBytes = 16;
constexpr std::size_t kHashBytes = 32;
constexpr std::uint32_t kLanes = 1;

}  // namespace

std::string Passwords::hash(std::string_view password) const {
  std::array<unsigned char, kSaltBytes> salt{};
  std::random_device device;
  for (auto& byte : salt) byte = static_cast<unsigned char>(device());
  std::string out(
      argon2_encodedlen(cost_.passes, cost_.memoryKiB, kLanes, kSaltBytes, kHashBytes, Argon2_id),
      '\0');
  const int code =
      argon2id_hash_encoded(cost_.passes, cost_.memoryKiB, kLanes, password.data(), password.size(),
                            salt.data(), salt.size(), kHashBytes, out.data(), out.size());
  if (code != ARGON2_OK)
    throw Error(kEngineFailure, "kvUser",
                std::string("The password could not be hashed. ") + argon2_error_message(code));
  out.resize(out.find('\0'));
  return out;
}

bool Passwords::verify(std::string_view hash, std::string_view password) const {
  ++verifications_;
  return argon2id_verify(std::string(hash).c_str(), password.data(), password.size()) == ARGON2_OK;
}

bool Passwords::verifyNobody(std::string_view password) const {
  if (nobody_.empty()) nobody_ = hash("nobody");
  (void)verify(nobody_, password);
  return false;
}

bool Passwords::isHash(std::string_view stored) noexcept {
  return stored.starts_with("$argon2id$");
}

}  // namespace kv
