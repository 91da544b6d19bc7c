// SPDX-License-Identifier: Apache-2.0
#include "support/child_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

namespace kv::test {

ChildProcess::ChildProcess(std::vector<std::string> words) {
  std::array<int, 2> in{};
  std::array<int, 2> out{};
  // Closed in every program started meanwhile, or nobody would see the end of what is written.
  if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0)
    throw std::runtime_error("pipe");
  std::vector<char*> raw;
  raw.reserve(words.size() + 1);
  for (auto& word : words) raw.push_back(word.data());
  raw.push_back(nullptr);
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("fork");
  if (pid_ == 0) {
    dup2(in[0], STDIN_FILENO);
    dup2(out[1], STDOUT_FILENO);
    execv(raw[0], raw.data());
    _exit(127);
  }
  close(in[0]);
  close(out[1]);
  in_ = in[1];
  out_ = out[0];
}

ChildProcess::~ChildProcess() {
  if (!ended_) {
    kill();
    (void)wait();
  }
  close(in_);
  close(out_);
}

void ChildProcess::tell(const std::string& line) const {
  const std::string text = line + "\n";
  if (write(in_, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
    throw std::runtime_error("the child does not read");
}

std::optional<std::string> ChildProcess::readLine() {
  std::size_t end = read_.find('\n');
  while (end == std::string::npos) {
    std::array<char, 4096> buffer{};
    const ssize_t n = read(out_, buffer.data(), buffer.size());
    if (n <= 0) return std::nullopt;
    const std::size_t searched = read_.size();
    read_.append(buffer.data(), static_cast<std::size_t>(n));
    end = read_.find('\n', searched);
  }
  std::string line = read_.substr(0, end);
  read_.erase(0, end + 1);
  return line;
}

std::vector<std::string> ChildProcess::readAll() {
  std::vector<std::string> out;
  while (auto line = readLine()) out.push_back(std::move(*line));
  return out;
}

void ChildProcess::kill() const { ::kill(pid_, SIGKILL); }

int ChildProcess::wait() {
  int status = 0;
  waitpid(pid_, &status, 0);
  ended_ = true;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace kv::test
