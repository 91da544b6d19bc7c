// SPDX-License-Identifier: Apache-2.0
#include "desk/session.h"

#include "desk/refusal.h"

namespace kv::desk {

void Session::requireAdministrator(std::string_view why) const {
  if (!isAdministrator()) deny(why);
}

void Session::requireRight(std::int16_t right) const {
  if (!vesk_->UserAccess(right)) deny(vesk_->urDescription(right));
}

}  // namespace kv::desk
