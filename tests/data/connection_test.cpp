// SPDX-License-Identifier: Apache-2.0
#include "data/connection.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

#include "support/error_check.h"
#include "support/test_register.h"
#include "support/test_server.h"

namespace kv {
namespace {

class ConnectionTest : public testing::Test {
 protected:
  test::TestRegister reg_;
};

TEST_F(ConnectionTest, TheObserverSeesEachTextExactlyAsGiven) {
  std::vector<std::string> seen;
  reg_.connection()->Observe([&](std::string_view text) { seen.emplace_back(text); });
  const std::string select = " Select  *\r\nFrom Users Where UserID = 'O''Brien'";
  (void)reg_.open(select);
  reg_.execute("Update VeskCOnfig Set ExternalActionSystem = False");
  EXPECT_THROW((void)reg_.open("Select nonsense"), Error);
  EXPECT_EQ(seen,
            (std::vector<std::string>{select, "Update VeskCOnfig Set ExternalActionSystem = False",
                                      "Select nonsense"}));
}

TEST_F(ConnectionTest, AStatementThatGivesNoRowsLeavesTheSetClosed) {
  const auto rs = reg_.open("Insert Into Keywords Values ('a', 'b')");
  EXPECT_EQ(rs->State(), kStateClosed);
  EXPECT_RAISES(3704, (void)rs->Eof());
  EXPECT_EQ(reg_.value("Select Count(*) From Keywords"), "1");
}

TEST_F(ConnectionTest, EveryCursorTypeIsAKeyset) {
  for (const std::int32_t type : {kForwardOnly, kKeyset, kDynamic, kStatic})
    EXPECT_EQ(reg_.connection()->OpenRecordset("Select * From Users", type)->CursorType(), kKeyset);
  EXPECT_EQ(
      reg_.connection()->OpenRecordset("Select Distinct UserID From Users", kKeyset)->CursorType(),
      kStatic);
  EXPECT_RAISES(3001, (void)reg_.connection()->OpenRecordset("Select * From Users", 9));
  EXPECT_RAISES(3001, (void)reg_.connection()->OpenRecordset("Select * From Users", kKeyset, 0));
}

TEST_F(ConnectionTest, TheStatementLogHasOneTextALine) {
  const std::string path = reg_.folder().file("statements.log");
  reg_.connection()->StatementLog(path);
  EXPECT_EQ(reg_.connection()->StatementLog(), path);
  (void)reg_.open("Select *\r\nFrom Users Where UserName = 'a\\b'");
  reg_.execute("Delete * From Users");
  reg_.connection()->StatementLog("");
  reg_.execute("Delete * From Manuals");
  EXPECT_EQ(test::contents(path),
            "Select *\\r\\nFrom Users Where UserName = 'a\\\\b'\nDelete * From Users\n");
  reg_.connection()->StatementLog(path);
  reg_.execute("Delete * From Keywords");
  EXPECT_THAT(test::contents(path),
              testing::EndsWith("Delete * From Users\nDelete * From Keywords\n"));
  EXPECT_RAISES(kEngineFailure,
                reg_.connection()->StatementLog(reg_.folder().file("no/such/folder/x.log")));
  EXPECT_EQ(reg_.connection()->StatementLog(), "");
}

TEST_F(ConnectionTest, AClientsTransactionHoldsWhatItDid) {
  const auto& c = reg_.connection();
  c->BeginTrans();
  reg_.execute("Insert Into Keywords Values ('a', '1')");
  c->BeginTrans();
  reg_.execute("Insert Into Keywords Values ('a', '2')");
  c->RollbackTrans();
  c->CommitTrans();
  EXPECT_EQ(reg_.rows("Select Keyword From Keywords"), (std::vector<std::string>{"1"}));
  EXPECT_RAISES(3219, c->CommitTrans());
  EXPECT_RAISES(3219, c->RollbackTrans());
}

TEST_F(ConnectionTest, ClosingUndoesAnOpenTransaction) {
  reg_.connection()->BeginTrans();
  reg_.execute("Insert Into Keywords Values ('a', '1')");
  reg_.connection()->Close();
  reg_.connection()->Close();
  const auto other = reg_.openAnother();
  EXPECT_EQ(other->OpenRecordset("Select * From Keywords")->RecordCount(), 0);
  EXPECT_RAISES(3709, (void)reg_.open("Select * From Keywords"));
}

TEST_F(ConnectionTest, AWriterWaitsForAnotherAndThenSaysSo) {
  const auto other = reg_.openAnother("Lock Timeout=0.05;");
  reg_.execute("Insert Into Keywords Values ('a', '0')");
  std::thread([&] {
    reg_.connection()->BeginTrans();
    reg_.execute("Update Keywords Set Keyword = '1'");
  }).join();
  std::int32_t affected = 0;
  const auto error = test::errorOf([&] { other->Execute("Delete * From Keywords", affected); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kEngineFailure);
  EXPECT_THAT(error->description(),
              testing::StartsWith("The register is locked by another process."));
  reg_.connection()->CommitTrans();
  other->Execute("Delete * From Keywords", affected);
  EXPECT_EQ(affected, 1);
}

TEST_F(ConnectionTest, AWriterDoesNotWaitForAnotherOfItsOwnThread) {
  const auto other = reg_.openAnother();
  for (const char* word : {"0", "1"})
    reg_.execute(std::string("Insert Into Keywords Values ('a', '") + word + "')");
  const auto set = other->OpenRecordset("Select * From Keywords");
  std::int32_t affected = 0;
  reg_.connection()->BeginTrans();
  reg_.execute("Update Keywords Set Keyword = '2' Where Keyword = '0'");
  const auto start = std::chrono::steady_clock::now();
  const auto expectRefusal = [&](const std::function<void()>& write) {
    const auto error = test::errorOf(write);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), kEngineFailure);
    EXPECT_THAT(
        error->description(),
        testing::StartsWith("The register is locked by another session of the same thread"));
  };
  expectRefusal([&] { other->Execute("Delete * From Keywords", affected); });
  set->Fields("Keyword")->Value("3");
  expectRefusal([&] { set->Update(); });
  set->CancelUpdate();
  expectRefusal([&] {
    other->BeginTrans();
    other->Execute("Delete * From Keywords", affected);
  });
  if (test::onServer()) other->RollbackTrans();  // a transaction begins there without a lock
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  reg_.connection()->CommitTrans();
  other->Execute("Delete * From Keywords", affected);
  EXPECT_EQ(affected, 2);
}

constexpr const char* kSlow =
    "Select Count(*) From Keywords As A, Keywords As B, Keywords As C, Keywords As D Where "
    "A.Keyword Like B.Keyword Or C.Keyword Like D.Keyword";

TEST_F(ConnectionTest, ARunningStatementCanBeStopped) {
  for (int i = 0; i < 150; ++i)
    reg_.execute("Insert Into Keywords Values ('a', '%a" + std::to_string(i) + "%b%')");
  reg_.connection()->TimeLimit(std::chrono::milliseconds(100));
  const auto error = test::errorOf([&] { (void)reg_.open(kSlow); });
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(), testing::StartsWith("The statement was interrupted."));
  reg_.connection()->TimeLimit(std::chrono::milliseconds(0));
  std::thread other([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    reg_.connection()->Interrupt();
  });
  EXPECT_RAISES(kEngineFailure, (void)reg_.open(kSlow));
  other.join();
  EXPECT_EQ(reg_.value("Select Count(*) From Keywords"), "150");
}

}  // namespace
}  // namespace kv
