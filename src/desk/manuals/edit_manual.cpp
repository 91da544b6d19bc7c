// SPDX-License-Identifier: Apache-2.0
#include "desk/manuals/edit_manual.h"

#include "classes/rights/rights.h"
#include "desk/manuals/manual_lookup.h"
#include "desk/refusal.h"
#include "desk/transaction.h"

namespace kv::desk {

namespace {

void requireRights(const Session& session, const ManualFields& fields) {
  const auto require = [&](bool given, std::int16_t right) {
    if (given) session.requireRight(right);
  };
  require(fields.name.has_value(), urEditManualName);
  require(fields.field1.has_value(), urEditManualUser1);
  require(fields.field2.has_value(), urEditManualUser2);
  require(fields.field3.has_value(), urEditManualUser3);
  require(fields.field4.has_value(), urEditManualUser4);
  require(fields.notes.has_value(), urEditManualNotes);
}

}  // namespace

std::string editManual(const Session& session, const std::string& manual,
                       const ManualFields& fields) {
  requireChange(fields.any());
  requireRights(session, fields);
  Transaction transaction(session);
  const ManualKey key = findManual(session, manual);
  transaction.lock("Manuals", "ManualID", key.id);
  std::string name, user1, user2, user3, user4, notes;
  const auto& manuals = session->Manual();
  manuals->LoadData(key.joined, name, user1, user2, user3, user4, notes);
  manuals->SaveData(key.joined, fields.name.value_or(name), fields.field1.value_or(user1),
                    fields.field2.value_or(user2), fields.field3.value_or(user3),
                    fields.field4.value_or(user4), fields.notes.value_or(notes));
  transaction.commit();
  return key.id;
}

}  // namespace kv::desk
