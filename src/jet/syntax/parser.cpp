// SPDX-License-Identifier: Apache-2.0
#include "jet/syntax/parser.h"

#include <algorithm>
#include <array>

#include "common/text.h"
#include "jet/errors.h"

namespace kv::jet {

namespace {

// Words that cannot stand for a column or table unless they are in brackets.
constexpr std::array<std::string_view, 45> kReserved = {
    "all",         "and",  "as",    "asc",   "between", "by",     "delete",  "desc",  "distinct",
    "distinctrow", "eqv",  "false", "from",  "group",   "having", "imp",     "in",    "inner",
    "insert",      "into", "is",    "join",  "left",    "like",   "mod",     "no",    "not",
    "null",        "off",  "on",    "or",    "order",   "outer",  "percent", "right", "select",
    "set",         "top",  "true",  "union", "update",  "values", "where",   "xor",   "yes"};
static_assert(std::is_sorted(kReserved.begin(), kReserved.end()));

bool isReserved(std::string_view word) {
  return std::binary_search(kReserved.begin(), kReserved.end(), asciiLowered(word));
}

class Parser {
 public:
  Parser(std::string_view text, const Lexed& lexed)
      : text_(text), tokens_(lexed.tokens), lexed_(lexed) {}

  Statement statement() {
    Statement out;
    if (acceptWord("select")) {
      out.kind = StatementKind::Select;
      out.select = selectBody();
    } else if (acceptWord("insert")) {
      out.kind = StatementKind::Insert;
      out.insert = insertBody();
    } else if (acceptWord("update")) {
      out.kind = StatementKind::Update;
      out.update = updateBody();
    } else if (acceptWord("delete")) {
      out.kind = StatementKind::Delete;
      out.remove = deleteBody();
    } else {
      failHere(kNotAStatement);
    }
    acceptSymbol(";");
    if (peek().kind != TokenKind::End)
      failHere(peek().kind == TokenKind::Symbol && at_ > 0 && tokens_[at_ - 1].text != ";"
                   ? kMissingOperator
                   : kTrailingText);
    return out;
  }

 private:
  // ---- tokens ----

  [[nodiscard]] const Token& peek(std::size_t ahead = 0) const {
    return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
  }
  const Token& take() {
    const Token& t = peek();
    if (at_ + 1 < tokens_.size()) ++at_;
    return t;
  }
  [[nodiscard]] bool isWord(std::string_view word, std::size_t ahead = 0) const {
    const Token& t = peek(ahead);
    if (t.kind != TokenKind::Word || t.text.size() != word.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i)
      if (asciiLower(t.text[i]) != word[i]) return false;
    return true;
  }
  bool acceptWord(std::string_view word) {
    if (!isWord(word)) return false;
    take();
    return true;
  }
  [[nodiscard]] bool isSymbol(std::string_view symbol, std::size_t ahead = 0) const {
    return peek(ahead).kind == TokenKind::Symbol && peek(ahead).text == symbol;
  }
  bool acceptSymbol(std::string_view symbol) {
    if (!isSymbol(symbol)) return false;
    take();
    return true;
  }
  void expectWord(std::string_view word, std::string_view message) {
    if (!acceptWord(word)) failHere(message);
  }
  void expectSymbol(std::string_view symbol, std::string_view message) {
    if (!acceptSymbol(symbol)) failHere(message);
  }
  [[noreturn]] void failHere(std::string_view message) const {
    fail(kSyntax, message, text_, peek().range);
  }
  [[nodiscard]] bool isNameAhead(std::size_t ahead = 0) const {
    const Token& t = peek(ahead);
    return t.kind == TokenKind::Name || (t.kind == TokenKind::Word && !isReserved(t.text));
  }
  std::string takeName(std::string_view message) {
    if (!isNameAhead()) failHere(message);
    return std::string(take().text);
  }
  [[nodiscard]] TextRange since(TextRange first) const {
    const auto& last = tokens_[at_ == 0 ? 0 : at_ - 1].range;
    return {first.offset, last.offset + last.length - first.offset};
  }

  // ---- nesting ----

  class Level {
   public:
    explicit Level(Parser& parser) : parser_(parser) {
      if (++parser_.depth_ > kMostNested) parser_.failHere(kTooNested);
    }
    ~Level() { --parser_.depth_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    Level(Level&&) = delete;
    Level& operator=(Level&&) = delete;

   private:
    Parser& parser_;
  };

  // Finishes a node whose arguments are in place: chains nest to the left without recursion, so
  // their depth is counted here.
  ExprPtr finished(ExprPtr e, TextRange first) {
    e->range = since(first);
    for (const auto& arg : e->args) e->depth = std::max(e->depth, arg->depth + 1);
    if (e->depth > kMostNested) failHere(kTooNested);
    return e;
  }

  static ExprPtr node(ExprKind kind, ExprPtr a = nullptr, ExprPtr b = nullptr) {
    auto e = std::make_unique<Expr>();
    e->kind = kind;
    if (a) e->args.push_back(std::move(a));
    if (b) e->args.push_back(std::move(b));
    return e;
  }

  // ---- expressions, loosest operator first ----

  ExprPtr expression() { return logical(0); }

  // Imp, Eqv, Xor: chains that nest to the left.
  ExprPtr logical(std::size_t level) {
    struct Rung {
      std::string_view word;
      Op op;
    };
    static constexpr std::array<Rung, 3> kRungs = {Rung{"imp", Op::Imp}, Rung{"eqv", Op::Eqv},
                                                   Rung{"xor", Op::Xor}};
    if (level == kRungs.size()) return flat(ExprKind::Or);
    const auto first = peek().range;
    auto left = logical(level + 1);
    while (acceptWord(kRungs[level].word)) {
      auto e = node(ExprKind::Binary, std::move(left), logical(level + 1));
      e->op = kRungs[level].op;
      left = finished(std::move(e), first);
    }
    return left;
  }

  // Or and And: flat lists of any length.
  ExprPtr flat(ExprKind kind) {
    const auto first = peek().range;
    const std::string_view word = kind == ExprKind::Or ? "or" : "and";
    const auto operand = [&] { return kind == ExprKind::Or ? flat(ExprKind::And) : notLevel(); };
    auto left = operand();
    if (!isWord(word)) return left;
    auto e = node(kind, std::move(left));
    while (acceptWord(word)) e->args.push_back(operand());
    return finished(std::move(e), first);
  }

  ExprPtr notLevel() {
    if (!isWord("not")) return comparison();
    const Level level(*this);
    const auto first = take().range;
    return finished(node(ExprKind::Not, notLevel()), first);
  }

  static std::optional<Op> comparisonOp(const Token& t) {
    if (t.kind != TokenKind::Symbol) return std::nullopt;
    if (t.text == "=") return Op::Equal;
    if (t.text == "<>") return Op::NotEqual;
    if (t.text == "<") return Op::Less;
    if (t.text == "<=") return Op::LessEqual;
    if (t.text == ">") return Op::Greater;
    if (t.text == ">=") return Op::GreaterEqual;
    return std::nullopt;
  }

  ExprPtr comparison() {
    const auto first = peek().range;
    auto left = concat();
    for (;;) {
      if (const auto op = comparisonOp(peek())) {
        take();
        auto e = node(ExprKind::Binary, std::move(left), concat());
        e->op = *op;
        left = finished(std::move(e), first);
        continue;
      }
      if (acceptWord("is")) {
        auto e = node(ExprKind::IsNull, std::move(left));
        e->negated = acceptWord("not");
        expectWord("null", kMissingOperator);
        left = finished(std::move(e), first);
        continue;
      }
      const bool negated = isWord("not") && (isWord("like", 1) || isWord("in", 1) ||
                                             isWord("between", 1) || isWord("alike", 1));
      if (negated) take();
      ExprPtr e;
      if (acceptWord("like")) {
        e = node(ExprKind::Like, std::move(left), concat());
      } else if (acceptWord("in")) {
        e = node(ExprKind::In, std::move(left));
        expectSymbol("(", kMissingOperator);
        do {
          const Level level(*this);
          e->args.push_back(expression());
        } while (acceptSymbol(","));
        expectSymbol(")", kMissingOperator);
      } else if (acceptWord("between")) {
        e = node(ExprKind::Between, std::move(left), concat());
        expectWord("and", kMissingOperator);
        e->args.push_back(concat());
      } else {
        return left;
      }
      e->negated = negated;
      left = finished(std::move(e), first);
    }
  }

  ExprPtr concat() {
    const auto first = peek().range;
    auto left = sum();
    while (acceptSymbol("&")) {
      auto e = node(ExprKind::Binary, std::move(left), sum());
      e->op = Op::Concat;
      left = finished(std::move(e), first);
    }
    return left;
  }

  ExprPtr sum() {
    const auto first = peek().range;
    auto left = arithmetic(0);
    while (isSymbol("+") || isSymbol("-")) {
      const Op op = take().text == "+" ? Op::Add : Op::Subtract;
      auto e = node(ExprKind::Binary, std::move(left), arithmetic(0));
      e->op = op;
      left = finished(std::move(e), first);
    }
    return left;
  }

  // Mod, then \, then * and /, each tighter than the one before.
  ExprPtr arithmetic(int level) {
    if (level == 3) return negation();
    const auto first = peek().range;
    auto left = arithmetic(level + 1);
    for (;;) {
      Op op = Op::Multiply;
      if (level == 0 && acceptWord("mod")) {
        op = Op::Modulo;
      } else if (level == 1 && acceptSymbol("\\")) {
        op = Op::WholeDivide;
      } else if (level == 2 && acceptSymbol("*")) {
        op = Op::Multiply;
      } else if (level == 2 && acceptSymbol("/")) {
        op = Op::Divide;
      } else {
        return left;
      }
      auto e = node(ExprKind::Binary, std::move(left), arithmetic(level + 1));
      e->op = op;
      left = finished(std::move(e), first);
    }
  }

  ExprPtr negation() {
    const auto first = peek().range;
    if (acceptSymbol("+")) {
      const Level level(*this);
      return negation();
    }
    if (!acceptSymbol("-")) return power();
    const Level level(*this);
    return finished(node(ExprKind::Negate, negation()), first);
  }

  ExprPtr power() {
    const auto first = peek().range;
    auto left = primary();
    while (acceptSymbol("^")) {
      const Level level(*this);
      auto right = isSymbol("-") || isSymbol("+") ? negation() : primary();
      auto e = node(ExprKind::Binary, std::move(left), std::move(right));
      e->op = Op::Power;
      left = finished(std::move(e), first);
    }
    return left;
  }

  ExprPtr truth(bool value) {
    const auto first = take().range;
    auto e = node(ExprKind::Truth);
    e->flag = value;
    return finished(std::move(e), first);
  }

  ExprPtr primary() {
    const Token& t = peek();
    switch (t.kind) {
      case TokenKind::Text:
      case TokenKind::Number:
      case TokenKind::Date: {
        auto e = node(ExprKind::Literal);
        e->literal = t.literal;
        take();
        return finished(std::move(e), t.range);
      }
      case TokenKind::Symbol:
        if (isSymbol("(")) {
          const Level level(*this);
          take();
          auto e = expression();
          expectSymbol(")", kMissingOperator);
          return e;
        }
        failHere(kMissingOperator);
      case TokenKind::Word:
        if (isWord("null")) return finished(node(ExprKind::Null), take().range);
        if (!isSymbol(".", 1) && !isSymbol("!", 1) && !isSymbol("(", 1)) {
          if (isWord("true") || isWord("yes") || isWord("on")) return truth(true);
          if (isWord("false") || isWord("no") || isWord("off")) return truth(false);
        }
        if (isReserved(t.text) && !(isSymbol("(", 1) && (isWord("left") || isWord("right"))))
          failHere(kMissingOperator);
        if (isSymbol("(", 1)) return function();
        return column(kMissingOperator);
      case TokenKind::Name: return column(kMissingOperator);
      case TokenKind::End: failHere(kMissingOperator);
    }
    failHere(kMissingOperator);
  }

  ExprPtr function() {
    const Level level(*this);
    const auto first = peek().range;
    auto e = node(ExprKind::Function);
    e->name = std::string(take().text);
    take();  // (
    if (isSymbol("*") && isSymbol(")", 1)) {
      take();
      e->flag = true;
    } else if (!isSymbol(")")) {
      do {
        e->args.push_back(expression());
      } while (acceptSymbol(","));
    }
    expectSymbol(")", kMissingOperator);
    return finished(std::move(e), first);
  }

  // [table . or !] name
  ExprPtr column(std::string_view message) {
    const auto first = peek().range;
    auto e = node(ExprKind::Column);
    e->name = takeName(message);
    if ((isSymbol(".") || isSymbol("!")) && (isNameAhead(1) || peek(1).kind == TokenKind::Word)) {
      take();
      e->qualifier = std::move(e->name);
      e->name = std::string(take().text);
    }
    return finished(std::move(e), first);
  }

  // ---- tables ----

  TableRefPtr joined(TableRef::Kind kind, TableRefPtr left, TableRefPtr right, TextRange first) {
    auto join = std::make_unique<TableRef>();
    join->kind = kind;
    join->depth = std::max(left->depth, right->depth) + 1;
    if (join->depth > kMostNested) failHere(kTooNested);
    join->left = std::move(left);
    join->right = std::move(right);
    if (kind != TableRef::Kind::Cross) {
      expectWord("on", kBadJoin);
      join->on = expression();
    }
    join->range = since(first);
    return join;
  }

  TableRefPtr tables(std::string_view message) {
    const auto first = peek().range;
    auto left = joins(message);
    while (acceptSymbol(","))
      left = joined(TableRef::Kind::Cross, std::move(left), joins(message), first);
    return left;
  }

  TableRefPtr joins(std::string_view message) {
    const auto first = peek().range;
    auto left = tablePrimary(message);
    for (;;) {
      auto kind = TableRef::Kind::Inner;
      if (isWord("left") || isWord("right")) {
        kind = isWord("left") ? TableRef::Kind::Left : TableRef::Kind::Right;
        take();
        acceptWord("outer");
        expectWord("join", kBadJoin);
      } else if (acceptWord("inner")) {
        expectWord("join", kBadJoin);
      } else if (isWord("join")) {
        failHere(kBadJoin);
      } else {
        return left;
      }
      left = joined(kind, std::move(left), tablePrimary(message), first);
    }
  }

  TableRefPtr tablePrimary(std::string_view message) {
    const auto first = peek().range;
    if (isSymbol("(")) {
      const Level level(*this);
      take();
      auto inside = tables(message);
      expectSymbol(")", message);
      return inside;
    }
    auto table = std::make_unique<TableRef>();
    table->name = takeName(message);
    table->range = since(first);
    if (acceptWord("as")) {
      table->alias = takeName(message);
    } else if (isNameAhead()) {
      table->alias = std::string(take().text);
    }
    return table;
  }

  // ---- statements ----

  std::unique_ptr<Select> selectBody() {
    auto s = std::make_unique<Select>();
    if (acceptWord("distinct")) {
      s->distinct = Distinct::Values;
    } else if (acceptWord("distinctrow")) {
      s->distinct = Distinct::Rows;
    } else {
      acceptWord("all");
    }
    if (acceptWord("top")) {
      const Token& t = take();
      if (t.kind != TokenKind::Number) fail(kSyntax, kBadSelect, text_, t.range);
      const Literal& l = lexed_.literals[static_cast<std::size_t>(t.literal)];
      if (l.kind != LiteralKind::Whole || std::get<std::int64_t>(l.value) < 1)
        fail(kSyntax, kBadSelect, text_, t.range);
      s->top = std::get<std::int64_t>(l.value);
      s->topPercent = acceptWord("percent");
      if (s->topPercent && *s->top > 100) fail(kSyntax, kBadSelect, text_, t.range);
    }
    do {
      s->items.push_back(selectItem());
    } while (acceptSymbol(","));
    if (acceptWord("from")) s->from = tables(kBadFrom);
    if (acceptWord("where")) s->where = expression();
    if (acceptWord("group")) {
      expectWord("by", kBadGroupBy);
      do {
        s->groupBy.push_back(expression());
      } while (acceptSymbol(","));
    }
    if (acceptWord("having")) s->having = expression();
    if (acceptWord("order")) {
      expectWord("by", kBadOrderBy);
      do {
        OrderItem item;
        item.expr = expression();
        if (acceptWord("desc"))
          item.descending = true;
        else
          acceptWord("asc");
        s->orderBy.push_back(std::move(item));
      } while (acceptSymbol(","));
    }
    return s;
  }

  SelectItem selectItem() {
    SelectItem item;
    const auto first = peek().range;
    if (acceptSymbol("*")) {
      item.kind = SelectItem::Kind::Star;
    } else if (isNameAhead() && (isSymbol(".", 1) || isSymbol("!", 1)) && isSymbol("*", 2)) {
      item.kind = SelectItem::Kind::TableStar;
      item.qualifier = takeName(kBadSelect);
      take();
      take();
    } else {
      if (peek().kind == TokenKind::End || isWord("from")) failHere(kBadSelect);
      item.expr = expression();
      if (acceptWord("as")) item.alias = takeName(kBadSelect);
    }
    item.range = since(first);
    return item;
  }

  TableRefPtr oneTable(std::string_view message) {
    auto table = std::make_unique<TableRef>();
    const auto first = peek().range;
    table->name = takeName(message);
    table->range = since(first);
    return table;
  }

  std::unique_ptr<Insert> insertBody() {
    auto s = std::make_unique<Insert>();
    expectWord("into", kBadInsert);
    s->table = oneTable(kBadInsert);
    if (isSymbol("(")) {
      take();
      do {
        s->columns.push_back(column(kBadInsert));
      } while (acceptSymbol(","));
      expectSymbol(")", kBadInsert);
    }
    if (acceptWord("values")) {
      expectSymbol("(", kBadInsert);
      do {
        s->values.push_back(expression());
      } while (acceptSymbol(","));
      expectSymbol(")", kBadInsert);
    } else if (acceptWord("select")) {
      s->select = selectBody();
    } else {
      failHere(kBadInsert);
    }
    return s;
  }

  std::unique_ptr<Update> updateBody() {
    auto s = std::make_unique<Update>();
    s->from = tables(kBadUpdate);
    expectWord("set", kBadUpdate);
    do {
      Assignment a;
      a.column = column(kBadUpdate);
      expectSymbol("=", kBadUpdate);
      a.value = expression();
      s->assignments.push_back(std::move(a));
    } while (acceptSymbol(","));
    if (acceptWord("where")) s->where = expression();
    return s;
  }

  std::unique_ptr<Delete> deleteBody() {
    auto s = std::make_unique<Delete>();
    if (!acceptSymbol("*") && !isWord("from")) {
      s->targetRange = peek().range;
      s->target = takeName(kBadDelete);
      if (!acceptSymbol(".") && !acceptSymbol("!")) failHere(kBadDelete);
      expectSymbol("*", kBadDelete);
    }
    expectWord("from", kBadDelete);
    s->from = tables(kBadFrom);
    if (acceptWord("where")) s->where = expression();
    return s;
  }

  std::string_view text_;
  const std::vector<Token>& tokens_;
  const Lexed& lexed_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace

Statement parse(std::string_view text, const Lexed& lexed) {
  return Parser(text, lexed).statement();
}

}  // namespace kv::jet
