// SPDX-License-Identifier: Apache-2.0
#include "recordset/value.h"

#include <cmath>

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"

namespace kv {

Variant shownValue(const SqlValue& value, ColumnType type) {
  if (std::holds_alternative<std::monostate>(value)) return Null;
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* date = std::get_if<Date>(&value)) return *date;
  const auto* whole = std::get_if<std::int64_t>(&value);
  const double number = whole != nullptr ? static_cast<double>(*whole) : std::get<double>(value);
  switch (type) {
    case ColumnType::Boolean: return number != 0;
    case ColumnType::Int16: return static_cast<std::int16_t>(number);
    case ColumnType::Int32: return static_cast<std::int32_t>(number);
    case ColumnType::Single: return static_cast<float>(number);
    case ColumnType::Double: return number;
    case ColumnType::Date: return Date(number);
    case ColumnType::Text:
    case ColumnType::Memo: break;
  }
  return numberText(number);
}

Variant shownValue(const engine::RowBlock& block, std::size_t row, std::size_t column,
                   ColumnType type) {
  const auto& cell = block.cell(row, column);
  switch (cell.kind) {
    case engine::Cell::Kind::Null: return Null;
    case engine::Cell::Kind::Text: return Variant(block.text(cell));
    case engine::Cell::Kind::Date: return Date::fromMilliseconds(cell.whole);
    case engine::Cell::Kind::Whole:
      if (type == ColumnType::Boolean) return cell.whole != 0;
      if (type == ColumnType::Int16) return static_cast<std::int16_t>(cell.whole);
      if (type == ColumnType::Int32) return static_cast<std::int32_t>(cell.whole);
      break;
    case engine::Cell::Kind::Real: break;
  }
  return shownValue(block.value(row, column), type);
}

namespace {

// Infinity has no place in a register: nothing comes after it, and what is not a number has no
// order at all.
double finite(double number) {
  if (!std::isfinite(number)) raise(kOverflow);
  return number;
}

bool isReal(ColumnType type) { return type == ColumnType::Single || type == ColumnType::Double; }

}  // namespace

SqlValue storedValue(const Variant& value, ColumnType type, int size) {
  if (value.isNull() || value.isEmpty()) {
    if (type == ColumnType::Boolean) return std::int64_t{0};
    return {};
  }
  try {
    switch (type) {
      case ColumnType::Boolean: return std::int64_t{toBoolean(value) ? -1 : 0};
      case ColumnType::Int16: return std::int64_t{toInt16(value)};
      case ColumnType::Int32: return std::int64_t{toInt32(value)};
      case ColumnType::Single:
        return finite(static_cast<double>(static_cast<float>(toDouble(value))));
      case ColumnType::Double: return finite(toDouble(value));
      case ColumnType::Date: return toDate(value);
      case ColumnType::Text:
      case ColumnType::Memo: break;
    }
    std::string text = toText(value);
    if (!isStorableText(text)) raise(kWrongType, "The text is not well-formed.");
    if (type == ColumnType::Text && characterCount(text) > static_cast<std::size_t>(size))
      raise(kWrongType, "The text is longer than the field.");
    return text;
  } catch (const Error& e) {
    if (e.number() == kWrongType || (e.number() == kOverflow && isReal(type))) throw;
    raise(kWrongType);
  }
}

}  // namespace kv
