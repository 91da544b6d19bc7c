// SPDX-License-Identifier: Apache-2.0
// What statements of the dialect answer, on a small register.

#include <gtest/gtest.h>

#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

class Dialect : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    reg_ = new test::TestRegister;
    const auto add = [](const std::string& values) {
      reg_->execute(
          "Insert Into Documents (DocumentID, DocumentTitle, DocumentNumber, DocUser1, "
          "EffectiveDate, Controlled, SecurityLevel, "
          "CurrentRevID) Values (" +
          values + ")");
    };
    add("'D1', 'étude', '10', 'Quality', #3/9/2001#, True, False, 5");
    add("'d2', 'Zebra', '9', 'quality', #3/9/2001 14:30#, True, True, 3");
    add("'D3', 'eta', '100%', 'Sales', #12/31/2000#, False, False, Null");
    add("'D4', Null, '1_0', Null, Null, False, False, 4");
    add("'D5', 'Etude', '[x]', 'SALES', #3/10/2001#, True, False, 5");
    add("'D6', 'O''Brien', '', 'Sales', #1/1/1899#, True, False, -2");
  }
  static void TearDownTestSuite() {
    delete reg_;
    reg_ = nullptr;
  }
  // The IDs of the documents for which a condition holds, or the number of the error.
  static std::string where(const std::string& condition) {
    std::string out;
    const auto error = test::errorOf([&] {
      for (const auto& row : reg_->rows("Select ID From Documents Where " + condition)) out += row;
    });
    return error ? "error " + std::to_string(error->number()) : out;
  }
  static std::string list(const std::string& sql) {
    std::string out;
    for (const auto& row : reg_->rows(sql)) out += (out.empty() ? "" : ", ") + row;
    return out;
  }
  static test::TestRegister* reg_;
};

test::TestRegister* Dialect::reg_ = nullptr;

TEST_F(Dialect, Conditions) {
  struct Case {
    const char* condition;
    const char* ids;
  };
  const Case cases[] = {
      // Text ignores case and keeps accents apart.
      {"DocumentID = 'd1'", "1"},
      {"DocumentID = 'D2'", "2"},
      {"DocumentTitle = 'etude'", "5"},
      {"DocumentTitle = 'ÉTUDE'", "1"},
      {"DocUser1 <> 'SALES'", "12"},
      {"DocumentTitle > 'etude'", "126"},
      {"DocumentTitle < 'F'", "135"},
      {"DocumentTitle <= 'étude'", "135"},
      {"DocUser1 In ('sales', 'x')", "356"},
      {"DocUser1 Not In ('sales')", "12"},
      {"DocumentTitle Between 'zz' And 'f'", "26"},
      {"DocumentTitle = 'O''Brien'", "6"},
      {"DocumentTitle = \"O'Brien\"", "6"},
      {"DocumentNumber = ''", "6"},
      // Patterns.
      {"DocumentTitle Like '%TUD%'", "15"},
      {"DocumentTitle Like 'et_'", "3"},
      {"DocumentNumber Like '%[%]'", "3"},
      {"DocumentNumber Like '1[_]0'", "4"},
      {"DocumentNumber Like '[[]x]'", "5"},
      {"DocumentNumber Like '[0-9]'", "2"},
      {"DocumentNumber Like '1[!0]%'", "4"},
      {"DocumentTitle Like '*'", ""},
      {"DocumentTitle Not Like 'e%'", "126"},
      {"DocumentTitle Like Null", ""},
      {"ID Like '1%'", "1"},
      // Booleans are -1 and 0.
      {"Controlled = True", "1256"},
      {"Controlled <> 0", "1256"},
      {"Controlled = -1", "1256"},
      {"Controlled = 1", ""},
      {"Controlled", "1256"},
      {"Not Controlled", "34"},
      {"Controlled = False", "34"},
      {"Controlled = Yes And SecurityLevel = Off", "156"},
      // Null.
      {"DocumentTitle Is Null", "4"},
      {"IsNull(DocumentTitle)", "4"},
      {"DocumentTitle Is Not Null", "12356"},
      {"Not IsNull(EffectiveDate)", "12356"},
      {"DocumentTitle = Null", ""},
      {"Not (DocumentTitle = 'eta')", "1256"},
      {"CurrentRevID <> 5", "246"},
      {"CurrentRevID In (5, Null)", "15"},
      {"CurrentRevID Not In (5, Null)", ""},
      {"CurrentRevID Between Null And 5", ""},
      {"IsNull(CurrentRevID = 5)", "3"},
      // Numbers.
      {"CurrentRevID = 5", "15"},
      {"CurrentRevID > 3.5", "145"},
      {"CurrentRevID Between 5 And 3", "1245"},
      {"CurrentRevID Not Between 3 And 4", "156"},
      {"CurrentRevID = -2", "6"},
      {"ID + 4 = CurrentRevID", "1"},
      {"ID * 2 - 1 = 5", "3"},
      {"-ID = -3", "3"},
      {"ID = 1 or ID = 3 and Controlled", "1"},
      {"(ID = 1 or ID = 3) and Not Controlled", "3"},
      // Dates.
      {"EffectiveDate = #3/9/2001#", "1"},
      {"EffectiveDate = #2001-03-09#", "1"},
      {"EffectiveDate >= #3/9/2001#", "125"},
      {"EffectiveDate > #3/9/2001# and EffectiveDate < #3/10/2001#", "2"},
      {"EffectiveDate Between #12/31/2000# And #3/9/2001#", "13"},
      {"EffectiveDate = #3/9/2001 2:30 PM#", "2"},
      {"EffectiveDate > 36959", "25"},
      {"EffectiveDate = #25/12/2000#", ""},
      {"EffectiveDate < #1/1/1900#", "6"},
      // Mismatches.
      {"CurrentRevID = '5'", "error -2147217913"},
      {"DocumentTitle = 5", "error -2147217913"},
      {"EffectiveDate = '3/9/2001'", "error -2147217913"},
      {"Controlled = 'True'", "error -2147217913"},
      {"ID In (1, 'x')", "error -2147217913"},
      {"Colour = 'red'", "error -2147217904"},
  };
  for (const auto& c : cases) EXPECT_EQ(where(c.condition), c.ids) << c.condition;
}

TEST_F(Dialect, Order) {
  EXPECT_EQ(list("Select DocumentTitle From Documents Order By DocumentTitle"),
            "~, eta, Etude, étude, O'Brien, Zebra");
  EXPECT_EQ(list("Select DocumentTitle From Documents Order By DocumentTitle Desc"),
            "Zebra, O'Brien, étude, Etude, eta, ~");
  EXPECT_EQ(list("Select ID From Documents Order By Controlled, ID Desc"), "6, 5, 2, 1, 4, 3")
      << "True before False";
  EXPECT_EQ(list("Select ID From Documents Order By CurrentRevID"), "3, 6, 2, 4, 1, 5")
      << "ties in key order";
  EXPECT_EQ(list("Select ID From Documents Order By EffectiveDate"), "4, 6, 3, 1, 2, 5");
  EXPECT_EQ(list("Select DocumentNumber, ID From Documents Order By 2 Desc"),
            "|6, [x]|5, 1_0|4, 100%|3, 9|2, 10|1");
  EXPECT_EQ(list("Select ID From Documents"), "1, 2, 3, 4, 5, 6");
  EXPECT_EQ(list("Select ID From Documents Order By ID = 4, ID"), "4, 1, 2, 3, 5, 6");
}

TEST_F(Dialect, Groups) {
  EXPECT_EQ(list("Select Distinct DocUser1 From Documents"), "~, Quality, SALES")
      << "equal texts once, in one spelling";
  EXPECT_EQ(list("Select Distinct Controlled, SecurityLevel From Documents"),
            "True|True, True|False, False|False");
  EXPECT_EQ(list("Select DocUser1, Count(*) As N From Documents Group By DocUser1"),
            "~|1, Quality|2, SALES|3");
  EXPECT_EQ(list("Select DocUser1 From Documents Group By DocUser1 Having Count(*) > 1 Order By "
                 "Count(*) Desc"),
            "SALES, Quality");
  EXPECT_EQ(list("Select Count(*), Count(DocumentTitle), Sum(CurrentRevID), Min(CurrentRevID), "
                 "Max(CurrentRevID) From Documents"),
            "6|5|15|-2|5");
  EXPECT_EQ(list("Select Sum(Controlled), Avg(CurrentRevID) From Documents"), "-4|3");
  EXPECT_EQ(list("Select Min(DocumentTitle), Max(DocumentTitle), Min(EffectiveDate), "
                 "Max(EffectiveDate) From Documents"),
            "eta|Zebra|1/1/1899|3/10/2001");
  EXPECT_EQ(
      list("Select Count(*), Sum(ID), Min(DocumentTitle), Max(ID) From Documents Where ID > 99"),
      "0|~|~|~");
  EXPECT_EQ(list("Select Max(ID) From Documents Group By DocUser1 Order By Max(ID) Desc"),
            "6, 4, 2");
  EXPECT_EQ(list("Select Controlled, Min(DocumentTitle) From Documents Group By Controlled"),
            "True|Etude, False|eta");
}

// Constants make one group of any rows and none of no rows; a condition on groups alone makes one.
TEST_F(Dialect, GroupsOfEverything) {
  EXPECT_EQ(list("Select Count(*) From Documents Group By 'all'"), "6");
  EXPECT_EQ(list("Select 11 From Documents Group By 5"), "11");
  EXPECT_EQ(list("Select Count(*) From Documents Where ID < 0 Group By 'all'"), "");
  EXPECT_EQ(list("Select Count(*) From Documents Where ID < 0"), "0");
  EXPECT_EQ(list("Select 11, 'x' From Documents Having Count(*) > 5"), "11|x");
  EXPECT_EQ(list("Select Distinct 11 From Documents Having 1 = 1"), "11");
  EXPECT_EQ(list("Select 11 From Documents Having Max(ID) < -True"), "");
}

TEST_F(Dialect, SignsInARow) {
  EXPECT_EQ(list("Select - -True, 1--True, -(-ID) From Documents Where ID = --True - -3"),
            "-1|0|2");
}

TEST_F(Dialect, Top) {
  EXPECT_EQ(list("Select Top 2 ID From Documents Order By CurrentRevID Desc"), "1, 5");
  EXPECT_EQ(list("Select Top 1 ID From Documents Order By CurrentRevID Desc"), "1, 5")
      << "ties of the last row come too";
  EXPECT_EQ(list("Select Top 3 ID From Documents"), "1, 2, 3");
  EXPECT_EQ(list("Select Top 99 ID From Documents"), "1, 2, 3, 4, 5, 6");
  EXPECT_EQ(list("Select Top 50 Percent ID From Documents Order By ID Desc"), "6, 5, 4");
  EXPECT_EQ(list("Select Top 1 Percent ID From Documents Order By ID"), "1");
  EXPECT_EQ(list("Select Distinct Top 1 DocUser1 From Documents"), "~");
  EXPECT_EQ(list("Select Top 1 DocUser1, Count(*) From Documents Group By DocUser1 Order By "
                 "Count(*) Desc"),
            "SALES|3");
}

TEST_F(Dialect, SelectsOfValues) {
  EXPECT_EQ(list("Select 1 + 2, 'a', #3/9/2001#, True, Null, 7 = 7"), "3|a|3/9/2001|True|~|True");
  EXPECT_EQ(
      list(
          "Select ID, ID = 3, Not Controlled, DocumentTitle Like 'e%' From Documents Where ID = 3"),
      "3|True|True|True");
  const auto rs =
      reg_->open("Select ID As [The Number], DocumentTitle As Title, 1, 2 From Documents");
  EXPECT_EQ(rs->Fields(0)->Name(), "The Number");
  EXPECT_EQ(rs->Fields(3)->Name(), "Expr1001");
}

TEST_F(Dialect, CommaJoinsAreEveryPair) {
  EXPECT_EQ(list("Select Count(*) From Documents, Manuals"), "0");
  EXPECT_EQ(list("Select A.ID, B.ID From Documents As A, Documents As B Where A.CurrentRevID = "
                 "B.CurrentRevID and A.ID < B.ID"),
            "1|5");
}

TEST_F(Dialect, RightJoinsKeepTheRightSide) {
  EXPECT_EQ(list("Select Manuals.ManualName, Documents.ID From Manuals Right Join Documents On "
                 "Manuals.ManualID = "
                 "Documents.DocumentID Where Documents.ID < 3"),
            "~|1, ~|2");
}

class DialectWrites : public testing::Test {
 protected:
  test::TestRegister reg_;
};

TEST_F(DialectWrites, AffectedRowsAreCountedExactly) {
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(reg_.execute("Insert Into Keywords (FieldName, Keyword) Values ('F', 'x')"), 1);
  EXPECT_EQ(reg_.execute("Update Keywords Set Keyword = 'y' Where FieldName = 'f'"), 5);
  EXPECT_EQ(reg_.execute("Update Keywords Set Keyword = 'y' Where FieldName = 'none'"), 0);
  EXPECT_EQ(reg_.execute("Insert Into VeskKeywords Select * From Keywords"), 5);
  EXPECT_EQ(reg_.execute("Delete From Keywords Where Keyword = 'Y'"), 5);
  EXPECT_EQ(reg_.execute("Delete * From VeskKeywords"), 5);
  EXPECT_EQ(reg_.execute("Select * From Keywords"), 0);
}

TEST_F(DialectWrites, AnInsertedSelectKeepsItsOrderAndConvertsItsValues) {
  reg_.execute("Insert Into Users (UserID, UserName) Values ('U2', 'b')");
  reg_.execute("Insert Into Users (UserID, UserName) Values ('U1', 'a')");
  reg_.execute(
      "Insert Into Documents (DocumentTitle, CurrentRevID, Controlled, DocUser1) Select UserName, "
      "ID, ID = 2, ID From "
      "Users Order By UserName");
  EXPECT_EQ(
      reg_.rows("Select ID, DocumentTitle, CurrentRevID, Controlled, DocUser1 From Documents"),
      (std::vector<std::string>{"1|a|2|True|2", "2|b|1|False|1"}));
  reg_.execute(
      "Insert Into VeskProfiles (UserID, WorkGroupID) Select Distinct UserID, '7' From Users");
  EXPECT_EQ(reg_.rows("Select UserID, GroupID From VeskProfiles"),
            (std::vector<std::string>{"U1|7", "U2|7"}));
  reg_.execute(
      "Insert Into Keywords (FieldName, Keyword) Select Distinct DocUser1, CurrentRevID From "
      "Documents");
  EXPECT_EQ(reg_.rows("Select * From Keywords"), (std::vector<std::string>{"1|1", "2|2"}));
}

TEST_F(DialectWrites, WhatIsCalculatedIsNeverStoredWithoutEnd) {
  reg_.execute(
      "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M', 'A', 1E200)");
  reg_.execute(
      "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M', 'B', 1E308)");
  reg_.execute(
      "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M', 'C', 1E308)");
  reg_.execute("Insert Into Routing (DocumentID, ListOrder) Values ('A', 1E38)");
  const auto places = [&] {
    return reg_.rows("Select DocumentID, [Position] From ManualContents Order By DocumentID");
  };
  const auto before = places();
  for (const char* statement :
       {"Update ManualContents Set [Position] = [Position] * [Position]",
        "Update ManualContents Set [Position] = -([Position] * 1E308)",
        "Insert Into ManualContents ([Position]) Values (1E308 * 10)",
        "Insert Into ManualContents ([Position]) Select [Position] * [Position] From "
        "ManualContents",
        "Insert Into ManualContents ([Position]) Select Distinct [Position] * [Position] From "
        "ManualContents",
        "Insert Into ManualContents ([Position]) Select Sum([Position]) From ManualContents",
        "Update Routing Set ListOrder = ListOrder * 10",
        "Insert Into Routing (ListOrder) Select ListOrder * 10 From Routing"}) {
    EXPECT_RAISES(kValueOverflow, reg_.execute(statement)) << statement;
    EXPECT_EQ(places(), before) << statement;
    EXPECT_EQ(reg_.rows("Select ListOrder From Routing"), std::vector<std::string>{"1E+38"});
  }
  reg_.execute("Update ManualContents Set [Position] = [Position] * 2 + 1 Where DocumentID = 'A'");
  EXPECT_EQ(reg_.value("Select [Position] From ManualContents Where DocumentID = 'A'"), "2E+200");
}

TEST_F(DialectWrites, AnExplicitCounterMovesTheCounterOn) {
  reg_.execute("Insert Into Documents (ID, DocumentTitle) Values (41, 'x')");
  reg_.execute("Insert Into Documents (DocumentTitle) Values ('y')");
  EXPECT_EQ(reg_.rows("Select ID From Documents"), (std::vector<std::string>{"41", "42"}));
  EXPECT_RAISES(kEngineFailure, reg_.execute("Insert Into Documents (ID) Values (41)"));
}

TEST_F(DialectWrites, ValuesTakeTheFormOfTheirColumns) {
  reg_.execute(
      "Insert Into Revisions (DocumentID, EffectiveDate, RevisionStatus) Values ('D', '3/9/2001', "
      "2.5)");
  EXPECT_EQ(reg_.value("Select EffectiveDate, RevisionStatus From Revisions"), "3/9/2001|2");
  reg_.execute(
      "Update Revisions Set RevisionStatus = RevisionStatus * 2 + 1, RevUser1 = RevisionID, "
      "EffectiveDate = Null");
  EXPECT_EQ(reg_.value("Select RevisionStatus, RevUser1, EffectiveDate From Revisions"), "5|1|~");
  EXPECT_RAISES(kValueOverflow, reg_.execute("Update Revisions Set RevisionStatus = 40000"));
  EXPECT_RAISES(kValueOverflow,
                reg_.execute("Update Revisions Set RevisionStatus = RevisionID + 40000"));
  EXPECT_RAISES(kMismatch, reg_.execute("Update Revisions Set RevisionStatus = 'x'"));
  EXPECT_RAISES(kEngineFailure,
                reg_.execute("Update Revisions Set RevUser1 = '" + std::string(256, 'x') + "'"));
  EXPECT_EQ(reg_.value("Select RevisionStatus, RevUser1 From Revisions"), "5|1")
      << "nothing of what was refused";
  reg_.execute("Insert Into Routing (ListOrder) Values (1.00001)");
  EXPECT_EQ(reg_.value("Select ListOrder From Routing"), "1.00001");
  reg_.execute("Insert Into Documents (Controlled, SecurityLevel) Values (5, Null)");
  EXPECT_EQ(reg_.value("Select Controlled, SecurityLevel From Documents"), "True|False");
}

TEST_F(DialectWrites, DeletesOverAJoinTakeTheNamedTableOnly) {
  reg_.execute("Insert Into Documents (DocumentID, Controlled) Values ('D1', True)");
  reg_.execute("Insert Into Documents (DocumentID, Controlled) Values ('D2', False)");
  for (const char* d : {"D1", "D1", "D2"})
    reg_.execute(std::string("Insert Into Personals (DocumentID) Values ('") + d + "')");
  EXPECT_EQ(reg_.execute(
                "Delete Personals.* From Personals Inner Join Documents On Personals.DocumentID = "
                "Documents.DocumentID Where Documents.Controlled"),
            2);
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "2");
}

TEST_F(DialectWrites, AFailedStatementLeavesTheRegisterAsItWas) {
  for (int i = 0; i < 3; ++i) reg_.execute("Insert Into Users (UserName) Values ('u')");
  EXPECT_RAISES(
      kEngineFailure,
      reg_.execute("Insert Into Documents (ID, DocumentTitle) Select 7, UserName From Users"));
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "0");
  for (const char* bad :
       {"Delete * From Documents Where", "Update Users Set UserName = ",
        "Insert Into Users (UserName) Values ('x'", "Delete * From Users Where Colour = 'red'"})
    EXPECT_THROW(reg_.execute(bad), Error);
  EXPECT_EQ(reg_.value("Select Count(*) From Users"), "3");
}

}  // namespace
}  // namespace kv
