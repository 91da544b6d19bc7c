// SPDX-License-Identifier: Apache-2.0
// Filling a register from a folder of CSV files.
#pragma once

#include <string>

#include "common/date.h"
#include "desk/register/import/importer.h"
#include "desk/session.h"

namespace kv::desk {

// All of the folder or nothing; the report says which, and what is wrong with the files. `asOf` is
// the moment that new identifiers of manuals are made of. For administrators.
[[nodiscard]] ImportReport importRegister(const Session& session, const std::string& folder,
                                          Date asOf, Importer::ProgressCall progress = {});

}  // namespace kv::desk
