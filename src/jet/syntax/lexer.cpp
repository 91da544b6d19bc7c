// SPDX-License-Identifier: Apache-2.0
#include "jet/syntax/lexer.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "common/convert.h"
#include "common/date.h"
#include "common/text.h"
#include "jet/errors.h"

namespace kv::jet {

namespace {

enum class CharClass : std::uint8_t { Bad, Space, Word, Digit, Symbol, Quote, Hash, Open, Tick };

constexpr std::array<CharClass, 256> makeClasses() {
  std::array<CharClass, 256> out{};
  for (std::size_t c = 0; c < 256; ++c) {
    auto k = CharClass::Bad;
    const auto ch = static_cast<char>(c);
    if (ch == ' ' || ch == '\t' || ch == '\r' || ch == '\n')
      k = CharClass::Space;
    else if (isAsciiLetter(ch) || ch == '_' || c >= 0x80)
      k = CharClass::Word;
    else if (isDigit(ch))
      k = CharClass::Digit;
    else if (std::string_view("=<>+-*/\\^&,.!();?").find(ch) != std::string_view::npos)
      k = CharClass::Symbol;
    else if (ch == '\'' || ch == '"')
      k = CharClass::Quote;
    else if (ch == '#')
      k = CharClass::Hash;
    else if (ch == '[')
      k = CharClass::Open;
    else if (ch == '`')
      k = CharClass::Tick;
    out[c] = k;
  }
  return out;
}

constexpr auto kClasses = makeClasses();

CharClass classOf(char c) { return kClasses[static_cast<unsigned char>(c)]; }

bool continuesWord(char c) {
  const auto k = classOf(c);
  return k == CharClass::Word || k == CharClass::Digit || c == '$';
}

bool isWord(std::string_view word, std::string_view upper) {
  if (word.size() != upper.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i)
    if (asciiLower(word[i]) != asciiLower(upper[i])) return false;
  return true;
}

class Lexer {
 public:
  Lexer(std::string_view text, Lexed& out) : text_(text), out_(out) {}

  void run() {
    if (!isStorableText(text_)) {
      std::size_t good = 0;  // the first character that is none
      while (const auto length = characterLength(text_.substr(good))) good += length;
      fail(kSyntax, "The statement is not well-formed UTF-8 text.", text_, {good, 0});
    }
    // A token and the blank before it never need more room in the shape than twice what they have
    // in the text.
    if (out_.shapeBuffer.size() < text_.size() * 2 + 2)
      out_.shapeBuffer.resize(text_.size() * 2 + 2);
    while (at_ < text_.size()) {
      const auto k = classOf(text_[at_]);
      switch (k) {
        case CharClass::Space: ++at_; break;
        case CharClass::Word: word(); break;
        case CharClass::Digit: number(); break;
        case CharClass::Symbol: symbol(); break;
        case CharClass::Quote: quoted(); break;
        case CharClass::Hash: date(); break;
        case CharClass::Open: name(']'); break;
        case CharClass::Tick: name('`'); break;
        case CharClass::Bad: fail(kSyntax, kMissingOperator, text_, {at_, 1});
      }
    }
    out_.tokens.push_back({TokenKind::End, {}, {text_.size(), 0}, -1});
    out_.shape = std::string_view(out_.shapeBuffer).substr(0, shapeSize_);
    out_.lifted = out_.literals.size() <= kMostLifted;
    if (!out_.lifted) out_.shape = {};
  }

 private:
  // Bytes of the character that `text` begins with; 0 where it begins with none.
  static std::size_t characterLength(std::string_view text) {
    constexpr std::size_t kLongest = 4;
    for (std::size_t length = 1; length <= std::min(kLongest, text.size()); ++length)
      if (isStorableText(text.substr(0, length))) return length;
    return 0;
  }

  Token& push(TokenKind kind, std::size_t from, std::string_view text) {
    return out_.tokens.emplace_back(Token{kind, text, {from, at_ - from}, -1});
  }

  void word() {
    const auto from = at_;
    while (at_ < text_.size() && continuesWord(text_[at_])) ++at_;
    const auto text = text_.substr(from, at_ - from);
    push(TokenKind::Word, from, text);
    add(text);
    // Literals behind these words change the meaning of the statement, not a value in it.
    if (isWord(text, "TOP")) {
      keepNext_ = true;
    } else if (isWord(text, "ORDER") || isWord(text, "GROUP")) {
      if (keepFrom_ < 0 || depth_ < keepFrom_) keepFrom_ = depth_;
    } else if (isWord(text, "HAVING") && keepFrom_ == depth_) {
      keepFrom_ = -1;
    }
  }

  void number() {
    const auto from = at_;
    const auto digits = [&] {
      while (at_ < text_.size() && isDigit(text_[at_])) ++at_;
    };
    digits();
    bool whole = true;
    if (at_ < text_.size() && text_[at_] == '.') {
      whole = false;
      ++at_;
      digits();
    }
    if (at_ < text_.size() && asciiLower(text_[at_]) == 'e') {
      auto power = at_ + 1;
      if (power < text_.size() && (text_[power] == '+' || text_[power] == '-')) ++power;
      if (power < text_.size() && isDigit(text_[power])) {
        whole = false;
        at_ = power;
        digits();
      }
    }
    if (at_ < text_.size() && continuesWord(text_[at_]))
      fail(kSyntax, kMissingOperator, text_, {from, at_ + 1 - from});
    const auto text = text_.substr(from, at_ - from);
    Literal literal{LiteralKind::Real, {}, {from, text.size()}};
    std::int64_t value = 0;
    if (whole) {
      const auto [stop, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
      constexpr std::int64_t kLargestLong = 2147483647;
      if (problem == std::errc() && value <= kLargestLong) {
        literal.kind = LiteralKind::Whole;
        literal.value = value;
      }
    }
    if (literal.kind == LiteralKind::Real) {
      const auto real = parseNumber(text);
      if (!real) fail(kSyntax, "Overflow", text_, {from, text.size()});
      literal.value = *real;
    }
    lift(TokenKind::Number, from, text, std::move(literal));
  }

  void symbol() {
    const auto from = at_;
    const char c = text_[at_++];
    if (c == '.' && at_ < text_.size() && isDigit(text_[at_]) && !afterName()) {
      at_ = from;
      number();
      return;
    }
    if (at_ < text_.size()) {
      const char d = text_[at_];
      if ((c == '<' && (d == '=' || d == '>')) || (c == '>' && d == '=')) ++at_;
    }
    if (c == '(') ++depth_;
    if (c == ')') {
      --depth_;
      if (depth_ < keepFrom_) keepFrom_ = -1;
    }
    const auto text = text_.substr(from, at_ - from);
    push(TokenKind::Symbol, from, text);
    append(text);
    lastWord_ = false;
  }

  [[nodiscard]] bool afterName() const {
    if (out_.tokens.empty()) return false;
    const auto k = out_.tokens.back().kind;
    return k == TokenKind::Word || k == TokenKind::Name;
  }

  void quoted() {
    const auto from = at_;
    const char quote = text_[at_++];
    std::string value;
    for (;;) {
      const auto end = text_.find(quote, at_);
      if (end == std::string_view::npos)
        fail(kSyntax, kBadString, text_, {from, text_.size() - from});
      value += text_.substr(at_, end - at_);
      at_ = end + 1;
      if (at_ >= text_.size() || text_[at_] != quote) break;
      value += quote;
      ++at_;
    }
    lift(TokenKind::Text, from, text_.substr(from, at_ - from),
         {LiteralKind::Text, std::move(value), {from, at_ - from}});
  }

  void date() {
    const auto from = at_;
    const auto end = text_.find('#', at_ + 1);
    if (end == std::string_view::npos) fail(kSyntax, kBadDate, text_, {from, text_.size() - from});
    at_ = end + 1;
    const auto value = parseDateLiteral(text_.substr(from + 1, end - from - 1));
    if (!value) fail(kSyntax, kBadDate, text_, {from, at_ - from});
    lift(TokenKind::Date, from, text_.substr(from, at_ - from),
         {LiteralKind::Date, *value, {from, at_ - from}});
  }

  void name(char close) {
    const auto from = at_;
    const auto end = text_.find(close, at_ + 1);
    if (end == std::string_view::npos)
      fail(kSyntax, kBadBrackets, text_, {from, text_.size() - from});
    at_ = end + 1;
    const auto inside = text_.substr(from + 1, end - from - 1);
    if (inside.empty() || inside.front() == ' ' || inside.back() == ' ' ||
        inside.find('[') != std::string_view::npos)
      fail(kSyntax, kBadBrackets, text_, {from, at_ - from});
    push(TokenKind::Name, from, inside);
    append(text_.substr(from, at_ - from));
    lastWord_ = false;
  }

  void lift(TokenKind kind, std::size_t from, std::string_view text, Literal literal) {
    Token& token = push(kind, from, text);
    const auto literalKind = literal.kind;
    if (keepNext_ || keepFrom_ >= 0) {  // stays in the text, so it stays in the shape
      add(text);
      keepNext_ = false;
      literal.kept = true;
    } else {
      constexpr std::string_view kMarks = "\x01\x02\x03\x04";
      append(kMarks.substr(static_cast<std::size_t>(literalKind), 1));
      lastWord_ = false;
    }
    token.literal = static_cast<int>(out_.literals.size());
    out_.literals.push_back(std::move(literal));
  }

  void add(std::string_view word) {
    if (lastWord_) append(" ");
    append(word);
    lastWord_ = true;
  }

  void append(std::string_view piece) {
    piece.copy(out_.shapeBuffer.data() + shapeSize_, piece.size());
    shapeSize_ += piece.size();
  }

  std::string_view text_;
  Lexed& out_;
  std::size_t shapeSize_ = 0;
  std::size_t at_ = 0;
  int depth_ = 0;
  int keepFrom_ = -1;  // the parenthesis depth since which literals stay in the text; -1 for none
  bool keepNext_ = false;  // the next literal stays in the text
  bool lastWord_ = false;  // the shape ends in a word, so the next one needs a blank
};

}  // namespace

void Lexed::clear() {
  tokens.clear();
  literals.clear();
  shape = {};
  lifted = true;
}

void lex(std::string_view statement, Lexed& out) {
  out.clear();
  Lexer(statement, out).run();
}

}  // namespace kv::jet
