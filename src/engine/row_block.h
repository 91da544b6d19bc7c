// SPDX-License-Identifier: Apache-2.0
// Rows as they come from an engine: one array of cells and one run of bytes, so that reading a
// block of rows allocates nothing per value and text can be handed out as views.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/sql_value.h"

namespace kv::engine {

struct Cell {
  enum class Kind : std::uint8_t { Null, Whole, Real, Text, Date };
  Kind kind = Kind::Null;
  std::uint32_t length = 0;  // Text: bytes
  union {
    std::int64_t whole = 0;  // Whole; Date: milliseconds since 1899-12-30
    double real;             // Real
    std::uint64_t offset;    // Text: where it begins in the block's bytes
  };
};

class RowBlock {
 public:
  // Empties the block for rows of `columns` cells; keeps its memory.
  void reset(std::size_t columns);

  [[nodiscard]] std::size_t rows() const noexcept { return missing_.size(); }
  [[nodiscard]] std::size_t columns() const noexcept { return columns_; }
  // A row that was asked for by key and is not there any more.
  [[nodiscard]] bool missing(std::size_t row) const noexcept { return missing_[row] != 0; }
  [[nodiscard]] const Cell& cell(std::size_t row, std::size_t column) const noexcept {
    return cells_[row * columns_ + column];
  }
  // The text of a Text cell; valid until the block changes.
  [[nodiscard]] std::string_view text(const Cell& cell) const noexcept {
    return std::string_view(bytes_).substr(cell.offset, cell.length);
  }
  [[nodiscard]] SqlValue value(std::size_t row, std::size_t column) const;

  // Rows are appended cell by cell, columns() calls to add..., then endRow.
  void addNull() { cells_.emplace_back(); }
  void addWhole(std::int64_t value);
  void addReal(double value);
  void addDate(Date value);
  void addText(std::string_view value);
  void addValue(const SqlValue& value);
  void endRow(bool missing = false) { missing_.push_back(missing ? 1 : 0); }
  void setMissing(std::size_t row) noexcept { missing_[row] = 1; }

  // Appends a copy of one row of another block with as many columns.
  void addRow(const RowBlock& from, std::size_t row);

  // Bytes held, for those who decide how much to keep.
  [[nodiscard]] std::size_t memory() const noexcept;

 private:
  std::size_t columns_ = 0;
  std::vector<Cell> cells_;
  std::vector<std::uint8_t> missing_;
  std::string bytes_;
};

}  // namespace kv::engine
