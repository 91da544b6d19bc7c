// SPDX-License-Identifier: Apache-2.0
// Writing a register as a folder of CSV files that can be imported.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "desk/register/export/comparison.h"
#include "desk/register/export/exporter.h"
#include "desk/session.h"

namespace kv::desk {

struct ExportReport {
  Exporter::Written written;
  std::vector<std::string> problems;  // with any of these the files are not to be kept
  std::vector<Difference> lost;       // what the files cannot carry
};

// For administrators; whoever makes room for the files asks before that.
void requireMayExport(const Session& session);

// Writes the files to `folder`, imports them into a new register at `scratch` and compares. Both
// are the caller's to make and to remove.
[[nodiscard]] ExportReport exportRegister(const Session& session,
                                          const std::filesystem::path& folder,
                                          const std::filesystem::path& scratch);

}  // namespace kv::desk
