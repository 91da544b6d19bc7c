// SPDX-License-Identifier: Apache-2.0
// The command line as it is put together, for what is written about it: completion and the manual
// page. What help does not list is not in it.
#pragma once

#include <string>
#include <vector>

namespace kv::cli {

struct ArgumentOutline {
  std::vector<std::string>
      names;             // with their hyphens, short ones first; none of a positional word
  std::string place;     // what a positional word is called
  std::string typeName;  // what stands for the value; empty where none is taken
  std::string description;
  std::string shownDefault;
  bool required = false;
};

struct CommandOutline {
  std::string path;  // "document show"; empty for the program itself
  std::string name;
  std::string description;
  std::string footer;  // its own, not what it has from the program
  std::vector<ArgumentOutline> options;
  std::vector<ArgumentOutline> positionals;
  std::vector<CommandOutline> parts;
};

}  // namespace kv::cli
