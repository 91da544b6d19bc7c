// SPDX-License-Identifier: Apache-2.0
// A program of a test's own in another process: told what to do on its input, read line by line,
// and killed at any moment.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace kv::test {

class ChildProcess {
 public:
  // Starts `words[0]` with the others as its arguments.
  explicit ChildProcess(std::vector<std::string> words);
  // Kills it, if it still runs.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ChildProcess(ChildProcess&&) = delete;
  ChildProcess& operator=(ChildProcess&&) = delete;

  void tell(const std::string& line) const;
  // The next line it writes, waiting for it; nothing once it has ended.
  [[nodiscard]] std::optional<std::string> readLine();
  // All the lines that are left, until it has ended.
  [[nodiscard]] std::vector<std::string> readAll();
  // SIGKILL: it does nothing more, not even what a destructor would.
  void kill() const;
  // Waits for its end; its exit status, -1 when a signal ended it.
  int wait();

 private:
  pid_t pid_ = -1;
  int in_ = -1;
  int out_ = -1;
  bool ended_ = false;
  std::string read_;
};

}  // namespace kv::test
