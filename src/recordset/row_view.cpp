// SPDX-License-Identifier: Apache-2.0
#include "recordset/row_view.h"

#include <algorithm>
#include <unordered_map>

#include "common/convert.h"
#include "common/text.h"
#include "common/text_key.h"
#include "recordset/criteria.h"
#include "recordset/value.h"

namespace kv {

namespace {

// Visits the rows of a source that are there, in its order: fn(slot, block, row).
template <class Fn>
void forEachRow(RowSource& source, RowWindow& window, Fn fn) {
  const RowView all;
  for (std::size_t slot = 0; slot < source.slots(); ++slot) {
    if (source.isHole(slot)) continue;
    if (!window.has(source, slot)) window.load(source, all, slot);
    const auto row = window.rowAt(slot);
    if (!window.block().missing(row)) fn(slot, window.block(), row);
  }
}

bool allHold(const Criteria& criteria, const engine::RowBlock& block, std::size_t row,
             const std::vector<SourceColumn>& columns) {
  const auto part = [&](const Criteria& c) { return allHold(c, block, row, columns); };
  switch (criteria.kind) {
    case Criteria::Kind::Comparison: return holds(criteria.comparison[0], block, row, columns);
    case Criteria::Kind::And:
      return std::all_of(criteria.parts.begin(), criteria.parts.end(), part);
    case Criteria::Kind::Or: return std::any_of(criteria.parts.begin(), criteria.parts.end(), part);
  }
  return false;
}

// One value of a row by which rows are ordered.
struct Key {
  bool null = true;
  double number = 0;
  std::string text;

  explicit Key(const Variant& value) : null(value.isNull()) {
    if (null) return;
    if (value.isText())
      text = orderKey(*value.as<std::string>());
    else
      number = toDouble(value);
  }
  // Null sorts first.
  [[nodiscard]] int compare(const Key& other) const {
    if (null != other.null) return null ? -1 : 1;
    if (number != other.number) return number < other.number ? -1 : 1;
    return text.compare(other.text);
  }
};

struct OrderedRow {
  std::size_t slot;
  std::vector<Key> keys;  // one for each column of the order
};

void putInOrder(std::vector<OrderedRow>& rows, const std::vector<SortColumn>& order) {
  std::stable_sort(rows.begin(), rows.end(), [&](const OrderedRow& a, const OrderedRow& b) {
    for (std::size_t c = 0; c < order.size(); ++c)
      if (const int compared = a.keys[c].compare(b.keys[c]); compared != 0)
        return (compared < 0) != order[c].descending;
    return false;
  });
}

}  // namespace

bool holds(const Comparison& comparison, const engine::RowBlock& block, std::size_t row,
           const std::vector<SourceColumn>& columns) {
  const auto column = comparison.column();
  const auto& cell = block.cell(row, column);
  if (cell.kind == engine::Cell::Kind::Text && comparison.isText())
    return comparison.holdsText(block.text(cell));
  return comparison.holds(shownValue(block, row, column, columns[column].type));
}

RowView::RowView(RowSource& source, RowWindow& window, std::string filter, std::string sort)
    : filter_(std::move(filter)), sort_(std::move(sort)) {
  if (filter_.empty() && sort_.empty()) return;
  const auto& columns = source.columns();
  std::optional<Criteria> criteria;
  if (!filter_.empty()) criteria = parseCriteria(filter_, columns);
  std::vector<SortColumn> order;
  if (!sort_.empty()) order = parseSort(sort_, columns);

  std::vector<OrderedRow> rows;
  forEachRow(source, window, [&](std::size_t slot, const engine::RowBlock& block, std::size_t row) {
    if (criteria && !allHold(*criteria, block, row, columns)) return;
    auto& own = rows.emplace_back(OrderedRow{slot, {}});
    for (const auto& [column, descending] : order)
      own.keys.emplace_back(shownValue(block, row, column, columns[column].type));
  });
  putInOrder(rows, order);
  slots_.emplace();
  slots_->reserve(rows.size());
  for (const auto& row : rows) slots_->push_back(row.slot);
}

std::optional<std::size_t> RowView::placeOf(std::size_t slot) const {
  if (!slots_) return slot;
  const auto at = std::find(slots_->begin(), slots_->end(), slot);
  if (at == slots_->end()) return std::nullopt;
  return static_cast<std::size_t>(at - slots_->begin());
}

std::size_t RowView::count(const RowSource& source) const {
  if (!slots_) return source.slots() - source.holes();
  return static_cast<std::size_t>(std::count_if(
      slots_->begin(), slots_->end(), [&](std::size_t slot) { return !source.isHole(slot); }));
}

std::vector<std::size_t> slotsInOrderOf(RowSource& source, RowWindow& window,
                                        const std::string& column,
                                        const std::vector<std::string>& values) {
  std::unordered_map<std::string, std::size_t> ranks;
  for (const auto& value : values) ranks.emplace(foldKey(value), ranks.size());
  const auto& columns = source.columns();
  const auto place = static_cast<std::size_t>(
      std::find_if(columns.begin(), columns.end(),
                   [&](const SourceColumn& c) { return equalNoCase(c.name, column); }) -
      columns.begin());
  if (place == columns.size()) raise(kNoSuchItem, column);
  std::vector<std::size_t> rankOf(source.slots(), ranks.size());
  forEachRow(source, window, [&](std::size_t slot, const engine::RowBlock& block, std::size_t row) {
    const auto& cell = block.cell(row, place);
    if (cell.kind != engine::Cell::Kind::Text) return;
    const auto known = ranks.find(foldKey(block.text(cell)));
    if (known != ranks.end()) rankOf[slot] = known->second;
  });
  std::vector<std::size_t> slots(source.slots());
  for (std::size_t slot = 0; slot < slots.size(); ++slot) slots[slot] = slot;
  std::stable_sort(slots.begin(), slots.end(),
                   [&](std::size_t a, std::size_t b) { return rankOf[a] < rankOf[b]; });
  return slots;
}

}  // namespace kv
