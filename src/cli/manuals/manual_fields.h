// The fields of a manual as options: --name, --field1 and so on.
#pragma once

#include <optional>
#include <string>
#include "cli/program/command.h"

namespace kv::cli {

// What was given; the others stay as they are.
struct ManualFields {
  std::optional<std::string> name;
  std::optional<std::string> field1;
  std::optional<std::string> field2;
  std::optional<std::string> field3;
  std::optional<std::string> field4;
  std::optional<std::string> notes;

  [[nodiscard]] bool any() const { return name || field1 || field2 || field3 || field4 || notes; }
};

void addManualFields(Command& verb, ManualFields& fields);

}  // namespace kv::cli
