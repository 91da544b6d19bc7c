// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <cmath>
#include <limits>

#include "common/convert.h"
#include "common/like.h"
#include "common/text.h"
#include "common/text_key.h"
#include "jet/emit/emitted.h"
#include "jet/errors.h"

namespace kv::jet {

namespace {

SqlValue wholeNumber(double value, double low, double high, const Literal& literal,
                     std::string_view statement) {
  const double rounded = roundHalfEven(value);
  if (!(rounded >= low && rounded <= high))
    fail(kValueOverflow, "Overflow.", statement, literal.range);
  return static_cast<std::int64_t>(rounded);
}

// The number a literal stands for when it goes where a number is wanted.
double number(const Literal& literal, std::string_view statement) {
  switch (literal.kind) {
    case LiteralKind::Whole: return static_cast<double>(std::get<std::int64_t>(literal.value));
    case LiteralKind::Real: return std::get<double>(literal.value);
    case LiteralKind::Date: return std::get<Date>(literal.value).days();
    case LiteralKind::Text:
      if (const auto value = parseNumber(std::get<std::string>(literal.value))) return *value;
      break;
  }
  fail(kMismatch, kTypeMismatch, statement, literal.range);
}

// A literal that goes where text is wanted.
std::string plainText(const Literal& literal, double sign = 1) {
  switch (literal.kind) {
    case LiteralKind::Text: return std::get<std::string>(literal.value);
    case LiteralKind::Whole:
      return std::to_string(static_cast<std::int64_t>(sign) *
                            std::get<std::int64_t>(literal.value));
    case LiteralKind::Real: return numberText(sign * std::get<double>(literal.value));
    case LiteralKind::Date: return dateText(std::get<Date>(literal.value));
  }
  return {};
}

SqlValue assigned(const ColumnInfo& column, const Literal& literal, double sign,
                  std::string_view statement) {
  const auto signedNumber = [&] { return sign * number(literal, statement); };
  switch (column.type) {
    case ColumnType::Boolean: return static_cast<std::int64_t>(signedNumber() != 0 ? -1 : 0);
    case ColumnType::Int16:
      return wholeNumber(signedNumber(), std::numeric_limits<std::int16_t>::min(),
                         std::numeric_limits<std::int16_t>::max(), literal, statement);
    case ColumnType::Int32:
      return wholeNumber(signedNumber(), std::numeric_limits<std::int32_t>::min(),
                         std::numeric_limits<std::int32_t>::max(), literal, statement);
    case ColumnType::Single: {
      const auto single = static_cast<float>(signedNumber());
      if (!std::isfinite(single)) fail(kValueOverflow, "Overflow.", statement, literal.range);
      return static_cast<double>(single);
    }
    case ColumnType::Double: return signedNumber();
    case ColumnType::Date:
      if (literal.kind == LiteralKind::Date) return literal.value;
      if (literal.kind == LiteralKind::Text) {
        if (const auto date = parseDate(std::get<std::string>(literal.value))) return *date;
        fail(kMismatch, kTypeMismatch, statement, literal.range);
      }
      try {
        return Date(signedNumber());
      } catch (const Error&) {
        fail(kValueOverflow, "Overflow.", statement, literal.range);
      }
    case ColumnType::Text:
    case ColumnType::Memo: break;
  }
  std::string text = plainText(literal, sign);
  if (column.type == ColumnType::Text &&
      characterCount(text) > static_cast<std::size_t>(column.size))
    fail(kEngineFailure, fmt::format("{} {}.", kFieldTooSmall, column.name), statement,
         literal.range);
  return text;
}

bool less(const Literal& a, const Literal& b) {
  if (a.kind == LiteralKind::Text && b.kind == LiteralKind::Text)
    return orderKey(std::get<std::string>(a.value)) < orderKey(std::get<std::string>(b.value));
  if (a.kind == LiteralKind::Date && b.kind == LiteralKind::Date)
    return std::get<Date>(a.value) < std::get<Date>(b.value);
  const auto plain = [](const Literal& l) {
    return l.kind == LiteralKind::Whole ? static_cast<double>(std::get<std::int64_t>(l.value))
                                        : std::get<double>(l.value);
  };
  return plain(a) < plain(b);
}

}  // namespace

SqlValue boundValue(const ParamUse& use, const std::vector<Literal>& literals,
                    std::string_view statement) {
  const Literal* literal = &literals[static_cast<std::size_t>(use.literal)];
  if (use.other >= 0) {
    const Literal* other = &literals[static_cast<std::size_t>(use.other)];
    if (use.greater ? less(*literal, *other) : less(*other, *literal)) literal = other;
  }
  switch (use.form) {
    case ParamUse::Form::Plain:
    case ParamUse::Form::Watch: break;
    case ParamUse::Form::Fold: return foldKey(std::get<std::string>(literal->value));
    case ParamUse::Form::Order: return orderKey(std::get<std::string>(literal->value));
    case ParamUse::Form::OrderBase: {
      std::string key = orderKey(std::get<std::string>(literal->value));
      return key.substr(0, key.find('\0'));
    }
    case ParamUse::Form::Pattern: return LikePattern(plainText(*literal)).expression();
    case ParamUse::Form::Assign:
      return assigned(*use.column, *literal, use.negative ? -1 : 1, statement);
  }
  return literal->value;
}

}  // namespace kv::jet
