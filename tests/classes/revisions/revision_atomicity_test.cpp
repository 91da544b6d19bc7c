// SPDX-License-Identifier: Apache-2.0
// What is left behind when an operation on revisions fails, is undone, or meets another one.
#include <gtest/gtest.h>

#include "classes/revisions/revision_session.h"
#include "common/clock.h"
#include "support/engine_answers.h"
#include "support/other_user.h"
#include "support/scale.h"

namespace kv {
namespace {

using test::at;
using test::LoadedRevision;
using test::Texts;

std::int32_t add(clsVeskRevision& revision, const std::string& level = "B") {
  return revision.Add("D1", level, "one", "two", "change", "shelf", true, "User7", "3/9/2001");
}

class RevisionFaults : public test::RevisionSession<test::FaultySessionTest> {};

TEST_F(RevisionFaults, AddLeavesNothingBehind) {
  EXPECT_EQ(leavesNothingBehind([&] { add(revision()); }), 2);
  if (test::countersGoBack()) {
    EXPECT_EQ(reg_.value("Select RevisionID From Revisions"), "1") << "no number was used up";
  }
}

TEST_F(RevisionFaults, SaveDataLeavesNothingBehind) {
  const std::int32_t id = addRevision(1);
  EXPECT_EQ(leavesNothingBehind([&] { revision().SaveData(id, "C", "", "", "", ""); }), 1);
}

TEST_F(RevisionFaults, SetUsersRevisionToPassesErrorsOn) {
  reg_.execute("Insert Into Personals (UserID, RevisionID) Values ('User1', 1)");
  const auto before = everything();
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, revision().SetUsersRevisionTo("1", "2"));
  EXPECT_EQ(everything(), before);
}

TEST_F(RevisionFaults, DeleteRevisionSaysFalse) {
  const std::int32_t id = addRevision(1);
  const auto before = everything();
  faults_->failWriteAfter = 0;
  EXPECT_FALSE(revision().DeleteRevision(id));
  EXPECT_EQ(everything(), before);
  EXPECT_TRUE(revision().DeleteRevision(id));
}

TEST_F(RevisionFaults, InAClientsTransactionRollbackUndoesEveryOperation) {
  const std::int32_t id = addRevision(1);
  const std::int32_t other = addRevision(2);
  reg_.execute("Insert Into Personals (UserID, RevisionID) Values ('User1', 1)");
  const auto before = everything();
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  const std::int32_t added = add(revision());
  revision().SaveData(id, "C", "", "", "", "");
  EXPECT_TRUE(revision().DeleteRevision(other));
  revision().SetUsersRevisionTo("1", "2");
  EXPECT_EQ(revision().GetRevRS(added)->RecordCount(), 1);
  EXPECT_EQ(revision().GetRevRS(other)->RecordCount(), 0);
  EXPECT_EQ(everything(), before) << "others see nothing of it yet";
  connection->RollbackTrans();
  EXPECT_EQ(everything(), before);
}

TEST_F(RevisionFaults, AFailedAdditionInAClientsTransactionIsUndoneByItself) {
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  add(revision(), "kept");
  EXPECT_RAISES(kWrongType, revision().Add("D1", "B", "", "", "", "", true, "User7", "soon"));
  connection->CommitTrans();
  EXPECT_EQ(reg_.rows("Select RevisionLevel From Revisions"), Texts{"kept"});
}

class TwoRevisionSessions : public test::RevisionSession<test::SessionTest> {
 protected:
  TwoRevisionSessions() {
    logIn("Anna");
    other_->Login("Bert", "secret", reg_.path());
  }
  test::TestSession other_;
};

TEST_F(TwoRevisionSessions, TheSlowerOneIsTold) {
  const std::int32_t id = addRevision(2);
  const auto mine = revision().GetRevRS(id);
  EXPECT_EQ(mine->Fields("RevisionLevel")->Value(), Variant("B"));
  other_->Revision()->SaveData(id, "theirs", "", "", "", "");
  mine->Fields("RevisionLevel")->Value("mine");
  EXPECT_RAISES(kRowChanged, mine->Update());
  EXPECT_EQ(mine->Fields("RevisionLevel")->Value(), Variant("mine")) << "and loses nothing";
  mine->CancelUpdate();
  EXPECT_EQ(reg_.value("Select RevisionLevel From Revisions"), "theirs");
}

TEST_F(TwoRevisionSessions, ProcessesAddingForOneUserGetARevisionEach) {
  constexpr int kProcesses = 3;
  const int each = test::steps(50);
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    // One moment for all, so that every temporary key is the same.
    const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
    const auto vesk = clsVesk::create(test::kCheapPasswords);
    vesk->Login("Bert", "secret", reg_.path());
    std::string wrong;
    for (int i = 0; i < each; ++i) {
      const std::string level = fmt::format("{}.{}", p, i);
      const std::int32_t id = add(*vesk->Revision(), level);
      LoadedRevision loaded;
      if (!loaded.from(*vesk->Revision(), id) || loaded.level != level) wrong += level + " ";
    }
    vesk->CloseSession();
    return "done " + wrong;
  });
  EXPECT_THAT(answers, testing::Each("done "));
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions"), std::to_string(kProcesses * each));
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions Where RevisionLevel Like 'User7%'"), "0")
      << "no temporary key is left";
}

}  // namespace
}  // namespace kv
