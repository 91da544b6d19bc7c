// SPDX-License-Identifier: Apache-2.0
// Runs a piece of a test in a child process, for what only another process or another user can
// show.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kv::test {

// Runs `body` in a child process without root's rights (as the user nobody when the test runs as
// root) and returns what it returns. An exception's description comes back as "error NUMBER:
// DESCRIPTION".
[[nodiscard]] std::string asOrdinaryUser(const std::function<std::string()>& body);

// The same in a child process of the same user.
[[nodiscard]] std::string inOtherProcess(const std::function<std::string()>& body);

// The same in several processes at once, each told which one it is; their answers in that order.
[[nodiscard]] std::vector<std::string> inProcesses(int count,
                                                   const std::function<std::string(int)>& body);

}  // namespace kv::test
