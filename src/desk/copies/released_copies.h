// SPDX-License-Identifier: Apache-2.0
// Which copies are meant that somebody gets, has or gives back.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "desk/documents/document_access.h"
#include "desk/manuals/manual_lookup.h"
#include "desk/session.h"

namespace kv::desk {

// The user's ID; the logged-in user's when none is named.
[[nodiscard]] std::string holderOf(const Session& session, const std::optional<std::string>& user);

// The hard copy of a document with a release number. Raises 5 when there is none, when it is on a
// personal list, and when it belongs to a copy of a manual, which would lack it then.
struct ReleasedDocument {
  DocumentKey document;
  std::string userId;
};
[[nodiscard]] ReleasedDocument findHardCopy(const Session& session, std::int32_t release);

// The releases by which a user has a document, by itself, on his personal list.
[[nodiscard]] std::vector<std::int32_t> listedReleases(const Session& session,
                                                       const DocumentKey& document,
                                                       const std::string& userId);

// How many documents a user has with copies of a manual of one kind; of one copy when a number is
// given.
[[nodiscard]] std::int32_t documentsHeld(const Session& session, const ManualKey& manual,
                                         const std::string& userId, bool hard,
                                         const std::string& copyNumber = {});

}  // namespace kv::desk
