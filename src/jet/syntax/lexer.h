// SPDX-License-Identifier: Apache-2.0
// Text to tokens, in one pass that also lifts the literals and names the statement's shape.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jet/syntax/token.h"

namespace kv::jet {

// A statement cut into tokens. The tokens refer to the text given to lex, which must outlive them.
struct Lexed {
  std::vector<Token> tokens;      // the last one is End
  std::vector<Literal> literals;  // in order of appearance
  // Equal for statements that differ only in the values of lifted literals and in white space
  // between tokens. Literals that shape the statement (behind TOP, in ORDER BY and GROUP BY) stay
  // in it as written.
  std::string_view shape;
  // False when there are so many literals that they stay in the text: such a statement is not worth
  // keeping.
  bool lifted = true;

  void clear();

  std::string shapeBuffer;  // what `shape` is a part of; only grows
};

// Statements with more literals than this are run with their literals written out; engines limit
// parameters.
inline constexpr std::size_t kMostLifted = 500;

// Fills `out`, reusing its memory. Raises -2147217900 for text that is no sequence of tokens.
void lex(std::string_view statement, Lexed& out);

}  // namespace kv::jet
