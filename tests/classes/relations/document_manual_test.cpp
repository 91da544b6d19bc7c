// SPDX-License-Identifier: Apache-2.0
// Documents into manuals, and out of them.
#include <gtest/gtest.h>

#include "support/distribution_session.h"

namespace kv {
namespace {

using test::Refusal;
using test::Texts;

constexpr const char* kSource = "DocumentManualRelation";
constexpr Refusal kMayNotAdd{2529, kSource,
                             "Unable to add document to manual due to user access restrictions"};
constexpr Refusal kMayNotRemove{
    2528, kSource, "Unable to remove document from manual due to user access restrictions"};
constexpr Refusal kUncontrolled{
    2513, kSource,
    "This Document is uncontrolled.  Only Controlled documents may be added to a manual."};
constexpr Refusal kNoRevision{2514, kSource,
                              "Only Documents with a current revision may be added to a manual"};
constexpr Refusal kAlready{2506, kSource, "The Document is already in this manual"};
constexpr Refusal kNotThere{2507, kSource, "The Document is not part of the manual"};

class DocumentManual : public test::DistributionSession<test::SessionTest> {
 protected:
  DocumentManual() {
    logIn("Bert");
    addDocument("D1", 7);
    addDocument("D2", 8);
    addManual("M1");
    putInto("M1", "D2", "10");
    grant({urAddDocumentsToManualContents, urRemoveDocumentsFromManualContents});
  }
  bool relate(const std::string& manual, const std::string& document, bool remove = false) {
    return vesk_->DocumentManualRelation(manual, document, remove);
  }
};

TEST_F(DocumentManual, AddingPutsTheDocumentBehindTheOrderedOnes) {
  EXPECT_EQ(
      statementsOf([&] { EXPECT_TRUE(vesk_->DocumentManualRelation("M1", "D1")); }),
      (Texts{"Select * From Documents Where DocumentID = 'D1'",
             "Select * From Documents Where DocumentID = 'D1'",
             "Select * from ManualContents Where ManualID = 'M1' and DocumentID = 'D1'",
             "Select CurrentRevID From Documents Where DocumentID = 'D1'",
             "INSERT INTO Personals( UserID, ManualID, HardCopy, CopyNumber, DocumentID, "
             "RevisionID ) SELECT Distinct Personals.UserID, Personals.ManualID, "
             "Personals.HardCopy, Personals.CopyNumber, 'D1' AS Expr1, 7 AS Expr2 from Personals "
             "WHERE (((Personals.ManualID)='M1'))"}));
  EXPECT_EQ(contents(), (Texts{"M1|D2|10", "M1|D1|100"}));
}

TEST_F(DocumentManual, RemovingTakesItOut) {
  hold("User1", "D2", "M1", true, "'1'");
  hold("User1", "D2", "0", true);
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(relate("M1", "D2", true)); }),
            (Texts{"Select * From Documents Where DocumentID = 'D2'",
                   "Select * From Documents Where DocumentID = 'D2'",
                   "Select * from ManualContents Where ManualID = 'M1' and DocumentID = 'D2'",
                   "Delete Personals.* From Personals Where ManualID = 'M1' and DocumentID = "
                   "'D2'"}));
  EXPECT_EQ(contents(), Texts{});
  EXPECT_EQ(copies(), Texts{"User1|D2|0|True|~|7"}) << "what was released by itself stays";
}

TEST_F(DocumentManual, EveryDistinctHolderOfTheManualGetsALine) {
  putInto("M1", "D3", "20");
  for (const char* document : {"D2", "D3"}) {
    hold("User1", document, "M1", true, "'1'", 3);
    hold("User1", document, "M1", true, "'2'", 4);
    hold("User2", document, "M1", false, "'-1'");
    hold("User3", document, "M1", true);
    hold("User4", document, "M2", true, "'1'");
    hold("User5", document, "0", true);
  }
  const auto before = copies();
  std::int32_t lines = -7;
  EXPECT_TRUE(vesk_->DocumentManualRelation("M1", "D1", false, lines));
  EXPECT_EQ(lines, 4);
  auto added = copies();
  added.erase(added.begin(), added.begin() + static_cast<std::ptrdiff_t>(before.size()));
  EXPECT_THAT(added,
              testing::UnorderedElementsAre("User1|D1|M1|True|1|7", "User1|D1|M1|True|2|7",
                                            "User2|D1|M1|False|-1|7", "User3|D1|M1|True|~|7"));
  EXPECT_TRUE(vesk_->DocumentManualRelation("M1", "D1", true, lines));
  EXPECT_EQ(lines, 4);
  EXPECT_EQ(copies(), before);
}

TEST_F(DocumentManual, WhereNobodyHoldsTheManualNobodyGetsALine) {
  std::int32_t lines = -7;
  EXPECT_TRUE(vesk_->DocumentManualRelation("M1", "D1", false, lines));
  EXPECT_EQ(lines, 0);
  EXPECT_EQ(copies(), Texts{});
  lines = -7;
  EXPECT_TRUE(vesk_->DocumentManualRelation("M1", "D1", true, lines));
  EXPECT_EQ(lines, 0);
}

TEST_F(DocumentManual, ManualsNeedNoRowOfTheirOwn) {
  EXPECT_TRUE(relate("M9", "D1"));
  EXPECT_TRUE(relate("", "D1"));
  EXPECT_EQ(contents(), (Texts{"M1|D2|10", "M9|D1|100", "|D1|100"}));
  EXPECT_TRUE(relate("", "D1", true));
}

TEST_F(DocumentManual, OneOfTwoPlacesIsGivenUpAtATime) {
  putInto("M1", "D2", "20");
  EXPECT_TRUE(relate("M1", "d2", true));
  EXPECT_EQ(contents(), Texts{"M1|D2|20"});
  EXPECT_TRUE(relate("m1", "D2", true));
  EXPECT_EQ(contents(), Texts{});
}

// ---- refusals ----

TEST_F(DocumentManual, RefusalsAreTheseAndChangeNothing) {
  reg_.execute(
      "Insert Into Documents (DocumentID, Controlled, CurrentRevID) Values ('U1', "
      "False, 5)");
  reg_.execute("Insert Into Documents (DocumentID, Controlled) Values ('N1', True)");
  reg_.execute(
      "Insert Into Documents (DocumentID, Controlled, CurrentRevID) Values ('Z1', True, "
      "0)");
  for (const char* document : {"U1", "N1", "Z1"}) putInto("M1", document, "5");
  hold("User1", "D2", "M1", true, "'1'");
  const auto before = everything();
  const struct {
    const char* document;
    bool remove;
    Refusal refusal;
  } cases[] = {
      {"D2", false, kAlready},     {"D1", true, kNotThere},    {"U1", false, kUncontrolled},
      {"U1", true, kUncontrolled}, {"N1", false, kNoRevision}, {"N1", true, kNoRevision},
      {"Z1", false, kNoRevision},  {"Z1", true, kNoRevision},  {"D9", false, kUncontrolled},
      {"D9", true, kUncontrolled}, {"", false, kUncontrolled}, {"", true, kUncontrolled},
  };
  for (const auto& c : cases) {
    std::int32_t lines = -7;
    test::expectRefusal(c.refusal,
                        [&] { vesk_->DocumentManualRelation("M1", c.document, c.remove, lines); });
    EXPECT_EQ(lines, -7) << c.document;
  }
  grant({});
  test::expectRefusal(kMayNotAdd, [&] { relate("M1", "D1"); });
  test::expectRefusal(kMayNotAdd, [&] { relate("M1", "U1"); });
  test::expectRefusal(kMayNotRemove, [&] { relate("M1", "D2", true); });
  test::expectRefusal(kMayNotRemove, [&] { relate("M9", "D9", true); });
  EXPECT_EQ(everything(), before);
}

TEST_F(DocumentManual, TheRightsOfUsers) {
  grant({urRemoveDocumentsFromManualContents});
  test::expectRefusal(kMayNotAdd, [&] { relate("M1", "D1"); });
  EXPECT_TRUE(relate("M1", "D2", true));
  grant({urAddDocumentsToManualContents});
  test::expectRefusal(kMayNotRemove, [&] { relate("M1", "D2", true); });
  EXPECT_TRUE(relate("M1", "D1"));
  grant({});
  logIn("Anna");
  EXPECT_TRUE(relate("M1", "D1", true)) << "administrators hold every right";
}

TEST_F(DocumentManual, TheRightsOfOwners) {
  grant({});
  own("User2", "D1");
  own("User1", "D2");
  letOwners({});
  test::expectRefusal(kMayNotAdd, [&] { relate("M1", "D1"); });
  letOwners({orAddToManuals});
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(relate("M1", "D1")); }).front(),
            "Select UserID From Owners Where DocumentID = 'D1' and UserID = 'User2'");
  test::expectRefusal(kMayNotRemove, [&] { relate("M1", "D1", true); });
  test::expectRefusal(kMayNotRemove, [&] { relate("M1", "D2", true); });
  letOwners({orRemoveFromManuals});
  EXPECT_TRUE(relate("M1", "D1", true));
  test::expectRefusal(kMayNotAdd, [&] { relate("M1", "D1"); });
  test::expectRefusal(kMayNotRemove, [&] { relate("M1", "D2", true); });
  grant({urActAsDocumentOwner});
  EXPECT_TRUE(relate("M1", "D2", true)) << "who acts as owner of every document";
}

// ---- hostile and mistaken values ----

TEST_F(DocumentManual, ValuesThatWouldChangeAStatementRunNothing) {
  const auto before = everything();
  for (const std::string& bad :
       {std::string("O'Brien"), std::string("x' or 'a'='a"), std::string(9999, '\''),
        std::string("caf\xE9"), std::string("D1\0", 3)})
    EXPECT_EQ(statementsOf([&] {
                for (const bool remove : {false, true}) {
                  EXPECT_RAISES(kSyntax, relate(bad, "D1", remove));
                  EXPECT_RAISES(kSyntax, relate("M1", bad, remove));
                }
              }),
              Texts{});
  EXPECT_RAISES(kWrongType, relate(std::string(10000, 'M'), "D1")) << "no column is that wide";
  test::expectRefusal(kNotThere, [&] { relate(std::string(10000, 'M'), "D1", true); });
  test::expectRefusal(kUncontrolled, [&] { relate("M1", std::string(10000, 'D')); });
  test::expectRefusal(kNotThere, [&] { relate("M1%", "D1", true); });
  EXPECT_EQ(everything(), before);
}

TEST_F(DocumentManual, ADoubledApostropheIsOne) {
  addDocument("O''Brien");
  hold("User1", "D2", "M''1", true, "'1'");
  EXPECT_TRUE(relate("M''1", "O''Brien"));
  EXPECT_EQ(contents().back(), "M'1|O'Brien|100");
  EXPECT_EQ(copies().back(), "User1|O'Brien|M'1|True|1|7");
  test::expectRefusal(kAlready, [&] { relate("M''1", "O''Brien"); });
  EXPECT_TRUE(relate("M''1", "O''Brien", true));
  EXPECT_EQ(contents(), Texts{"M1|D2|10"});
}

TEST_F(DocumentManual, AUsersOwnApostropheIsDoubled) {
  reg_.execute(
      "Insert Into Users (ID, UserID, UserName, [Password]) Select 9, 'O''Brien', 'Owen', "
      "[Password] From Users Where ID = 2");
  reg_.execute("Insert Into VeskProfiles (UserID) Values ('O''Brien')");
  own("O''Brien", "D1");
  letOwners({orAddToManuals});
  logIn("Owen");
  EXPECT_TRUE(relate("M1", "D1"));
}

TEST_F(DocumentManual, WithoutASessionThereIsNoObject) {
  const auto vesk = clsVesk::create(test::kCheapPasswords);
  EXPECT_RAISES(kObjectNotSet, vesk->DocumentManualRelation("M1", "D1"));
  vesk->CloseSession();
  EXPECT_RAISES(kObjectNotSet, vesk->DocumentManualRelation("M1", "D1"));
}

}  // namespace
}  // namespace kv
