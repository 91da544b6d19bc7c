// SPDX-License-Identifier: Apache-2.0
// Text that nobody meant to write: every statement of the golden files with a byte removed,
// replaced, doubled or put in at every place; deep nesting; endless chains. Each is either a
// statement or refused with one of the well-known numbers.

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <set>

#include "jet/binding/binder.h"
#include "jet/emit/emitter.h"
#include "jet/syntax/parser.h"
#include "schema/register_schema.h"
#include "support/error_check.h"
#include "support/temp_folder.h"
#include "support/test_register.h"

namespace kv::jet {
namespace {

const Catalog& catalog() {
  static const Catalog instance(registerTables());
  return instance;
}

// Takes a text through the whole front end.
void take(const std::string& text) {
  Lexed lexed;
  lex(text, lexed);
  const BoundStatement bound = jet::bind(parse(text, lexed), text, lexed.literals, catalog());
  const Emitted emitted = emit(bound, lexed.literals, lexed.lifted, sqliteDialect());
  for (const auto* t : {&emitted.whole, &emitted.keys, &emitted.head, &emitted.rows})
    for (const auto& use : t->params) (void)boundValue(use, lexed.literals, text);
}

void expectOrderly(const std::string& text) {
  static const std::set<std::int32_t> known = {
      0, kSyntax, kUnknownName, kUnknownTable, kMismatch, kValueOverflow, kEngineFailure};
  const auto number = test::numberOf([&] { take(text); });
  EXPECT_TRUE(known.contains(number)) << number << " for " << text;
}

std::vector<std::string> statements() {
  std::vector<std::string> out;
  for (const auto& entry : std::filesystem::directory_iterator(KVVESK_GOLDEN)) {
    const std::string content = test::contents(entry.path().string());
    std::size_t at = 0;
    while (at < content.size()) {
      out.push_back(content.substr(at, content.find('\n', at) - at));
      const auto next = content.find("\n==\n", at);
      if (next == std::string::npos) break;
      at = next + 4;
    }
  }
  return out;
}

TEST(HostileText, OneByteAnywhere) {
  const std::string strange = "'\"#[](){};,.=<>*%?!-+&\\/^`@~|\x01\x80\xC3\xFF 0aT\n";
  for (const auto& statement : statements()) {
    for (std::size_t at = 0; at <= statement.size(); ++at) {
      if (at < statement.size()) {
        expectOrderly(statement.substr(0, at) + statement.substr(at + 1));
        expectOrderly(statement.substr(0, at));
      }
      const char c = strange[at % strange.size()];
      expectOrderly(statement.substr(0, at) + c + statement.substr(at));
      if (at < statement.size()) {
        std::string changed = statement;
        changed[at] = strange[(at * 7) % strange.size()];
        expectOrderly(changed);
      }
    }
  }
}

TEST(HostileText, PiecesOfStatementsInAnyOrder) {
  const auto all = statements();
  const unsigned seed = 20010309;
  std::mt19937 random(seed);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (int piece = 0; piece < 4; ++piece) {
      const auto& from = all[random() % all.size()];
      const auto start = random() % from.size();
      text += from.substr(start, random() % 40);
      text += random() % 3 == 0 ? " " : "";
    }
    SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
    expectOrderly(text);
  }
}

std::string repeated(const std::string& piece, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += piece;
  return out;
}

TEST(HostileText, NestingIsRefusedBeforeItRecurses) {
  const int deep = 100000;
  const std::string from = "Select * From Documents Where ";
  EXPECT_RAISES(kSyntax, take(from + repeated("(", deep) + "1 = 1" + repeated(")", deep)));
  EXPECT_RAISES(kSyntax, take(from + repeated("Not ", deep) + "1 = 1"));
  EXPECT_RAISES(kSyntax, take(from + "ID = " + repeated("-", deep) + "1"));
  EXPECT_RAISES(kSyntax, take(from + repeated("IsNull(", deep) + "1" + repeated(")", deep)));
  EXPECT_RAISES(kSyntax, take(from + "ID = 1" + repeated(" + 1", deep)));
  EXPECT_RAISES(kSyntax, take(from + "ID = 1" + repeated(" = 1", deep)));
  EXPECT_RAISES(kSyntax,
                take("Select * From " + repeated("(", deep) + "Documents" + repeated(")", deep)));
  EXPECT_RAISES(kSyntax, take("Select * From Documents" + repeated(", Documents", deep)));
}

TEST(HostileText, TwoHundredAndFiftyLevelsAreTaken) {
  const int levels = 240;
  EXPECT_NO_THROW(take("Select * From Documents Where " + repeated("(", levels) + "1 = 1" +
                       repeated(")", levels)));
  EXPECT_NO_THROW(take("Select * From Documents Where " + repeated("Not ", levels) + "(1 = 1)"));
  EXPECT_RAISES(kSyntax, take("Select * From Documents Where " + repeated("(", 260) + "1 = 1" +
                              repeated(")", 260)));
}

TEST(HostileText, ChainsOfAndAndOrHaveNoLimit) {
  const test::TestRegister reg;
  reg.execute("Insert Into Documents (DocumentID) Values ('D19999')");
  std::string chain = "DocumentID = 'D0'";
  for (int i = 1; i < 20000; ++i) chain += " or DocumentID = 'D" + std::to_string(i) + "'";
  EXPECT_EQ(reg.value("Select Count(*) From Documents Where " + chain), "1");
  std::string mixed = "DocumentTitle = 'x'";
  for (int i = 1; i < 20000; ++i)
    mixed += " or ID = " + std::to_string(i) + " and Controlled = False";
  EXPECT_EQ(reg.value("Select Count(*) From Documents Where " + mixed), "1");
  std::string all = "ID > 0";
  for (int i = 1; i < 20000; ++i) all += " and ID <> " + std::to_string(i + 10);
  EXPECT_EQ(reg.value("Select Count(*) From Documents Where " + all), "1");
}

TEST(HostileText, RefusalTakesBoundedTime) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_RAISES(kSyntax, take("Select " + repeated("[a].", 200000)));
  EXPECT_RAISES(kSyntax, take(repeated("Select ", 200000)));
  EXPECT_RAISES(kSyntax, take("Select '" + repeated("''", 500000)));
  EXPECT_RAISES(kUnknownName, take("Select " + repeated("a, ", 100000) + "b From Documents"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace kv::jet
