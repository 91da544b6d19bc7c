// SPDX-License-Identifier: Apache-2.0
// Runs the program as a shell would.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace kv::test {

struct Outcome {
  int code = -1;
  std::string out;
  std::string err;
};

struct Invocation {
  std::vector<std::string> arguments;
  std::string input = {};
  // Besides PATH and HOME; KVVESK_PASSWORD is "secret" unless given here, and not set for "-".
  std::map<std::string, std::string> environment = {};
};

[[nodiscard]] Outcome run(const Invocation& invocation);
[[nodiscard]] inline Outcome run(std::vector<std::string> arguments) {
  return run(Invocation{std::move(arguments)});
}

}  // namespace kv::test
