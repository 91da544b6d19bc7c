// SPDX-License-Identifier: Apache-2.0
#include "data/sql_text.h"

#include <algorithm>

#include "common/text.h"
#include "jet/errors.h"
#include "jet/syntax/lexer.h"

namespace kv {

namespace {

[[noreturn]] void refuse(std::string_view value, std::size_t offset) {
  jet::fail(kSyntax, jet::kMissingOperator, value, {offset, value.size() - offset});
}

// Whether a text is one literal of a kind to whoever reads statements, behind a sign if it may have
// one. Asked of the lexer itself, so that neither more nor less than that is let through.
bool isOneLiteral(const std::string& text, jet::TokenKind kind, bool signAllowed) {
  jet::Lexed lexed;
  try {
    jet::lex(text, lexed);
  } catch (const Error&) {
    return false;
  }
  auto token = lexed.tokens.begin();  // the last one is End
  if (signAllowed && token->kind == jet::TokenKind::Symbol &&
      (token->text == "+" || token->text == "-"))
    ++token;
  if (token->kind != kind) return false;
  return (++token)->kind == jet::TokenKind::End;
}

}  // namespace

std::string inQuotes(std::string_view value) {
  if (!isStorableText(value)) refuse(value, 0);
  for (std::size_t at = value.find('\''); at != std::string_view::npos; at = value.find('\'', at)) {
    const auto end = std::min(value.find_first_not_of('\'', at), value.size());
    if ((end - at) % 2 != 0) refuse(value, at);
    at = end;
  }
  return std::string(value);
}

std::string outOfQuotes(std::string_view value) {
  std::string out;
  out.reserve(value.size());
  for (std::size_t i = 0; i < value.size(); ++i) {
    out += value[i];
    if (value[i] == '\'' && i + 1 < value.size() && value[i + 1] == '\'') ++i;
  }
  return out;
}

std::string asNumber(std::string_view value) {
  std::string out(value);
  if (!isOneLiteral(out, jet::TokenKind::Number, true)) refuse(value, 0);
  return out;
}

std::string asDate(std::string_view value) {
  std::string out(value);
  if (!isOneLiteral("#" + out + "#", jet::TokenKind::Date, false)) refuse(value, 0);
  return out;
}

std::string asColumnName(std::string_view value) {
  if (value.size() > 2 && value.front() == '[' && value.back() == ']') {
    const auto inside = value.substr(1, value.size() - 2);
    if (!isStorableText(inside) || inside.find_first_of("[]") != std::string_view::npos)
      refuse(value, 0);
    return std::string(value);
  }
  const bool plain =
      !value.empty() && !isDigit(value.front()) && isStorableText(value) &&
      std::all_of(value.begin(), value.end(), [](char c) {
        return isAsciiLetter(c) || isDigit(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
      });
  if (!plain) refuse(value, 0);
  return std::string(value);
}

}  // namespace kv
