#include "support/other_user.h"

#include <fmt/format.h>
#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <thread>

#include "common/error.h"

namespace kv::test {

namespace {

constexpr unsigned kNobody = 65534;

std::string inChild(const std::function<std::string()>& body, bool dropRights) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) {
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
  close(ends[1]);
  std::string out;
  char buffer[4096];
  for (ssize_t n = 0; (n = read(ends[0], buffer, sizeof buffer)) > 0;)
    out.append(buffer, static_cast<std::size_t>(n));
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status)) out += fmt::format("(ended by signal {})", WTERMSIG(status));
  return out;
}

}  // namespace

std::string asOrdinaryUser(const std::function<std::string()>& body) { return inChild(body, true); }
std::string inOtherProcess(const std::function<std::string()>& body) {
  return inChild(body, false);
}

std::vector<std::string> inProcesses(int count, const std::function<std::string(int)>& body) {
  std::vector<std::string> answers(static_cast<std::size_t>(count));
  std::vector<std::thread> parents;
  for (int p = 0; p < count; ++p)
    parents.emplace_back([&answers, &body, p] {
      answers[static_cast<std::size_t>(p)] = inOtherProcess([&body, p] { return body(p); });
    });
  for (auto& parent : parents) parent.join();
  return answers;
}

}  // namespace kv::test
