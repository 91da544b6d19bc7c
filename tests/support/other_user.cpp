// SPDX-License-Identifier: Apache-2.0
#include "support/other_user.h"

#include <fmt/format.h>
#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "common/error.h"

namespace kv::test {

namespace {

constexpr unsigned kNobody = 65534;

struct Child {
  pid_t process = -1;
  int answers = -1;  // where to read them
};

Child startChild(const std::function<std::string()>& body, bool dropRights) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child > 0) {
    close(ends[1]);
    return {child, ends[0]};
  }
  close(ends[0]);
  std::string answer;
  if (dropRights && geteuid() == 0 &&
      (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)) {
    answer = "rights could not be dropped";
  } else {
    try {
      answer = body();
    } catch (const Error& e) {
      answer = fmt::format("error {}: {}", e.number(), e.description());
    } catch (const std::exception& e) {
      answer = std::string("exception: ") + e.what();
    }
  }
  std::size_t sent = 0;
  while (sent < answer.size()) {
    const auto n = write(ends[1], answer.data() + sent, answer.size() - sent);
    if (n <= 0) break;
    sent += static_cast<std::size_t>(n);
  }
  close(ends[1]);
  _exit(0);
}

std::string answerOf(const Child& child) {
  std::string out;
  char buffer[4096];
  for (ssize_t n = 0; (n = read(child.answers, buffer, sizeof buffer)) > 0;)
    out.append(buffer, static_cast<std::size_t>(n));
  close(child.answers);
  int status = 0;
  waitpid(child.process, &status, 0);
  if (!WIFEXITED(status)) out += fmt::format("(ended by signal {})", WTERMSIG(status));
  return out;
}

}  // namespace

std::string asOrdinaryUser(const std::function<std::string()>& body) {
  return answerOf(startChild(body, true));
}
std::string inOtherProcess(const std::function<std::string()>& body) {
  return answerOf(startChild(body, false));
}

// All are started by this one thread: what is forked while other threads run may wait for ever for
// a lock that one of those held.
std::vector<std::string> inProcesses(int count, const std::function<std::string(int)>& body) {
  std::vector<Child> children;
  for (int p = 0; p < count; ++p)
    children.push_back(startChild([&body, p] { return body(p); }, false));
  std::vector<std::string> answers;
  for (const auto& child : children) answers.push_back(answerOf(child));
  return answers;
}

}  // namespace kv::test
