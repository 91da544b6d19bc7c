// The parts of the verb revision that lead a revision to its approval and into force.
#pragma once

#include <cstdint>
#include "cli/program/command.h"

#include "cli/program/verbs.h"

namespace kv::cli {

// REVISION, as every part of the verb but add takes it.
void addRevisionKey(Command& verb, std::int32_t& revision);

// route, approve, reject, set-current and status.
void addRevisionLife(Command& verb, Action& chosen);

}  // namespace kv::cli
