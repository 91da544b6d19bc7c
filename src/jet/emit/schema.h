// SPDX-License-Identifier: Apache-2.0
// Tables and their indexes as statements, and all rows of one table into another.
#pragma once

#include <string>
#include <vector>

#include "common/catalog.h"
#include "jet/emit/dialect.h"

namespace kv::jet {

// CREATE TABLE, followed by the table's CREATE INDEX statements.
[[nodiscard]] std::vector<std::string> emitCreateTable(const TableInfo& table,
                                                       const Dialect& dialect);
[[nodiscard]] std::vector<std::string> emitCreateIndexes(const TableInfo& table,
                                                         const Dialect& dialect);
// INSERT of all rows of one table into another with the same columns, keys included, each value
// converted to the type it has there.
[[nodiscard]] std::string emitCopyTable(const TableInfo& from, const TableInfo& to,
                                        const Dialect& dialect);

}  // namespace kv::jet
