// SPDX-License-Identifier: Apache-2.0
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

// Raises UsageError unless it says which document or which manual.
void requireOneThing(const CopyChange& change);

void giveCopy(const Session& session, const CopyChange& change, Format format);
void takeManualBack(const Session& session, const CopyChange& change, Format format);
void takeOffList(const Session& session, const CopyChange& change, Format format);

}  // namespace kv::cli
