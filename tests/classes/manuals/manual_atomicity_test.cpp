// SPDX-License-Identifier: Apache-2.0
// What is left behind when an operation on manuals fails, is undone, or meets another one.
#include <gtest/gtest.h>

#include "classes/manuals/manual_session.h"
#include "support/engine_answers.h"

namespace kv {
namespace {

using test::LoadedManual;
using test::Texts;

class ManualFaults : public test::ManualSession<test::FaultySessionTest> {
 protected:
  ManualFaults() {
    for (const char* id : {"M1", "M2"}) {
      addManual(id);
      addContents(id, "D1", 1);
      addContents(id, "D2", 2);
    }
  }
  std::string add(const Ref<Recordset>& rs = {}) {
    return manual().Add("new", "1", "2", "3", "4", "notes", rs);
  }
};

TEST_F(ManualFaults, AddLeavesNothingBehind) {
  EXPECT_EQ(leavesNothingBehind([&] { add(); }), 1);
  if (test::countersGoBack()) {
    EXPECT_EQ(reg_.value("Select Max(ID) From Manuals"), "3") << "no number was used up";
  }
}

TEST_F(ManualFaults, AddTakesItsAdditionBackFromACallersSet) {
  const auto rs = all();
  rs->MoveLast();
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, add(rs));
  faults_->failWriteAfter = -1;
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields("ManualID")->Value(), Variant("M2")) << "it stands where it stood";
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, add(rs));
  EXPECT_RAISES(kRowDeleted, (void)rs->Fields("ManualID")->Value());
  add(rs);
  EXPECT_EQ(reg_.value("Select Count(*) From Manuals"), "3");
}

TEST_F(ManualFaults, AddWithASetThatLacksAColumnTakesItsAdditionBack) {
  const auto before = everything();
  const auto rs = manual().Records(0, "", "Select ID, ManualID From Manuals Order By ID");
  EXPECT_RAISES(kNoSuchItem, add(rs));
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(everything(), before);
}

TEST_F(ManualFaults, SaveDataLeavesNothingBehind) {
  EXPECT_EQ(leavesNothingBehind([&] { save("M1", "new"); }), 1);
}

TEST_F(ManualFaults, SaveDataIntoACallersSetLeavesTheEditToTheCaller) {
  const auto rs = all();
  const auto before = everything();
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, save("M2", "new", rs));
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(rs->EditMode(), kEditInProgress);
  EXPECT_EQ(rs->Fields("ManualName")->Value(), Variant("new name")) << "nothing is lost";
  rs->Update();
  EXPECT_EQ(row("M2").substr(0, 8), "new name");
}

TEST_F(ManualFaults, AnEditThatFailsHalfWayIsTakenBack) {
  const auto names = [&] { return reg_.rows("Select ManualName From Manuals Order By ID"); };
  const std::string tooLong(300, 'x');
  const auto rs = all();
  rs->MoveLast();
  rs->Fields("ManualName")->Value("pending");
  EXPECT_RAISES(kWrongType, manual().SaveData("M1", "half", "", "", "", tooLong, "", rs));
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->Fields("ManualName")->Value(), Variant("Name"));
  rs->MoveNext();
  EXPECT_EQ(names(), (Texts{"Name", "pending"})) << "what the caller had pending is saved";
  const auto narrow = manual().Records(0, "", "Select ID, ManualID, ManualName From Manuals");
  EXPECT_RAISES(kNoSuchItem, manual().SaveData("M1", "half", "", "", "", "", "", narrow));
  EXPECT_EQ(narrow->EditMode(), kEditNone);
  narrow->MoveNext();
  EXPECT_EQ(names(), (Texts{"Name", "pending"}));
}

TEST_F(ManualFaults, NewQueryLeavesNothingBehind) {
  EXPECT_EQ(leavesNothingBehind([&] { (void)manual().NewQuery(); }), 1);
}

TEST_F(ManualFaults, DeleteKeepsTheStepsBeforeTheOneThatFails) {
  const char* expected[] = {"122", "022", "002"};
  for (const bool fromSet : {false, true})
    for (int steps = 0; steps < 3; ++steps) {
      manual().Delete("M1");
      addManual("M1");
      addContents("M1", "D1", 1);
      addContents("M1", "D2", 2);
      const auto rs = fromSet ? all() : Ref<Recordset>();
      faults_->failWriteAfter = steps;
      EXPECT_RAISES(kEngineFailure, manual().Delete("M1", rs));
      faults_->failWriteAfter = -1;
      EXPECT_EQ(rowsOfManual("M1"), expected[steps]) << steps << fromSet;
    }
  EXPECT_EQ(rowsOfManual("M2"), "122");
  manual().Delete("M1");
  EXPECT_EQ(rowsOfManual("M1"), "000");
}

TEST_F(ManualFaults, DeleteWhoseCommitFailsKeepsNothing) {
  const auto before = everything();
  const auto rs = all();
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, manual().Delete("M1", rs));
  EXPECT_EQ(everything(), before);
}

TEST_F(ManualFaults, WhatTheCallerHadPendingIsSavedAlthoughTheOperationFails) {
  const auto names = [&] { return reg_.rows("Select ManualName From Manuals Order By ID"); };
  const auto rs = all();
  rs->Fields("ManualName")->Value("pending");
  EXPECT_RAISES(kErrorBase + 2704, save("M9", "new", rs));
  EXPECT_EQ(names(), (Texts{"pending", "Name"}));
  rs->MoveLast();
  rs->Fields("ManualName")->Value("pending too");
  faults_->failWriteAfter = 1;
  EXPECT_RAISES(kEngineFailure, add(rs));
  faults_->failWriteAfter = -1;
  EXPECT_EQ(names(), (Texts{"pending", "pending too"}));
  rs->MoveFirst();
  rs->Fields("ManualName")->Value("once more");
  faults_->failWriteAfter = 1;
  EXPECT_RAISES(kEngineFailure, manual().Delete("M2", rs));
  faults_->failWriteAfter = -1;
  EXPECT_EQ(names(), (Texts{"once more", "pending too"}));
}

// ---- inside a transaction of the client's ----

class ManualsInTransaction : public test::ManualSession<test::SessionTest> {
 protected:
  ManualsInTransaction() {
    logIn("Anna");
    for (const char* id : {"M1", "M2"}) {
      addManual(id);
      addContents(id, "D1", 1);
    }
  }
  kvConnection& connection() { return *vesk_->DataServer()->Connection(); }
};

TEST_F(ManualsInTransaction, RollbackUndoesEveryOperation) {
  const auto before = everything();
  const auto rs = all();
  connection().BeginTrans();
  const std::string id = manual().Add("new", "", "", "", "", "");
  save("M1", "saved", rs);
  manual().Delete("M2");
  (void)manual().NewQuery();
  EXPECT_EQ(manual().Value(id, "ManualName"), Variant("new"));
  EXPECT_EQ(manual().Record("M2")->RecordCount(), 0);
  EXPECT_EQ(everything(), before) << "others see nothing of it yet";
  connection().RollbackTrans();
  EXPECT_EQ(everything(), before);
  rs->MoveFirst();
  EXPECT_EQ(rs->Fields("ManualName")->Value(), Variant("Name"));
}

TEST_F(ManualsInTransaction, AFailedDeletionKeepsItsStepsToo) {
  test::RawRegister(reg_.path()).refuse("DELETE", "Personals");
  connection().BeginTrans();
  EXPECT_THROW(manual().Delete("M2"), Error);
  save("M1", "saved");
  connection().CommitTrans();
  EXPECT_EQ(rowsOfManual("M2"), "001");
  EXPECT_EQ(row("M1").substr(0, 10), "saved name");
}

// ---- two at once ----

TEST_F(ManualsInTransaction, TheSlowerOneIsToldAndLosesNothing) {
  test::TestSession other;
  other->Login("Bert", "secret", reg_.path());
  const auto mine = all();
  LoadedManual loaded;
  loaded.from(manual(), "M1", mine);
  other->Manual()->SaveData("M1", "theirs", "", "", "", "", "");
  EXPECT_RAISES(kRowChanged, save("M1", "mine", mine));
  EXPECT_EQ(mine->Fields("ManualName")->Value(), Variant("mine name")) << "nothing is lost";
  mine->CancelUpdate();
  EXPECT_EQ(reg_.value("Select ManualName From Manuals Where ManualID = 'M1'"), "theirs");
  other->Manual()->Delete("M1");
  EXPECT_RAISES(kErrorBase + 2704, save("M1", "mine", mine)) << "a search passes over it";
  EXPECT_RAISES(kErrorBase + 2706, save("M1", "mine"));
}

}  // namespace
}  // namespace kv
