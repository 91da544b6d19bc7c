// SPDX-License-Identifier: Apache-2.0
// Looking at what a register calls its fields, and calling one something else.
#pragma once

#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

struct Labelling {
  std::string of;     // documents, revisions, manuals or users
  std::string field;  // a field of theirs that has a label
  std::string label;  // empty for none

  // Raises WrongInput when `of` names nothing that has fields.
  void check() const;
};

// Every field with its label; for those of users with the type that the register has chosen too.
[[nodiscard]] Ref<Recordset> listLabels(const Session& session);

// Returns the labelling as the register spells it. For administrators. Raises 5 for a field that
// has no label.
Labelling setLabel(const Session& session, const Labelling& given);

}  // namespace kv::desk
