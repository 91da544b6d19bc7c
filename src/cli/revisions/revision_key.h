// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "cli/program/command.h"

namespace kv::cli {

// REVISION, as every part of the verb revision but add takes it.
void addRevisionKey(Command& verb, std::int32_t& revision);

}  // namespace kv::cli
