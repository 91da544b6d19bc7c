// SPDX-License-Identifier: Apache-2.0
#include "desk/manuals/delete_manual.h"

#include "classes/rights/rights.h"
#include "desk/manuals/manual_lookup.h"
#include "desk/transaction.h"

namespace kv::desk {

std::string deleteManual(const Session& session, const std::string& manual) {
  session.requireRight(urDeleteManual);
  Transaction transaction(session);
  const ManualKey key = findManual(session, manual);
  transaction.lock("Manuals", "ManualID", key.id);
  session->Manual()->Delete(key.joined);
  transaction.commit();
  return key.id;
}

}  // namespace kv::desk
