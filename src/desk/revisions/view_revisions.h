// SPDX-License-Identifier: Apache-2.0
// Looking at revisions. All of it takes the right to view revision details.
#pragma once

#include <cstdint>
#include <string>

#include "desk/register/field_labels.h"
#include "desk/session.h"

namespace kv::desk {

// One revision in full, with its status in words.
[[nodiscard]] Detail viewRevision(const Session& session, std::int32_t revision);

// The revisions of a document, in the order in which they were added.
[[nodiscard]] Ref<Recordset> listRevisions(const Session& session, const std::string& document);

struct RevisionStatusReport {
  Ref<Recordset> standing;   // as standingOf gives it
  Ref<Recordset> approvals;  // who decides, and what has been decided
};
[[nodiscard]] RevisionStatusReport statusOfRevision(const Session& session, std::int32_t revision);

}  // namespace kv::desk
