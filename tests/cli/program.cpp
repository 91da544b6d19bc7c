// SPDX-License-Identifier: Apache-2.0
#include "cli/program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/temp_folder.h"

namespace kv::test {

Outcome run(const Invocation& invocation) {
  const TempFolder folder;
  const std::string in = folder.file("in");
  const std::string out = folder.file("out");
  const std::string err = folder.file("err");
  write(in, invocation.input);
  auto environment = invocation.environment;
  environment.try_emplace("KVVESK_PASSWORD", "secret");
  const pid_t child = fork();
  if (child == 0) {
    const int inFile = open(in.c_str(), O_RDONLY);
    const int outFile = open(out.c_str(), O_WRONLY | O_CREAT, 0600);
    const int errFile = open(err.c_str(), O_WRONLY | O_CREAT, 0600);
    dup2(inFile, 0);
    dup2(outFile, 1);
    dup2(errFile, 2);
    setsid();  // no terminal to ask at
    for (const auto& [name, value] : environment) {
      if (value == "-")
        unsetenv(name.c_str());
      else
        setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<std::string> words = {KVVESK_PROGRAM};
    words.insert(words.end(), invocation.arguments.begin(), invocation.arguments.end());
    std::vector<char*> raw;
    for (auto& word : words) raw.push_back(word.data());
    raw.push_back(nullptr);
    execv(raw[0], raw.data());
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status)) << "the program was ended by a signal";
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(out), contents(err)};
}

}  // namespace kv::test
