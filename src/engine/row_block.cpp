// SPDX-License-Identifier: Apache-2.0
#include "engine/row_block.h"

namespace kv::engine {

void RowBlock::reset(std::size_t columns) {
  columns_ = columns;
  // One row at least without growing step by step.
  constexpr std::size_t kTextPerColumn = 24;
  cells_.reserve(columns);
  bytes_.reserve(columns * kTextPerColumn);
  cells_.clear();
  missing_.clear();
  bytes_.clear();
}

void RowBlock::addWhole(std::int64_t value) {
  Cell& c = cells_.emplace_back();
  c.kind = Cell::Kind::Whole;
  c.whole = value;
}

void RowBlock::addReal(double value) {
  Cell& c = cells_.emplace_back();
  c.kind = Cell::Kind::Real;
  c.real = value;
}

void RowBlock::addDate(Date value) {
  Cell& c = cells_.emplace_back();
  c.kind = Cell::Kind::Date;
  c.whole = value.milliseconds();
}

void RowBlock::addText(std::string_view value) {
  Cell& c = cells_.emplace_back();
  c.kind = Cell::Kind::Text;
  c.length = static_cast<std::uint32_t>(value.size());
  c.offset = bytes_.size();
  bytes_ += value;
}

void RowBlock::addValue(const SqlValue& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    addWhole(*whole);
  } else if (const auto* real = std::get_if<double>(&value)) {
    addReal(*real);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    addText(*text);
  } else if (const auto* date = std::get_if<Date>(&value)) {
    addDate(*date);
  } else {
    addNull();
  }
}

SqlValue RowBlock::value(std::size_t row, std::size_t column) const {
  const Cell& c = cell(row, column);
  switch (c.kind) {
    case Cell::Kind::Null: break;
    case Cell::Kind::Whole: return c.whole;
    case Cell::Kind::Real: return c.real;
    case Cell::Kind::Text: return std::string(text(c));
    case Cell::Kind::Date: return Date::fromMilliseconds(c.whole);
  }
  return {};
}

void RowBlock::addRow(const RowBlock& from, std::size_t row) {
  for (std::size_t i = 0; i < columns_; ++i) {
    const Cell& c = from.cell(row, i);
    if (c.kind == Cell::Kind::Text)
      addText(from.text(c));
    else
      cells_.push_back(c);
  }
  endRow(from.missing(row));
}

std::size_t RowBlock::memory() const noexcept {
  return cells_.capacity() * sizeof(Cell) + missing_.capacity() + bytes_.capacity();
}

}  // namespace kv::engine
