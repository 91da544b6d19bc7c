// SPDX-License-Identifier: Apache-2.0
// What is in a manual, in which order, and which manuals somebody has.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/distribution_session.h"
#include "support/engine_answers.h"
#include "support/other_user.h"
#include "support/scale.h"

namespace kv {
namespace {

using test::Texts;

template <class Session>
class ContentsSession : public test::DistributionSession<Session> {
 protected:
  clsVeskManual& manual() { return *this->vesk_->Manual(); }

  // A manual with documents A, B, C and so on at these places.
  void fill(const std::string& id, const std::vector<std::string>& places) {
    this->reg_.execute("Delete * From ManualContents Where ManualID = '" + id + "'");
    char document = 'A';
    for (const auto& place : places) this->putInto(id, std::string(1, document++), place);
  }
  // Its documents in order, with their places.
  Texts order(const std::string& id) {
    return this->reg_.rows("Select DocumentID, [Position] From ManualContents Where ManualID = '" +
                           id + "' Order By [Position]");
  }
};

class ManualContents : public ContentsSession<test::SessionTest> {
 protected:
  ManualContents() { logIn("Bert"); }
};

// ---- order ----

struct Move {
  std::vector<std::string> before;
  const char* document;
  std::int16_t position;
  Texts after;
};

TEST_F(ManualContents, ADocumentIsMovedByTheFormula) {
  const Move cases[] = {
      // Half the previous place and the whole of the target's.
      {{"10", "20", "30"}, "C", 2, {"A|10", "B|20", "C|25"}},
      {{"10", "20", "30"}, "A", 3, {"B|20", "C|30", "A|40"}},
      {{"10", "20", "30"}, "B", 2, {"A|10", "B|25", "C|30"}},
      // Before the first row the previous place is half the target's.
      {{"10", "20", "30"}, "C", 1, {"A|10", "C|12.5", "B|20"}},
      // Places that are missing count as 0, and so does what would follow one.
      {{"Null", "20", "30"}, "C", 2, {"A|0", "C|33", "B|66"}},
      {{"0", "20", "30"}, "C", 1, {"A|0", "C|33", "B|66"}},
      {{"0", "20", "30"}, "C", 2, {"A|0", "C|33", "B|66"}},
      {{"-4", "20"}, "B", 1, {"A|-4", "B|0"}},
      {{"-4", "20"}, "B", 2, {"A|-4", "B|0"}},
      {{"7"}, "A", 1, {"A|8.75"}},
      {{"0"}, "A", 1, {"A|0"}},
  };
  for (const auto& c : cases) {
    fill("M1", c.before);
    manual().RepositionContents("M1", c.document, c.position);
    EXPECT_EQ(order("M1"), c.after) << c.document << " to " << c.position;
  }
}

TEST_F(ManualContents, PlacesThatComeTooCloseAreSpread) {
  // 0.00006 and 0.00008 give 0.00003 + 0.00008, 0.00005 above the one before; a little less is too
  // close.
  fill("M1", {"0.00006", "0.00008", "5"});
  manual().RepositionContents("M1", "C", 2);
  EXPECT_EQ(order("M1"), (Texts{"A|6E-05", "B|8E-05", "C|0.00011"}));
  fill("M1", {"0.00006", "0.000079", "5"});
  manual().RepositionContents("M1", "C", 2);
  EXPECT_EQ(order("M1"), (Texts{"A|0", "B|33", "C|66"}));
  fill("M1", std::vector<std::string>(7, "0"));
  manual().RepositionContents("M1", "G", 1);
  const auto places = reg_.open("Select [Position] From ManualContents Order By [Position]");
  for (int row = 0; !places->Eof(); places->MoveNext(), ++row)
    EXPECT_EQ(places->Fields(0)->Value(), Variant(row * (99.0 / 7)));
}

TEST_F(ManualContents, PlacesThatLeaveTheirTypeAreSpread) {
  const Move cases[] = {
      // More than any number is behind all others.
      {{"1E308", "1.2E308", "1.5E308"}, "A", 3, {"B|0", "C|33", "A|66"}},
      {{"1.2E308", "1.4E308", "1.5E308"}, "A", 2, {"B|0", "C|33", "A|66"}},
      {{"1.5E308"}, "A", 1, {"A|0"}},
      {{"1E308", "1.2E308", "1.5E308"}, "X", 3, {"A|0", "B|33", "C|66"}},
      // As long as there is a number, it is taken.
      {{"1E308", "1.2E308", "1.5E308"}, "A", 2, {"B|1.2E+308", "C|1.5E+308", "A|1.7E+308"}},
      // Half of the one before is lost beside the target: nothing would say which comes first.
      {{"1", "1E20", "2E20"}, "C", 2, {"A|0", "B|33", "C|66"}},
      {{"1", "1E20", "2E20"}, "A", 2, {"B|0", "A|33", "C|66"}},
  };
  for (const auto& c : cases) {
    fill("M1", c.before);
    manual().RepositionContents("M1", c.document, c.position);
    EXPECT_EQ(order("M1"), c.after) << c.document << " to " << c.position;
  }
}

TEST_F(ManualContents, HoweverOftenAllAreMovedToTheEndTheyKeepTheirOrder) {
  fill("M1", {"1E300", "2E300", "3E300"});
  // From 1E300 it takes some sixty moves to the largest number there is.
  std::string expected = "ABC";
  for (int move = 0; move < 100; ++move) {
    manual().RepositionContents("M1", expected.substr(0, 1), 3);
    std::rotate(expected.begin(), expected.begin() + 1, expected.end());
    std::string found;
    for (const auto& row : order("M1")) {
      found += row[0];
      EXPECT_TRUE(std::isfinite(std::stod(row.substr(2)))) << row;
    }
    ASSERT_EQ(found, expected) << "after " << move + 1 << " moves";
  }
}

TEST_F(ManualContents, PlacesThatOthersHaveLetGrowOutOfTheirTypeAreSpread) {
  for (const auto& endless : test::numbersWithoutEnd()) {
    fill("M1", {"10", "20", "30"});
    test::RawRegister(reg_.path())
        .execute("UPDATE \"ManualContents\" SET \"Position\" = " + endless +
                 " WHERE \"DocumentID\" <> 'A'");
    manual().RepositionContents("M1", "A", 3);
    EXPECT_EQ(order("M1"), (Texts{"B|0", "C|33", "A|66"})) << endless;
  }
}

TEST_F(ManualContents, RepositioningRunsTheseStatements) {
  fill("M1", {"10", "20"});
  fill("M2", {"10", "20"});
  const auto other = order("M2");
  const std::string inOrder =
      "Select * From ManualContents Where ManualID = 'M1' Order by Position";
  EXPECT_EQ(statementsOf([&] { manual().RepositionContents("M1", "b", 1); }), Texts{inOrder});
  fill("M1", {"0", "20"});
  EXPECT_EQ(statementsOf([&] { manual().RepositionContents("M1", "B", 1); }),
            (Texts{inOrder, inOrder}));
  EXPECT_EQ(order("M2"), other);
}

TEST_F(ManualContents, ADocumentThatIsNotThereIsNotMoved) {
  fill("M1", {"10", "20"});
  const auto before = everything();
  manual().RepositionContents("M1", "X", 2);
  manual().RepositionContents("M1", "", 1);
  EXPECT_EQ(everything(), before);
  fill("M1", {"0", "20"});
  manual().RepositionContents("M1", "X", 1);
  EXPECT_EQ(order("M1"), (Texts{"A|0", "B|49.5"})) << "but places too close are spread";
}

TEST_F(ManualContents, OfTwoPlacesOfADocumentTheFirstIsMoved) {
  fill("M1", {"10", "20", "30"});
  reg_.execute("Update ManualContents Set DocumentID = 'A' Where DocumentID = 'C'");
  manual().RepositionContents("M1", "A", 2);
  EXPECT_EQ(order("M1"), (Texts{"B|20", "A|25", "A|30"}));
}

TEST_F(ManualContents, WhatRepositioningRefuses) {
  fill("M1", {"10", "20"});
  const auto before = everything();
  for (const char* id : {"M9", ""})
    for (const int position : {0, 1, 5})
      test::expectRefusal({2730, "Reposition Contents", "That Manual has no contents"}, [&] {
        manual().RepositionContents(id, "A", static_cast<std::int16_t>(position));
      });
  for (const int position : {0, -1, 3, 4, 32767, -32768})
    EXPECT_RAISES(kNoCurrentRow,
                  manual().RepositionContents("M1", "A", static_cast<std::int16_t>(position)))
        << position;
  for (const std::string& bad : {std::string("O'Brien"), std::string("x' or 'a'='a"),
                                 std::string("caf\xE9"), std::string("M1\0", 3)})
    EXPECT_EQ(statementsOf([&] {
                EXPECT_RAISES(kSyntax, manual().RepositionContents(bad, "A", 1));
                EXPECT_RAISES(kSyntax, manual().RepositionContents("M1", bad, 1));
                EXPECT_RAISES(kSyntax, (void)manual().Contents(bad));
              }),
              Texts{});
  EXPECT_EQ(everything(), before);
  fill("O''Brien", {"10", "20"});
  manual().RepositionContents("O''Brien", "B", 1);
  EXPECT_EQ(order("O''Brien"), (Texts{"A|10", "B|12.5"}));
}

TEST_F(ManualContents, HoweverOftenItIsReorderedAManualKeepsItsDocuments) {
  constexpr int kDocuments = 12;
  fill("M1", std::vector<std::string>(kDocuments, "100"));
  unsigned seed = 1;
  const auto next = [&](int limit) {
    seed = seed * 1103515245U + 12345U;
    return static_cast<int>(seed / 65536U % static_cast<unsigned>(limit));
  };
  for (int i = 0; i < test::steps(300); ++i) {
    const std::string document(1, static_cast<char>('A' + next(kDocuments)));
    manual().RepositionContents("M1", document, static_cast<std::int16_t>(1 + next(kDocuments)));
  }
  EXPECT_EQ(reg_.value("Select Count(*) From ManualContents"), std::to_string(kDocuments));
  for (const auto& place : reg_.rows("Select [Position] From ManualContents"))
    EXPECT_TRUE(std::isfinite(std::stod(place))) << place;
}

class ContentsFaults : public ContentsSession<test::FaultySessionTest> {};

TEST_F(ContentsFaults, RepositioningLeavesNothingBehind) {
  fill("M1", {"10", "20", "30"});
  EXPECT_EQ(leavesNothingBehind([&] { manual().RepositionContents("M1", "C", 1); }), 1);
  fill("M1", {"0", "20", "30"});
  EXPECT_EQ(leavesNothingBehind([&] { manual().RepositionContents("M1", "C", 1); }), 4)
      << "moved, and then all of them spread";
}

TEST_F(ManualContents, ProcessesThatReorderAtOnceLoseNothing) {
  constexpr int kProcesses = 4;
  constexpr int kDocuments = 6;
  fill("M1", std::vector<std::string>(kDocuments, "100"));
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    const test::TestSession vesk;
    vesk->Login("Bert", "secret", "Lock Timeout=60;Data Source=" + reg_.path());
    for (int i = 0; i < test::steps(25); ++i)
      vesk->Manual()->RepositionContents("M1", std::string(1, static_cast<char>('A' + p)),
                                         static_cast<std::int16_t>(1 + (i + p) % kDocuments));
    return std::string("done");
  });
  EXPECT_THAT(answers, testing::Each("done"));
  EXPECT_EQ(reg_.value("Select Count(*) From ManualContents"), std::to_string(kDocuments));
}

// ---- lists ----

TEST_F(ManualContents, TheDocumentsOfAManual) {
  addDocument("A", 7, "30");
  addDocument("B", 7, "10");
  addDocument("C", 7, "20");
  fill("M1", {"2", "3", "1"});
  putInto("M1", "gone", "0");
  fill("M2", {"1"});
  const std::string from =
      " from ManualContents Inner Join Documents On ManualContents.DocumentID = "
      "Documents.DocumentID Where ManualContents.ManualID = 'M1' Order By ";
  const struct {
    bool allFields, withManual;
    std::string statement;
    Texts documents;
  } cases[] = {
      {false, false, "Select Documents.*" + from + "ManualContents.Position", {"C", "A", "B"}},
      {false,
       true,
       "Select Documents.*, ManualContents.ManualID" + from + "ManualContents.Position",
       {"C", "A", "B"}},
      {true, false, "Select Documents.*" + from + "Documents.DocumentNumber", {"B", "C", "A"}},
      {true,
       true,
       "Select Documents.*, ManualContents.ManualID" + from + "Documents.DocumentNumber",
       {"B", "C", "A"}},
  };
  for (const auto& c : cases) {
    Ref<Recordset> rs;
    EXPECT_EQ(statementsOf([&] { rs = manual().Contents("M1", c.allFields, c.withManual); }),
              Texts{c.statement});
    Texts documents;
    for (; !rs->Eof(); rs->MoveNext()) {
      documents.push_back(test::shown(rs->Fields("DocumentID")->Value()));
      if (c.withManual) {
        EXPECT_EQ(rs->Fields("ManualID")->Value(), Variant("M1"));
      } else {
        EXPECT_RAISES(kNoSuchItem, (void)rs->Fields("ManualID"));
      }
    }
    EXPECT_EQ(documents, c.documents);
  }
  EXPECT_EQ(manual().Contents("M9")->RecordCount(), 0);
}

TEST_F(ManualContents, TheManualsThatAUserHas) {
  for (const char* id : {"M1", "M2", "M3"}) {
    addManual(id);
    for (const char* document : {"A", "B"}) {
      hold("User1", document, id, true, "'1'");
      if (id == std::string("M2")) hold("User1", document, id, true, "'2'");
      if (id != std::string("M3")) hold("User1", document, id, false, "'-1'");
    }
    hold("User2", "A", id, true, "'7'");
  }
  reg_.execute("Update Manuals Set ManualName = 'Another' Where ManualID = 'M3'");
  hold("User1", "A", "0", true);
  const std::string narrow =
      "SELECT DISTINCT Manuals.ManualID, Manuals.ManualName, Personals.CopyNumber, "
      "Personals.HardCopy FROM Personals INNER JOIN Manuals ON Personals.ManualID = "
      "Manuals.ManualID WHERE (((Personals.UserID) Like 'User1')";
  const std::string whole =
      "SELECT DISTINCTROW Manuals.* FROM Personals INNER JOIN Manuals ON Personals.ManualID = "
      "Manuals.ManualID WHERE (((Personals.UserID) Like 'User1')";
  const std::string order = ") ORDER BY Manuals.ManualName";
  const std::string hard = " and (HardCopy <> 0)";
  const std::string listed = " and (HardCopy = False)";
  const Texts bothKinds = {"M3|Another|1|True",    "M1|Name of M1|-1|False",
                           "M1|Name of M1|1|True", "M2|Name of M2|-1|False",
                           "M2|Name of M2|1|True", "M2|Name of M2|2|True"};
  const Texts hardOnes = {"M3|Another|1|True", "M1|Name of M1|1|True", "M2|Name of M2|1|True",
                          "M2|Name of M2|2|True"};
  const Texts virtualOnes = {"M1|Name of M1|-1|False", "M2|Name of M2|-1|False"};
  const struct {
    bool virtually, hardly;
    std::string kind;
    Texts copies;
    Texts manuals;
  } cases[] = {
      {true, true, "", bothKinds, {"M3", "M1", "M2"}},
      {false, true, hard, hardOnes, {"M3", "M1", "M2"}},
      {true, false, listed, virtualOnes, {"M1", "M2"}},
      {false, false, listed, virtualOnes, {"M1", "M2"}},
  };
  for (const auto& c : cases) {
    Ref<Recordset> copies;
    Ref<Recordset> manuals;
    EXPECT_EQ(statementsOf([&] {
                copies = manual().PersonalManuals("User1", c.virtually, c.hardly);
                manuals = manual().PersonalManualsForView("User1", c.virtually, c.hardly);
              }),
              (Texts{narrow + c.kind + order, whole + c.kind + order}));
    EXPECT_EQ(test::rowsOf(*copies), c.copies);
    Texts ids;
    for (; !manuals->Eof(); manuals->MoveNext())
      ids.push_back(test::shown(manuals->Fields("ManualID")->Value()));
    EXPECT_EQ(ids, c.manuals) << "each once";
  }
  EXPECT_EQ(test::rowsOf(*manual().PersonalManuals("User1")), bothKinds) << "both unless asked for";
  EXPECT_EQ(manual().PersonalManualsForView("user1")->RecordCount(), 3);
}

TEST_F(ManualContents, AnIdentifiersWildcardsStandForThemselves) {
  addManual("M1");
  addManual("M2");
  for (const char* user : {"User1", "U%", "U_1", "[U]1", "U[1", "U*", "-1"})
    hold(user, "A", "M1", true, "'1'");
  hold("UX1", "A", "M2", true, "'1'");
  const auto of = [&](const std::string& user) {
    const auto copies = manual().PersonalManuals(user)->RecordCount();
    EXPECT_EQ(manual().PersonalManualsForView(user)->RecordCount(), copies);
    return copies;
  };
  for (const char* user : {"User1", "U%", "U_1", "[U]1", "U[1", "U*", "-1", "UX1"})
    EXPECT_EQ(of(user), 1) << user;
  for (const char* user : {"%", "_____", "U", "U?1", "", "[-1]", "[!x]%", "User1%"})
    EXPECT_EQ(of(user), 0) << user;
  EXPECT_THAT(statementsOf([&] { (void)manual().PersonalManualsForView("a%b_c[d]"); })[0],
              testing::HasSubstr("WHERE (((Personals.UserID) Like 'a[%]b[_]c[[]d]')) ORDER BY"));
  for (const std::string& bad :
       {std::string("O'Brien"), std::string("x' or 'a'='a"), std::string("caf\xE9")})
    EXPECT_EQ(statementsOf([&] {
                EXPECT_RAISES(kSyntax, (void)manual().PersonalManuals(bad));
                EXPECT_RAISES(kSyntax, (void)manual().PersonalManualsForView(bad));
              }),
              Texts{});
  EXPECT_EQ(of(std::string(10000, '%')), 0);
}

// ---- links ----

TEST_F(ManualContents, DocumentsAreLinkedByTheRoot) {
  addDocument("A");
  grant({});
  test::expectRefusal({2529, "DocumentManualRelation",
                       "Unable to add document to manual due to user access restrictions"},
                      [&] { manual().AddDocument("M1", "A"); });
  test::expectRefusal({2528, "DocumentManualRelation",
                       "Unable to remove document from manual due to user access restrictions"},
                      [&] { manual().RemoveDocument("M1", "A"); });
  grant({urAddDocumentsToManualContents, urRemoveDocumentsFromManualContents});
  EXPECT_TRUE(manual().AddDocument("M1", "A"));
  EXPECT_EQ(contents(), Texts{"M1|A|100"});
  EXPECT_TRUE(manual().RemoveDocument("M1", "A"));
  EXPECT_EQ(contents(), Texts{});
}

}  // namespace
}  // namespace kv
