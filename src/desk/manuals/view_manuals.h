// SPDX-License-Identifier: Apache-2.0
// Looking at manuals: a list of many, or one of them with what is in it and who has it.
#pragma once

#include <optional>
#include <string>

#include "desk/register/field_labels.h"
#include "desk/session.h"

namespace kv::desk {

// The manual's row. This and the two below take the right to view manual details.
[[nodiscard]] Detail viewManual(const Session& session, const std::string& manual);

// The documents in a manual with their places, in its order; secured ones for administrators and
// their owners only.
[[nodiscard]] Ref<Recordset> manualContents(const Session& session, const std::string& manual);

// Who has a manual: hard copies with their numbers, then those on personal lists.
[[nodiscard]] Ref<Recordset> manualCopies(const Session& session, const std::string& manual);

struct ManualListing {
  std::optional<std::string> query;  // by number or name; every manual without it
  // Columns separated by commas, each with asc or desc behind it.
  std::string sort = "ManualName";
  // Columns separated by commas; * for all.
  std::string fields = "ManualID, ManualName";
};

// Takes the right to view the list of manuals.
[[nodiscard]] Ref<Recordset> listManuals(const Session& session, const ManualListing& listing);

}  // namespace kv::desk
