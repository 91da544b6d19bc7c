// SPDX-License-Identifier: Apache-2.0
// What is left behind when a relation fails or is undone.
#include <gtest/gtest.h>

#include "support/distribution_session.h"
#include "support/engine_answers.h"

namespace kv {
namespace {

using test::Texts;

class RelationFaults : public test::DistributionSession<test::FaultySessionTest> {
 protected:
  RelationFaults() {
    for (const char* document : {"D1", "D2"}) addDocument(document);
    addManual("M1");
    putInto("M1", "D1", "1");
    for (const char* user : {"User1", "User2"}) hold(user, "D1", "M1", true, "'1'");
    own("User1", "D1");
    reg_.execute("Insert Into Routing (UserID, DocumentID, ListOrder) Values ('User1', 'D1', 10)");
  }
  std::int32_t release_ = -7;
};

TEST_F(RelationFaults, ADocumentGoesIntoAManualWithAllItsLinesOrNotAtAll) {
  std::int32_t lines = -7;
  EXPECT_EQ(leavesNothingBehind([&] {
              EXPECT_EQ(lines, -7) << "a failed one tells no number";
              vesk_->DocumentManualRelation("M1", "D2", false, lines);
            }),
            2);
  EXPECT_EQ(lines, 2);
}

TEST_F(RelationFaults, ADocumentGoesOutOfAManualWithAllItsLinesOrNotAtAll) {
  EXPECT_EQ(leavesNothingBehind([&] { vesk_->DocumentManualRelation("M1", "D1", true); }), 2);
}

TEST_F(RelationFaults, OwnersAndApproversLeaveNothingBehind) {
  EXPECT_EQ(leavesNothingBehind([&] { vesk_->OwnsRelation("D2", "User2"); }), 1);
  EXPECT_EQ(leavesNothingBehind([&] { vesk_->OwnsRelation("D1", "User1", true); }), 1);
  EXPECT_EQ(leavesNothingBehind([&] { vesk_->ApprovesRelation("D2", "User2"); }), 1);
  EXPECT_EQ(leavesNothingBehind([&] { vesk_->ApprovesRelation("D1", "User1", true); }), 1);
}

TEST_F(RelationFaults, AReleaseIsWholeOrNotThere) {
  EXPECT_EQ(leavesNothingBehind([&] {
              EXPECT_EQ(release_, -7) << "a failed one has no number";
              vesk_->DocumentUserRelation("D1", "User3", true, false, release_);
            }),
            2)
      << "added under a temporary key, then written";
  EXPECT_EQ(reg_.value("Select Max(ReleaseID) From Personals"), std::to_string(release_));
  if (test::countersGoBack()) {
    EXPECT_EQ(release_, 3) << "no number was used up";
  }
  EXPECT_EQ(leavesNothingBehind([&] { vesk_->DocumentUserRelation("", "", true, true, release_); }),
            1);
}

TEST_F(RelationFaults, AManualIsGivenAndTakenBackAsAWhole) {
  putInto("M1", "D2", "2");
  EXPECT_EQ(
      leavesNothingBehind([&] { vesk_->ManualUserRelation("M1", "User3", true, "2", false); }), 1);
  EXPECT_EQ(leavesNothingBehind([&] { vesk_->ManualUserRelation("M1", "User3", true, "2", true); }),
            1)
      << "one for all documents";
}

TEST_F(RelationFaults, WhatOneRowRefusesIsRefusedWhole) {
  const test::RawRegister raw(reg_.path());
  raw.refuse("INSERT", "Personals");
  auto before = everything();
  EXPECT_THROW(vesk_->DocumentManualRelation("M1", "D2"), Error);
  EXPECT_THROW(vesk_->ManualUserRelation("M1", "User3", true, "2", false), Error);
  EXPECT_THROW(vesk_->DocumentUserRelation("D1", "User3", true, false, release_), Error);
  raw.allowAgain("Personals");
  raw.refuse("DELETE", "Personals");
  EXPECT_THROW(vesk_->DocumentManualRelation("M1", "D1", true), Error);
  EXPECT_THROW(vesk_->ManualUserRelation("M1", "User1", true, "1", true), Error);
  EXPECT_EQ(everything(), before);
}

TEST_F(RelationFaults, InAClientsTransactionRollbackUndoesEveryRelation) {
  const auto connection = vesk_->DataServer()->Connection();
  const auto before = everything();
  connection->BeginTrans();
  vesk_->DocumentManualRelation("M1", "D2");
  vesk_->OwnsRelation("D2", "User2");
  vesk_->ApprovesRelation("D1", "User1", true);
  vesk_->DocumentUserRelation("D1", "User3", false, false, release_);
  EXPECT_RAISES(kErrorBase + 2519,
                vesk_->DocumentUserRelation("D1", "User3", false, false, release_));
  EXPECT_RAISES(kErrorBase + 2521, vesk_->ManualUserRelation("M1", "User3", true, "2", true));
  vesk_->ManualUserRelation("M1", "User3", true, "2", false);
  EXPECT_EQ(vesk_->Releases("User3", "", "", 0, 0, 0, true)->RecordCount(), 2);
  EXPECT_EQ(everything(), before) << "others see nothing of it yet";
  connection->RollbackTrans();
  EXPECT_EQ(everything(), before);
}

TEST_F(RelationFaults, ARefusalInAClientsTransactionLeavesTheRestOfIt) {
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  vesk_->OwnsRelation("D2", "User2");
  EXPECT_RAISES(kErrorBase + 2508, vesk_->OwnsRelation("D2", "User2"));
  EXPECT_RAISES(kErrorBase + 2506, vesk_->DocumentManualRelation("M1", "D1"));
  vesk_->DocumentManualRelation("M1", "D2");
  connection->CommitTrans();
  EXPECT_EQ(reg_.rows("Select DocumentID, UserID From Owners"), (Texts{"D1|User1", "D2|User2"}));
  EXPECT_EQ(contents(), (Texts{"M1|D1|1", "M1|D2|100"}));
}

}  // namespace
}  // namespace kv
