// SPDX-License-Identifier: Apache-2.0
// What a verb has made of a revision.
#pragma once

#include <iosfwd>
#include <string>

#include "cli/program/options.h"
#include "desk/revisions/revision_step.h"

namespace kv::cli {

// What a verb did, where the revision stands now, and who was told.
void writeStep(std::ostream& out, const std::string& sentence, const desk::RevisionStep& step,
               Format format);

}  // namespace kv::cli
