// SPDX-License-Identifier: Apache-2.0
// kvvesk: a controlled-document register from the shell.

#include "cli/program/errors.h"
#include "cli/program/program.h"
#include "cli/program/system.h"

int main(int argc, char** argv) {
  const auto streams = kv::cli::plainStreams();
  return kv::cli::endingOf([&] { return kv::cli::runProgram(kv::cli::commandLine(argc, argv)); });
}
