// SPDX-License-Identifier: Apache-2.0
#include "support/error_check.h"

namespace kv::test {

std::optional<Error> errorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const Error& e) {
    return e;
  }
  return std::nullopt;
}

std::int32_t numberOf(const std::function<void()>& operation) {
  const auto error = errorOf(operation);
  return error ? error->number() : 0;
}

std::string descriptionOf(const std::function<void()>& operation) {
  const auto error = errorOf(operation);
  return error ? error->description() : std::string();
}

}  // namespace kv::test
