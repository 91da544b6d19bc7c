// SPDX-License-Identifier: Apache-2.0
// The program's command line, put together from the table of verbs.
#pragma once

#include <string>
#include <vector>

#include "cli/program/command_outline.h"

namespace kv::cli {

// Carries out a command line, the program's own name first. Returns how the program ends.
[[nodiscard]] int runProgram(const std::vector<std::string>& words);

// All that the command line takes, for what is written about it.
[[nodiscard]] CommandOutline programOutline();

}  // namespace kv::cli
