// SPDX-License-Identifier: Apache-2.0
// The fields of a user as options: --name, --alias and so on.
#pragma once

#include "cli/program/command.h"
#include "desk/people/user_fields.h"

namespace kv::cli {

using desk::UserFields;

void addUserFields(Command& verb, UserFields& fields);

}  // namespace kv::cli
