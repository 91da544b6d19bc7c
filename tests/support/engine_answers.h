// SPDX-License-Identifier: Apache-2.0
// Where the engines differ, each difference one named answer. A test that asks none of these
// expects the same of both.
#pragma once

#include <string>
#include <vector>

#include "support/test_register.h"
#include "support/test_server.h"

namespace kv::test {

// Numbers of a counter that were taken in a transaction and undone with it are given out again.
[[nodiscard]] bool countersGoBack();

// Numbers that no register should hold and that the engine can, as its own statements write them.
[[nodiscard]] std::vector<std::string> numbersWithoutEnd();
// One session at a time may write, whatever it writes.
[[nodiscard]] bool oneWriterAtATime();

// How the engine would run a statement of the dialect, in its own words.
[[nodiscard]] std::string planOf(const TestRegister& reg, const std::string& sql);
// Whether such a plan reads a table from end to end, or puts rows into order by itself.
[[nodiscard]] bool scansATable(const std::string& plan);
[[nodiscard]] bool sorts(const std::string& plan);

}  // namespace kv::test
