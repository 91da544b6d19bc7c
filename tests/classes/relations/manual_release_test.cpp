// SPDX-License-Identifier: Apache-2.0
// Manuals released to users, and taken back.
#include <gtest/gtest.h>

#include "support/distribution_session.h"

namespace kv {
namespace {

using test::Refusal;
using test::Texts;

constexpr const char* kSource = "ManualUserRelation";
constexpr Refusal kMayNotRelease{2531, kSource,
                                 "You do not have the right to release manuals to users"};
constexpr Refusal kMayNotCollect{2531, kSource,
                                 "You do not have the right to collect manuals from users"};
constexpr Refusal kMayNotAddToOthers{
    2531, kSource, "You do not have the right to add manuals to other user's personal lists"};
constexpr Refusal kMayNotAddToOwn{
    2531, kSource, " You do not have the right to add manuals to your personal list"};
constexpr Refusal kMayNotRemoveFromOthers{
    2531, kSource, "You do not have the right to remove manuals from other user's personal lists"};
constexpr Refusal kMayNotRemoveFromOwn{
    2531, kSource, " You do not have the right to remove manuals from your personal list"};
constexpr Refusal kNoContents{
    2520, kSource,
    "This manual has no contents.  Only manuals that have contents may be released to users."};
constexpr Refusal kNotHeld{2521, kSource, "This user does not have this manual"};
constexpr Refusal kNotAdded{2522, kSource, "Unable to add this manual to this user"};
constexpr Refusal kHeldAlready{2523, kSource, "This user already has this manual"};

class ManualRelease : public test::DistributionSession<test::SessionTest> {
 protected:
  ManualRelease() {
    logIn("Bert");
    addDocument("D1", 7);
    addDocument("D2", 8);
    addManual("M1");
    addManual("M2");
    addManual("M9");
    for (const char* manual : {"M1", "M2"})
      for (const char* document : {"D1", "D2"}) putInto(manual, document, "1");
    grant({urReleaseManualsToUsers, urCollectManualsFromUsers, urAddManualsToOthersPersonalLists,
           urRemoveManualsFromOthersPersonalLists});
  }
  bool add(const std::string& manual, const std::string& user, bool hard,
           const std::string& number) {
    return vesk_->ManualUserRelation(manual, user, hard, number, false);
  }
  bool takeBack(const std::string& manual, const std::string& user, bool hard,
                const std::string& number) {
    return vesk_->ManualUserRelation(manual, user, hard, number, true);
  }
};

TEST_F(ManualRelease, ACopyIsOneRowForEachDocument) {
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(add("M1", "User1", true, "0001")); }),
            (Texts{"Select * from manualContents Where ManualID = 'M1'",
                   "Select * From Personals Where UserID = 'User1' and ManualID = 'M1' and "
                   "CopyNumber = '0001' and HardCopy = True",
                   "INSERT INTO Personals (ManualID, DocumentID, UserID, RevisionId, HardCopy, "
                   "CopyNumber ) SELECT ManualContents.ManualID, ManualContents.DocumentID, "
                   "'User1' AS Expr1, Documents.CurrentRevID, True, '0001' FROM ManualContents "
                   "INNER JOIN Documents ON ManualContents.DocumentID = Documents.DocumentID "
                   "WHERE (((ManualContents.ManualID)='M1'))"}));
  EXPECT_EQ(copies(), (Texts{"User1|D1|M1|True|0001|7", "User1|D2|M1|True|0001|8"}));
}

TEST_F(ManualRelease, AHardCopyMayBeReleasedTwiceUnderOneNumber) {
  EXPECT_TRUE(add("M1", "User1", true, "1"));
  const auto statements = statementsOf([&] { EXPECT_TRUE(add("M1", "User1", true, "1")); });
  EXPECT_EQ(statements.back(),
            "INSERT INTO Personals ( ManualID, DocumentID, UserID, RevisionId, HardCopy, "
            "CopyNumber ) SELECT ManualContents.ManualID, ManualContents.DocumentID, 'User1' AS "
            "Expr1, Documents.CurrentRevID, True, '1' FROM ManualContents INNER JOIN Documents ON "
            "ManualContents.DocumentID = Documents.DocumentID WHERE "
            "(((ManualContents.ManualID)='M1'))");
  EXPECT_EQ(copies().size(), 4U);
  EXPECT_TRUE(takeBack("M1", "User1", true, "1"));
  EXPECT_EQ(copies(), Texts{}) << "both go together";
}

TEST_F(ManualRelease, APersonalListHasAManualOnce) {
  EXPECT_TRUE(add("M1", "User1", true, "1"));
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(add("M1", "User1", false, "-1")); })[1],
            "Select * From Personals Where UserID = 'User1' and ManualID = 'M1' and CopyNumber = "
            "'-1' and HardCopy = False");
  const auto before = everything();
  test::expectRefusal(kHeldAlready, [&] { add("M1", "User1", false, "-1"); });
  test::expectRefusal(kHeldAlready, [&] { add("m1", "user1", false, ""); });
  EXPECT_EQ(everything(), before);
  EXPECT_TRUE(add("M1", "User1", false, "-2")) << "the number makes the difference";
  EXPECT_TRUE(add("M1", "User3", false, "-1"));
}

TEST_F(ManualRelease, CopiesAreTakenBackByNumber) {
  for (const char* number : {"1", "2"}) add("M1", "User1", true, number);
  add("M1", "User1", false, "-1");
  add("M1", "User3", true, "1");
  add("M2", "User1", true, "1");
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(takeBack("M1", "User1", true, "1")); }),
            (Texts{"Select * from manualContents Where ManualID = 'M1'",
                   "Select * From Personals Where UserID = 'User1' and ManualID = 'M1' and "
                   "CopyNumber = '1' and HardCopy = True"}));
  EXPECT_EQ(copies(),
            (Texts{"User1|D1|M1|True|2|7", "User1|D2|M1|True|2|8", "User1|D1|M1|False|-1|7",
                   "User1|D2|M1|False|-1|8", "User3|D1|M1|True|1|7", "User3|D2|M1|True|1|8",
                   "User1|D1|M2|True|1|7", "User1|D2|M2|True|1|8"}));
}

TEST_F(ManualRelease, WithoutANumberEveryCopyOfThatKindIsTakenBack) {
  for (const char* number : {"1", "2", ""}) add("M1", "User1", true, number);
  hold("User1", "D1", "M1", true);
  add("M1", "User1", false, "-1");
  for (const char* number : {"", "  "}) {
    EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(takeBack("M1", "User1", true, number)); }).back(),
              "Select * From Personals Where UserID = 'User1' and ManualID = 'M1' and HardCopy = "
              "True");
    EXPECT_EQ(copies(), (Texts{"User1|D1|M1|False|-1|7", "User1|D2|M1|False|-1|8"}));
    EXPECT_TRUE(add("M1", "User1", true, "3"));
  }
}

TEST_F(ManualRelease, DocumentsAreHeldAtTheRevisionTheyHave) {
  reg_.execute("Update Documents Set CurrentRevID = Null Where DocumentID = 'D1'");
  reg_.execute("Update Documents Set Controlled = False, CurrentRevID = 0 Where DocumentID = 'D2'");
  EXPECT_TRUE(add("M1", "User1", true, "1"));
  EXPECT_EQ(copies(), (Texts{"User1|D1|M1|True|1|~", "User1|D2|M1|True|1|0"}));
}

TEST_F(ManualRelease, ManyRowsAreTakenBack) {
  constexpr int kMany = 300;
  for (int i = 0; i < kMany; ++i) hold("User1", fmt::format("X{}", i), "M1", true, "'1'");
  EXPECT_TRUE(takeBack("M1", "User1", true, "1"));
  EXPECT_EQ(copies(), Texts{});
}

// ---- refusals ----

TEST_F(ManualRelease, RefusalsAreTheseAndChangeNothing) {
  putInto("M3", "nothing", "1");
  hold("User1", "D1", "M9", true, "'1'");
  const auto before = everything();
  for (const bool hard : {true, false})
    for (const char* manual : {"M9", "no manual", ""}) {
      test::expectRefusal(kNoContents, [&] { add(manual, "User1", hard, "1"); });
      test::expectRefusal(kNoContents, [&] { takeBack(manual, "User1", hard, "1"); });
    }
  for (const bool hard : {true, false}) {
    test::expectRefusal(kNotHeld, [&] { takeBack("M1", "User1", hard, "1"); });
    test::expectRefusal(kNotHeld, [&] { takeBack("M1", "User1", hard, ""); });
    test::expectRefusal(kNotAdded, [&] { add("M3", "User1", hard, "1"); });
  }
  EXPECT_EQ(everything(), before);
}

struct RightCase {
  const char* name;
  bool hard;
  bool remove;
  std::int16_t others;
  std::int16_t own;  // 0 where it is no matter whose
  Refusal refusal;
  Refusal ownRefusal;
};

const RightCase kRightCases[] = {
    {"release", true, false, urReleaseManualsToUsers, 0, kMayNotRelease, kMayNotRelease},
    {"collect", true, true, urCollectManualsFromUsers, 0, kMayNotCollect, kMayNotCollect},
    {"add", false, false, urAddManualsToOthersPersonalLists, urADDTOPERSONAL, kMayNotAddToOthers,
     kMayNotAddToOwn},
    {"remove", false, true, urRemoveManualsFromOthersPersonalLists, urRemoveFromPersonal,
     kMayNotRemoveFromOthers, kMayNotRemoveFromOwn},
};

TEST_F(ManualRelease, TheRightsOfUsers) {
  constexpr std::size_t kOwnerRights = 21;
  reg_.execute("Update VeskConfig Set OwnerRights = '" + std::string(kOwnerRights, '1') + "'");
  for (const char* document : {"D1", "D2"}) own("User2", document);
  const auto run = [&](const RightCase& c, const std::string& user) {
    if (c.remove) hold(user, "D1", "M1", c.hard, "'1'");
    const auto error =
        test::errorOf([&] { vesk_->ManualUserRelation("M1", user, c.hard, "1", c.remove); });
    reg_.execute("Delete * From Personals");
    return error ? error->description() : std::string();
  };
  for (const auto& c : kRightCases) {
    SCOPED_TRACE(c.name);
    grant({});
    for (const auto& [user, refusal] :
         {std::pair{"User1", c.refusal}, std::pair{"User2", c.ownRefusal}})
      test::expectRefusal(refusal, [&, whose = user] {
        vesk_->ManualUserRelation("M1", whose, c.hard, "1", c.remove);
      });
    grant({c.others});
    EXPECT_EQ(run(c, "User1"), "");
    EXPECT_EQ(run(c, "User2"), "") << "the right to others' lists covers one's own";
    if (c.own == 0) continue;
    grant({c.own});
    EXPECT_EQ(run(c, "User1"), c.refusal.description);
    EXPECT_EQ(run(c, "User2"), "");
  }
}

// ---- hostile and mistaken values ----

TEST_F(ManualRelease, ValuesThatWouldChangeAStatementRunNothing) {
  const auto before = everything();
  for (const std::string& bad :
       {std::string("O'Brien"), std::string("x' or 'a'='a"), std::string(9999, '\''),
        std::string("caf\xE9"), std::string("M1\0", 3)})
    EXPECT_EQ(
        statementsOf([&] {
          for (const bool hard : {false, true})
            for (const bool remove : {false, true}) {
              EXPECT_RAISES(kSyntax, vesk_->ManualUserRelation(bad, "User1", hard, "1", remove));
              EXPECT_RAISES(kSyntax, vesk_->ManualUserRelation("M1", bad, hard, "1", remove));
              EXPECT_RAISES(kSyntax, vesk_->ManualUserRelation("M1", "User1", hard, bad, remove));
            }
        }),
        Texts{});
  const std::string tooLong(10000, 'x');
  EXPECT_THROW(add("M1", tooLong, true, "1"), Error) << "no column is that wide";
  EXPECT_THROW(add("M1", "User1", true, tooLong), Error);
  test::expectRefusal(kNoContents, [&] { add(tooLong, "User1", true, "1"); });
  EXPECT_EQ(everything(), before);
}

TEST_F(ManualRelease, ADoubledApostropheIsOne) {
  putInto("O''Brien", "D1", "1");
  EXPECT_TRUE(add("O''Brien", "it''s", false, "''"));
  EXPECT_EQ(copies(), Texts{"it's|D1|O'Brien|False|'|7"});
  test::expectRefusal(kHeldAlready, [&] { add("O''Brien", "it''s", false, "''"); });
  EXPECT_TRUE(takeBack("O''Brien", "it''s", false, "''"));
  EXPECT_EQ(copies(), Texts{});
}

}  // namespace
}  // namespace kv
