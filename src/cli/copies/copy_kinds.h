// SPDX-License-Identifier: Apache-2.0
// Which kinds of copies a list is about.
#pragma once

#include "cli/program/command.h"
#include "desk/copies/view_copies.h"

namespace kv::cli {

// --hard and --virtual.
void addCopyKinds(Command& verb, desk::CopyKinds& kinds);

}  // namespace kv::cli
