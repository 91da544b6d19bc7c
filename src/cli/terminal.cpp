#include "cli/terminal.h"

#include <fmt/format.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <termios.h>
#include <unistd.h>
#endif

namespace kv::cli {

namespace {

#ifdef _WIN32
bool isTerminal(int descriptor) { return _isatty(descriptor) != 0; }
constexpr int kInput = 0;
constexpr int kErrors = 2;
#else
bool isTerminal(int descriptor) { return isatty(descriptor) != 0; }
constexpr int kInput = STDIN_FILENO;
constexpr int kErrors = STDERR_FILENO;
#endif

// Switches the terminal's echo off for its lifetime.
class NoEcho {
 public:
  NoEcho() {
#ifdef _WIN32
    handle_ = GetStdHandle(STD_INPUT_HANDLE);
    GetConsoleMode(handle_, &before_);
    SetConsoleMode(handle_, before_ & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
#else
    tcgetattr(kInput, &before_);
    termios quiet = before_;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(kInput, TCSAFLUSH, &quiet);
#endif
  }
  ~NoEcho() {
#ifdef _WIN32
    SetConsoleMode(handle_, before_);
#else
    tcsetattr(kInput, TCSAFLUSH, &before_);
#endif
  }
  NoEcho(const NoEcho&) = delete;
  NoEcho& operator=(const NoEcho&) = delete;
  NoEcho(NoEcho&&) = delete;
  NoEcho& operator=(NoEcho&&) = delete;

 private:
#ifdef _WIN32
  HANDLE handle_;
  DWORD before_ = 0;
#else
  termios before_{};
#endif
};

std::string ask(const char* variable, const std::string& prompt) {
  if (!isTerminal(kInput))
    throw UsageError(fmt::format("no password: set {} or run this at a terminal", variable));
  std::cerr << prompt << std::flush;
  std::string answer;
  {
    const NoEcho quiet;
    std::getline(std::cin, answer);
  }
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
    connection->Interrupt();
    return;
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

}  // namespace

std::string passwordFor(const char* variable, const std::string& prompt) {
  if (const char* value = std::getenv(variable)) return value;
  return ask(variable, prompt);
}

std::string newPasswordFor(const char* variable, const std::string& prompt) {
  std::string password;
  if (const char* value = std::getenv(variable)) {
    password = value;
  } else {
    password = ask(variable, prompt);
    if (ask(variable, "The same again: ") != password) throw UsageError("the two passwords differ");
  }
  if (password.empty()) throw UsageError("an empty password would let nobody in");
  return password;
}

std::string quotedValue(const std::string& value) {
  const char quote = value.find('"') == std::string::npos ? '"' : '\'';
  return quote + value + quote;
}

void interruptOnSignal(const Ref<kvConnection>& connection) {
  running().store(connection.get());
  std::signal(SIGINT, connection ? onInterrupt : SIG_DFL);
}

Progress::Progress(std::string what) : what_(std::move(what)), terminal_(isTerminal(kErrors)) {}

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
