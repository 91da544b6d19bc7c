// SPDX-License-Identifier: Apache-2.0
#include "desk/manuals/add_manual.h"

#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/refusal.h"
#include "desk/unique_identifier.h"

namespace kv::desk {

void requireManualName(const ManualFields& fields) {
  if (!fields.name || trimmed(*fields.name).empty())
    throw WrongInput("nothing to add: give the manual's name");
}

std::string addManual(const Session& session, const ManualFields& fields) {
  requireManualName(fields);
  session.requireRight(urCreateNewManual);
  const auto& manuals = session->Manual();
  return addUnique(
      session, {.name = "manual",
                .add =
                    [&] {
                      return manuals->Add(*fields.name, fields.field1.value_or(""),
                                          fields.field2.value_or(""), fields.field3.value_or(""),
                                          fields.field4.value_or(""), fields.notes.value_or(""));
                    },
                .withIdentifier = [&](const std::string& id) { return manuals->Record(id); }});
}

}  // namespace kv::desk
