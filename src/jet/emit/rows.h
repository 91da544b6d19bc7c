// SPDX-License-Identifier: Apache-2.0
// The statements by which record sets write single rows; every value is a parameter, numbered from
// 1 in order of appearance.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "common/catalog.h"
#include "jet/emit/dialect.h"

namespace kv::jet {

// INSERT of the given columns; returns the key of the new row as its one result row.
[[nodiscard]] std::string emitInsertRow(const TableInfo& table, std::span<const int> columns,
                                        const Dialect& dialect);
// UPDATE of `set` where the key is the next parameter and `check` columns are still as the
// following ones.
[[nodiscard]] std::string emitUpdateRow(const TableInfo& table, std::span<const int> set,
                                        std::span<const int> check, const Dialect& dialect);
// DELETE by key.
[[nodiscard]] std::string emitDeleteRow(const TableInfo& table, const Dialect& dialect);
// DELETE by the list of keys that is parameter 1.
[[nodiscard]] std::string emitDeleteRows(const TableInfo& table, const Dialect& dialect);
// SELECT that locks the rows in which a column equals parameter 1 (a fold key for text), or without
// a column all rows, until the transaction ends. Empty where a writing transaction needs no such
// lock.
[[nodiscard]] std::string emitLockRows(const TableInfo& table, const ColumnInfo* column,
                                       const Dialect& dialect);
// The same for the rows that have a text column in common with those rows of another table in which
// a text column equals parameter 1.
[[nodiscard]] std::string emitLockLinkedRows(const TableInfo& table, const ColumnInfo& common,
                                             const TableInfo& link, const ColumnInfo& column,
                                             const Dialect& dialect);
// One result row when the row with that key exists.
[[nodiscard]] std::string emitRowExists(const TableInfo& table, const Dialect& dialect);

// SELECT of columns and then the key, of the `rows` rows that follow the key in parameter 1.
[[nodiscard]] std::string emitPage(const TableInfo& table, std::span<const int> columns, int rows,
                                   const Dialect& dialect);
// How many rows of so many columns one INSERT takes well.
[[nodiscard]] std::size_t rowsTogether(std::size_t columns, const Dialect& dialect);
// INSERT of several rows that are given numbers by their table.
[[nodiscard]] std::string emitInsertRows(const TableInfo& table, std::span<const int> columns,
                                         std::size_t rows, const Dialect& dialect);
// INSERT of several rows, each given as its key and then the columns.
[[nodiscard]] std::string emitInsertWithKeys(const TableInfo& table, std::span<const int> columns,
                                             std::size_t rows, const Dialect& dialect);

}  // namespace kv::jet
