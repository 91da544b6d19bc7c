// SPDX-License-Identifier: Apache-2.0
// How the program ends, and what it says when that is not well.
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <utility>

namespace kv::cli {

inline constexpr int kDone = 0;
inline constexpr int kRefused = 1;  // the register said no
inline constexpr int kUsage = 2;    // the command line makes no sense

// A command line that cannot be carried out as written; the program ends with kUsage.
class UsageError : public std::exception {
 public:
  explicit UsageError(std::string message) : message_(std::move(message)) {}
  [[nodiscard]] const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::string message_;
};

// What the program returns, and how it ends when it raises an error, which is told on standard
// error.
[[nodiscard]] int endingOf(const std::function<int()>& program);

}  // namespace kv::cli
