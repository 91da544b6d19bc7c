// SPDX-License-Identifier: Apache-2.0
// What clsVeskDocument raises: codes, sources and texts in one table. The source is that of loading
// in the errors of saving too; clients know it so.
#pragma once

#include "recordset/found_row.h"

namespace kv {

inline constexpr NotFoundErrors kLoadDocumentErrors{
    {2601, "LoadDocumentData", "Document is not found in current Recordset"},
    {2602, "LoadDocumentData", "No Documents found in current Recordset"},
    {2603, "LoadDocumentData", "Document is not found in datafile"}};
inline constexpr NotFoundErrors kSaveDocumentErrors{
    {2604, "LoadDocumentData", "Document is not found in current Recordset"},
    {2605, "LoadDocumentData", "No Documents found in current Recordset"},
    {2606, "LoadDocumentData", "Document is not found in datafile"}};

}  // namespace kv
