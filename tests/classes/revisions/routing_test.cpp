// SPDX-License-Identifier: Apache-2.0
// The way of a revision to its approvers: what it runs, writes and tells.
#include <gtest/gtest.h>

#include "classes/revisions/approval_session.h"

namespace kv {
namespace {

using test::Texts;

class Routing : public test::ApprovalSession<test::SessionTest> {
 protected:
  Routing() { logIn("Bert"); }  // no right is tested
  // Routes a revision and saves its row.
  void route(std::int32_t id) {
    const auto rs = revision().GetRevRS(id);
    EXPECT_TRUE(revision().RouteForApproval(rs, true).isEmpty());
    rs->Update();
  }
  // Lets the library look at the approvals, and gives what the caller's row then has.
  std::string notify(std::int32_t id, bool send = true) {
    const auto rs = revision().GetRevRS(id);
    revision().NotifyNextapprover(rs, listOf(id), send);
    std::string out = statesIn(rs);
    rs->CancelUpdate();
    return out;
  }
};

// ---- routing ----

TEST_F(Routing, TheFirstTimeTheListIsCopied) {
  addToList(4, 30);
  addToList(2, 10);
  addToList(3, 20);
  addToList(1, 1, "D2");
  const std::int32_t id = addRevision(2);
  const std::string number = std::to_string(id);
  const auto rs = revision().GetRevRS(id);
  const auto statements = statementsOf([&] { revision().RouteForApproval(rs, true); });
  ASSERT_GE(statements.size(), 3U);
  EXPECT_EQ(
      (Texts{statements.begin(), statements.begin() + 3}),
      (Texts{"Select * From ApprovalRouting Where RevID = " + number,
             "Insert Into ApprovalRouting(RevID,UserID,ListOrder,ApprovalStatus) Select " + number +
                 ", Routing.UserID, Routing.ListOrder , 0 From Routing Where "
                 "Routing.DocumentID = 'D1'",
             "Select * From ApprovalRouting Where RevID = " + number + " Order By ListOrder"}));
  EXPECT_EQ(approvals(id), (Texts{"User2|0|~|~|~", "User3|0|~|~|~", "User4|0|~|~|~"}));
  EXPECT_EQ(reg_.rows("Select ListOrder From ApprovalRouting Order By ListOrder"),
            (Texts{"10", "20", "30"}));
  EXPECT_EQ(statesIn(rs), "1|3");
  EXPECT_EQ(states(id), "0|2") << "the row is the caller's to save";
  rs->Update();
  EXPECT_EQ(states(id), "1|3");
  reg_.execute("Delete * From Routing");
  EXPECT_EQ(approvals(id).size(), 3U) << "and the list of the revision is its own";
}

TEST_F(Routing, TheNextTimeEverybodyIsAskedOnceMore) {
  addToList(2, 10);
  const std::int32_t id = awaiting("121", 3);
  const std::int32_t other = awaiting("12", 1);
  reg_.execute(
      "Update ApprovalRouting Set ApprovedBy = 'User1', DateApproved = #1/2/2001#, Notes = 'why'");
  const std::string number = std::to_string(id);
  const auto rs = revision().GetRevRS(id);
  const auto statements = statementsOf([&] { revision().RouteForApproval(rs, true); });
  ASSERT_GE(statements.size(), 3U);
  EXPECT_EQ(statements[1], "Update ApprovalRouting Set ApprovalStatus = 0 Where RevID = " + number);
  EXPECT_EQ(approvals(id), (Texts{"User2|0|User1|1/2/2001|why", "User3|0|User1|1/2/2001|why",
                                  "User4|0|User1|1/2/2001|why"}))
      << "nobody twice";
  EXPECT_EQ(approvals(other), (Texts{"User2|1|User1|1/2/2001|why", "User3|2|User1|1/2/2001|why"}));
  EXPECT_EQ(statesIn(rs), "1|3");
  EXPECT_EQ(tasks(), Texts{"User2|Your approval is required"});
}

TEST_F(Routing, WithoutApproversARevisionIsApprovedAtOnce) {
  const std::int32_t id = addRevision(2);
  route(id);
  EXPECT_EQ(states(id), "1|4");
  EXPECT_EQ(approvals(id), Texts{});
  EXPECT_EQ(actions(), Texts{});
  addToList(2, 1);
  route(id);
  EXPECT_EQ(states(id), "1|3") << "it had no list yet";
  EXPECT_EQ(approvals(id), Texts{"User2|0|~|~|~"});
}

TEST_F(Routing, TheFirstApproverIsAlwaysTold) {
  addToList(3, 20);
  addToList(2, 10);
  for (const bool send : {true, false}) {
    for (const char* text : {"00000000000", "11111111111", ""}) {
      reg_.execute("Delete * From Actions");
      options(text);
      const auto rs = revision().GetRevRS(addRevision(2));
      revision().RouteForApproval(rs, send);
      rs->CancelUpdate();
      EXPECT_EQ(actions(), Texts{"Your approval is required|User2|Bert|~|~|2/26/2001|3/3/2001|~|~|"
                                 "Issue B of the Pump manual Drawing requires your approval.|DB1|"
                                 "D1|1"})
          << send << text;
    }
  }
}

TEST_F(Routing, WhatIsMissingIsLeftOutOfTheText) {
  reg_.execute(
      "Insert Into ApprovalRouting (RevID, UserID, ListOrder, ApprovalStatus) Values (1, 'nobody', "
      "1, 0)");
  const std::int32_t id = addRevision(2, "RevisionLevel = Null, DocumentID = 'no document'");
  ASSERT_EQ(id, 1);
  reg_.execute("Update VeskConfig Set DBID = Null, [Revision] = Null, [Document] = Null");
  route(id);
  EXPECT_EQ(actions(), Texts{"Your approval is required|nobody|~|~|~|2/26/2001|3/3/2001|~|~|"
                             "  of the   requires your approval.|~|no document|1"});
}

TEST_F(Routing, WhoSignsTheRequest) {
  addToList(3, 10);
  EXPECT_EQ(signatures([&] { route(addRevision(2)); }),
            (Texts{"~|~", "Dora|User4", "Bert|User2", "~|~", "~|~", "~|~"}));
}

TEST_F(Routing, AnOriginatorWhoIsNobodyHasNoName) {
  addToList(3, 10);
  reg_.execute("Update VeskConfig Set Originator = 1, OriginatorID = 'nobody'");
  route(addRevision(2));
  EXPECT_EQ(reg_.value("Select Originator, OriginatorID From Actions"), "~|nobody");
  reg_.execute("Delete * From Actions");
  reg_.execute("Update VeskConfig Set OriginatorID = Null");
  route(addRevision(2));
  EXPECT_EQ(reg_.value("Select Originator, OriginatorID From Actions"), "~|~");
}

TEST_F(Routing, ADocumentsApostrophesDoNotChangeTheStatement) {
  addToList(2, 1);
  const std::int32_t id = addRevision(2, "DocumentID = 'x'' or ''a''=''a'");
  const std::string number = std::to_string(id);
  const auto rs = revision().GetRevRS(id);
  const auto statements = statementsOf([&] { revision().RouteForApproval(rs, true); });
  ASSERT_GE(statements.size(), 2U);
  EXPECT_EQ(statements[1],
            "Insert Into ApprovalRouting(RevID,UserID,ListOrder,ApprovalStatus) Select " + number +
                ", Routing.UserID, Routing.ListOrder , 0 From Routing Where Routing.DocumentID = "
                "'x'' or ''a''=''a'");
  rs->Update();
  EXPECT_EQ(states(id), "1|4") << "nobody approves a document of that name";
  EXPECT_EQ(approvals(id), Texts{});
}

TEST_F(Routing, RoutingWithoutARowRaises) {
  EXPECT_RAISES(kNoCurrentRow, revision().RouteForApproval(revision().GetRevRS(99), true));
  EXPECT_RAISES(kNoSuchItem,
                revision().RouteForApproval(reg_.open("Select * From Documents"), true));
  EXPECT_RAISES(kObjectNotSet, revision().RouteForApproval(nullptr, true));
}

// ---- the next approver ----

TEST_F(Routing, WhereARevisionStandsWithItsApprovers) {
  const struct {
    const char* decisions;
    const char* states;  // before: turn 1, awaiting
  } cases[] = {{"000", "1|3"}, {"100", "2|3"}, {"110", "3|3"}, {"111", "1|4"}, {"11", "1|4"},
               {"010", "1|3"}, {"101", "2|3"}, {"001", "1|3"}, {"120", "1|5"}, {"021", "1|5"},
               {"200", "1|5"}, {"002", "1|5"}, {"222", "1|5"}, {"", "1|4"},    {"0", "1|3"},
               {"1", "1|4"},   {"2", "1|5"}};
  for (const auto& c : cases) EXPECT_EQ(notify(awaiting(c.decisions), false), c.states);
  EXPECT_EQ(notify(awaiting("111", 3), false), "3|4") << "the turn stays";
  EXPECT_EQ(notify(awaiting("121", 3), false), "3|5");
  EXPECT_EQ(notify(awaiting("131"), false), "1|4") << "another number is no decision to wait for";
  EXPECT_EQ(actions(), Texts{});
}

TEST_F(Routing, TheRowIsTheCallersToSave) {
  const std::int32_t id = awaiting("11");
  const auto rs = revision().GetRevRS(id);
  const auto list = listOf(id);
  EXPECT_EQ(statementsOf([&] { revision().NotifyNextapprover(rs, list, true); }), Texts{});
  EXPECT_EQ(statesIn(rs), "1|4");
  EXPECT_EQ(states(id), "1|3");
  rs->Update();
  EXPECT_EQ(states(id), "1|4");
  EXPECT_EQ(list->State(), 1) << "both sets stay open";
}

TEST_F(Routing, APendingDecisionIsSavedOnTheWay) {
  const std::int32_t id = awaiting("00");
  const auto rs = revision().GetRevRS(id);
  const auto list = listOf(id);
  list->Fields("ApprovalStatus")->Value(std::int16_t{1});
  revision().NotifyNextapprover(rs, list, false);
  EXPECT_EQ(statesIn(rs), "2|3");
  EXPECT_EQ(approvals(id), (Texts{"User2|1|~|~|~", "User3|0|~|~|~"}));
}

TEST_F(Routing, WhenTheNextApproverIsTold) {
  const struct {
    const char* options;
    bool send;
    bool told;
  } cases[] = {{"00000011000", true, true},   {"11111111111", true, true},
               {"00000010000", true, false},  {"00000001000", true, false},
               {"00000000000", true, false},  {"11111100111", true, false},
               {"00000011000", false, false}, {"00000011", true, true},
               {"0000001", true, false},      {"", true, false}};
  for (const auto& c : cases) {
    reg_.execute("Delete * From Actions");
    options(c.options);
    EXPECT_EQ(notify(awaiting("100"), c.send), "2|3");
    EXPECT_EQ(tasks().size(), c.told ? 1U : 0U) << c.options << c.send;
  }
}

TEST_F(Routing, WhatTheNextApproverIsTold) {
  options("00000011000");
  const std::int32_t id = awaiting("110");
  notify(id);
  EXPECT_EQ(actions(),
            Texts{"Your Approval is required.|User4|Dora|~|~|2/26/2001|3/3/2001|~|~|Your Approval "
                  "is required for Issue B of the Pump manual Drawing|DB1|" +
                  std::to_string(id) + "|1"});
}

TEST_F(Routing, WhenARejectionIsTold) {
  const struct {
    const char* options;
    bool send;
    bool told;
  } cases[] = {{"00000010000", true, true},   {"00000011000", true, true},
               {"00000001000", true, false},  {"11111101111", true, false},
               {"00000010000", false, false}, {"", true, false}};
  for (const auto& c : cases) {
    reg_.execute("Delete * From Actions");
    options(c.options);
    EXPECT_EQ(notify(awaiting("120"), c.send), "1|5");
    EXPECT_EQ(tasks().size(), c.told ? 1U : 0U) << c.options << c.send;
  }
}

TEST_F(Routing, WhatTheResponsibleUserIsTold) {
  options("00000010000");
  const std::int32_t id = awaiting("002");
  notify(id);
  EXPECT_EQ(actions(),
            Texts{"A revision has been rejected.|User4|Dora|~|~|2/26/2001|3/3/2001|~|~|Issue B of "
                  "Drawing Pump manual has been rejected.|DB1|" +
                  std::to_string(id) + "|1"});
}

TEST_F(Routing, NobodyIsToldOfAFullApproval) {
  options("11111111111");
  EXPECT_EQ(notify(awaiting("111")), "1|4");
  EXPECT_EQ(actions(), Texts{});
}

TEST_F(Routing, WhoSignsWhatIsTold) {
  options("00000011000");
  const Texts expected = {"~|~", "Dora|User4", "Bert|User2", "~|~", "~|~", "~|~"};
  EXPECT_EQ(signatures([&] { notify(awaiting("100")); }), expected);
  EXPECT_EQ(signatures([&] { notify(awaiting("200")); }), expected);
}

TEST_F(Routing, NotifyingPassesErrorsOn) {
  const std::int32_t id = awaiting("10");
  const auto rs = revision().GetRevRS(id);
  EXPECT_RAISES(kNoCurrentRow,
                revision().NotifyNextapprover(revision().GetRevRS(99), listOf(id), true));
  EXPECT_RAISES(kNoSuchItem,
                revision().NotifyNextapprover(rs, reg_.open("Select * From Documents"), true));
  EXPECT_RAISES(kObjectNotSet, revision().NotifyNextapprover(rs, nullptr, true));
  EXPECT_RAISES(kObjectNotSet, revision().NotifyNextapprover(nullptr, listOf(id), true));
}

// ---- failures ----

class RoutingFaults : public test::ApprovalSession<test::FaultySessionTest> {};

TEST_F(RoutingFaults, RoutingLeavesNothingBehind) {
  addToList(2, 10);
  addToList(3, 20);
  const std::int32_t id = addRevision(2);
  const auto route = [&] {
    const auto rs = revision().GetRevRS(id);
    revision().RouteForApproval(rs, true);
    rs->Update();
  };
  const auto rows = [&] { return everything(); };
  EXPECT_EQ(test::failEachWrite(*faults_, rows, route), 2) << "the list and the action";
  route();
  EXPECT_EQ(states(id), "1|3");
  EXPECT_EQ(test::failEachWrite(*faults_, rows, route), 2);
}

TEST_F(RoutingFaults, NotifyingLeavesNothingBehind) {
  options("00000011000");
  const std::int32_t id = awaiting("00");
  const auto decideAndNotify = [&] {
    const auto rs = revision().GetRevRS(id);
    const auto list = listOf(id);
    list->Fields("ApprovalStatus")->Value(std::int16_t{1});
    revision().NotifyNextapprover(rs, list, true);
  };
  EXPECT_EQ(test::failEachWrite(
                *faults_, [&] { return everything(); }, decideAndNotify),
            2)
      << "the decision and the action";
  decideAndNotify();
  EXPECT_EQ(tasks(), Texts{"User3|Your Approval is required."});
}

TEST_F(RoutingFaults, WhatFailsLeavesTheCallersRowAsItWas) {
  addToList(2, 10);
  options("00000011000");
  const std::int32_t routed = addRevision(2);
  const std::int32_t id = awaiting("00");
  const struct {
    std::int32_t revision;
    std::function<void(const Ref<Recordset>&)> run;
    bool saves = false;
  } cases[] = {
      {routed, [&](const auto& rs) { revision().RouteForApproval(rs, true); }},
      {id, [&](const auto& rs) { revision().NotifyNextapprover(rs, listOf(id), true); }},
      {id, [&](const auto& rs) { revision().ApproveRevision(rs, "User2", "User2", listOf(id)); },
       true},
      {id, [&](const auto& rs) { revision().RejectRevision(rs, "User2", "User2", listOf(id)); },
       true},
  };
  const auto before = everything();
  for (const auto& c : cases) {
    const auto rs = revision().GetRevRS(c.revision);
    const auto states = statesIn(rs);
    const auto fails = [&] {
      test::RawRegister(reg_.path()).refuse("INSERT", "Actions");
      EXPECT_RAISES(kEngineFailure, c.run(rs));
      test::RawRegister(reg_.path()).allowAgain("Actions");
      EXPECT_EQ(statesIn(rs), states);
    };
    fails();
    EXPECT_EQ(rs->EditMode(), kEditNone);
    rs->Fields("RevUser1")->Value("pending");
    fails();
    EXPECT_EQ(rs->EditMode(), c.saves ? kEditNone : kEditInProgress);
    EXPECT_EQ(rs->Fields("RevUser1")->Value(), Variant("pending"))
        << "what the caller had pending is saved before, or stays his";
    if (c.saves) rs->Fields("RevUser1")->Value(Null);
    c.saves ? rs->Update() : rs->CancelUpdate();
    EXPECT_EQ(everything(), before);
  }
}

TEST_F(RoutingFaults, ADecisionThatFailsIsTakenBackFromTheList) {
  options("00000011010");
  const std::int32_t id = awaiting("00");
  const auto before = everything();
  const auto rs = revision().GetRevRS(id);
  const auto list = listOf(id);
  EXPECT_RAISES(kWrongType,
                revision().ApproveRevision(rs, std::string(300, 'x'), "User2", list, false));
  EXPECT_EQ(list->EditMode(), kEditNone);
  list->MoveFirst();
  EXPECT_EQ(everything(), before);
}

TEST_F(RoutingFaults, InAClientsTransactionRollbackUndoesEverything) {
  addToList(2, 10);
  options("00000011000");
  const std::int32_t id = addRevision(2);
  const auto before = everything();
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  const auto rs = revision().GetRevRS(id);
  revision().RouteForApproval(rs, true);
  const auto list = listOf(id);
  revision().NotifyNextapprover(rs, list, true);
  rs->Update();
  EXPECT_EQ(vesk_->GetActions("User2")->RecordCount(), 2);
  EXPECT_EQ(everything(), before) << "others see nothing of it yet";
  connection->RollbackTrans();
  EXPECT_EQ(everything(), before);
}

}  // namespace
}  // namespace kv
