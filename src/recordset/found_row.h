// SPDX-License-Identifier: Apache-2.0
// How the entity classes come to the one row that an operation is about, and to single values.
#pragma once

#include <string>

#include "common/library_error.h"
#include "recordset/recordset.h"

namespace kv {

// The three ways in which a record is not found.
struct NotFoundErrors {
  LibraryError notInSet;   // no row of the caller's set
  LibraryError emptySet;   // the caller's set has no rows
  LibraryError notInData;  // not exactly one row of the database
};

// Makes a caller's set stand on its first row for which the criterion holds.
inline void findRow(Recordset& callers, const std::string& criterion,
                    const NotFoundErrors& errors) {
  if (callers.RecordCount() <= 0) raise(errors.emptySet);
  callers.MoveFirst();
  callers.Find(criterion, 0);
  if (callers.Eof() || callers.Bof()) raise(errors.notInSet);
}

// Makes a set of the class's own stand on the one row it must have.
inline void onlyRow(Recordset& own, const NotFoundErrors& errors) {
  if (own.RecordCount() != 1) raise(errors.notInData);
  own.MoveFirst();
}

// A column of a set's first row, Empty when it has none. Closes the set.
[[nodiscard]] inline Variant firstValue(Recordset& rs, const std::string& column) {
  Variant value;
  if (rs.RecordCount() > 0) value = rs.Fields(column)->Value();
  rs.Close();
  return value;
}

}  // namespace kv
