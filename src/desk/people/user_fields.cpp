// SPDX-License-Identifier: Apache-2.0
#include "desk/people/user_fields.h"

#include "common/text.h"
#include "desk/refusal.h"

namespace kv::desk {

void UserFields::check() const {
  if (name && trimmed(*name).empty()) throw WrongInput("a user needs a name");
  if (workgroup && workgroup->empty()) throw WrongInput("a user needs a workgroup; 0 is the least");
}

void UserFields::checkNew() const {
  if (!name) throw WrongInput("a user needs a name: give --name");
  check();
}

}  // namespace kv::desk
