// SPDX-License-Identifier: Apache-2.0
// What a set shows of its rows, and in which order: all as they come, or under a filter or an order
// of the client's some of them. A place is a row's number in what is shown.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "recordset/row_source.h"
#include "recordset/row_window.h"

namespace kv {

class RowView {
 public:
  RowView() = default;
  // Reads what it needs of the rows through `window`, which must not hold rows in another order
  // than the source's. Raises what reading and parsing raise.
  RowView(RowSource& source, RowWindow& window, std::string filter, std::string sort);

  [[nodiscard]] const std::string& filter() const noexcept { return filter_; }
  [[nodiscard]] const std::string& sort() const noexcept { return sort_; }
  // All rows in the source's order.
  [[nodiscard]] bool isPlain() const noexcept { return !slots_; }

  [[nodiscard]] std::size_t places(const RowSource& source) const noexcept {
    return slots_ ? slots_->size() : source.slots();
  }
  [[nodiscard]] std::size_t slotAt(std::size_t place) const noexcept {
    return slots_ ? (*slots_)[place] : place;
  }
  // Nothing for a row that is not shown.
  [[nodiscard]] std::optional<std::size_t> placeOf(std::size_t slot) const;
  // Rows shown that are no holes.
  [[nodiscard]] std::size_t count(const RowSource& source) const;
  // A row that was added through the set is shown, whatever the filter, behind all others.
  void add(std::size_t slot) {
    if (slots_) slots_->push_back(slot);
  }

 private:
  std::optional<std::vector<std::size_t>> slots_;
  std::string filter_;
  std::string sort_;
};

// All slots of a source, which has no holes, in the order in which the values of a text column
// stand in a list; compared without regard to case, and the rows whose value is not in it last, as
// they were. `window` as above. Raises 3265 for an unknown column.
[[nodiscard]] std::vector<std::size_t> slotsInOrderOf(RowSource& source, RowWindow& window,
                                                      const std::string& column,
                                                      const std::vector<std::string>& values);

// Whether criteria hold for a row of a block.
class Comparison;
[[nodiscard]] bool holds(const Comparison& comparison, const engine::RowBlock& block,
                         std::size_t row, const std::vector<SourceColumn>& columns);

}  // namespace kv
