// SPDX-License-Identifier: Apache-2.0
// Real registers and Access files to run against. They lie beside the checkout, or where
// KVVESK_DATA says; where they are not, the tests on them are skipped and say so.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

namespace kv::test {

[[nodiscard]] inline std::optional<std::string> sharedData(const std::string& name) {
  const char* given = std::getenv("KVVESK_DATA");
  const std::filesystem::path base =
      given != nullptr ? std::filesystem::path(given)
                       : std::filesystem::path(KVVESK_SOURCE) / ".." / "shared" / "data";
  const auto path = base / name;
  if (!std::filesystem::exists(path)) return std::nullopt;
  return std::filesystem::weakly_canonical(path).string();
}

}  // namespace kv::test

#define REQUIRE_SHARED_DATA(variable, name)                                      \
  const auto variable##Found = kv::test::sharedData(name);                       \
  if (!variable##Found)                                                          \
    GTEST_SKIP() << "no " << (name) << " beside the checkout or in KVVESK_DATA"; \
  const std::string& variable = *variable##Found
