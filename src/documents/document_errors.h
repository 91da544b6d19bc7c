// What clsVeskDocument raises: codes, sources and texts in one table. The source is that of loading
// in the errors of saving too; clients know it so.
#pragma once

#include "common/library_error.h"

namespace kv {

// The three ways in which a document is not found.
struct DocumentErrors {
  LibraryError notInSet;   // no row of the caller's set
  LibraryError emptySet;   // the caller's set has no rows
  LibraryError notInData;  // not exactly one row of the database
};

inline constexpr DocumentErrors kLoadErrors{
    {2601, "LoadDocumentData", "Document is not found in current Recordset"},
    {2602, "LoadDocumentData", "No Documents found in current Recordset"},
    {2603, "LoadDocumentData", "Document is not found in datafile"}};
inline constexpr DocumentErrors kSaveErrors{
    {2604, "LoadDocumentData", "Document is not found in current Recordset"},
    {2605, "LoadDocumentData", "No Documents found in current Recordset"},
    {2606, "LoadDocumentData", "Document is not found in datafile"}};

}  // namespace kv
