// SPDX-License-Identifier: Apache-2.0
// Approvals when something is not as it should be: people and revisions that are gone, turns that
// are nobody's, and somebody else who decides in between.
#include <gtest/gtest.h>

#include "classes/revisions/approval_session.h"

namespace kv {
namespace {

using test::Texts;

const char* const kInOrder = "00000011010";
const char* const kAnyOrder = "00000011000";

class ApprovalTrouble : public test::ApprovalSession<test::SessionTest> {
 protected:
  ApprovalTrouble() {
    logIn("Anna");
    other_->Login("Bert", "secret", reg_.path());
  }
  [[nodiscard]] clsVeskRevision& theirs() { return *other_->Revision(); }
  // The other session's decision, saved.
  void decideThere(std::int32_t id, const std::string& approver, bool approved = true) {
    const auto rs = theirs().GetRevRS(id);
    const auto list = theirs().GetRevApprovalList(id);
    EXPECT_TRUE(approved ? theirs().ApproveRevision(rs, "User2", approver, list, false)
                         : theirs().RejectRevision(rs, "User2", approver, list, false));
    rs->Update();
  }
  // Each approver and his decision.
  [[nodiscard]] Texts decisions(std::int32_t id) const {
    return reg_.rows("Select UserID, ApprovalStatus From ApprovalRouting Where RevID = " +
                     std::to_string(id) + " Order By ListOrder");
  }

  test::TestSession other_;
};

// ---- people who are gone ----

TEST_F(ApprovalTrouble, AnApproverWithoutARowIsAskedWithoutAName) {
  for (const char* text : {kInOrder, kAnyOrder}) {
    options(text);
    reg_.execute("Delete * From Actions");
    const std::int32_t id = addRevision(2, "RevisionLevel = 'B', ResponsibleID = 'gone'");
    reg_.execute("Delete * From Routing");
    reg_.execute("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('D1', 'TBD', 1)");
    reg_.execute("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('D1', 'left', 2)");
    auto rs = revision().GetRevRS(id);
    revision().RouteForApproval(rs, true);
    rs->Update();
    EXPECT_EQ(revision().RevStatusDescription(rs), "Awaiting Approval from ");
    EXPECT_TRUE(theirs().CanApprove("TBD", id, "TBD")) << "it is his turn all the same";
    EXPECT_FALSE(theirs().CanApprove("left", id, "left"));
    EXPECT_TRUE(revision().ApproveRevision(rs, "TBD", "TBD", listOf(id)));
    rs->Update();
    EXPECT_TRUE(revision().RejectRevision(rs, "User1", "left", listOf(id)));
    rs->Update();
    EXPECT_EQ(states(id), "2|5");
    EXPECT_EQ(reg_.rows("Select AssigneeID, Assignee, Subject From Actions Order By ActionID"),
              (Texts{"TBD|~|Your approval is required", "left|~|Your Approval is required.",
                     "gone|~|A revision has been rejected."}));
  }
}

TEST_F(ApprovalTrouble, AHolderWithoutARowIsNotTold) {
  options("00010101000");
  const std::int32_t id = addRevision(4);
  Ref<Recordset> documents;
  reg_.execute(
      "Insert Into Personals (UserID, DocumentID, ManualID, HardCopy) Values "
      "('TBD', 'D1', '0', 0)");
  revision().SetAsCurrentRevision(revision().GetRevRS(id), documents, true);
  EXPECT_EQ(tasks(), Texts{}) << "nobody is left to be told";
  reg_.execute(
      "Insert Into Personals (UserID, DocumentID, ManualID, HardCopy) Values "
      "('User4', 'D1', '0', 0)");
  documents = nullptr;
  revision().SetAsCurrentRevision(revision().GetRevRS(id), documents, true);
  EXPECT_EQ(tasks(), Texts{"User4|Pump manual has been updated."});
}

// ---- revisions that are gone ----

TEST_F(ApprovalTrouble, ARevisionDeletedMeanwhileIsNotDecidedAbout) {
  addToList(2, 1);
  const std::function<void(const Ref<Recordset>&, const Ref<Recordset>&)> operations[] = {
      [&](const auto& rs, const auto&) { revision().RouteForApproval(rs, true); },
      [&](const auto& rs, const auto& list) {
        revision().ApproveRevision(rs, "User2", "User2", list);
      },
      [&](const auto& rs, const auto& list) {
        revision().RejectRevision(rs, "User2", "User2", list);
      }};
  for (const char* text : {kInOrder, kAnyOrder}) {
    options(text);
    int which = 0;
    for (const auto& operation : operations) {
      SCOPED_TRACE(fmt::format("operation {} with {}", which++, text));
      const std::int32_t id = awaiting("000");
      const auto rs = revision().GetRevRS(id);
      const auto list = listOf(id);
      EXPECT_EQ(statesIn(rs), "1|3") << "read";
      EXPECT_TRUE(theirs().DeleteRevision(id));
      const auto before = everything();
      EXPECT_RAISES(kRowDeleted, operation(rs, list));
      EXPECT_EQ(decisions(id), (Texts{"User2|0", "User3|0", "User4|0"}));
      EXPECT_EQ(tasks(), Texts{});
      EXPECT_TRUE(everything() == before);
    }
  }
}

TEST_F(ApprovalTrouble, ARevisionDeletedMeanwhileIsNotPutInForce) {
  const std::int32_t old = addRevision(1);
  const std::int32_t id = addRevision(4);
  const auto rs = revision().GetRevRS(id);
  EXPECT_EQ(statesIn(rs), "0|4") << "read";
  EXPECT_TRUE(theirs().DeleteRevision(id));
  const auto before = everything();
  Ref<Recordset> documents;
  EXPECT_RAISES(kRowDeleted, revision().SetAsCurrentRevision(rs, documents, true));
  EXPECT_TRUE(everything() == before) << old << " is still in force";
}

// ---- turns that are nobody's ----

TEST_F(ApprovalTrouble, ATurnBehindTheLastIsPutRight) {
  options(kInOrder);
  for (const int turn : {0, -1, 4, 32767}) {
    SCOPED_TRACE(turn);
    const std::int32_t id = awaiting("100", turn);
    const auto before = everything();
    auto rs = revision().GetRevRS(id);
    EXPECT_RAISES(kNoCurrentRow, revision().ApproveRevision(rs, "User3", "User3", listOf(id)));
    EXPECT_RAISES(kNoCurrentRow, revision().RejectRevision(rs, "User3", "User3", listOf(id)));
    EXPECT_RAISES(kNoCurrentRow, (void)theirs().CanApprove("User3", id, "User3"));
    EXPECT_RAISES(kNoCurrentRow, (void)revision().RevStatusDescription(rs));
    EXPECT_EQ(rs->EditMode(), kEditNone);
    EXPECT_TRUE(everything() == before);
    revision().NotifyNextapprover(rs, listOf(id), false);
    rs->Update();
    EXPECT_EQ(states(id), "2|3");
    EXPECT_TRUE(revision().ApproveRevision(rs, "User3", "User3", listOf(id), false));
    rs->Update();
    EXPECT_EQ(states(id), "3|3");
  }
}

TEST_F(ApprovalTrouble, WithoutApproversNobodyDecides) {
  for (const char* text : {kInOrder, kAnyOrder}) {
    options(text);
    const std::int32_t id = addRevision(2);
    const auto rs = revision().GetRevRS(id);
    revision().RouteForApproval(rs, true);
    rs->Update();
    EXPECT_EQ(states(id), "1|4") << "approved at once";
    const auto before = everything();
    EXPECT_FALSE(theirs().CanApprove("User2", id, "User2"));
    EXPECT_RAISES(kNoCurrentRow, revision().ApproveRevision(rs, "User2", "User2", listOf(id)));
    EXPECT_RAISES(kNoCurrentRow, revision().RejectRevision(rs, "User2", "User2", listOf(id)));
    EXPECT_TRUE(everything() == before);
    // It awaits approval by nobody, as somebody's statement can make it.
    reg_.execute("Update Revisions Set RevisionStatus = 3 Where RevisionID = " +
                 std::to_string(id));
    EXPECT_RAISES(kNoCurrentRow, (void)theirs().CanApprove("User2", id, "User2"));
    rs->Requery();
    EXPECT_EQ(revision().RevStatusDescription(rs), "Awaiting Approval");
    revision().NotifyNextapprover(rs, listOf(id), true);
    rs->Update();
    EXPECT_EQ(states(id), "1|4");
    EXPECT_EQ(tasks(), Texts{});
  }
}

// ---- somebody else decides in between ----

TEST_F(ApprovalTrouble, AnApproverIsDecidedForOnlyOnceByTwoWhoReadTheSame) {
  for (const char* text : {kInOrder, kAnyOrder})
    for (const bool approved : {true, false}) {
      SCOPED_TRACE(fmt::format("{} {}", text, approved));
      options(text);
      const std::int32_t id = awaiting("000");
      const auto rs = revision().GetRevRS(id);
      const auto list = listOf(id);
      EXPECT_EQ(statesIn(rs), "1|3") << "read";
      decideThere(id, "User2", approved);
      const auto before = everything();
      EXPECT_RAISES(kRowChanged, revision().RejectRevision(rs, "User1", "User2", list));
      list->CancelUpdate();
      EXPECT_EQ(rs->EditMode(), kEditNone);
      EXPECT_TRUE(everything() == before) << "the first decision stands, nothing is told";
    }
}

TEST_F(ApprovalTrouble, ATurnThatHasMovedOnIsNotDecidedAbout) {
  options(kInOrder);
  const std::int32_t id = awaiting("000");
  const auto rs = revision().GetRevRS(id);
  EXPECT_EQ(statesIn(rs), "1|3") << "read";
  decideThere(id, "User2");
  const auto before = everything();
  // The list is read after that decision, and the revision before it.
  EXPECT_RAISES(kRowChanged, revision().RejectRevision(rs, "User1", "User2", listOf(id)));
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_TRUE(everything() == before);
  rs->Requery();
  EXPECT_FALSE(revision().RejectRevision(rs, "User1", "User2", listOf(id)));
  EXPECT_TRUE(revision().ApproveRevision(rs, "User3", "User3", listOf(id), false));
  rs->Update();
  EXPECT_EQ(states(id), "3|3");
  EXPECT_EQ(decisions(id), (Texts{"User2|1", "User3|1", "User4|0"}));
}

TEST_F(ApprovalTrouble, ARejectionThatSettledItIsNotOverwritten) {
  options(kInOrder);
  for (const bool approved : {true, false}) {
    // The last one's turn stays his when he has decided; only the status tells.
    const std::int32_t id = awaiting("110", 3);
    const auto rs = revision().GetRevRS(id);
    EXPECT_EQ(statesIn(rs), "3|3") << "read";
    decideThere(id, "User4", approved);
    const auto before = everything();
    const auto list = listOf(id);
    EXPECT_RAISES(kRowChanged, approved ? revision().RejectRevision(rs, "User1", "User4", list)
                                        : revision().ApproveRevision(rs, "User1", "User4", list));
    EXPECT_TRUE(everything() == before);
    EXPECT_EQ(states(id), approved ? "3|4" : "3|5");
  }
}

TEST_F(ApprovalTrouble, ATurnThatACallerHasSetCountsOnlyWhileItsRowIsAsRead) {
  options(kInOrder);
  const std::int32_t id = awaiting("000");
  const auto rs = revision().GetRevRS(id);
  rs->Fields("RoutingStatus")->Value(std::int16_t{3});
  EXPECT_TRUE(revision().ApproveRevision(rs, "User4", "User4", listOf(id), false));
  EXPECT_EQ(statesIn(rs), "1|3") << "his turn is taken, and the first who is left is next";
  rs->Fields("RoutingStatus")->Value(std::int16_t{2});
  decideThere(id, "User2");
  const auto before = everything();
  EXPECT_RAISES(kRowChanged, revision().ApproveRevision(rs, "User3", "User3", listOf(id), false));
  EXPECT_TRUE(everything() == before);
  EXPECT_EQ(statesIn(rs), "2|3") << "and what he has pending is still his";
}

TEST_F(ApprovalTrouble, DecisionsForDifferentApproversAreBothRecorded) {
  options(kAnyOrder);
  const std::int32_t id = awaiting("000");
  const auto rs = revision().GetRevRS(id);
  const auto list = listOf(id);
  EXPECT_EQ(statesIn(rs), "1|3") << "read";
  decideThere(id, "User2");
  EXPECT_TRUE(revision().ApproveRevision(rs, "User3", "User3", list));
  rs->Update();
  EXPECT_EQ(decisions(id), (Texts{"User2|1", "User3|1", "User4|0"}));
  EXPECT_EQ(states(id), "3|3");
  EXPECT_EQ(tasks(), Texts{"User4|Your Approval is required."});
}

TEST_F(ApprovalTrouble, ARowThatIsSavedLateSpoilsNothing) {
  options(kAnyOrder);
  const std::int32_t id = awaiting("000");
  const auto rs = revision().GetRevRS(id);
  const auto list = listOf(id);
  EXPECT_TRUE(revision().ApproveRevision(rs, "User3", "User3", list, false));
  decideThere(id, "User2");
  EXPECT_EQ(states(id), "3|3");
  rs->Update();
  EXPECT_EQ(states(id), "3|3") << "it was saved with the decision";
  EXPECT_EQ(decisions(id), (Texts{"User2|1", "User3|1", "User4|0"}));
}

TEST_F(ApprovalTrouble, WhoLooksWhereItStandsSeesWhatIsStored) {
  const std::int32_t id = awaiting("000");
  const auto rs = revision().GetRevRS(id);
  const auto list = listOf(id);
  EXPECT_EQ(statesIn(rs), "1|3") << "read";
  EXPECT_EQ(list->Fields("ApprovalStatus")->Value(), Variant(std::int16_t{0}));
  decideThere(id, "User2");
  revision().NotifyNextapprover(rs, list, false);
  EXPECT_EQ(statesIn(rs), "2|3") << "not what he had read";
  decideThere(id, "User3");
  // What he has seen is older than the decision, and is not saved over it.
  EXPECT_RAISES(kRowChanged, rs->Update());
  EXPECT_EQ(states(id), "3|3");
}

TEST_F(ApprovalTrouble, TwoWhoRouteAtOnceAskEverybodyOnce) {
  addToList(2, 1);
  addToList(3, 2);
  const std::int32_t id = addRevision(2);
  const auto rs = revision().GetRevRS(id);
  const auto same = theirs().GetRevRS(id);
  EXPECT_EQ(statesIn(rs) + statesIn(same), "0|20|2") << "read";
  revision().RouteForApproval(rs, true);
  theirs().RouteForApproval(same, true);
  rs->Update();
  EXPECT_RAISES(kRowChanged, same->Update());
  EXPECT_EQ(decisions(id), (Texts{"User2|0", "User3|0"}));
  EXPECT_EQ(states(id), "1|3");
}

}  // namespace
}  // namespace kv
