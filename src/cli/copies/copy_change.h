// Giving copies to users and taking them back, for the verbs that say it in their own ways. Each
// tells what it did.
#pragma once

#include <optional>
#include <string>

#include "cli/program/options.h"

namespace kv::cli {

// A document or a manual, and a user; which copy, where there may be several.
struct CopyChange {
  std::optional<std::string> document;
  std::optional<std::string> manual;
  std::optional<std::string> user;
  std::optional<std::string> copy;
  bool hard = false;
};

[[nodiscard]] int giveCopy(const Options& options, const CopyChange& change);
[[nodiscard]] int takeManualBack(const Options& options, const CopyChange& change);
[[nodiscard]] int takeOffList(const Options& options, const CopyChange& change);

}  // namespace kv::cli
