// SPDX-License-Identifier: Apache-2.0
// Which revision is meant, and where it stands.
#pragma once

#include <cstdint>
#include <string>

#include "classes/revisions/revision_status.h"
#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

struct FoundRevision {
  Ref<Recordset> row;  // on the revision
  std::string documentId;
  bool owned = false;  // its document, as DocumentKey::owned
};

// Raises 5 when there is no such revision; those of documents that are secured from the user are
// not there.
[[nodiscard]] FoundRevision findRevision(const Session& session, std::int32_t revision);
// The same for who is to decide about it: it is there for its approvers too.
[[nodiscard]] FoundRevision findRevisionToDecide(const Session& session, std::int32_t revision);

[[nodiscard]] bool hasStatus(const FoundRevision& found, RevisionStatus status);

// Whether a document, as it is joined between apostrophes, names the revision as its current one.
[[nodiscard]] bool isCurrentOf(const Session& session, const std::string& document,
                               std::int32_t revision);

}  // namespace kv::desk
