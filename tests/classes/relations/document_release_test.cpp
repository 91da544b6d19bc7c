// SPDX-License-Identifier: Apache-2.0
// Documents released to users, and taken back.
#include <gtest/gtest.h>

#include "common/clock.h"
#include "support/distribution_session.h"

namespace kv {
namespace {

using test::at;
using test::Refusal;
using test::Texts;

constexpr const char* kSource = "DocumentUserRelation";
constexpr Refusal kMayNotRelease{2531, kSource,
                                 "You do not have the right to release documents to users"};
constexpr Refusal kMayNotCollect{2531, kSource,
                                 "You do not have the right to collect documents from users"};
constexpr Refusal kMayNotAddToOthers{
    2531, kSource, "You do not have the right to add documents to other user's personal lists"};
constexpr Refusal kMayNotAddToOwn{
    2531, kSource, "You do not have the right to add documents to your personal list"};
constexpr Refusal kMayNotRemoveFromOthers{
    2531, kSource,
    "You do not have the right to remove documents from other user's personal lists"};
constexpr Refusal kMayNotRemoveFromOwn{
    2531, kSource, "You do not have the right to remove documents from your personal list"};
constexpr Refusal kUncontrolled{
    2515, kSource,
    "This is an uncontrolled document.  Only controlled documents may be released to users"};
constexpr Refusal kNoRevision{2516, kSource,
                              "Only Documents with a current revision may be released to users."};
constexpr Refusal kGone{2517, kSource, "That release is no longer present in system"};
constexpr Refusal kNoReleaseID{2518, kSource,
                               "Unable to return released document without ReleaseID"};
constexpr Refusal kListedAlready{2519, kSource,
                                 "This document is already in this users personal list"};

class DocumentRelease : public test::DistributionSession<test::SessionTest> {
 protected:
  DocumentRelease() {
    logIn("Bert");
    addDocument("D1", 7);
    addDocument("D2", 8);
    grant({urReleaseDocumentsToUsers, urCollectDocumentsFromUsrs,
           urAddDocumentsToOthersPersonalLists, urRemoveDocumentsFromOthersPersonalLists});
  }
  std::int32_t add(const std::string& document, const std::string& user, bool hard) {
    std::int32_t release = -7;
    EXPECT_TRUE(vesk_->DocumentUserRelation(document, user, hard, false, release));
    return release;
  }
  bool takeBack(const std::string& document, const std::string& user, bool hard,
                std::int32_t release) {
    return vesk_->DocumentUserRelation(document, user, hard, true, release);
  }
  // A refused operation, which leaves the number as it is.
  void refused(const Refusal& refusal, const std::string& document, const std::string& user,
               bool hard, bool remove, std::int32_t release = 1) {
    const std::int32_t given = release;
    test::expectRefusal(
        refusal, [&] { vesk_->DocumentUserRelation(document, user, hard, remove, release); });
    EXPECT_EQ(release, given);
  }
};

TEST_F(DocumentRelease, AHardCopyIsReleased) {
  const StoppedClock clock(at(2001, 2, 3, 14, 5, 9));
  std::int32_t release = 0;
  const auto statements = statementsOf([&] { release = add("D1", "User1", true); });
  EXPECT_THAT(
      statements,
      testing::ElementsAre(
          "Select UserID From Owners Where DocumentID = 'D1' and UserID = 'User2'",
          "Select * From Documents Where DocumentID = 'D1'",
          "Select * From Documents Where DocumentID = 'D1'",
          "Select * From Personals Where DocumentID = 'D1' and UserID = 'User1' and ManualID = "
          "'0' and HardCopy = True",
          testing::MatchesRegex(
              "Select \\* From Personals Where UserID = '020301140509-[0-9a-f]{16}'"),
          "Select * From Documents Where DocumentID = 'D1'"));
  EXPECT_EQ(reg_.rows("Select * From Personals"),
            Texts{fmt::format("{}|User1|D1|0|True|~|7", release)});
}

TEST_F(DocumentRelease, AUserMayHoldSeveralHardCopies) {
  const std::int32_t first = add("D1", "User1", true);
  const std::int32_t second = add("D1", "User1", true);
  EXPECT_NE(first, second);
  EXPECT_EQ(copies(), (Texts{"User1|D1|0|True|~|7", "User1|D1|0|True|~|7"}));
  EXPECT_TRUE(takeBack("D1", "User1", true, first));
  EXPECT_EQ(reg_.value("Select ReleaseID From Personals"), std::to_string(second));
}

TEST_F(DocumentRelease, APersonalListHasADocumentOnce) {
  hold("User1", "D1", "0", true);
  hold("User1", "D1", "M1", false);
  const auto statements = statementsOf([&] { add("D1", "User1", false); });
  EXPECT_EQ(statements[3],
            "Select * From Personals Where DocumentID = 'D1' and UserID = 'User1' and ManualID = "
            "'0' and HardCopy = False");
  const auto before = everything();
  refused(kListedAlready, "D1", "User1", false, false);
  refused(kListedAlready, "d1", "user1", false, false);
  EXPECT_EQ(everything(), before);
  add("D1", "User3", false);
  add("D2", "User1", false);
  EXPECT_EQ(copies(), (Texts{"User1|D1|0|True|~|7", "User1|D1|M1|False|~|7", "User1|D1|0|False|~|7",
                             "User3|D1|0|False|~|7", "User1|D2|0|False|~|8"}));
}

TEST_F(DocumentRelease, CopiesAreTakenBackByNumber) {
  const std::int32_t hard = add("D1", "User1", true);
  const std::int32_t listed = add("D2", "User1", false);
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(takeBack("D1", "User1", true, hard)); }),
            (Texts{"Select UserID From Owners Where DocumentID = 'D1' and UserID = 'User2'",
                   "Select * From Documents Where DocumentID = 'D1'",
                   "Select * From Documents Where DocumentID = 'D1'",
                   fmt::format("Delete * From Personals Where ReleaseID = {}", hard)}));
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(takeBack("", "", false, listed)); }),
            (Texts{fmt::format("Select * From Personals Where ReleaseID = {}", listed),
                   "Select UserID From Owners Where DocumentID = 'D2' and UserID = 'User2'",
                   "Select * From Documents Where DocumentID = 'D2'",
                   "Select * From Documents Where DocumentID = 'D2'",
                   fmt::format("Delete * From Personals Where ReleaseID = {}", listed)}))
      << "the document is that of the release";
  EXPECT_EQ(copies(), Texts{});
}

TEST_F(DocumentRelease, TheRevisionHeldIsTheCurrentOne) {
  reg_.execute("Update Documents Set CurrentRevID = 12 Where DocumentID = 'D1'");
  add("D1", "User1", true);
  reg_.execute("Update Documents Set CurrentRevID = 13 Where DocumentID = 'D1'");
  add("D1", "User1", true);
  EXPECT_EQ(reg_.rows("Select RevisionID From Personals Order By ReleaseID"), (Texts{"12", "13"}));
}

// ---- refusals ----

TEST_F(DocumentRelease, RefusalsAreTheseAndChangeNothing) {
  reg_.execute(
      "Insert Into Documents (DocumentID, Controlled, CurrentRevID) Values ('U1', "
      "False, 5)");
  reg_.execute("Insert Into Documents (DocumentID, Controlled) Values ('N1', True)");
  hold("User1", "U1", "0", true);
  hold("User1", "N1", "0", true);
  hold("User1", "D1", "0", true);
  const auto before = everything();
  for (const bool hard : {true, false}) {
    for (const bool remove : {false, true}) {
      refused(kUncontrolled, "U1", "User1", hard, remove);
      refused(kUncontrolled, "D9", "User1", hard, remove, 3);
      refused(kNoRevision, "N1", "User1", hard, remove, 2);
    }
    refused(kUncontrolled, "", "", hard, true, 1);
    refused(kNoRevision, "", "", hard, true, 2);
    refused(kNoReleaseID, "", "", hard, true, 0);
    refused(kNoReleaseID, "D1", "User1", hard, true, 0);
    refused(kUncontrolled, "U1", "User1", hard, true, 0);
    for (const std::int32_t release : {99, -1, 2147483647, -2147483647 - 1}) {
      refused(kGone, "", "", hard, true, release);
      refused(kGone, "D1", "User1", hard, true, release);
      refused(kGone, "  ", "", hard, true, release);
    }
  }
  EXPECT_EQ(everything(), before);
  EXPECT_TRUE(takeBack("", "", true, 3));
  refused(kGone, "", "", true, true, 3);
}

struct RightCase {
  const char* name;
  bool hard;
  bool remove;
  std::int16_t owners;
  std::int16_t others;
  std::int16_t own;  // 0 where it is no matter whose
  Refusal refusal;
  Refusal ownRefusal;
};

const RightCase kRightCases[] = {
    {"release", true, false, orReleaseToUsers, urReleaseDocumentsToUsers, 0, kMayNotRelease,
     kMayNotRelease},
    {"collect", true, true, orCollectFromUsers, urCollectDocumentsFromUsrs, 0, kMayNotCollect,
     kMayNotCollect},
    {"add", false, false, orAddToUsersPersonal, urAddDocumentsToOthersPersonalLists,
     urADDTOPERSONAL, kMayNotAddToOthers, kMayNotAddToOwn},
    {"remove", false, true, orRemoveFromUserPersonal, urRemoveDocumentsFromOthersPersonalLists,
     urRemoveFromPersonal, kMayNotRemoveFromOthers, kMayNotRemoveFromOwn},
};

TEST_F(DocumentRelease, TheRightsOfUsersAndOwners) {
  const auto run = [&](const RightCase& c, const std::string& user) {
    std::int32_t release = 0;
    if (c.remove) {
      hold(user, "D1", "0", c.hard);
      release = std::stoi(reg_.value("Select Max(ReleaseID) From Personals"));
    }
    const auto error =
        test::errorOf([&] { vesk_->DocumentUserRelation("D1", user, c.hard, c.remove, release); });
    reg_.execute("Delete * From Personals");
    return error ? error->description() : std::string();
  };
  for (const auto& c : kRightCases) {
    SCOPED_TRACE(c.name);
    grant({});
    letOwners({});
    refused(c.refusal, "D1", "User1", c.hard, c.remove);
    refused(c.ownRefusal, "D1", "User2", c.hard, c.remove);
    grant({c.others});
    EXPECT_EQ(run(c, "User1"), "");
    EXPECT_EQ(run(c, "User2"), "") << "the right to others' lists covers one's own";
    if (c.own != 0) {
      grant({c.own});
      EXPECT_EQ(run(c, "User1"), c.refusal.description);
      EXPECT_EQ(run(c, "User2"), "");
    }
    grant({});
    own("User2", "D1");
    EXPECT_EQ(run(c, "User1"), c.refusal.description);
    letOwners({c.owners});
    EXPECT_EQ(run(c, "User1"), "");
    reg_.execute("Delete * From Owners");
    EXPECT_EQ(run(c, "User1"), c.refusal.description);
  }
}

TEST_F(DocumentRelease, WithTheRightToOnesOwnListAloneNothingIsRemovedWithoutAUser) {
  grant({urRemoveFromPersonal});
  hold("User2", "D1", "0", false);
  const auto before = everything();
  refused(kMayNotRemoveFromOthers, "", "", false, true, 1);
  EXPECT_EQ(everything(), before);
  EXPECT_TRUE(takeBack("", "User2", false, 1)) << "who names himself may";
}

TEST_F(DocumentRelease, OwnersTakeBackByNumberAlone) {
  grant({});
  own("User2", "D1");
  letOwners({orCollectFromUsers});
  hold("User1", "D1", "0", true);
  hold("User1", "D2", "0", true);
  EXPECT_TRUE(takeBack("", "", true, 1));
  refused(kMayNotCollect, "", "", true, true, 2);
  refused(kMayNotCollect, "", "", true, true, 1);
}

// ---- hostile and mistaken values ----

TEST_F(DocumentRelease, ValuesThatWouldChangeAStatementRunNothing) {
  const auto before = everything();
  for (const std::string& bad :
       {std::string("O'Brien"), std::string("x' or 'a'='a"), std::string(9999, '\''),
        std::string("caf\xE9"), std::string("D1\0", 3)})
    EXPECT_EQ(statementsOf([&] {
                for (const bool hard : {false, true})
                  for (const bool remove : {false, true}) {
                    std::int32_t release = 1;
                    EXPECT_RAISES(kSyntax,
                                  vesk_->DocumentUserRelation(bad, "User1", hard, remove, release));
                    EXPECT_RAISES(kSyntax,
                                  vesk_->DocumentUserRelation("D1", bad, hard, remove, release));
                  }
              }),
              Texts{});
  std::int32_t release = 1;
  const std::string tooLong(10000, 'x');
  EXPECT_RAISES(kWrongType, vesk_->DocumentUserRelation("D1", tooLong, true, false, release))
      << "no column is that wide";
  refused(kUncontrolled, tooLong, "User1", true, false);
  EXPECT_EQ(everything(), before);
}

TEST_F(DocumentRelease, ADoubledApostropheIsOne) {
  addDocument("O''Brien");
  const std::int32_t release = add("O''Brien", "it''s", false);
  EXPECT_EQ(copies(), Texts{"it's|O'Brien|0|False|~|7"});
  refused(kListedAlready, "O''Brien", "it''s", false, false);
  EXPECT_TRUE(takeBack("", "", false, release)) << "the stored one is doubled by itself";
}

TEST_F(DocumentRelease, WithoutADocumentThereIsNothingToTest) {
  add("", "User1", true);
  EXPECT_EQ(copies(), Texts{"User1||0|True|~|~"});
}

}  // namespace
}  // namespace kv
