// SPDX-License-Identifier: Apache-2.0
// Owners of documents, and approvers of their revisions.
#include <gtest/gtest.h>

#include "support/distribution_session.h"

namespace kv {
namespace {

using test::Refusal;
using test::Texts;

constexpr Refusal kMayNotOwn{
    2530, "OwnsRelation",
    "Unable to add user to documents owner list due to user access restrictions"};
constexpr Refusal kOwner{2508, "OwnsReleation", "This user is already an owner of this document"};
constexpr Refusal kNoOwner{2509, "OwnsRelation", "This user is not an owner of this document"};
constexpr const char* kApproves = "ApprovesRelation";
constexpr Refusal kMayNotApprove{
    2532, kApproves, "You do not have the right to assign or remove approvers for this document"};
constexpr Refusal kUncontrolled{
    2511, kApproves,
    "This document is uncontrolled.  Only controlled documents have approval lists.)"};
constexpr Refusal kApprover{2510, kApproves,
                            "This user is already in the approval list for this document"};
constexpr Refusal kNoApprover{2512, kApproves,
                              "This user is not in the approval list for this document"};

class OwnersAndApprovers : public test::DistributionSession<test::SessionTest> {
 protected:
  OwnersAndApprovers() {
    logIn("Bert");
    addDocument("D1");
    addDocument("D2");
    reg_.execute("Insert Into Documents (DocumentID, Controlled) Values ('U1', False)");
    own("User1", "D2");
    approve("User1", "D2", "10");
    grant({urAssigndocumentowners, urassigndocumentapprovers});
  }
  void approve(const std::string& user, const std::string& document, const std::string& place) {
    reg_.execute("Insert Into Routing (UserID, DocumentID, ListOrder) Values ('" + user + "', '" +
                 document + "', " + place + ")");
  }
  bool owner(const std::string& document, const std::string& user, bool remove = false) {
    return vesk_->OwnsRelation(document, user, remove);
  }
  bool approver(const std::string& document, const std::string& user, bool remove = false) {
    return vesk_->ApprovesRelation(document, user, remove);
  }
  Texts owners() { return reg_.rows("Select DocumentID, UserID From Owners"); }
  Texts approvers() { return reg_.rows("Select DocumentID, UserID, ListOrder From Routing"); }
};

TEST_F(OwnersAndApprovers, AnOwnerIsAddedAndRemoved) {
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(vesk_->OwnsRelation("D1", "User3")); }),
            (Texts{"Select UserID From Owners Where DocumentID = 'D1' and UserID = 'User2'",
                   "Select * From Owners Where DocumentID = 'D1' and UserID = 'User3'"}));
  EXPECT_EQ(owners(), (Texts{"D2|User1", "D1|User3"}));
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(owner("d2", "user1", true)); }).back(),
            "Select * From Owners Where DocumentID = 'd2' and UserID = 'user1'");
  EXPECT_EQ(owners(), Texts{"D1|User3"});
}

TEST_F(OwnersAndApprovers, DocumentsOfAnyKindHaveOwners) {
  EXPECT_TRUE(owner("U1", "User1"));
  EXPECT_TRUE(owner("no document", "nobody"));
  EXPECT_TRUE(owner("", ""));
  EXPECT_EQ(owners(), (Texts{"D2|User1", "U1|User1", "no document|nobody", "|"}));
  EXPECT_TRUE(owner("", "", true));
  EXPECT_TRUE(owner("U1", "User1", true));
}

TEST_F(OwnersAndApprovers, AnApproverIsAddedWithoutAPlaceAndComesFirst) {
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(vesk_->ApprovesRelation("D2", "User3")); }),
            (Texts{"Select UserID From Owners Where DocumentID = 'D2' and UserID = 'User2'",
                   "Select * From Documents Where DocumentID = 'D2'",
                   "Select * From Routing Where DocumentID = 'D2' and UserID = 'User3'"}));
  EXPECT_EQ(approvers(), (Texts{"D2|User1|10", "D2|User3|~"}));
  EXPECT_EQ(reg_.rows("Select UserID From Routing Order By ListOrder"), (Texts{"User3", "User1"}));
  EXPECT_TRUE(approver("D2", "User1", true));
  EXPECT_EQ(approvers(), Texts{"D2|User3|~"});
}

TEST_F(OwnersAndApprovers, OfTwoRowsOneGoesAtATime) {
  own("User1", "D2");
  approve("User1", "D2", "20");
  EXPECT_TRUE(owner("D2", "User1", true));
  EXPECT_TRUE(approver("D2", "User1", true));
  EXPECT_EQ(owners(), Texts{"D2|User1"});
  EXPECT_EQ(approvers(), Texts{"D2|User1|20"});
}

// ---- refusals ----

TEST_F(OwnersAndApprovers, RefusalsAreTheseAndChangeNothing) {
  approve("User1", "U1", "10");
  const auto before = everything();
  test::expectRefusal(kOwner, [&] { owner("D2", "User1"); });
  test::expectRefusal(kNoOwner, [&] { owner("D1", "User1", true); });
  test::expectRefusal(kNoOwner, [&] { owner("", "", true); });
  test::expectRefusal(kApprover, [&] { approver("D2", "User1"); });
  test::expectRefusal(kNoApprover, [&] { approver("D1", "User1", true); });
  for (const char* document : {"U1", "no document", ""})
    for (const bool remove : {false, true})
      test::expectRefusal(kUncontrolled, [&] { approver(document, "User1", remove); });
  grant({});
  for (const bool remove : {false, true}) {
    test::expectRefusal(kMayNotOwn, [&] { owner("D2", "User1", remove); });
    test::expectRefusal(kMayNotApprove, [&] { approver("D2", "User1", remove); });
    test::expectRefusal(kMayNotApprove, [&] { approver("U1", "User1", remove); });
  }
  EXPECT_EQ(everything(), before);
}

TEST_F(OwnersAndApprovers, TheRightsOfUsers) {
  grant({urAssigndocumentowners});
  EXPECT_TRUE(owner("D1", "User3"));
  test::expectRefusal(kMayNotApprove, [&] { approver("D1", "User3"); });
  grant({urassigndocumentapprovers});
  EXPECT_TRUE(approver("D1", "User3"));
  test::expectRefusal(kMayNotOwn, [&] { owner("D1", "User3", true); });
}

TEST_F(OwnersAndApprovers, TheRightsOfOwners) {
  grant({});
  own("User2", "D1");
  test::expectRefusal(kMayNotOwn, [&] { owner("D1", "User3"); });
  test::expectRefusal(kMayNotApprove, [&] { approver("D1", "User3"); });
  letOwners({orAddRemoveOwners});
  EXPECT_TRUE(owner("D1", "User3"));
  test::expectRefusal(kMayNotOwn, [&] { owner("D2", "User3"); });
  test::expectRefusal(kMayNotApprove, [&] { approver("D1", "User3"); });
  letOwners({oraddremoveapprovers});
  EXPECT_TRUE(approver("D1", "User3"));
  test::expectRefusal(kMayNotApprove, [&] { approver("D2", "User3"); });
  test::expectRefusal(kMayNotOwn, [&] { owner("D1", "User3", true); });
  letOwners({orAddRemoveOwners});
  EXPECT_TRUE(owner("D1", "User2", true)) << "an owner may give it up";
  test::expectRefusal(kMayNotOwn, [&] { owner("D1", "User2"); });
}

// ---- hostile and mistaken values ----

TEST_F(OwnersAndApprovers, ValuesThatWouldChangeAStatementRunNothing) {
  const auto before = everything();
  for (const std::string& bad :
       {std::string("O'Brien"), std::string("x' or 'a'='a"), std::string(9999, '\''),
        std::string("caf\xE9"), std::string("D1\0", 3)})
    EXPECT_EQ(statementsOf([&] {
                for (const bool remove : {false, true}) {
                  EXPECT_RAISES(kSyntax, owner(bad, "User1", remove));
                  EXPECT_RAISES(kSyntax, owner("D1", bad, remove));
                  EXPECT_RAISES(kSyntax, approver(bad, "User1", remove));
                  EXPECT_RAISES(kSyntax, approver("D1", bad, remove));
                }
              }),
              Texts{});
  const std::string tooLong(10000, 'x');
  EXPECT_RAISES(kWrongType, owner(tooLong, "User1")) << "no column is that wide";
  EXPECT_RAISES(kWrongType, owner("D1", tooLong));
  EXPECT_RAISES(kWrongType, approver("D1", tooLong));
  test::expectRefusal(kNoOwner, [&] { owner("D2", tooLong, true); });
  test::expectRefusal(kNoOwner, [&] { owner("D2", "User%", true); });
  test::expectRefusal(kUncontrolled, [&] { approver(tooLong, "User1"); });
  EXPECT_EQ(everything(), before);
}

TEST_F(OwnersAndApprovers, ADoubledApostropheIsOne) {
  addDocument("O''Brien");
  EXPECT_TRUE(owner("O''Brien", "it''s"));
  EXPECT_TRUE(approver("O''Brien", "it''s"));
  EXPECT_EQ(owners().back(), "O'Brien|it's");
  EXPECT_EQ(approvers().back(), "O'Brien|it's|~");
  test::expectRefusal(kOwner, [&] { owner("O''Brien", "it''s"); });
  test::expectRefusal(kApprover, [&] { approver("O''Brien", "it''s"); });
  EXPECT_TRUE(owner("O''Brien", "it''s", true));
  EXPECT_TRUE(approver("O''Brien", "it''s", true));
}

}  // namespace
}  // namespace kv
