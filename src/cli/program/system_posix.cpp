// SPDX-License-Identifier: Apache-2.0
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "cli/program/system.h"

namespace kv::cli {

namespace {

// Switches the terminal's echo off for its lifetime.
class NoEcho {
 public:
  NoEcho() {
    tcgetattr(STDIN_FILENO, &before_);
    termios quiet = before_;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
  }
  ~NoEcho() { tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_); }
  NoEcho(const NoEcho&) = delete;
  NoEcho& operator=(const NoEcho&) = delete;
  NoEcho(NoEcho&&) = delete;
  NoEcho& operator=(NoEcho&&) = delete;

 private:
  termios before_{};
};

}  // namespace

std::vector<std::string> commandLine(int argc, char** argv) { return {argv, argv + argc}; }

std::optional<std::string> environment(const char* variable) {
  if (const char* value = std::getenv(variable)) return value;
  return {};
}

std::shared_ptr<void> plainStreams() { return {}; }

bool inputIsTerminal() { return isatty(STDIN_FILENO) != 0; }
bool errorsAreTerminal() { return isatty(STDERR_FILENO) != 0; }

std::string hiddenLine() {
  const NoEcho quiet;
  std::string line;
  std::getline(std::cin, line);
  return line;
}

std::optional<std::filesystem::path> folderBeside(const std::filesystem::path& place) {
  std::string name = place.string() + ".XXXXXX";
  if (mkdtemp(name.data()) == nullptr) return {};
  return name;
}

void moveFolder(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::filesystem::rename(from, to);
}

}  // namespace kv::cli
