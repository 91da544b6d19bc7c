// SPDX-License-Identifier: Apache-2.0
// What hangs off a document, what users hold, and the order of a document's approvers.
#include <gtest/gtest.h>

#include "support/distribution_session.h"
#include "support/other_user.h"
#include "support/scale.h"

namespace kv {
namespace {

using test::Texts;

template <class Session>
class ListSession : public test::DistributionSession<Session> {
 protected:
  clsVeskDocument& document() { return *this->vesk_->Document(); }

  // The approval list of D1, anew.
  void approvers(const std::vector<std::pair<std::string, std::string>>& users) {
    this->reg_.execute("Delete * From Routing Where DocumentID = 'D1'");
    for (const auto& [user, place] : users)
      this->reg_.execute("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('D1', '" +
                         user + "', " + place + ")");
  }
  Texts order() {
    return this->reg_.rows(
        "Select UserID, ListOrder From Routing Where DocumentID = 'D1' Order By ListOrder");
  }
};

class DocumentLists : public ListSession<test::SessionTest> {
 protected:
  DocumentLists() {
    logIn("Bert");
    addDocument("D1", 2, "20");
    addDocument("D2", 3, "10");
    addManual("M1");
    addManual("M2");
  }
  // One column of a set, from its first row on.
  static Texts column(const Ref<Recordset>& rs, const char* name) {
    Texts out;
    for (; !rs->Eof(); rs->MoveNext()) out.push_back(test::shown(rs->Fields(name)->Value()));
    return out;
  }
};

// ---- lists ----

TEST_F(DocumentLists, HardCopies) {
  reg_.execute("Insert Into Revisions (DocumentID, RevisionLevel) Values ('D1', 'A')");
  hold("User2", "D1", "0", true, "Null", 1);
  hold("User1", "D1", "M1", true, "'1'", 9);
  hold("User1", "D1", "M1", false, "'-1'");
  hold("User1", "D2", "0", true);
  hold("gone", "D1", "0", true);
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = document().Copies("D1"); }),
            Texts{"Select Personals.*, Manuals.*, Revisions.* from (Personals Left Join Manuals On "
                  "Personals.ManualID = Manuals.ManualID) Left Join Revisions On "
                  "Personals.RevisionID = Revisions.RevisionID Where Personals.HardCopy <> 0 and "
                  "Personals.DocumentID = 'D1'"});
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(rs->Fields("RevisionLevel")->Value(), Variant("A"));
  rs->MoveNext();
  EXPECT_EQ(rs->Fields("ManualName")->Value(), Variant("Name of M1"));
  EXPECT_EQ(statementsOf([&] { rs = document().Copies("D1", true); }),
            Texts{"Select Personals.UserID From Personals Where Personals.HardCopy <> 0 and "
                  "Personals.DocumentID = 'D1'"});
  EXPECT_EQ(column(rs, "UserName"), (Texts{"Bert", "Anna"})) << "those there are, as they came";
}

TEST_F(DocumentLists, Manuals) {
  putInto("M2", "D1", "1");
  putInto("M1", "D1", "1");
  putInto("M1", "D2", "1");
  putInto("gone", "D1", "1");
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = document().Manuals("D1"); }),
            Texts{"Select Manuals.ManualID, Manuals.ManualName from ManualContents Inner Join "
                  "Manuals On ManualContents.ManualID = Manuals.ManualID Where "
                  "ManualContents.DocumentID = 'D1'"});
  EXPECT_EQ(test::rowsOf(*rs), (Texts{"M2|Name of M2", "M1|Name of M1"}));
  EXPECT_EQ(statementsOf([&] { rs = document().Manuals("D1", true); }),
            Texts{"Select Manuals.* from Manuals Inner Join ManualContents On Manuals.ManualID = "
                  "ManualContents.ManualID Where ManualContents.DocumentID = 'D1'"});
  EXPECT_EQ(column(rs, "ManualID"), (Texts{"M1", "M2"}));
  EXPECT_NO_THROW((void)rs->Fields("ManUserMemo"));
}

TEST_F(DocumentLists, Owners) {
  own("User2", "D1");
  own("User1", "D1");
  own("gone", "D1");
  own("User1", "D2");
  for (const bool withDocument : {false, true}) {
    Ref<Recordset> rs;
    EXPECT_EQ(statementsOf([&] { rs = document().Owners("D1", false, withDocument); }),
              Texts{"Select UserID from Owners Where Owners.DocumentID = 'D1'"});
    EXPECT_EQ(test::rowsOf(*rs), (Texts{"User2", "User1", "gone"}));
    EXPECT_EQ(statementsOf([&] { rs = document().Owners("D1", true, withDocument); }),
              Texts{"Select Owners.UserID from Owners Where Owners.DocumentID = 'D1'"});
    EXPECT_EQ(column(rs, "UserName"), (Texts{"Bert", "Anna"}));
  }
}

TEST_F(DocumentLists, ApproversInTheirOrder) {
  approvers({{"User1", "20"}, {"User2", "10"}, {"gone", "Null"}});
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = document().Approvers("D1"); }),
            Texts{"Select Routing.* from Routing Where Routing.DocumentID = 'D1' Order By "
                  "Routing.ListOrder"});
  EXPECT_EQ(test::rowsOf(*rs), (Texts{"D1|gone|~", "D1|User2|10", "D1|User1|20"}))
      << "those without a place first";
  EXPECT_EQ(statementsOf([&] { rs = document().Approvers("D1", true); }),
            Texts{"Select UserID from Routing Where Routing.DocumentID = 'D1' Order By "
                  "Routing.ListOrder"});
  EXPECT_EQ(column(rs, "UserName"), (Texts{"Bert", "Anna"}));
}

TEST_F(DocumentLists, WhoHasItOnAPersonalList) {
  hold("User2", "D1", "M1", false, "'-1'");
  hold("User1", "D1", "0", false);
  hold("gone", "D1", "0", false);
  hold("User1", "D1", "0", true);
  hold("User1", "D2", "0", false);
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = document().Users("D1"); }),
            Texts{"Select Personals.ManualID, Personals.UserID, VeskProfiles.UserName, "
                  "Personals.ReleaseID FROM ((Personals LEFT JOIN Documents ON "
                  "Personals.DocumentID = Documents.DocumentID) LEFT JOIN Manuals ON "
                  "Personals.ManualID = Manuals.ManualID) LEFT JOIN VeskProfiles ON "
                  "Personals.UserID = VeskProfiles.UserID Where Personals.HardCopy = 0 and "
                  "Personals.DocumentID = 'D1'"});
  EXPECT_EQ(test::rowsOf(*rs), (Texts{"M1|User2|Bert|1", "0|User1|Anna|2", "0|gone|~|3"}));
  EXPECT_EQ(statementsOf([&] { rs = document().Users("D1", true); }),
            Texts{"Select Personals.UserID FROM Personals Where Personals.HardCopy = False and "
                  "Personals.DocumentID = 'D1'"});
  EXPECT_EQ(column(rs, "UserName"), (Texts{"Bert", "Anna"}));
}

TEST_F(DocumentLists, RevisionsByDate) {
  for (const char* revision : {"'D1', 'B', #3/9/2001#", "'D1', 'C', #1/2/2000#", "'D1', 'A', Null",
                               "'D2', 'X', #1/1/2002#"})
    reg_.execute(std::string("Insert Into Revisions (DocumentID, RevisionLevel, EffectiveDate) "
                             "Values (") +
                 revision + ")");
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = document().DocRevisions("D1"); }),
            Texts{"Select * From Revisions Where documentID = 'D1' Order By EffectiveDate"});
  EXPECT_EQ(column(rs, "RevisionLevel"), (Texts{"A", "C", "B"}));
}

TEST_F(DocumentLists, OfADocumentThatIsNotThereAreEmpty) {
  for (const std::string& id : {std::string("D9"), std::string(), std::string("D%"),
                                std::string("D1''"), std::string(10000, 'D')})
    for (const bool all : {false, true}) {
      EXPECT_EQ(document().Copies(id, all)->RecordCount(), 0);
      EXPECT_EQ(document().Manuals(id, all)->RecordCount(), 0);
      EXPECT_EQ(document().Owners(id, all)->RecordCount(), 0);
      EXPECT_EQ(document().Approvers(id, all)->RecordCount(), 0);
      EXPECT_EQ(document().Users(id, all)->RecordCount(), 0);
      EXPECT_EQ(document().DocRevisions(id)->RecordCount(), 0);
    }
}

// ---- personal lists ----

TEST_F(DocumentLists, WhatAUserHas) {
  hold("User1", "D1", "M2", true, "'2'");
  hold("User1", "D1", "M1", true, "'1'");
  hold("User1", "D2", "M1", true, "'1'");
  hold("User1", "D1", "0", false);
  hold("User1", "gone", "0", true);
  hold("User2", "D1", "0", true);
  const std::string narrow =
      "SELECT Documents.DocumentID, Documents.DocumentTitle, Personals.ManualID, "
      "Personals.CopyNumber, Personals.ReleaseID, Personals.HardCopy FROM Personals INNER JOIN "
      "Documents ON Personals.DocumentID = Documents.DocumentID WHERE "
      "(((Personals.UserID)='User1')) Order by Personals.ManualID, Documents.";
  const auto wide = [](const char* blank) {
    return std::string(
               "SELECT Revisions.RevisionLevel, Personals.RevisionID, Documents.CurrentRevID, "
               "Documents.DocumentID,Documents.DocumentNumber, Documents.DocumentTitle, "
               "Manuals.ManualID, Manuals.ManualName, Personals.UserID,Personals.ReleaseID, "
               "Personals.HardCopy") +
           blank +
           ", Personals.CopyNumber FROM ((Personals Left JOIN Revisions On Personals.RevisionID = "
           "Revisions.RevisionID) Left JOIN Manuals ON Personals.ManualID = Manuals.ManualID) "
           "INNER JOIN Documents ON Personals.DocumentID = Documents.DocumentID WHERE "
           "(((Personals.UserID)='User1')";
  };
  const std::string order = ") ORDER BY ManualName, CopyNumber, ";
  for (const bool byNumber : {false, true}) {
    vesk_->SetAppOption(aoDocSortByNum, byNumber);
    const std::string last = byNumber ? "DocumentNumber" : "DocumentTitle";
    const Texts ofM1 = byNumber ? Texts{"3", "2"} : Texts{"2", "3"};
    Ref<Recordset> rs;
    EXPECT_EQ(statementsOf([&] { rs = document().PersonalDocuments("User1"); }),
              Texts{narrow + last});
    EXPECT_EQ(column(rs, "ReleaseID"), (Texts{"4", ofM1[0], ofM1[1], "1"}));
    const struct {
      bool virtually, hardly;
      std::string statement;
      Texts releases;
    } cases[] = {
        {true, true, wide("") + order + last, {"4", ofM1[0], ofM1[1], "1"}},
        {true, false, wide(" ") + " and HardCopy = 0" + order + last, {"4"}},
        {false, false, wide(" ") + " and HardCopy = 0" + order + last, {"4"}},
        {false, true, wide(" ") + " and HardCopy <> 0" + order + last, {ofM1[0], ofM1[1], "1"}},
    };
    for (const auto& c : cases) {
      EXPECT_EQ(statementsOf([&] { rs = document().Personals("User1", c.virtually, c.hardly); }),
                Texts{c.statement});
      EXPECT_EQ(column(rs, "ReleaseID"), c.releases);
    }
  }
  EXPECT_EQ(document().Personals("User1")->RecordCount(), 4) << "both unless asked for";
  EXPECT_EQ(document().Personals("nobody")->RecordCount(), 0);
  EXPECT_EQ(document().PersonalDocuments("nobody")->RecordCount(), 0);
}

TEST_F(DocumentLists, IdentifiersThatWouldChangeAStatementRunNothing) {
  const auto before = everything();
  for (const std::string& bad : {std::string("O'Brien"), std::string("x' or 'a'='a"),
                                 std::string("caf\xE9"), std::string("D1\0", 3)})
    EXPECT_EQ(statementsOf([&] {
                for (const bool all : {false, true}) {
                  EXPECT_RAISES(kSyntax, (void)document().Copies(bad, all));
                  EXPECT_RAISES(kSyntax, (void)document().Manuals(bad, all));
                  EXPECT_RAISES(kSyntax, (void)document().Owners(bad, all));
                  EXPECT_RAISES(kSyntax, (void)document().Approvers(bad, all));
                  EXPECT_RAISES(kSyntax, (void)document().Users(bad, all));
                  EXPECT_RAISES(kSyntax, (void)document().Personals(bad, all, all));
                }
                EXPECT_RAISES(kSyntax, (void)document().DocRevisions(bad));
                EXPECT_RAISES(kSyntax, (void)document().PersonalDocuments(bad));
                EXPECT_RAISES(kSyntax, document().ChangeListOrder(bad, "User1", "User1"));
                EXPECT_RAISES(kSyntax, document().ChangeListOrder("D1", bad, "User1"));
                EXPECT_RAISES(kSyntax, document().ChangeListOrder("D1", "User1", bad));
              }),
              Texts{});
  EXPECT_EQ(everything(), before);
}

// ---- the order of approvers ----

struct Move {
  std::vector<std::pair<std::string, std::string>> before;
  const char* moved;
  const char* next;
  Texts after;
};

TEST_F(DocumentLists, AnApproverIsMovedBeforeAnother) {
  using Users = std::vector<std::pair<std::string, std::string>>;
  const Users tens = {{"A", "10"}, {"B", "20"}, {"C", "30"}};
  const Move cases[] = {
      {tens, "C", "B", {"A|10", "C|15", "B|20"}},
      {tens, "B", "A", {"B|5", "A|10", "C|30"}},
      {tens, "A", "C", {"B|20", "A|25", "C|30"}},
      {tens, "B", "B", {"A|10", "B|15", "C|30"}},
      {tens, "A", "A", {"A|5", "B|20", "C|30"}},
      {tens, "c", "b", {"A|10", "C|15", "B|20"}},
      // Too close: the three are spread anew, in steps of 33.
      {{{"A", "1"}, {"B", "1.00001"}, {"C", "5"}}, "C", "B", {"A|33", "C|66", "B|99"}},
      {{{"A", "1"}, {"B", "1.00003"}, {"C", "5"}}, "C", "B", {"A|1", "C|1.000015", "B|1.00003"}},
      // Approvers without a place are all at 0, and their order stays as it was.
      {{{"A", "Null"}, {"B", "Null"}}, "B", "A", {"A|50", "B|100"}},
      {{{"A", "Null"}, {"B", "10"}}, "B", "A", {"A|50", "B|100"}},
      {{{"A", "Null"}, {"B", "10"}, {"C", "20"}}, "C", "B", {"A|~", "C|5", "B|10"}},
      {{{"A", "-4"}, {"B", "10"}}, "B", "A", {"A|50", "B|100"}},
  };
  for (const auto& c : cases) {
    approvers(c.before);
    EXPECT_FALSE(document().ChangeListOrder("D1", c.moved, c.next)) << "which says nothing";
    EXPECT_EQ(order(), c.after) << c.moved << " before " << c.next;
  }
}

TEST_F(DocumentLists, ChangingTheOrderRunsTheseStatements) {
  const std::string list =
      "Select Routing.* from Routing Where Routing.DocumentID = 'D1' Order By Routing.ListOrder";
  reg_.execute("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('D2', 'C', 1)");
  approvers({{"A", "10"}, {"B", "20"}});
  EXPECT_EQ(statementsOf([&] { document().ChangeListOrder("D1", "B", "A"); }), Texts{list});
  approvers({{"A", "0"}, {"B", "0"}});
  EXPECT_EQ(statementsOf([&] { document().ChangeListOrder("D1", "B", "A"); }), (Texts{list, list}));
  EXPECT_EQ(reg_.value("Select ListOrder From Routing Where DocumentID = 'D2'"), "1");
}

TEST_F(DocumentLists, TheStepIsRoundedHalfToEvenAndEndsAtZero) {
  const auto spread = [&](int count) {
    std::vector<std::pair<std::string, std::string>> users;
    users.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) users.emplace_back(fmt::format("U{:03}", i), "0");
    approvers(users);
    document().ChangeListOrder("D1", "U000", "U000");
    return reg_.value("Select Min(ListOrder), Max(ListOrder) From Routing");
  };
  EXPECT_EQ(spread(1), "100|100");
  EXPECT_EQ(spread(7), "14|98");
  EXPECT_EQ(spread(8), "12|96") << "12.5 is 12";
  EXPECT_EQ(spread(40), "2|80") << "2.5 is 2";
  EXPECT_EQ(spread(66), "2|132");
  EXPECT_EQ(spread(199), "1|199");
  EXPECT_EQ(spread(200), "0|0") << "from here on there is no room";
  EXPECT_EQ(spread(250), "0|0");
}

TEST_F(DocumentLists, WhoIsNotOnTheListIsNoCurrentRow) {
  approvers({{"A", "10"}, {"B", "20"}});
  const auto before = everything();
  EXPECT_RAISES(kNoCurrentRow, document().ChangeListOrder("D1", "X", "A"));
  EXPECT_RAISES(kNoCurrentRow, document().ChangeListOrder("D1", "A", "X"));
  EXPECT_RAISES(kNoCurrentRow, document().ChangeListOrder("D1", "", ""));
  EXPECT_RAISES(kNoCurrentRow, document().ChangeListOrder("D9", "A", "B"));
  EXPECT_RAISES(kNoCurrentRow, document().ChangeListOrder(std::string(10000, 'D'), "A", "B"));
  EXPECT_EQ(everything(), before);
}

class ListFaults : public ListSession<test::FaultySessionTest> {};

TEST_F(ListFaults, ChangingTheOrderLeavesNothingBehind) {
  approvers({{"A", "10"}, {"B", "20"}, {"C", "30"}});
  EXPECT_EQ(leavesNothingBehind([&] { document().ChangeListOrder("D1", "C", "A"); }), 1);
  approvers({{"A", "1"}, {"B", "1.00001"}, {"C", "5"}});
  EXPECT_EQ(leavesNothingBehind([&] { document().ChangeListOrder("D1", "C", "B"); }), 4)
      << "moved, and then all of them spread";
}

TEST_F(DocumentLists, ProcessesThatChangeTheOrderAtOnceLoseNothing) {
  constexpr int kProcesses = 4;
  approvers({{"A", "10"}, {"B", "20"}, {"C", "30"}, {"D", "40"}, {"E", "50"}});
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    const test::TestSession vesk;
    vesk->Login("Bert", "secret", "Lock Timeout=60;Data Source=" + reg_.path());
    for (int i = 0; i < test::steps(30); ++i)
      vesk->Document()->ChangeListOrder("D1", std::string(1, static_cast<char>('A' + p)),
                                        std::string(1, static_cast<char>('A' + (p + i) % 5)));
    return std::string("done");
  });
  EXPECT_THAT(answers, testing::Each("done"));
  EXPECT_EQ(reg_.rows("Select UserID From Routing Order By UserID"),
            (Texts{"A", "B", "C", "D", "E"}));
}

// ---- links ----

TEST_F(DocumentLists, LinksAreTheRootsRelations) {
  grant({urReleaseDocumentsToUsers, urCollectDocumentsFromUsrs, urAddDocumentsToOthersPersonalLists,
         urRemoveDocumentsFromOthersPersonalLists, urAddDocumentsToManualContents,
         urRemoveDocumentsFromManualContents, urAssigndocumentowners, urassigndocumentapprovers});
  std::int32_t hard = 0;
  std::int32_t listed = 0;
  EXPECT_TRUE(document().ReleaseCopy("D1", "User1", hard));
  EXPECT_TRUE(document().AddUser("D1", "User1", listed));
  EXPECT_EQ(
      reg_.rows("Select ReleaseID, UserID, DocumentID, HardCopy From Personals"),
      (Texts{fmt::format("{}|User1|D1|True", hard), fmt::format("{}|User1|D1|False", listed)}));
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(document().CollectCopy(hard)); }).front(),
            fmt::format("Select * From Personals Where ReleaseID = {}", hard));
  EXPECT_TRUE(document().RemoveUser(listed));
  EXPECT_EQ(copies(), Texts{});
  EXPECT_TRUE(document().IntoManual("D1", "M1"));
  EXPECT_EQ(contents(), Texts{"M1|D1|100"});
  EXPECT_TRUE(document().OutofManual("D1", "M1"));
  EXPECT_EQ(contents(), Texts{});
  EXPECT_TRUE(document().AddOwner("D1", "User3"));
  EXPECT_EQ(column(document().Owners("D1"), "UserID"), Texts{"User3"});
  EXPECT_TRUE(document().RemoveOwner("D1", "User3"));
  EXPECT_TRUE(document().AddApprover("D1", "User3"));
  EXPECT_EQ(column(document().Approvers("D1"), "UserID"), Texts{"User3"});
  EXPECT_TRUE(document().RemoveApprover("D1", "User3"));
  EXPECT_EQ(document().Owners("D1")->RecordCount() + document().Approvers("D1")->RecordCount(), 0);
}

TEST_F(DocumentLists, WhatTheRelationsRefuseIsRefused) {
  grant({urADDTOPERSONAL, urRemoveFromPersonal});
  hold("User2", "D1", "0", false);
  const auto before = everything();
  std::int32_t release = -7;
  const std::vector<std::pair<std::function<void()>, test::Refusal>> cases = {
      {[&] { document().ReleaseCopy("D1", "User2", release); },
       {2531, "DocumentUserRelation", "You do not have the right to release documents to users"}},
      {[&] { document().AddUser("D1", "User2", release); },
       {2519, "DocumentUserRelation", "This document is already in this users personal list"}},
      {[&] { document().CollectCopy(1); },
       {2531, "DocumentUserRelation", "You do not have the right to collect documents from users"}},
      // No user is named, so that it is nobody's own list.
      {[&] { document().RemoveUser(1); },
       {2531, "DocumentUserRelation",
        "You do not have the right to remove documents from other user's personal lists"}},
      {[&] { document().IntoManual("D1", "M1"); },
       {2529, "DocumentManualRelation",
        "Unable to add document to manual due to user access restrictions"}},
      {[&] { document().OutofManual("D1", "M1"); },
       {2528, "DocumentManualRelation",
        "Unable to remove document from manual due to user access restrictions"}},
      {[&] { document().AddOwner("D1", "User2"); },
       {2530, "OwnsRelation",
        "Unable to add user to documents owner list due to user access restrictions"}},
      {[&] { document().RemoveOwner("D1", "User2"); },
       {2530, "OwnsRelation",
        "Unable to add user to documents owner list due to user access restrictions"}},
      {[&] { document().AddApprover("D1", "User2"); },
       {2532, "ApprovesRelation",
        "You do not have the right to assign or remove approvers for this document"}},
      {[&] { document().RemoveApprover("D1", "User2"); },
       {2532, "ApprovesRelation",
        "You do not have the right to assign or remove approvers for this document"}},
  };
  for (const auto& [operation, refusal] : cases) test::expectRefusal(refusal, operation);
  EXPECT_EQ(release, -7);
  EXPECT_EQ(everything(), before);
}

}  // namespace
}  // namespace kv
