// SPDX-License-Identifier: Apache-2.0
// Tokens to a syntax tree, by recursive descent.
#pragma once

#include <string_view>

#include "jet/syntax/ast.h"
#include "jet/syntax/lexer.h"

namespace kv::jet {

// Levels of nesting (parentheses, Not, function arguments, chains of other operators than And and
// Or, joins) that a statement may have. Deeper ones are refused before anything recurses into them.
inline constexpr int kMostNested = 250;

// Parses the one statement that `lexed` holds; `text` is the text it was cut from. Raises
// -2147217900 with the place of the fault. The tree refers to nothing of its arguments but literals
// by number.
[[nodiscard]] Statement parse(std::string_view text, const Lexed& lexed);

}  // namespace kv::jet
