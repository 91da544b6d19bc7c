// SPDX-License-Identifier: Apache-2.0
// Several connections of one process to a register, beside programs that open and close it: none of
// them may take away what keeps the others' changes safe.
#include <gtest/gtest.h>

#include "cli/program.h"
#include "support/test_register.h"

namespace kv {
namespace {

class Locks : public testing::Test {
 protected:
  Locks() { reg_.addUser(1, "Anna", "secret", true); }
  void expectCount(int count) {
    const auto seen =
        test::run({"sql", reg_.path(), "Select Count(*) From Keywords", "-u", "Anna", "--jsonl"});
    EXPECT_EQ(seen.err, "");
    EXPECT_EQ(seen.out,
              "{\"columns\":[\"Expr1000\"],\"rows\":[[" + std::to_string(count) + "]]}\n");
  }
  test::TestRegister reg_;
};

TEST_F(Locks, ChangesAreKeptWhoeverElseOpensAndClosesTheRegister) {
  const auto second = reg_.openAnother();
  int count = 0;
  for (int round = 0; round < 3; ++round) {
    reg_.execute("Insert Into Keywords (Keyword) Values ('a')");
    expectCount(++count);
    std::int32_t changed = 0;
    second->Execute("Insert Into Keywords (Keyword) Values ('b')", changed);
    expectCount(++count);
    const auto third = reg_.openAnother();
    expectCount(count);
    third->Execute("Insert Into Keywords (Keyword) Values ('c')", changed);
    third->Close();
    expectCount(++count);
  }
  EXPECT_EQ(reg_.value("Select Count(*) From Keywords"), std::to_string(count));
  second->Close();
}

}  // namespace
}  // namespace kv
