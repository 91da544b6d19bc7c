// The fields of a document as options: --title, --number and so on.
#pragma once

#include <optional>
#include <string>
#include "cli/program/command.h"

namespace kv::cli {

// What was given; the others stay as they are.
struct DocumentFields {
  std::optional<std::string> title;
  std::optional<std::string> number;
  std::optional<std::string> field1;
  std::optional<std::string> field2;
  std::optional<std::string> field3;
  std::optional<std::string> field4;
  std::optional<std::string> notes;
  std::optional<std::string> location;
  std::optional<bool> secured;
  std::optional<bool> controlled;

  [[nodiscard]] bool any() const;
};

void addDocumentFields(Command& verb, DocumentFields& fields);

}  // namespace kv::cli
