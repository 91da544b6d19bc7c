// SPDX-License-Identifier: Apache-2.0
// What an operation raised, and expectations about it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "common/error.h"

namespace kv::test {

// The error an operation raises; nothing when it raises none.
[[nodiscard]] std::optional<Error> errorOf(const std::function<void()>& operation);
// Its number, 0 when it raises none.
[[nodiscard]] std::int32_t numberOf(const std::function<void()>& operation);
// Its description, "" when it raises none.
[[nodiscard]] std::string descriptionOf(const std::function<void()>& operation);

}  // namespace kv::test

// The statement raises an Error with this number.
#define EXPECT_RAISES(expected, statement) \
  EXPECT_EQ(kv::test::numberOf([&] { statement; }), (expected)) << #statement
