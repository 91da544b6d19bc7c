// SPDX-License-Identifier: Apache-2.0
// What record sets show after something was undone or could not be done: transactions rolled back,
// commits and readings that failed.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "engine/open.h"
#include "recordset/database.h"
#include "schema/register_schema.h"
#include "support/error_check.h"
#include "support/faulty_engine.h"
#include "support/test_register.h"

namespace kv {
namespace {

using Names = std::vector<std::string>;

// Manuals named M1 to Mn on a connection that can be told to fail.
class Undone : public testing::Test {
 protected:
  Undone()
      : faults_(std::make_shared<test::Faults>()),
        database_(std::make_shared<Database>(
            std::make_unique<test::FaultyEngine>(engine::open({.location = reg_.path()}), faults_),
            std::make_shared<const Catalog>(registerTables()))),
        connection_(makeRef<kvConnection>(reg_.path(), database_)) {}
  ~Undone() override { connection_->Close(); }

  void fill(int count) {
    reg_.connection()->BeginTrans();
    for (int i = 1; i <= count; ++i)
      reg_.execute(
          fmt::format("Insert Into Manuals (ManualName, ManUser1) Values ('M{0}', '{0}')", i));
    reg_.connection()->CommitTrans();
  }
  Ref<Recordset> open(const std::string& sql = "Select * From Manuals Order By ID") {
    return connection_->OpenRecordset(sql);
  }
  static std::string name(const Ref<Recordset>& rs) {
    return test::shown(rs->Fields("ManualName")->Value());
  }
  static Names namesOf(const Ref<Recordset>& rs) {
    Names out;
    const auto all = rs->Clone();
    for (; !all->Eof(); all->MoveNext()) out.push_back(name(all));
    return out;
  }
  [[nodiscard]] Names stored() const {
    return reg_.rows("Select ManualName From Manuals Order By ID");
  }
  static void add(const Ref<Recordset>& rs, const char* manual) {
    rs->AddNew();
    rs->Fields("ManualName")->Value(manual);
    rs->Update();
  }

  test::TestRegister reg_;
  std::shared_ptr<test::Faults> faults_;
  std::shared_ptr<Database> database_;
  Ref<kvConnection> connection_;
};

// ---- deletions ----

TEST_F(Undone, RowsWhoseDeletionWasRolledBackComeBack) {
  fill(3);
  const auto rs = open();
  const auto clone = rs->Clone();
  connection_->BeginTrans();
  rs->MoveNext();
  rs->Delete();
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(clone->RecordCount(), 2);
  connection_->RollbackTrans();
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(clone->RecordCount(), 3);
  EXPECT_EQ(name(rs), "M2") << "where it stood before";
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  EXPECT_EQ(namesOf(rs), (Names{"M1", "M2", "M3"}));
  rs->Delete();
  EXPECT_EQ(stored(), (Names{"M1", "M3"})) << "and can be deleted again";
  EXPECT_EQ(rs->RecordCount(), 2);
}

TEST_F(Undone, WholeSetsComeBack) {
  for (const int rows : {3, 250}) {
    fill(rows);
    const auto rs = open();
    connection_->BeginTrans();
    rs->DeleteAll();
    EXPECT_EQ(rs->RecordCount(), 0);
    connection_->RollbackTrans();
    EXPECT_EQ(rs->RecordCount(), rows);
    EXPECT_EQ(namesOf(rs), stored());
    rs->DeleteAll();
  }
}

TEST_F(Undone, OnlyWhatWasRolledBackComesBack) {
  fill(5);
  const auto rs = open();
  rs->Delete();  // M1, outside
  connection_->BeginTrans();
  rs->MoveNext();
  rs->Delete();  // M2, in the outer one
  connection_->BeginTrans();
  rs->MoveNext();
  rs->Delete();  // M3, in the inner one
  connection_->RollbackTrans();
  EXPECT_EQ(namesOf(rs), (Names{"M3", "M4", "M5"}));
  connection_->BeginTrans();
  rs->MoveLast();
  rs->Delete();  // M5, in an inner one that is kept
  connection_->CommitTrans();
  EXPECT_EQ(namesOf(rs), (Names{"M3", "M4"}));
  connection_->CommitTrans();
  connection_->BeginTrans();
  connection_->RollbackTrans();
  EXPECT_EQ(namesOf(rs), (Names{"M3", "M4"})) << "a later one has nothing to do with them";
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(stored(), (Names{"M3", "M4"}));
}

TEST_F(Undone, WhatAnInnerTransactionKeptComesBackWithTheOuterOne) {
  fill(3);
  const auto rs = open();
  connection_->BeginTrans();
  connection_->BeginTrans();
  rs->Delete();
  connection_->CommitTrans();
  rs->MoveNext();
  rs->Delete();
  connection_->RollbackTrans();
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(namesOf(rs), (Names{"M1", "M2", "M3"}));
}

TEST_F(Undone, ACommitThatFailsGivesTheRowsBack) {
  fill(3);
  const auto rs = open();
  connection_->BeginTrans();
  rs->Delete();
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, connection_->CommitTrans());
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(namesOf(rs), (Names{"M1", "M2", "M3"}));
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, rs->DeleteAll());
  EXPECT_EQ(namesOf(rs), (Names{"M1", "M2", "M3"}));
}

TEST_F(Undone, RowsComeBackUnderAFilterToo) {
  fill(4);
  const auto rs = open();
  rs->Filter("ManUser1 <> '1'");
  rs->Sort("ManUser1 DESC");
  connection_->BeginTrans();
  rs->Delete();
  EXPECT_EQ(rs->RecordCount(), 2);
  connection_->RollbackTrans();
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(name(rs), "M4");
}

TEST_F(Undone, RowsOfASetThatWasRequeriedMeanwhileDoNot) {
  fill(3);
  const auto rs = open();
  connection_->BeginTrans();
  rs->Delete();
  rs->Requery();
  rs->MoveLast();
  rs->Delete();
  connection_->RollbackTrans();
  EXPECT_EQ(namesOf(rs), (Names{"M2", "M3"})) << "membership is fixed by the Requery";
  EXPECT_EQ(rs->RecordCount(), 2);
}

TEST_F(Undone, ASetThatIsGoneIsNotMissed) {
  fill(2);
  connection_->BeginTrans();
  open()->Delete();
  connection_->RollbackTrans();
  EXPECT_EQ(stored(), (Names{"M1", "M2"}));
}

TEST_F(Undone, ClosingTheConnectionRollsBack) {
  fill(2);
  const auto rs = open();
  connection_->BeginTrans();
  rs->Delete();
  connection_->Close();
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(stored(), (Names{"M1", "M2"}));
}

// ---- additions ----

TEST_F(Undone, AnAdditionThatWasRolledBackIsNotCountedAndNotShown) {
  fill(2);
  const auto rs = open();
  connection_->BeginTrans();
  add(rs, "never");
  EXPECT_EQ(rs->RecordCount(), 3);
  connection_->RollbackTrans();
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_RAISES(-2147217885, (void)name(rs)) << "it is no row that this set has deleted";
  EXPECT_EQ(namesOf(rs), (Names{"M1", "M2"}));
  rs->MoveLast();
  EXPECT_EQ(name(rs), "M2");
  add(rs, "M3");
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(namesOf(rs), (Names{"M1", "M2", "M3"}));
}

TEST_F(Undone, AnAdditionThatWasDeletedAgainStaysAway) {
  fill(1);
  const auto rs = open();
  connection_->BeginTrans();
  add(rs, "never");
  rs->Delete();
  connection_->RollbackTrans();
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(namesOf(rs), Names{"M1"});
}

// ---- Requery, filters and orders that fail ----

class FailedReading : public Undone, public testing::WithParamInterface<int> {
 protected:
  struct Look {
    std::int32_t count;
    std::int32_t position;
    std::string current;
    Names names;
    std::string filter;
    std::string sort;
    bool operator==(const Look&) const = default;
  };
  static Look lookOf(const Ref<Recordset>& rs) {
    Look out{rs->RecordCount(), rs->AbsolutePosition(), name(rs), {}, rs->Filter(), rs->Sort()};
    const Variant here = rs->Bookmark();
    for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) out.names.push_back(name(rs));
    rs->Bookmark(here);
    return out;
  }
  // Lets each reading of an operation fail once, the set being looked at after each; returns how
  // many there were.
  int failEachReadingOf(const std::function<void()>& operation, const Ref<Recordset>& rs,
                        const Look& before) {
    for (int reads = 0;; ++reads) {
      database_->wrote();  // so that every row is read again
      faults_->failReadAfter = reads;
      const auto number = test::numberOf(operation);
      const bool failed = faults_->failReadAfter < 0;
      faults_->failReadAfter = -1;
      if (!failed) {
        EXPECT_EQ(number, 0);
        return reads;
      }
      EXPECT_EQ(number, kEngineFailure) << reads;
      const Look now = lookOf(rs);
      EXPECT_TRUE(now == before) << reads << ": " << now.count << " rows, at " << now.position
                                 << ", " << now.current;
    }
  }
};

TEST_P(FailedReading, ARequeryThatFailsLeavesTheSetAsItWas) {
  for (const bool filtered : {false, true}) {
    reg_.execute("Delete * From Manuals");
    fill(GetParam());
    const auto rs = open();
    if (filtered) {
      rs->Filter("ManUser1 <> '2'");
      rs->Sort("ManUser1 DESC");
    }
    const auto clone = rs->Clone();
    rs->Delete();
    rs->MoveNext();
    clone->MoveLast();
    const Variant here = rs->Bookmark();
    const Look before = lookOf(rs);
    const Look cloned = lookOf(clone);
    reg_.execute("Insert Into Manuals (ManualName, ManUser1) Values ('M0', '0')");
    const int reads = failEachReadingOf(
        [&] {
          try {
            rs->Requery();
          } catch (...) {
            EXPECT_TRUE(lookOf(clone) == cloned);
            rs->Bookmark(here);
            throw;
          }
        },
        rs, before);
    EXPECT_GE(reads, 1);
    EXPECT_RAISES(3001, rs->Bookmark(here));
    EXPECT_EQ(rs->RecordCount(), before.count + 1);
    EXPECT_EQ(clone->RecordCount(), cloned.count + 1);
  }
}

TEST_P(FailedReading, AfterAFailedRequeryNoPlaceMeansAnotherRow) {
  fill(GetParam());
  const auto rs = open();
  reg_.execute("Delete * From Manuals Where ManualName = 'M1'");
  faults_->failReadAfter = 0;
  EXPECT_RAISES(kEngineFailure, rs->Requery());
  add(rs, "new");
  EXPECT_EQ(name(rs), "new");
  rs->MoveNext();
  EXPECT_TRUE(rs->Eof()) << "the addition is the last one";
  rs->MoveFirst();
  EXPECT_RAISES(-2147217885, rs->Delete()) << "the first row is M1, which somebody has deleted";
  rs->MoveNext();
  EXPECT_EQ(name(rs), "M2");
  rs->Delete();
  EXPECT_EQ(reg_.value("Select Count(*) From Manuals Where ManualName In ('M2', 'new')"), "1");
  EXPECT_EQ(reg_.value("Select Count(*) From Manuals"), std::to_string(GetParam() - 1));
}

TEST_P(FailedReading, AFilterOrAnOrderThatFailsLeavesTheRowsShown) {
  fill(GetParam());
  const auto rs = open();
  rs->Filter("ManUser1 <> '2'");
  rs->Sort("ManUser1 DESC");
  rs->MoveNext();
  const Look before = lookOf(rs);
  EXPECT_GE(failEachReadingOf([&] { rs->Filter("ManUser1 <> '3'"); }, rs, before), 1);
  rs->Filter("ManUser1 <> '2'");
  rs->MoveNext();
  EXPECT_GE(failEachReadingOf([&] { rs->Sort("ManUser1"); }, rs, before), 1);
  rs->Filter("");
  rs->Sort("");
  rs->MoveNext();
  const Look plain = lookOf(rs);
  EXPECT_GE(failEachReadingOf([&] { rs->Sort("ManUser1 DESC"); }, rs, plain), 1);
}

TEST_P(FailedReading, AnArrangementThatFailsLeavesTheRowsShown) {
  fill(GetParam());
  const auto rs = open();
  rs->MoveNext();
  const Look before = lookOf(rs);
  const auto arrange = [&] { rs->arrange("ManualName", {"m3", "m2"}); };
  EXPECT_GE(failEachReadingOf(arrange, rs, before), 1);
  EXPECT_EQ(name(rs), "M3");
}

// A clone that cannot read what it needs to follow its original tries again at its next use.
TEST_P(FailedReading, ACloneFollowsWhenItCan) {
  fill(GetParam());
  const auto rs = open();
  const auto clone = rs->Clone();
  clone->Filter("ManUser1 <> '2'");
  reg_.execute("Insert Into Manuals (ManualName, ManUser1) Values ('M0', '0')");
  rs->Requery();
  faults_->failReadAfter = 0;
  EXPECT_RAISES(kEngineFailure, (void)clone->RecordCount());
  EXPECT_EQ(clone->RecordCount(), GetParam());
}

// Within what is read at once, and more than that.
INSTANTIATE_TEST_SUITE_P(Sizes, FailedReading, testing::Values(4, 300));

}  // namespace
}  // namespace kv
