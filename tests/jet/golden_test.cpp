// SPDX-License-Identifier: Apache-2.0
// Golden files: a statement, then what the front end makes of it. KVVESK_REWRITE_GOLDEN=1 rewrites
// them; review the difference before committing it.
//
// A case is separated from the next by a line ==, its parts by a line --: the statement; the tree
// written out in the dialect; the bound statement; the texts for SQLite with the uses of literals
// as parameters. A statement that is refused has one further part: the error.
//
// Around every case the laws are checked that nobody has to write down: ranges of nodes lie within
// their parents, the tree written out parses to the same tree, and the engine that the tests
// run on can prepare every text it gets.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "jet/binding/binder.h"
#include "jet/emit/emitter.h"
#include "jet/syntax/parser.h"
#include "recordset/database.h"
#include "schema/register_schema.h"
#include "support/temp_folder.h"
#include "support/test_register.h"
#include "support/test_server.h"

namespace kv::jet {
namespace {

const Catalog& catalog() {
  static const Catalog instance(registerTables());
  return instance;
}

std::string describeParam(const ParamUse& use) {
  std::string out = fmt::format("literal {}", use.literal);
  if (use.other >= 0)
    out = fmt::format("{} of literals {} and {}", use.greater ? "greater" : "lesser", use.literal,
                      use.other);
  if (use.negative) out = "minus " + out;
  switch (use.form) {
    case ParamUse::Form::Plain: break;
    case ParamUse::Form::Fold: out += " folded"; break;
    case ParamUse::Form::Order: out += " as order key"; break;
    case ParamUse::Form::OrderBase: out += " as order base"; break;
    case ParamUse::Form::Pattern: out += " as expression"; break;
    case ParamUse::Form::Assign: out += " for " + use.column->name; break;
    case ParamUse::Form::Watch: return "whether tables are watched";
  }
  return out;
}

std::string describeText(std::string_view name, const SqlText& text) {
  if (text.text.empty()) return {};
  std::string out = fmt::format("{}: {}\n", name, text.text);
  int n = text.firstParam;
  for (const auto& use : text.params) out += fmt::format("  {}: {}\n", n++, describeParam(use));
  return out;
}

void checkRanges(const Expr& e, const std::string& statement) {
  EXPECT_LE(e.range.offset + e.range.length, statement.size());
  for (const auto& arg : e.args) {
    EXPECT_GE(arg->range.offset, e.range.offset) << statement;
    EXPECT_LE(arg->range.offset + arg->range.length, e.range.offset + e.range.length + 1)
        << statement;
    checkRanges(*arg, statement);
  }
}

Statement parsed(const std::string& text, Lexed& lexed) {
  lex(text, lexed);
  return parse(text, lexed);
}

std::string outcome(const std::string& text) {
  Lexed lexed;
  std::string out = text + "\n--\n";
  try {
    Statement tree = parsed(text, lexed);
    const std::string printed = print(tree, lexed.literals);
    out += printed + "\n--\n";
    Lexed again;
    const Statement second = parsed(printed, again);
    EXPECT_EQ(print(second, again.literals), printed);
    if (tree.select && tree.select->where) checkRanges(*tree.select->where, text);
    const BoundStatement bound = jet::bind(std::move(tree), text, lexed.literals, catalog());
    out += describe(bound) + "--\n";
    const Emitted emitted = emit(bound, lexed.literals, lexed.lifted, sqliteDialect());
    out += describeText("whole", emitted.whole) + describeText("keys", emitted.keys) +
           describeText("head", emitted.head) + describeText("rows", emitted.rows);
    static const test::TestRegister reg;
    auto& engine = reg.connection()->database()->engine();
    const auto prepare = [&](const std::string& sql) {
      if (!test::onServer()) {
        (void)engine.prepare(sql);
        return;
      }
      engine.execute("PREPARE kv_golden AS " + sql);
      engine.execute("DEALLOCATE kv_golden");
    };
    const Emitted here = emit(bound, lexed.literals, lexed.lifted, dialectNamed(engine.dialect()));
    for (const auto* t : {&here.whole, &here.keys, &here.head, &here.rows})
      if (!t->text.empty()) {
        EXPECT_NO_THROW(prepare(t->text)) << t->text;
      }
  } catch (const Error& e) {
    out += fmt::format("error {}: {}\n", e.number(), e.description());
  }
  return out;
}

std::vector<std::string> casesOf(const std::string& content) {
  std::vector<std::string> out;
  std::istringstream in(content);
  std::string current;
  for (std::string line; std::getline(in, line);) {
    if (line == "==") {
      out.push_back(current);
      current.clear();
    } else {
      current += line + "\n";
    }
  }
  if (!current.empty()) out.push_back(current);
  return out;
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, IsWhatTheFrontEndMakesOfIt) {
  const std::string path = std::string(KVVESK_GOLDEN) + "/" + GetParam() + ".test";
  const bool rewrite = std::getenv("KVVESK_REWRITE_GOLDEN") != nullptr;
  std::string rewritten;
  const auto cases = casesOf(test::contents(path));
  ASSERT_FALSE(cases.empty()) << path;
  for (const auto& expected : cases) {
    const std::string statement = expected.substr(0, expected.find("\n"));
    const std::string actual = outcome(statement);
    if (!rewrite) {
      EXPECT_EQ(actual, expected) << path;
    }
    rewritten += (rewritten.empty() ? "" : "==\n") + actual;
  }
  if (rewrite) test::write(path, rewritten);
}

std::vector<std::string> files() {
  std::vector<std::string> out;
  for (const auto& entry : std::filesystem::directory_iterator(KVVESK_GOLDEN))
    out.push_back(entry.path().stem().string());
  std::sort(out.begin(), out.end());
  return out;
}

INSTANTIATE_TEST_SUITE_P(Files, Golden, testing::ValuesIn(files()),
                         [](const auto& entry) { return entry.param; });

}  // namespace
}  // namespace kv::jet
