// SPDX-License-Identifier: Apache-2.0
#include "recordset/criteria.h"

#include <algorithm>

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "common/text_key.h"
#include "jet/syntax/lexer.h"
#include "recordset/value.h"

namespace kv {

namespace {

using jet::Token;
using jet::TokenKind;

// Patterns of record sets know both sets of wildcards; a pattern that has the asterisks is read
// with these.
LikePattern patternOf(std::string_view text) {
  const bool asterisks = text.find('*') != std::string_view::npos;
  return LikePattern(text, asterisks ? Wildcards::AsteriskQuestion : Wildcards::PercentUnderscore);
}

bool isWord(const Token& token, std::string_view word) {
  return token.kind == TokenKind::Word && asciiLowered(token.text) == word;
}

// The tokens are those of the SQL dialect; criteria use a small part of them.
class Reader {
 public:
  Reader(std::string_view text, const std::vector<SourceColumn>& columns) : columns_(columns) {
    try {
      jet::lex(text, lexed_);
    } catch (const Error&) {
      raise(kBadArgument);
    }
  }

  [[nodiscard]] bool atEnd() const { return peek().kind == TokenKind::End; }
  void requireEnd() const {
    if (!atEnd()) raise(kBadArgument);
  }

  Comparison comparison() {
    const auto column = takeColumn();
    const auto op = takeOperator();
    Variant value = takeValue();
    return Comparison(column, columns_[column], op, std::move(value));
  }

  Criteria anyOf() { return chain(Criteria::Kind::Or, "or"); }

  std::size_t takeColumn() {
    const Token& first = peek();
    if ((first.kind != TokenKind::Word && first.kind != TokenKind::Name) || isWord(first, "and") ||
        isWord(first, "or"))
      raise(kBadArgument);
    std::string name(take().text);
    while (isSymbol(".")) {  // a column that came out as Table.Column
      take();
      name += "." + std::string(take().text);
    }
    for (std::size_t i = 0; i < columns_.size(); ++i)
      if (equalNoCase(columns_[i].name, name)) return i;
    raise(kNoSuchItem, name);
  }

  bool accept(std::string_view word) {
    if (!isWord(peek(), word) && !(peek().kind == TokenKind::Symbol && peek().text == word))
      return false;
    take();
    return true;
  }

 private:
  [[nodiscard]] const Token& peek() const { return lexed_.tokens[at_]; }
  const Token& take() {
    const Token& t = peek();
    if (t.kind != TokenKind::End) ++at_;
    return t;
  }
  [[nodiscard]] bool isSymbol(std::string_view symbol) const {
    return peek().kind == TokenKind::Symbol && peek().text == symbol;
  }

  Comparison::Op takeOperator() {
    const Token& t = take();
    if (isWord(t, "like")) return Comparison::Op::Like;
    if (t.kind == TokenKind::Symbol) {
      if (t.text == "=") return Comparison::Op::Equal;
      if (t.text == "<>") return Comparison::Op::NotEqual;
      if (t.text == "<") return Comparison::Op::Less;
      if (t.text == "<=") return Comparison::Op::LessEqual;
      if (t.text == ">") return Comparison::Op::Greater;
      if (t.text == ">=") return Comparison::Op::GreaterEqual;
    }
    raise(kBadArgument);
  }

  Variant takeValue() {
    double sign = 1;
    bool hasSign = false;
    if (isSymbol("-") || isSymbol("+")) {
      sign = take().text == "-" ? -1 : 1;
      hasSign = true;
    }
    const Token& t = take();
    if (t.kind == TokenKind::Number) {
      const SqlValue& value = lexed_.literals[static_cast<std::size_t>(t.literal)].value;
      const auto* whole = std::get_if<std::int64_t>(&value);
      return sign * (whole != nullptr ? static_cast<double>(*whole) : std::get<double>(value));
    }
    if (hasSign) raise(kBadArgument);
    if (t.kind == TokenKind::Text)
      return std::get<std::string>(lexed_.literals[static_cast<std::size_t>(t.literal)].value);
    if (t.kind == TokenKind::Date)
      return std::get<Date>(lexed_.literals[static_cast<std::size_t>(t.literal)].value);
    if (isWord(t, "null")) return Null;
    if (isWord(t, "true")) return true;
    if (isWord(t, "false")) return false;
    raise(kBadArgument);
  }

  Criteria chain(Criteria::Kind kind, std::string_view word) {
    Criteria out{.kind = kind, .comparison = {}, .parts = {}};
    do {
      out.parts.push_back(kind == Criteria::Kind::Or ? chain(Criteria::Kind::And, "and")
                                                     : primary());
    } while (accept(word));
    if (out.parts.size() > 1) return out;
    Criteria only = std::move(out.parts[0]);
    return only;
  }

  Criteria primary() {
    if (accept("(")) {
      constexpr int kMostNested = 250;
      if (++depth_ > kMostNested) raise(kBadArgument);
      Criteria inside = anyOf();
      --depth_;
      if (!accept(")")) raise(kBadArgument);
      return inside;
    }
    Criteria one;
    one.comparison.push_back(comparison());
    return one;
  }

  const std::vector<SourceColumn>& columns_;
  jet::Lexed lexed_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace

Comparison::Comparison(std::size_t column, const SourceColumn& info, Op op, Variant value)
    : column_(column), op_(op), value_(std::move(value)), isText_(isTextType(info.type)) {
  if (value_.isNull()) {
    if (op_ != Op::Equal && op_ != Op::NotEqual) raise(kBadArgument);
    return;
  }
  if (op_ == Op::Like) {
    if (!value_.isText()) raise(kBadArgument);
    pattern_.push_back(patternOf(*value_.as<std::string>()));
    return;
  }
  if (isText_) {
    const std::string text = toText(value_);
    key_ = op_ == Op::Equal || op_ == Op::NotEqual ? foldKey(text) : orderKey(text);
    return;
  }
  try {  // text that reads as the column's type is taken as such
    if (value_.isText())
      value_ = info.type == ColumnType::Date ? Variant(toDate(value_)) : Variant(toDouble(value_));
  } catch (const Error&) {
    raise(kBadArgument);
  }
}

bool Comparison::holdsText(std::string_view text) const {
  if (op_ == Op::Like) return pattern_[0].matches(text);
  if (op_ == Op::Equal || op_ == Op::NotEqual) {
    if (value_.isNull()) return op_ == Op::NotEqual;
    return (foldKey(text) == key_) == (op_ == Op::Equal);
  }
  const int order = orderKey(text).compare(key_);
  switch (op_) {
    case Op::Less: return order < 0;
    case Op::LessEqual: return order <= 0;
    case Op::Greater: return order > 0;
    case Op::GreaterEqual: return order >= 0;
    case Op::Equal:
    case Op::NotEqual:
    case Op::Like: break;
  }
  return false;
}

bool Comparison::holds(const Variant& value) const {
  if (value.isNull() || value_.isNull()) {
    const bool both = value.isNull() && value_.isNull();
    return (op_ == Op::Equal && both) || (op_ == Op::NotEqual && !both);
  }
  if (isText_ || op_ == Op::Like) return holdsText(toText(value));
  const double left = toDouble(value);
  const double right = toDouble(value_);
  switch (op_) {
    case Op::Equal: return left == right;
    case Op::NotEqual: return left != right;
    case Op::Less: return left < right;
    case Op::LessEqual: return left <= right;
    case Op::Greater: return left > right;
    case Op::GreaterEqual: return left >= right;
    case Op::Like: break;
  }
  return false;
}

Comparison parseComparison(std::string_view text, const std::vector<SourceColumn>& columns) {
  Reader in(text, columns);
  Comparison out = in.comparison();
  in.requireEnd();
  return out;
}

Criteria parseCriteria(std::string_view text, const std::vector<SourceColumn>& columns) {
  Reader in(text, columns);
  Criteria out = in.anyOf();
  in.requireEnd();
  return out;
}

std::vector<SortColumn> parseSort(std::string_view text, const std::vector<SourceColumn>& columns) {
  Reader in(text, columns);
  std::vector<SortColumn> out;
  do {
    SortColumn column{in.takeColumn(), false};
    if (in.accept("desc"))
      column.descending = true;
    else
      in.accept("asc");
    out.push_back(column);
  } while (in.accept(","));
  in.requireEnd();
  return out;
}

}  // namespace kv
