// SPDX-License-Identifier: Apache-2.0
// The tokens of a statement and the literals lifted out of it.
#pragma once

#include <string_view>
#include <vector>

#include "common/error.h"
#include "common/sql_value.h"

namespace kv::jet {

enum class TokenKind : std::uint8_t {
  End,
  Word,  // a name or keyword as written
  Name,  // a name in brackets or backticks; `text` is what stands between them
  Text,  // '...' or "..."
  Number,
  Date,    // #...#
  Symbol,  // operators and punctuation
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::string_view text;  // a slice of the statement; for Name, without the brackets
  TextRange range;        // the whole token in the statement
  int literal = -1;  // place of its value in the statement's literals, for Text, Number and Date
};

enum class LiteralKind : std::uint8_t { Text, Whole, Real, Date };

struct Literal {
  LiteralKind kind = LiteralKind::Text;
  SqlValue value;
  TextRange range;
  // True where the literal shapes the statement (behind TOP, in ORDER BY, in GROUP BY) and so stays
  // in its text.
  bool kept = false;
};

}  // namespace kv::jet
