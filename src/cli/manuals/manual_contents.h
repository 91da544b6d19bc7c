// The part of the verb `manual` that is about the documents in a manual and who has it: contents,
// copies, put, take and move.
#pragma once

#include "cli/program/verbs.h"

namespace kv::cli {

void addManualContents(Command& manual, Action& chosen);

}  // namespace kv::cli
