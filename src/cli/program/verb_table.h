// SPDX-License-Identifier: Apache-2.0
// Every verb of the program, in the order in which help lists them.
#pragma once

#include <span>
#include <string_view>

#include "cli/program/command.h"

namespace kv::cli {

struct Verb {
  std::string_view name;  // as it is typed: "document show" is a part of "document"
  const char* help;
  // Says what it takes and how it runs. A verb that only has parts has none; they follow it.
  void (*declare)(Command& verb) = nullptr;
  const char* footer = "";  // below the options in its help; that of the program when there is none
};

[[nodiscard]] std::span<const Verb> verbs() noexcept;

}  // namespace kv::cli
