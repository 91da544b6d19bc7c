// SPDX-License-Identifier: Apache-2.0
// The rows of a set that have been read last: one block of them, thrown away as soon as their
// source says that they may not be what they were.
#pragma once

#include <cstdint>

#include "engine/row_block.h"
#include "recordset/row_source.h"

namespace kv {

class RowView;

class RowWindow {
 public:
  // Whether the row at this place of the view is here and fresh.
  [[nodiscard]] bool has(const RowSource& source, std::size_t place) const noexcept {
    return stamp_ == source.stamp() && place >= first_ && place < first_ + block_.rows();
  }
  [[nodiscard]] bool isFresh(const RowSource& source) const noexcept {
    return stamp_ == source.stamp();
  }
  // Reads it, and others with it when places are visited one after the other: one row at first,
  // then more and more. Raises 3709 when the source's connection is closed.
  void load(RowSource& source, const RowView& view, std::size_t place);
  // Where in the block the row at a place is that the window has.
  [[nodiscard]] std::size_t rowAt(std::size_t place) const noexcept { return place - first_; }
  [[nodiscard]] const engine::RowBlock& block() const noexcept { return block_; }

  // Takes the rows that opening the source has read, if it still has them.
  void takeHead(RowSource& source);
  // Rows are read in large blocks from here on.
  void readMany() noexcept;
  // Places mean other rows now.
  void forget() noexcept { stamp_ = 0; }

 private:
  engine::RowBlock block_;
  std::size_t first_ = 0;  // place of its first row
  std::uint64_t stamp_ = 0;
  std::size_t least_ = 1;      // rows to read at a place that has no neighbour here
  std::size_t most_ = 128;     // and at most, when places are visited one after the other
  std::size_t readAhead_ = 1;  // rows to read the next time
};

}  // namespace kv
