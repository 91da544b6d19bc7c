// SPDX-License-Identifier: Apache-2.0
// What users hold, own and approve, and the changes to it seen from the user.
#include <gtest/gtest.h>

#include <numeric>

#include "support/distribution_session.h"
#include "support/other_user.h"
#include "support/scale.h"

namespace kv {
namespace {

using test::Texts;

template <class Session>
class HoldingsSession : public test::DistributionSession<Session> {
 protected:
  clsVeskUser& user() { return *this->vesk_->User(); }
};

class Holdings : public HoldingsSession<test::SessionTest> {
 protected:
  Holdings() {
    logIn("Bert");
    addDocument("D1", 2, "20");
    addDocument("D2", 3, "10");
    addManual("M1");
    addManual("M2");
  }
  void approve(const std::string& userId, const std::string& document) {
    reg_.execute("Insert Into Routing (UserID, DocumentID, ListOrder) Values ('" + userId + "', '" +
                 document + "', 1)");
  }
  static Texts column(const Ref<Recordset>& rs, const char* name) {
    Texts out;
    for (; !rs->Eof(); rs->MoveNext()) out.push_back(test::shown(rs->Fields(name)->Value()));
    return out;
  }
};

using List = std::function<Ref<Recordset>(const std::string& id)>;

struct ListCase {
  List list;
  std::string statement;  // up to the documents' column, where it is ordered by that
  bool byDocument;
  const char* column;
  Texts byTitle;
  Texts byNumber;
};

TEST_F(Holdings, EveryListHasItsStatement) {
  hold("User1", "D1", "M2", true, "'2'");
  hold("User1", "D2", "M1", true, "'1'");
  hold("User1", "D1", "M1", true, "'1'");
  hold("User1", "gone", "0", true);
  hold("User1", "D2", "M1", false, "'-1'");
  hold("User1", "D1", "M1", false, "'-1'");
  hold("User1", "D1", "0", false);
  hold("User1", "gone", "0", false);
  hold("User2", "D1", "0", true);
  own("User1", "D1");
  own("User1", "D2");
  own("User1", "gone");
  own("User2", "D1");
  approve("User1", "D1");
  approve("User1", "D2");
  approve("User2", "D2");
  const ListCase cases[] = {
      {[&](const std::string& id) { return user().HardCopies(id); },
       "Select Personals.*, Manuals.ManualName,Revisions.RevisionLevel, Documents.DocumentNumber, "
       "Documents.DocumentTitle, Documents.CurrentRevID From ((Personals Left Join Manuals on "
       "Personals.ManualID = Manuals.ManualID) Left Join Documents on Personals.DocumentID = "
       "Documents.DocumentID) Left Join Revisions on Personals.RevisionID = Revisions.RevisionID "
       "Where Personals.UserID = 'User1' and HardCopy <> 0 Order By ManualName, CopyNumber, ",
       true,
       "ReleaseID",
       {"4", "3", "2", "1"},
       {"4", "2", "3", "1"}},
      {[&](const std::string& id) { return user().HardCopiesForViewDoc(id); },
       "Select DistinctRow Documents.* From Personals Left Join Documents on Personals.DocumentID "
       "= Documents.DocumentID Where Personals.UserID = 'User1' and HardCopy <> 0 Order By ",
       true,
       "DocumentID",
       {"~", "D1", "D2"},
       {"~", "D2", "D1"}},
      {[&](const std::string& id) { return user().HardCopiesForViewMan(id); },
       "Select DistinctRow Manuals.* From (Personals Left Join Manuals on Personals.ManualID = "
       "Manuals.ManualID) Where Personals.UserID = 'User1' and HardCopy <> 0 Order By ManualName",
       false,
       "ManualID",
       {"~", "M1", "M2"},
       {"~", "M1", "M2"}},
      {[&](const std::string& id) { return user().VirtualCopies(id); },
       "Select Personals.*, Manuals.ManualName, Documents.DocumentTitle, Documents.DocumentNumber, "
       "Documents.CurrentRevID From (Personals Left Join Manuals on Personals.ManualID = "
       "Manuals.ManualID) Inner Join Documents on Personals.DocumentID = Documents.DocumentID "
       "Where Personals.UserID = 'User1' and HardCopy = False Order By ManualName, CopyNumber, ",
       true,
       "ReleaseID",
       {"7", "6", "5"},
       {"7", "5", "6"}},
      {[&](const std::string& id) { return user().VirtualCopiesForViewDoc(id); },
       "Select distinctrow documents.* From Personals Inner Join Documents on "
       "Personals.DocumentID = Documents.DocumentID Where Personals.UserID = 'User1' and HardCopy "
       "= False Order By ",
       true,
       "DocumentID",
       {"D1", "D2"},
       {"D2", "D1"}},
      {[&](const std::string& id) { return user().VirtualCopiesForViewMan(id); },
       "Select distinctrow Manuals.* From (Personals Inner Join Manuals on Personals.ManualID = "
       "Manuals.ManualID) Where Personals.UserID = 'User1' and HardCopy = False Order By "
       "ManualName",
       false,
       "ManualID",
       {"M1"},
       {"M1"}},
      {[&](const std::string& id) { return user().Owns(id); },
       "Select Documents.DocumentTitle,Documents.DocumentNumber, Documents.DocumentID From Owners "
       "Inner Join Documents on Owners.DocumentID = Documents.DocumentID Where Owners.UserID = "
       "'User1' Order By ",
       true,
       "DocumentID",
       {"D1", "D2"},
       {"D2", "D1"}},
      {[&](const std::string& id) { return user().OwnsForView(id); },
       "Select Documents.* From Owners Inner Join Documents on Owners.DocumentID = "
       "Documents.DocumentID Where Owners.UserID = 'User1' Order By ",
       true,
       "DocumentID",
       {"D1", "D2"},
       {"D2", "D1"}},
      {[&](const std::string& id) { return user().Approves(id); },
       "Select Documents.DocumentTitle, Documents.DocumentNumber, Documents.DocumentID From "
       "Routing inner join documents on Routing.DocumentID = Documents.DocumentID Where "
       "Routing.UserID = 'User1' Order By ",
       true,
       "DocumentID",
       {"D1", "D2"},
       {"D2", "D1"}},
      {[&](const std::string& id) { return user().ApprovesForView(id); },
       "Select Documents.* From Routing inner join documents on Routing.DocumentID = "
       "Documents.DocumentID Where Routing.UserID = 'User1' Order By ",
       true,
       "DocumentID",
       {"D1", "D2"},
       {"D2", "D1"}},
  };
  for (const auto& c : cases) {
    for (const bool byNumber : {false, true}) {
      vesk_->SetAppOption(aoDocSortByNum, byNumber);
      const char* order = byNumber ? "DocumentNumber" : "DocumentTitle";
      Ref<Recordset> rs;
      EXPECT_EQ(statementsOf([&] { rs = c.list("User1"); }),
                Texts{c.statement + (c.byDocument ? order : "")});
      EXPECT_EQ(column(rs, c.column), byNumber ? c.byNumber : c.byTitle) << c.statement;
    }
    for (const std::string& nobody :
         {std::string("nobody"), std::string(), std::string("User%"), std::string(10000, 'U')})
      EXPECT_EQ(c.list(nobody)->RecordCount(), 0) << c.statement;
    for (const std::string& bad : {std::string("O'Brien"), std::string("x' or 'a'='a"),
                                   std::string("caf\xE9"), std::string("U\0", 2)})
      EXPECT_EQ(statementsOf([&] { EXPECT_RAISES(kSyntax, (void)c.list(bad)); }), Texts{});
  }
}

// ---- changes ----

TEST_F(Holdings, DocumentsAreReleasedAndReturned) {
  grant(
      {urReleaseDocumentsToUsers, urCollectDocumentsFromUsrs, urAddDocumentsToOthersPersonalLists});
  const std::int32_t hard = user().ReleaseDoc("User1", "D1", true);
  const std::int32_t listed = user().ReleaseDoc("User1", "D2", false);
  EXPECT_EQ(
      reg_.rows("Select ReleaseID, UserID, DocumentID, HardCopy From Personals"),
      (Texts{fmt::format("{}|User1|D1|True", hard), fmt::format("{}|User1|D2|False", listed)}));
  EXPECT_TRUE(user().ReturnDoc(fmt::format(" {}abc", hard))) << "the number it begins with";
  EXPECT_TRUE(user().ReturnDoc(std::to_string(listed))) << "whatever kind of copy it is";
  EXPECT_EQ(copies(), Texts{});
}

TEST_F(Holdings, WhatReturnDocMakesOfAText) {
  grant({urCollectDocumentsFromUsrs});
  const auto statement = [&](const std::string& text) {
    const auto statements =
        statementsOf([&] { EXPECT_RAISES(kErrorBase + 2517, user().ReturnDoc(text)); });
    return statements.empty() ? "" : statements.back();
  };
  EXPECT_EQ(statement("12abc"), "Delete * From Personals Where ReleaseID = 12");
  EXPECT_EQ(statement("12.5"), "Delete * From Personals Where ReleaseID = 12");
  EXPECT_EQ(statement("13.5"), "Delete * From Personals Where ReleaseID = 14");
  EXPECT_EQ(statement("-3 or 1=1"), "Delete * From Personals Where ReleaseID = -3");
  for (const char* none : {"abc", "", "  ", "'", "0"})
    EXPECT_RAISES(kErrorBase + 2518, user().ReturnDoc(none)) << none;
  EXPECT_RAISES(kOverflow, user().ReturnDoc("99999999999"));
  EXPECT_RAISES(kOverflow, user().ReturnDoc(std::string(10000, '9')));
}

TEST_F(Holdings, ManualsAreReleasedUnderTheirNextNumber) {
  putInto("M1", "D1", "1");
  grant({urReleaseManualsToUsers, urCollectManualsFromUsers, urAddManualsToOthersPersonalLists,
         urRemoveManualsFromOthersPersonalLists});
  EXPECT_EQ(user().ReleaseMan("User1", "M1", true), "0001");
  EXPECT_EQ(user().ReleaseMan("User1", "M1", true), "2");
  EXPECT_EQ(user().ReleaseMan("User3", "M1", false), "3") << "a virtual one takes a number too";
  EXPECT_EQ(user().ReleaseMan("User4", "M1", true), "3") << "which hard copies do not count";
  EXPECT_EQ(copies(), (Texts{"User1|D1|M1|True|0001|2", "User1|D1|M1|True|2|2",
                             "User3|D1|M1|False|3|2", "User4|D1|M1|True|3|2"}));
  EXPECT_TRUE(user().ReturnMan("User1", "M1", true, "2"));
  EXPECT_TRUE(user().ReturnMan("User1", "M1", true)) << "without a number all that are left";
  EXPECT_TRUE(user().ReturnMan("User3", "M1", false, "3"));
  EXPECT_EQ(copies(), Texts{"User4|D1|M1|True|3|2"});
  reg_.execute("Update Personals Set CopyNumber = 'O''Brien 9'");
  EXPECT_EQ(user().ReleaseMan("User1", "M1", true), "O'Brien 10");
  EXPECT_EQ(copies().back(), "User1|D1|M1|True|O'Brien 10|2");
}

TEST_F(Holdings, OwnersAndApproversAreSetAndUnset) {
  grant({urAssigndocumentowners, urassigndocumentapprovers});
  EXPECT_EQ(user().SetOwner("User1", "D1"), Variant(true));
  EXPECT_EQ(user().SetApprover("User1", "D2"), Variant(true));
  EXPECT_EQ(reg_.rows("Select UserID, DocumentID From Owners"), Texts{"User1|D1"});
  EXPECT_EQ(reg_.rows("Select UserID, DocumentID From Routing"), Texts{"User1|D2"});
  EXPECT_TRUE(user().UnSetOwner("User1", "D1"));
  EXPECT_TRUE(user().UnSetApprover("User1", "D2"));
  EXPECT_EQ(user().Owns("User1")->RecordCount() + user().Approves("User1")->RecordCount(), 0);
}

TEST_F(Holdings, WhatTheRelationsRefuseIsRefused) {
  grant({});
  putInto("M1", "D1", "1");
  hold("User1", "D1", "0", true);
  const auto before = everything();
  const std::vector<std::pair<std::function<void()>, test::Refusal>> cases = {
      {[&] { user().ReleaseDoc("User1", "D1", true); },
       {2531, "DocumentUserRelation", "You do not have the right to release documents to users"}},
      {[&] { user().ReleaseDoc("User2", "D1", false); },
       {2531, "DocumentUserRelation",
        "You do not have the right to add documents to your personal list"}},
      {[&] { user().ReturnDoc("1"); },
       {2531, "DocumentUserRelation", "You do not have the right to collect documents from users"}},
      {[&] { user().ReleaseMan("User1", "M1", true); },
       {2531, "ManualUserRelation", "You do not have the right to release manuals to users"}},
      {[&] { user().ReleaseMan("User2", "M1", false); },
       {2531, "ManualUserRelation",
        " You do not have the right to add manuals to your personal list"}},
      {[&] { user().ReturnMan("User1", "M1", true, "1"); },
       {2531, "ManualUserRelation", "You do not have the right to collect manuals from users"}},
      {[&] { user().SetOwner("User1", "D1"); },
       {2530, "OwnsRelation",
        "Unable to add user to documents owner list due to user access restrictions"}},
      {[&] { user().UnSetOwner("User1", "D1"); },
       {2530, "OwnsRelation",
        "Unable to add user to documents owner list due to user access restrictions"}},
      {[&] { user().SetApprover("User1", "D1"); },
       {2532, "ApprovesRelation",
        "You do not have the right to assign or remove approvers for this document"}},
      {[&] { user().UnSetApprover("User1", "D1"); },
       {2532, "ApprovesRelation",
        "You do not have the right to assign or remove approvers for this document"}},
  };
  for (const auto& [operation, refusal] : cases) test::expectRefusal(refusal, operation);
  grant({urReleaseManualsToUsers});
  test::expectRefusal(
      {2520, "ManualUserRelation",
       "This manual has no contents.  Only manuals that have contents may be released to users."},
      [&] { user().ReleaseMan("User1", "M2", true); });
  EXPECT_EQ(statementsOf([&] {
              EXPECT_RAISES(kSyntax, user().ReleaseMan("User1", "O'Brien", true));
              EXPECT_RAISES(kSyntax, user().ReleaseMan("User1", std::string("M1\0", 3), true));
            }),
            Texts{});
  EXPECT_EQ(everything(), before);
}

TEST_F(Holdings, AnApproverIsWhoIsOnTheList) {
  approve("User1", "D1");
  grant({urActAsDocumentOwner});
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(user().UserIsApprover("User1", "D1")); }),
            Texts{"Select UserID From Routing Where DocumentID = 'D1' and UserID = 'User1'"});
  EXPECT_TRUE(user().UserIsApprover("user1", "d1"));
  EXPECT_FALSE(user().UserIsApprover("User1", "D2"));
  EXPECT_FALSE(user().UserIsApprover("User2", "D1")) << "rights make nobody an approver";
  EXPECT_FALSE(user().UserIsApprover("", ""));
  EXPECT_RAISES(kSyntax, (void)user().UserIsApprover("O'Brien", "D1"));
  EXPECT_RAISES(kSyntax, (void)user().UserIsApprover("User1", "O'Brien"));
}

class HoldingFaults : public HoldingsSession<test::FaultySessionTest> {};

TEST_F(HoldingFaults, ReleasingAManualLeavesNothingBehind) {
  addDocument("D1");
  addManual("M1");
  putInto("M1", "D1", "1");
  EXPECT_EQ(leavesNothingBehind([&] { user().ReleaseMan("User1", "M1", true); }), 1);
}

TEST_F(Holdings, ProcessesThatReleaseAManualAtOnceGetANumberEach) {
  constexpr int kProcesses = 4;
  const int each = test::steps(25);
  putInto("M1", "D1", "1");
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    const test::TestSession vesk;
    vesk->Login("Anna", "secret", "Lock Timeout=60;Data Source=" + reg_.path());
    for (int i = 0; i < each; ++i) vesk->User()->ReleaseMan(fmt::format("U{}", p), "M1", true);
    return std::string("done");
  });
  EXPECT_THAT(answers, testing::Each("done"));
  const auto numbers = reg_.rows("Select Distinct CopyNumber From Personals");
  EXPECT_EQ(numbers.size(), static_cast<std::size_t>(kProcesses * each));
  EXPECT_EQ(copies().size(), numbers.size());
}

}  // namespace
}  // namespace kv
