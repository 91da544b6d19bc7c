// SPDX-License-Identifier: Apache-2.0
#include "cli/program/terminal.h"

#include <fmt/format.h>

#include <atomic>
#include <csignal>
#include <iostream>

#include "cli/program/system.h"

namespace kv::cli {

namespace {

std::string ask(const char* variable, const std::string& prompt) {
  if (!inputIsTerminal())
    throw UsageError(fmt::format("no password: set {} or run this at a terminal", variable));
  std::cerr << prompt << std::flush;
  std::string answer = hiddenLine();
  std::cerr << '\n';
  return answer;
}

// What a signal handler may touch. The connection lives as long as the session that set it.
std::atomic<kvConnection*>& running() {
  static std::atomic<kvConnection*> connection{nullptr};
  return connection;
}

void onInterrupt(int signal) {
  if (auto* connection = running().load()) {
    std::signal(signal, onInterrupt);  // some systems forget it after the first time
    connection->Interrupt();
    return;
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

}  // namespace

std::string passwordFor(const char* variable, const std::string& prompt) {
  if (auto value = environment(variable)) return *value;
  return ask(variable, prompt);
}

std::string newPasswordFor(const char* variable, const std::string& prompt) {
  std::string password;
  if (auto value = environment(variable)) {
    password = *value;
  } else {
    password = ask(variable, prompt);
    if (ask(variable, "The same again: ") != password) throw UsageError("the two passwords differ");
  }
  if (password.empty()) throw UsageError("an empty password would let nobody in");
  return password;
}

void interruptOnSignal(const Ref<kvConnection>& connection) {
  running().store(connection.get());
  std::signal(SIGINT, connection ? onInterrupt : SIG_DFL);
}

Progress::Progress(std::string what) : what_(std::move(what)), terminal_(errorsAreTerminal()) {}

Progress::~Progress() {
  if (shown_) std::cerr << "\r\x1b[K" << std::flush;
}

void Progress::show(std::size_t done, std::size_t all, std::string_view of) {
  constexpr std::size_t kStep = 97;  // rows between two updates
  if (!terminal_ || (done < all && done < last_ + kStep && done >= last_)) return;
  last_ = done;
  shown_ = true;
  std::cerr << fmt::format("\r{}: {} of {} {}\x1b[K", what_, done, all, of) << std::flush;
}

}  // namespace kv::cli
