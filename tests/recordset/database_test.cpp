// SPDX-License-Identifier: Apache-2.0
// The floor below record sets: shapes, statements, transactions, faults.

#include "recordset/database.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "engine/open.h"
#include "schema/register_schema.h"
#include "support/error_check.h"
#include "support/faulty_engine.h"
#include "support/other_user.h"
#include "support/test_register.h"

namespace kv {
namespace {

class DatabaseTest : public testing::Test {
 protected:
  Database& database() { return *reg_.connection()->database(); }
  std::string titles() { return reg_.value("Select Count(*) From Documents"); }
  void add(const std::string& title) {
    database().execute("Insert Into Documents (DocumentTitle) Values ('" + title + "')");
  }
  test::TestRegister reg_;
};

TEST_F(DatabaseTest, StatementsOfOneShapeShareIt) {
  const auto a = database().prepare("Select * From Documents Where ID = 1");
  const auto b = database().prepare("Select  * From Documents Where ID=22");
  EXPECT_EQ(a.shape, b.shape);
  EXPECT_NE(a.shape, database().prepare("Select * From Documents Where ID = 1 and ID = 2").shape);
}

TEST_F(DatabaseTest, EveryStatementOfAShapeHasItsOwnValues) {
  for (int i = 1; i <= 3; ++i) add(fmt::format("T{}", i));
  const auto one = reg_.open("Select * From Documents Where ID = 1");
  const auto two = reg_.open("Select * From Documents Where ID = 2");
  one->Requery();
  EXPECT_EQ(test::shown(one->Fields("DocumentTitle")->Value()), "T1");
  EXPECT_EQ(test::shown(two->Fields("DocumentTitle")->Value()), "T2");
}

TEST_F(DatabaseTest, TheShapesKeptAreBounded) {
  add("T");
  const auto held = reg_.open("Select ID + 0, DocumentTitle From Documents");
  const auto first = database().prepare("Select ID From Documents Where ID = 1");
  for (int i = 0; i < 600; ++i) (void)reg_.open(fmt::format("Select ID As A{} From Documents", i));
  EXPECT_NE(database().prepare("Select ID From Documents Where ID = 1").shape, first.shape)
      << "the oldest went";
  held->Requery();
  EXPECT_EQ(test::rowOf(*held), "1|T") << "sets that hold one go on";
}

TEST_F(DatabaseTest, AStatementWithManyLiteralsRunsAndIsNotKept) {
  add("T");
  std::string list = "1";
  for (int i = 2; i < 2000; ++i) list += ", " + std::to_string(i);
  const std::string sql = "Select DocumentTitle From Documents Where ID In (" + list + ")";
  EXPECT_EQ(reg_.value(sql), "T");
  EXPECT_NE(database().prepare(sql).shape, database().prepare(sql).shape);
}

TEST_F(DatabaseTest, AnUncommittedTransactionIsUndone) {
  const auto before = database().stamp();
  {
    Transaction t(database(), engine::Access::Write);
    add("never");
    EXPECT_EQ(titles(), "1");
  }
  EXPECT_EQ(titles(), "0");
  EXPECT_NE(database().stamp(), before);
}

TEST_F(DatabaseTest, InnerTransactionsAreMarksInTheOuterOne) {
  Transaction outer(database(), engine::Access::Write);
  add("kept");
  {
    Transaction inner(database(), engine::Access::Write);
    add("undone");
  }
  {
    Transaction inner(database(), engine::Access::Write);
    add("kept too");
    inner.commit();
  }
  outer.commit();
  EXPECT_EQ(reg_.rows("Select DocumentTitle From Documents"),
            (std::vector<std::string>{"kept", "kept too"}));
}

TEST_F(DatabaseTest, WhatAnInnerTransactionKeptGoesWithTheOuterOne) {
  {
    Transaction outer(database(), engine::Access::Write);
    Transaction inner(database(), engine::Access::Write);
    add("T");
    inner.commit();
  }
  EXPECT_EQ(titles(), "0");
}

TEST_F(DatabaseTest, AReadTransactionSeesOneMoment) {
  const auto other = reg_.openAnother();
  std::int32_t affected = 0;
  {
    Transaction reading(database(), engine::Access::Read);
    EXPECT_EQ(titles(), "0");
    other->Execute("Insert Into Documents (DocumentTitle) Values ('x')", affected);
    EXPECT_EQ(titles(), "0");
    reading.commit();
  }
  EXPECT_EQ(titles(), "1");
}

TEST_F(DatabaseTest, WritingBelowAReadStartsAfresh) {
  const auto other = reg_.openAnother();
  std::int32_t affected = 0;
  Transaction reading(database(), engine::Access::Read);
  EXPECT_EQ(titles(), "0");
  other->Execute("Insert Into Documents (DocumentTitle) Values ('x')", affected);
  {
    Transaction writing(database(), engine::Access::Write);
    add("mine");
    writing.commit();
  }
  reading.commit();
  EXPECT_EQ(titles(), "2");
}

TEST_F(DatabaseTest, AfterClosingEverythingSaysThatThereIsNoConnection) {
  for (int i = 0; i < 3; ++i) add("T");
  const auto rs = reg_.open("Select * From Documents");
  const auto statement = database().prepare("Select * From Documents");
  rs->Fields("DocumentTitle")->Value("pending");
  const auto keep = reg_.connection()->database();
  reg_.connection()->Close();
  EXPECT_RAISES(3709, (void)keep->prepare("Select * From Documents"));
  EXPECT_RAISES(3709, rs->Update());
  rs->CancelUpdate();
  EXPECT_RAISES(3709, rs->Requery());
  EXPECT_RAISES(3709, rs->AddNew());
  EXPECT_RAISES(3709, rs->Delete());
  rs->Close();
}

TEST_F(DatabaseTest, AfterClosingNoRowThatWasReadIsShown) {
  for (int i = 0; i < 3; ++i) add("T");
  const auto keyed = reg_.open("Select * From Documents");
  const auto kept = reg_.open("Select Distinct DocumentTitle From Documents");
  const auto edited = reg_.open("Select * From Documents");
  const auto added = reg_.open("Select * From Keywords");
  edited->Fields("DocumentTitle")->Value("pending");
  added->AddNew();
  for (const auto& rs : {keyed, kept}) EXPECT_EQ(rs->Fields("DocumentTitle")->Text(), "T");
  reg_.connection()->Close();
  for (const auto& rs : {keyed, kept, edited}) {
    const auto field = rs->Fields("DocumentTitle");
    EXPECT_RAISES(3709, (void)field->Value());
    EXPECT_RAISES(3709, (void)field->Text());
    EXPECT_RAISES(3709, (void)field->IsNull());
    EXPECT_RAISES(3709, (void)field->OriginalValue());
    EXPECT_RAISES(3709, (void)field->ActualSize());
    EXPECT_RAISES(3709, field->Value("x"));
    EXPECT_RAISES(3709, rs->MoveNext());
    EXPECT_RAISES(3709, (void)rs->GetRows());
    EXPECT_EQ(field->Name(), "DocumentTitle");
  }
  EXPECT_RAISES(3709, added->Fields("Keyword")->Value("x"));
  EXPECT_RAISES(3709, added->Update());
  for (const auto& rs : {edited, added}) {
    EXPECT_RAISES(3219, rs->Close());
    rs->CancelUpdate();
  }
  for (const auto& rs : {keyed, kept, edited, added}) {
    EXPECT_NO_THROW(rs->Update()) << "nothing is pending";
    rs->Close();
  }
}

// ---- what an update checks ----

TEST_F(DatabaseTest, AnUpdateChecksEachStoredColumnOnceAndNoCounter) {
  reg_.execute("Insert Into VeskProfiles (UserID, GroupID) Values ('U1', 1)");
  add("T");
  struct Case {
    const char* sql;
    const char* assigned;
    std::vector<std::size_t> checked;  // columns of the set
  };
  const Case cases[] = {
      {"Select ID, DocumentTitle, DocumentTitle As Again, Controlled From Documents",
       "Controlled",
       {1, 3}},
      {"Select DocumentTitle, ID From Documents", "DocumentTitle", {0}},
      {"Select WorkGroupID, UserID, GroupID From VeskProfiles", "UserID", {0, 1}}};
  for (const auto& c : cases) {
    const auto rs = reg_.open(c.sql);
    rs->Fields(c.assigned)->Value(1);
    rs->Update();
    const auto shape = database().prepare(c.sql).shape;
    ASSERT_EQ(shape->updates.size(), 1U) << c.sql;
    std::vector<std::size_t> checked;
    for (const auto& check : shape->updates[0].check) checked.push_back(check.column);
    EXPECT_EQ(checked, c.checked) << c.sql;
  }
}

// ---- faults ----

class Faults : public testing::Test {
 protected:
  Faults() : faults_(std::make_shared<test::Faults>()) {
    for (int i = 0; i < 3; ++i)
      reg_.execute(fmt::format("Insert Into Documents (DocumentTitle) Values ('T{}')", i));
    database_ = std::make_shared<Database>(
        std::make_unique<test::FaultyEngine>(engine::open({.location = reg_.path()}), faults_),
        std::make_shared<const Catalog>(registerTables()));
  }
  Ref<Recordset> open(const std::string& sql) {
    return Recordset::open(database_, database_->prepare(sql));
  }
  std::string titles() {
    std::string out;
    for (const auto& row : reg_.rows("Select DocumentTitle From Documents")) out += row + " ";
    return out;
  }
  test::TestRegister reg_;
  std::shared_ptr<test::Faults> faults_;
  std::shared_ptr<Database> database_;
};

TEST_F(Faults, AFullDiskLeavesTheEditPending) {
  const auto rs = open("Select * From Documents");
  rs->Fields("DocumentTitle")->Value("new");
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, rs->Update());
  EXPECT_EQ(rs->EditMode(), kEditInProgress);
  EXPECT_EQ(titles(), "T0 T1 T2 ");
  rs->Update();
  EXPECT_EQ(titles(), "new T1 T2 ") << "and can be saved when there is room again";
}

TEST_F(Faults, AFullDiskLeavesTheAdditionPending) {
  const auto rs = open("Select * From Documents");
  rs->AddNew();
  rs->Fields("DocumentTitle")->Value("new");
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, rs->Update());
  EXPECT_EQ(rs->EditMode(), kEditAdd);
  EXPECT_RAISES(3219, rs->Close());
  rs->Update();
  EXPECT_EQ(titles(), "T0 T1 T2 new ");
}

TEST_F(Faults, AnAdditionThatGetsNoCounterNeverBegan) {
  const auto rs = open("Select * From Documents");
  rs->MoveNext();
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, rs->AddNew());
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->AbsolutePosition(), 2);
}

TEST_F(Faults, AFailedDeleteLeavesTheRow) {
  const auto rs = open("Select * From Documents");
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, rs->Delete());
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(test::shown(rs->Fields("DocumentTitle")->Value()), "T0");
}

TEST_F(Faults, ACommitThatFailsKeepsNothing) {
  faults_->failCommitAfter = 0;
  {
    Transaction t(*database_, engine::Access::Write);
    database_->execute("Delete * From Documents");
    EXPECT_RAISES(kEngineFailure, t.commit());
  }
  EXPECT_EQ(titles(), "T0 T1 T2 ");
  database_->execute("Delete * From Documents Where ID = 1");
  EXPECT_EQ(titles(), "T1 T2 ") << "the connection goes on";
}

TEST_F(Faults, AProcessKilledInATransactionLeavesNothingOfIt) {
  (void)test::inOtherProcess([&]() -> std::string {
    const auto connection = kvConnection::open(reg_.path());
    connection->BeginTrans();
    std::int32_t affected = 0;
    connection->Execute("Delete * From Documents", affected);
    _exit(9);
  });
  EXPECT_EQ(titles(), "T0 T1 T2 ");
}

TEST_F(Faults, ManyProcessesWritingAtOnceLoseNothing) {
  constexpr int kEach = 25;
  const auto answers = test::inProcesses(4, [&](int) {
    const auto connection = kvConnection::open(reg_.path());
    const auto rs = connection->OpenRecordset("Select * From Keywords");
    for (int i = 0; i < kEach; ++i) {
      rs->AddNew();
      rs->Fields("Keyword")->Value(fmt::format("{}", i));
      rs->Update();
    }
    return std::string("done");
  });
  EXPECT_THAT(answers, testing::Each("done"));
  EXPECT_EQ(reg_.value("Select Count(*) From Keywords"), std::to_string(4 * kEach));
}

}  // namespace
}  // namespace kv
