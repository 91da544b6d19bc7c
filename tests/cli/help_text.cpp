// SPDX-License-Identifier: Apache-2.0
#include "cli/help_text.h"

#include <sstream>

namespace kv::test {

std::set<std::string> listedIn(const std::string& help, const std::string& heading) {
  std::set<std::string> out;
  std::istringstream lines(help);
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line == heading) {
      inside = true;
    } else if (inside && line.empty()) {
      return out;
    } else if (inside && line.size() > 2 && line[2] != ' ') {
      const std::string name = line.substr(2, line.find(' ', 2) - 2);
      out.insert(name.substr(name.find(',') == std::string::npos ? 0 : name.find(',') + 1));
    }
  }
  return out;
}

}  // namespace kv::test
