// SPDX-License-Identifier: Apache-2.0
// Adding a revision that is being prepared.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "desk/revisions/revision_fields.h"
#include "desk/session.h"

namespace kv::desk {

struct AddedRevision {
  std::int32_t revision = 0;
  std::string documentId;
};

// `responsible` prepares it, by ID or name; the logged-in user when none is named. For those who
// count as owners of the document.
AddedRevision addRevision(const Session& session, const std::string& document,
                          const RevisionFields& fields,
                          const std::optional<std::string>& responsible = {});

}  // namespace kv::desk
