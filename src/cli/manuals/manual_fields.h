// SPDX-License-Identifier: Apache-2.0
// The fields of a manual as options: --name, --field1 and so on.
#pragma once

#include "cli/program/command.h"
#include "desk/manuals/manual_fields.h"

namespace kv::cli {

using desk::ManualFields;

void addManualFields(Command& verb, ManualFields& fields);

}  // namespace kv::cli
