// SPDX-License-Identifier: Apache-2.0
// The terminal: passwords, progress, interruption.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "cli/program/errors.h"
#include "common/ref.h"
#include "data/connection.h"

namespace kv::cli {

// The password in an environment variable, else asked for at the terminal without showing it.
// Raises UsageError where there is neither.
[[nodiscard]] std::string passwordFor(const char* variable, const std::string& prompt);
// The same for a new password: at the terminal it is asked for twice. Raises UsageError for an
// empty one.
[[nodiscard]] std::string newPasswordFor(const char* variable, const std::string& prompt);

// From now on an interrupt (Ctrl-C) makes the connection's running statement fail; nothing restores
// the default.
void interruptOnSignal(const Ref<kvConnection>& connection);

// A line of progress on standard error while it is a terminal; nothing where it is not.
class Progress {
 public:
  explicit Progress(std::string what);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  Progress(Progress&&) = delete;
  Progress& operator=(Progress&&) = delete;

  void show(std::size_t done, std::size_t all, std::string_view of);

 private:
  std::string what_;
  bool terminal_;
  bool shown_ = false;
  std::size_t last_ = 0;
};

}  // namespace kv::cli
