// SPDX-License-Identifier: Apache-2.0
// The places of documents in manuals, as the files of an export can hold them.
#pragma once

#include <string>
#include <vector>

namespace kv::cli {

// Of rows ordered by manual and place, the manuals and the places as text. Where a manual has a
// place that the import does not take (none, or one that left its type), its documents are given
// even places in the same order.
void evenPlaces(const std::vector<std::string>& manuals, std::vector<std::string>& places);

}  // namespace kv::cli
