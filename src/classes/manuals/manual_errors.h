// SPDX-License-Identifier: Apache-2.0
// What clsVeskManual raises: codes, sources and texts in one table.
#pragma once

#include "recordset/found_row.h"

namespace kv {

inline constexpr NotFoundErrors kLoadManualErrors{
    {2701, "LoadManualData", "Manual is not found in current Recordset"},
    {2702, "LoadManualData", "No Manuals found in current Recordset"},
    {2703, "LoadManualData", "Manual is not found in datafile"}};
inline constexpr NotFoundErrors kSaveManualErrors{
    {2704, "SaveManualData", "Manual is not found in current Recordset"},
    {2705, "SaveManualData", "No Manuals found in current Recordset"},
    {2706, "SaveManualData", "Manual is not found in datafile"}};

inline constexpr LibraryError kManualIsEmpty{2730, "Reposition Contents",
                                             "That Manual has no contents"};

}  // namespace kv
