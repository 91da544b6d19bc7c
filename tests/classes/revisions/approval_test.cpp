// SPDX-License-Identifier: Apache-2.0
// Who may decide about a revision, and what a decision writes.
#include <gtest/gtest.h>

#include "classes/revisions/approval_session.h"

namespace kv {
namespace {

using test::Texts;

const char* const kInOrder = "00000000010";
const char* const kAnyOrder = "00000000000";

template <class Session>
class DecisionSession : public test::ApprovalSession<Session> {
 protected:
  // A decision, and the caller's row saved after it.
  bool approve(std::int32_t id, const std::string& user, const std::string& approver,
               bool send = true) {
    return decide(id, [&](const Ref<Recordset>& rs, const Ref<Recordset>& list) {
      return this->revision().ApproveRevision(rs, user, approver, list, send);
    });
  }
  bool reject(std::int32_t id, const std::string& user, const std::string& approver,
              bool send = true) {
    return decide(id, [&](const Ref<Recordset>& rs, const Ref<Recordset>& list) {
      return this->revision().RejectRevision(rs, user, approver, list, send);
    });
  }

 private:
  template <class How>
  bool decide(std::int32_t id, How how) {
    const auto rs = this->revision().GetRevRS(id);
    const bool done = how(rs, this->listOf(id));
    rs->Update();
    return done;
  }
};

class Decisions : public DecisionSession<test::SessionTest> {
 protected:
  Decisions() { logIn("Bert"); }
  void ownerRights(bool override) {
    std::string rights(21, override ? '0' : '1');
    rights[17] = override ? '1' : '0';
    reg_.execute("Update VeskConfig Set OwnerRights = '" + rights + "'");
  }
  [[nodiscard]] bool can(const std::string& user, std::int32_t id, const std::string& approver) {
    return revision().CanApprove(user, id, approver);
  }
};

// ---- who may ----

TEST_F(Decisions, WhoseTurnItIsMayDecideForHimself) {
  for (const char* text : {kInOrder, kAnyOrder}) {
    options(text);
    const std::int32_t id = awaiting("100", 2);
    EXPECT_TRUE(can("User3", id, "User3"));
    EXPECT_FALSE(can("User2", id, "User2")) << "it was his turn";
    EXPECT_FALSE(can("User4", id, "User4")) << "it will be his turn, in whatever order";
    EXPECT_FALSE(can("User3", id, "User2"));
    EXPECT_FALSE(can("User2", id, "User3"));
    EXPECT_FALSE(can("User1", id, "User1")) << "who is not on the list";
  }
}

TEST_F(Decisions, WhatIsAskedOfTheRegister) {
  const std::string number = std::to_string(awaiting("000"));
  EXPECT_EQ(
      statementsOf([&] { EXPECT_TRUE(can("User2", std::stoi(number), "User2")); }),
      (Texts{"Select * From Revisions Where RevisionID = " + number,
             "Select UserID From Owners Where DocumentID = 'D1' and UserID = 'User2'",
             "Select * From Approvalrouting Where RevID = " + number + " Order By ListOrder"}));
}

TEST_F(Decisions, NobodyDecidesAboutARevisionThatDoesNotAwaitApproval) {
  ownerRights(true);
  reg_.execute("Insert Into Owners (DocumentID, UserID) Values ('D1', 'User2')");
  const std::int32_t id = awaiting("000");
  for (const char* status : {"0", "1", "2", "4", "5", "6", "-1", "Null"}) {
    reg_.execute(std::string("Update Revisions Set RevisionStatus = ") + status);
    EXPECT_FALSE(can("User2", id, "User2")) << status;
  }
  reg_.execute("Update Revisions Set RevisionStatus = 3");
  EXPECT_TRUE(can("User2", id, "User2"));
  EXPECT_FALSE(can("User2", 99, "User2")) << "nor about one that does not exist";
}

TEST_F(Decisions, AnOwnerWithTheRightDecidesForAnybody) {
  reg_.execute("Insert Into Owners (DocumentID, UserID) Values ('D1', 'User4')");
  const std::int32_t id = awaiting("000");
  ownerRights(true);
  for (const char* approver : {"User2", "User3", "User4", "nobody", ""})
    EXPECT_TRUE(can("User4", id, approver)) << approver;
  EXPECT_FALSE(can("User3", id, "User2")) << "who is no owner";
  EXPECT_FALSE(can("User3", id, "User3"));
  ownerRights(false);
  EXPECT_FALSE(can("User4", id, "User2"));
  EXPECT_FALSE(can("User4", id, "User4")) << "not in his turn";
  EXPECT_TRUE(can("User2", id, "User2"));
  reg_.execute("Update VeskConfig Set OwnerRights = Null");
  EXPECT_FALSE(can("User4", id, "User4"));
}

TEST_F(Decisions, ForAnAdministratorEverythingIsAllowed) {
  test::TestSession anna;
  anna->Login("Anna", "secret", reg_.path());
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions"), "0");
  EXPECT_TRUE(anna->Revision()->CanApprove("nobody", 99, "somebody")) << "without a look";
}

TEST_F(Decisions, ATurnThatIsNobodysRaises) {
  for (const int turn : {0, 4, -1})
    EXPECT_RAISES(kNoCurrentRow, (void)can("User2", awaiting("000", turn), "User2")) << turn;
  EXPECT_RAISES(kNoCurrentRow, (void)can("User2", awaiting(""), "User2")) << "without a list";
  EXPECT_RAISES(kSyntax, (void)can("x' or 'a'='a", awaiting("0"), "User2"));
}

// ---- deciding in order ----

TEST_F(Decisions, InOrderADecisionIsRecordedWithUserAndDay) {
  options(kInOrder);
  const std::int32_t id = awaiting("000");
  EXPECT_TRUE(approve(id, "User1", "User2"));
  EXPECT_EQ(approvals(id), (Texts{"User2|1|User1|2/26/2001|~", "User3|0|~|~|~", "User4|0|~|~|~"}));
  EXPECT_EQ(states(id), "2|3");
  EXPECT_TRUE(reject(id, "User3", "User3"));
  EXPECT_EQ(approvals(id),
            (Texts{"User2|1|User1|2/26/2001|~", "User3|2|User3|2/26/2001|~", "User4|0|~|~|~"}));
  EXPECT_EQ(states(id), "2|5");
}

TEST_F(Decisions, InOrderTheLastApprovalSettlesIt) {
  options(kInOrder);
  const std::int32_t id = awaiting("110", 3);
  EXPECT_TRUE(approve(id, "", "User4"));
  EXPECT_EQ(approvals(id)[2], "User4|1|~|2/26/2001|~") << "nobody is stored as Null";
  EXPECT_EQ(states(id), "3|4");
}

TEST_F(Decisions, InOrderNobodyElseDecides) {
  options("11111111111");
  const std::int32_t id = awaiting("000");
  const auto before = everything();
  for (const char* approver : {"User3", "User4", "User1", "", "x' or 'a'='a"}) {
    EXPECT_FALSE(approve(id, "User2", approver)) << approver;
    EXPECT_FALSE(reject(id, "User2", approver)) << approver;
  }
  EXPECT_EQ(everything(), before);
}

TEST_F(Decisions, InOrderADecisionCanBeOverwritten) {
  options(kInOrder);
  const std::int32_t id = awaiting("200");
  EXPECT_TRUE(approve(id, "User2", "User2"));
  EXPECT_EQ(states(id), "2|3");
  EXPECT_EQ(approvals(id)[0], "User2|1|User2|2/26/2001|~");
}

TEST_F(Decisions, InOrderATurnThatIsNobodysRaises) {
  options(kInOrder);
  for (const int turn : {0, 4}) {
    const std::int32_t id = awaiting("000", turn);
    EXPECT_RAISES(kNoCurrentRow, approve(id, "User2", "User2")) << turn;
    EXPECT_RAISES(kNoCurrentRow, reject(id, "User2", "User2")) << turn;
  }
  EXPECT_RAISES(kNoCurrentRow, approve(awaiting(""), "User2", "User2"));
}

// ---- deciding in any order ----

TEST_F(Decisions, InAnyOrderOnlyTheDecisionIsRecorded) {
  options(kAnyOrder);
  const std::int32_t id = awaiting("000");
  EXPECT_TRUE(approve(id, "User1", "User4"));
  EXPECT_EQ(approvals(id), (Texts{"User2|0|~|~|~", "User3|0|~|~|~", "User4|1|~|~|~"}));
  EXPECT_EQ(states(id), "1|3");
  EXPECT_TRUE(approve(id, "User1", "user2"));
  EXPECT_EQ(states(id), "2|3");
  EXPECT_TRUE(reject(id, "User1", "User3"));
  EXPECT_EQ(approvals(id), (Texts{"User2|1|~|~|~", "User3|2|~|~|~", "User4|1|~|~|~"}));
  EXPECT_EQ(states(id), "2|5");
}

TEST_F(Decisions, InAnyOrderTheSearchGoesForwardFromTheCurrentRow) {
  options(kAnyOrder);
  const std::int32_t id = awaiting("000");
  const auto rs = revision().GetRevRS(id);
  const auto list = listOf(id);
  list->MoveLast();
  const auto before = everything();
  EXPECT_RAISES(kNoCurrentRow, revision().ApproveRevision(rs, "User2", "User2", list));
  EXPECT_TRUE(list->Eof());
  EXPECT_EQ(everything(), before);
  list->MoveFirst();
  EXPECT_TRUE(revision().ApproveRevision(rs, "User2", "User2", list));
}

TEST_F(Decisions, InAnyOrderSomebodyElseRaises) {
  options(kAnyOrder);
  const std::int32_t id = awaiting("000");
  const auto before = everything();
  for (const char* approver : {"User1", ""}) {
    EXPECT_RAISES(kNoCurrentRow, approve(id, "User2", approver)) << approver;
    EXPECT_RAISES(kNoCurrentRow, reject(id, "User2", approver)) << approver;
  }
  EXPECT_RAISES(kSyntax, approve(id, "User2", "x' or 'a'='a"));
  EXPECT_EQ(everything(), before);
}

// ---- what is saved with a decision ----

TEST_F(Decisions, WhereARevisionStandsIsSavedWithTheDecision) {
  for (const char* text : {kInOrder, kAnyOrder}) {
    options(text);
    const std::int32_t id = awaiting("000");
    for (const auto& [approver, after] :
         {std::pair("User2", "2|3"), {"User3", "3|3"}, {"User4", "3|4"}}) {
      const auto rs = revision().GetRevRS(id);
      EXPECT_TRUE(revision().ApproveRevision(rs, "User1", approver, listOf(id)));
      EXPECT_EQ(statesIn(rs), after);
      EXPECT_EQ(rs->EditMode(), kEditNone);
      EXPECT_EQ(states(id), after) << "whether the caller saves his row or not";
      rs->Update();
      EXPECT_EQ(states(id), after);
    }
  }
}

TEST_F(Decisions, WhatTheCallerHasPendingInTheRevisionIsSavedFirst) {
  options(kInOrder);
  const std::int32_t id = awaiting("000");
  const auto rs = revision().GetRevRS(id);
  rs->Fields("Location")->Value("shelf");
  EXPECT_FALSE(revision().ApproveRevision(rs, "User1", "User3", listOf(id)));
  EXPECT_EQ(rs->EditMode(), kEditInProgress) << "nothing changed";
  EXPECT_TRUE(revision().ApproveRevision(rs, "User1", "User2", listOf(id)));
  EXPECT_EQ(reg_.value("Select Location, RoutingStatus From Revisions"), "shelf|2");
}

TEST_F(Decisions, AFailureLeavesNothingPending) {
  options(kInOrder);
  const std::int32_t id = awaiting("000");
  const auto list = listOf(id);
  const auto readOnly = reg_.connection()->OpenRecordset(
      "Select * From Revisions Where RevisionID = " + std::to_string(id), kKeyset, kReadOnly);
  const auto before = everything();
  EXPECT_RAISES(kNotAvailable, revision().ApproveRevision(readOnly, "User1", "User2", list));
  const auto rs = revision().GetRevRS(id);
  EXPECT_RAISES(kWrongType, revision().ApproveRevision(rs, std::string(300, 'x'), "User2", list));
  for (const auto& set : {readOnly, rs, list}) {
    EXPECT_EQ(set->EditMode(), kEditNone);
    set->MoveFirst();
  }
  EXPECT_EQ(everything(), before) << "and the next move stores nothing";
}

// ---- what both read, and whom they tell ----

TEST_F(Decisions, OnlyARejectionAsksForTheOptionsWithAStatement) {
  const std::int32_t id = awaiting("000");
  const auto rs = revision().GetRevRS(id);
  const auto list = listOf(id);
  EXPECT_EQ(statementsOf([&] { revision().ApproveRevision(rs, "User2", "User2", list, false); }),
            Texts{});
  list->MoveFirst();
  EXPECT_EQ(statementsOf([&] { revision().RejectRevision(rs, "User2", "User2", list, false); }),
            Texts{"Select ProgramOptions From VeskConfig"});
}

TEST_F(Decisions, TheTenthOptionIsTheOrder) {
  for (std::size_t place = 0; place < 11; ++place) {
    std::string text(11, '0');
    text[place] = '1';
    options(text);
    const std::int32_t id = awaiting("00");
    EXPECT_EQ(approve(id, "User3", "User3", false), place != 9) << text;
    EXPECT_EQ(reject(id, "User3", "User3", false), place != 9) << text;
  }
  for (const char* text : {"000000000", ""}) {
    options(text);
    EXPECT_TRUE(approve(awaiting("00"), "User3", "User3", false)) << "too short is off";
    EXPECT_TRUE(reject(awaiting("00"), "User3", "User3", false));
  }
}

TEST_F(Decisions, WhoeverIsNextIsToldUnlessNot) {
  options("00000011010");
  const std::int32_t id = awaiting("000");
  EXPECT_TRUE(approve(id, "User2", "User2", false));
  EXPECT_EQ(tasks(), Texts{});
  const auto rs = revision().GetRevRS(id);
  EXPECT_TRUE(revision().ApproveRevision(rs, "User3", "User3", listOf(id))) << "told by default";
  EXPECT_EQ(tasks(), Texts{"User4|Your Approval is required."});
  const auto again = revision().GetRevRS(id);
  again->Fields("RoutingStatus")->Value(std::int16_t{3});
  EXPECT_TRUE(revision().RejectRevision(again, "User4", "User4", listOf(id)));
  EXPECT_EQ(tasks(),
            (Texts{"User4|Your Approval is required.", "User4|A revision has been rejected."}));
  reg_.execute("Delete * From Actions");
  EXPECT_TRUE(reject(awaiting("000"), "User2", "User2", false));
  EXPECT_EQ(tasks(), Texts{});
}

TEST_F(Decisions, WhatTheCallerHasPendingIsSavedFirst) {
  options(kInOrder);
  const std::int32_t id = awaiting("000");
  const auto list = listOf(id);
  list->MoveLast();
  list->Fields("Notes")->Value("later");
  EXPECT_FALSE(revision().ApproveRevision(revision().GetRevRS(id), "User3", "User3", list));
  EXPECT_EQ(approvals(id)[2], "User4|0|~|~|later") << "and is no part of the decision";
}

// ---- remarks ----

TEST_F(Decisions, ARemarkIsStoredOnTheApproversRow) {
  const std::int32_t id = awaiting("00");
  const std::int32_t other = awaiting("00");
  EXPECT_EQ(statementsOf([&] { revision().SaveApprovalNotes("It's fine", "User3", id); }),
            Texts{"Select * from ApprovalRouting Where RevID = " + std::to_string(id) +
                  " and UserID = 'User3'"});
  EXPECT_EQ(approvals(id), (Texts{"User2|0|~|~|~", "User3|0|~|~|It's fine"}));
  EXPECT_EQ(approvals(other), (Texts{"User2|0|~|~|~", "User3|0|~|~|~"}));
  revision().SaveApprovalNotes("", "User3", id);
  EXPECT_EQ(approvals(id)[1], "User3|0|~|~|~") << "empty text is stored as Null";
}

TEST_F(Decisions, ARemarkOfSomebodyElseIsIgnored) {
  const std::int32_t id = awaiting("00");
  const auto before = everything();
  revision().SaveApprovalNotes("note", "User1", id);
  revision().SaveApprovalNotes("note", "User2", 99);
  EXPECT_RAISES(kSyntax, revision().SaveApprovalNotes("note", "x' or 'a'='a", id));
  EXPECT_EQ(everything(), before);
}

// ---- failures ----

class DecisionFaults : public DecisionSession<test::FaultySessionTest> {};

TEST_F(DecisionFaults, ADecisionLeavesNothingBehind) {
  const auto rows = [&] { return everything(); };
  for (const char* text : {"00000011010", "00000011000"}) {
    options(text);
    const std::int32_t id = awaiting("000");
    const auto decide = [&](bool approved) {
      const auto rs = revision().GetRevRS(id);
      if (approved)
        revision().ApproveRevision(rs, "User2", "User2", listOf(id));
      else
        revision().RejectRevision(rs, "User2", "User2", listOf(id));
    };
    // The decision, the action and where the revision stands.
    EXPECT_EQ(test::failEachWrite(*faults_, rows, [&] { decide(true); }), 3);
    EXPECT_EQ(test::failEachWrite(*faults_, rows, [&] { decide(false); }), 3);
    decide(true);
    EXPECT_EQ(approvals(id)[0].substr(0, 7), "User2|1");
  }
}

TEST_F(DecisionFaults, ARemarkPassesErrorsOn) {
  const std::int32_t id = awaiting("0");
  const auto before = everything();
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, revision().SaveApprovalNotes("note", "User2", id));
  EXPECT_EQ(everything(), before);
}

TEST_F(DecisionFaults, InAClientsTransactionRollbackUndoesEverything) {
  options("00000011010");
  const std::int32_t id = awaiting("000");
  const auto before = everything();
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  EXPECT_TRUE(approve(id, "User2", "User2"));
  EXPECT_TRUE(reject(id, "User3", "User3"));
  revision().SaveApprovalNotes("note", "User3", id);
  EXPECT_EQ(
      test::rowsOf(*vesk_->GetRecordset("Select RoutingStatus, RevisionStatus From Revisions")),
      Texts{"2|5"});
  EXPECT_EQ(everything(), before) << "others see nothing of it yet";
  connection->RollbackTrans();
  EXPECT_EQ(everything(), before);
}

}  // namespace
}  // namespace kv
