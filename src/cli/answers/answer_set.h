// SPDX-License-Identifier: Apache-2.0
// What a verb did, told as a sentence or as a row.
#pragma once

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "cli/program/options.h"
#include "common/variant.h"

namespace kv::cli {

// What a verb did to one thing: as a table `sentence`, otherwise one row with the keys of that
// thing, so that a script can go on with it.
void writeDone(std::ostream& out, const std::string& sentence,
               const std::vector<std::pair<const char*, Variant>>& keys, Format format);

}  // namespace kv::cli
