// SPDX-License-Identifier: Apache-2.0
// Giving copies of documents and manuals to users: hard copies, and entries on personal lists. The
// library tests the rights.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "desk/session.h"

namespace kv::desk {

struct DocumentCopy {
  std::int32_t release = 0;
  std::string documentId;
  std::string userId;
};

struct ManualCopy {
  std::string manualId;
  std::string userId;
  std::string number;          // of a hard copy
  std::int32_t documents = 0;  // that are in it
};

// Users are named by ID or name; the logged-in one is meant when none is.
using Holder = std::optional<std::string>;

DocumentCopy giveDocument(const Session& session, const std::string& document, const Holder& user,
                          bool hard);

// A hard copy gets the number given, which no other copy of the manual may have, or the next one.
ManualCopy giveHardManual(const Session& session, const std::string& manual, const Holder& user,
                          const std::optional<std::string>& number = {});
// Puts it on the user's personal list.
ManualCopy listManual(const Session& session, const std::string& manual, const Holder& user);

}  // namespace kv::desk
