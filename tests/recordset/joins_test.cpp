// SPDX-License-Identifier: Apache-2.0
// Sets over several tables, and sets whose rows have no keys.

#include <gtest/gtest.h>

#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

using test::shown;

class Joins : public testing::Test {
 protected:
  Joins() {
    reg_.execute(
        "Insert Into Documents (DocumentID, DocumentTitle, CurrentRevID, Controlled) Values ('D1', "
        "'One', 7, True)");
    reg_.execute("Insert Into Documents (DocumentID, DocumentTitle) Values ('D2', 'Two')");
    reg_.execute("Insert Into Manuals (ManualID, ManualName) Values ('M1', 'Manual')");
    copy("U1", "D1", "M1", true);
    copy("U1", "D1", "0", false);
    copy("U2", "D2", "0", false);
    copy("U3", "D9", "0", false);
  }
  void copy(const std::string& user, const std::string& document, const std::string& manual,
            bool hard) {
    reg_.execute("Insert Into Personals (UserID, DocumentID, ManualID, HardCopy) Values ('" + user +
                 "', '" + document + "', '" + manual + "', " + (hard ? "True" : "False") + ")");
  }
  static constexpr const char* kCopies =
      "Select Personals.*, Documents.DocumentTitle, Manuals.ManualName From (Personals Left Join "
      "Documents On "
      "Personals.DocumentID = Documents.DocumentID) Left Join Manuals On Personals.ManualID = "
      "Manuals.ManualID";
  test::TestRegister reg_;
};

TEST_F(Joins, RowsComeInKeyOrderOfTheFirstTable) {
  EXPECT_EQ(
      reg_.rows("Select Personals.ReleaseID, Documents.DocumentTitle, Manuals.ManualName From "
                "(Personals Left Join "
                "Documents On Personals.DocumentID = Documents.DocumentID) Left Join Manuals On "
                "Personals.ManualID = Manuals.ManualID"),
      (std::vector<std::string>{"1|One|Manual", "2|One|~", "3|Two|~", "4|~|~"}));
}

TEST_F(Joins, AreUpdatableInTheColumnsOfEveryTableWhoseRowTheyCanName) {
  const auto rs = reg_.open(kCopies);
  rs->Fields("CopyNumber")->Value("5");
  rs->Fields("DocumentTitle")->Value("Uno");
  rs->Fields("ManualName")->Value("Book");
  rs->Update();
  EXPECT_EQ(reg_.value("Select CopyNumber From Personals Where ReleaseID = 1"), "5");
  EXPECT_EQ(reg_.value("Select DocumentTitle From Documents Where DocumentID = 'D1'"), "Uno");
  EXPECT_EQ(reg_.value("Select ManualName From Manuals"), "Book");
  rs->MoveNext();
  EXPECT_EQ(shown(rs->Fields("DocumentTitle")->Value()), "Uno")
      << "the same document's row, read again";
}

TEST_F(Joins, AnUpdateOfSeveralTablesIsAllOrNothing) {
  const auto rs = reg_.open(kCopies);
  rs->Fields("CopyNumber")->Value("5");
  rs->Fields("DocumentTitle")->Value("Uno");
  const auto other = reg_.openAnother();
  std::int32_t affected = 0;
  other->Execute("Update Documents Set DocumentTitle = 'theirs' Where DocumentID = 'D1'", affected);
  EXPECT_RAISES(-2147217864, rs->Update());
  EXPECT_EQ(reg_.value("Select CopyNumber From Personals Where ReleaseID = 1"), "~");
  EXPECT_EQ(rs->EditMode(), kEditInProgress);
}

TEST_F(Joins, AMissingRowCannotBeWritten) {
  const auto rs = reg_.open(kCopies);
  rs->MoveLast();
  EXPECT_TRUE(rs->Fields("DocumentTitle")->IsNull());
  rs->Fields("DocumentTitle")->Value("x");
  EXPECT_RAISES(3251, rs->Update());
  rs->CancelUpdate();
}

TEST_F(Joins, RowsCannotBeAddedToOrDeletedFromThem) {
  const auto rs = reg_.open(kCopies);
  EXPECT_RAISES(3251, rs->AddNew());
  EXPECT_RAISES(3251, rs->Delete());
  EXPECT_FALSE(rs->Supports(kSupportsAddNew));
  EXPECT_FALSE(rs->Supports(kSupportsDelete));
  EXPECT_TRUE(rs->Supports(kSupportsUpdate));
}

TEST_F(Joins, CollidingNamesComeOutWithTheirTable) {
  const auto rs = reg_.open(
      "Select Personals.*, Documents.* From Personals Inner Join Documents On Personals.DocumentID "
      "= "
      "Documents.DocumentID");
  EXPECT_EQ(rs->Fields(2)->Name(), "Personals.DocumentID");
  EXPECT_EQ(shown(rs->Fields("Documents.DocumentID")->Value()), "D1");
  EXPECT_EQ(rs->Fields("UserID")->Name(), "UserID");
  EXPECT_RAISES(3265, (void)rs->Fields("DocumentID"));
  rs->Find("Personals.DocumentID = 'd2'");
  EXPECT_EQ(shown(rs->Fields("DocumentTitle")->Value()), "Two");
}

TEST_F(Joins, ExpressionsAreReadOnlyAndTheirNeighboursAreNot) {
  const auto rs = reg_.open("Select DocumentTitle, ID + 1, 'x' As Mark From Documents");
  EXPECT_EQ(test::rowOf(*rs), "One|2|x");
  EXPECT_EQ(rs->Fields(1)->Name(), "Expr1000");
  EXPECT_RAISES(3251, rs->Fields("Expr1000")->Value(3));
  EXPECT_RAISES(3251, rs->Fields("Mark")->Value("y"));
  rs->Fields("DocumentTitle")->Value("new");
  rs->Update();
  EXPECT_EQ(test::rowOf(*rs), "new|2|x");
}

TEST_F(Joins, DistinctAndGroupingAreReadOnly) {
  for (const char* sql :
       {"Select Distinct UserID From Personals",
        "Select UserID, Count(*) As N From Personals Group By UserID", "Select 1 As UserID"}) {
    const auto rs = reg_.open(sql);
    EXPECT_EQ(rs->CursorType(), kStatic) << sql;
    EXPECT_RAISES(3251, rs->Fields("UserID")->Value("x"));
    EXPECT_RAISES(3251, rs->AddNew());
    EXPECT_RAISES(3251, rs->Delete());
    EXPECT_EQ(rs->EditMode(), kEditNone);
  }
}

TEST_F(Joins, DistinctRowGivesOneRowPerCombinationAndStaysUpdatable) {
  const auto rs = reg_.open(
      "Select DistinctRow Documents.* From Personals Left Join Documents On Personals.DocumentID = "
      "Documents.DocumentID Order By DocumentTitle");
  ASSERT_EQ(rs->RecordCount(), 3) << "the copy without a document once, all Null";
  EXPECT_TRUE(rs->Fields("DocumentID")->IsNull());
  EXPECT_TRUE(rs->Fields("Controlled")->IsNull());
  rs->MoveNext();
  EXPECT_EQ(shown(rs->Fields("DocumentTitle")->Value()), "One");
  rs->Fields("DocumentTitle")->Value("Uno");
  rs->Update();
  EXPECT_EQ(reg_.value("Select DocumentTitle From Documents Where DocumentID = 'D1'"), "Uno");
  rs->Delete();
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "1");
}

TEST_F(Joins, DistinctRowOfAllTablesIsTheJoinItself) {
  EXPECT_EQ(reg_.open("Select DistinctRow Personals.UserID, Documents.DocumentTitle From Personals "
                      "Inner Join Documents On "
                      "Personals.DocumentID = Documents.DocumentID")
                ->RecordCount(),
            3);
}

// A line of a join is the combination of rows that it named when the set opened. It ends with the
// first of them, whichever side of the join that was on; what is left of it is another line, which
// Requery shows.
TEST_F(Joins, ALineEndsWithAnyOfTheRowsItShows) {
  for (const char* deletion : {"Delete * From Documents Where DocumentID = 'D1'",
                               "Delete * From Manuals Where ManualID = 'M1'",
                               "Delete * From Personals Where ReleaseID = 1"}) {
    reg_.connection()->BeginTrans();
    const auto rs = reg_.open(kCopies);
    reg_.execute(deletion);
    EXPECT_RAISES(-2147217885, (void)rs->Fields("UserID")->Value()) << deletion;
    EXPECT_RAISES(-2147217885, rs->Fields("CopyNumber")->Value("1")) << deletion;
    EXPECT_EQ(rs->RecordCount(), 4) << "as any row that was deleted elsewhere";
    rs->Move(2);
    EXPECT_EQ(shown(rs->Fields("DocumentTitle")->Value()), "Two") << deletion;
    reg_.connection()->RollbackTrans();
  }
}

TEST_F(Joins, RequeryShowsWhatIsLeftOfALine) {
  const auto rs = reg_.open(kCopies);
  reg_.execute("Delete * From Documents Where DocumentID = 'D1'");
  rs->Requery();
  EXPECT_EQ(rs->RecordCount(), 4);
  EXPECT_EQ(shown(rs->Fields("UserID")->Value()), "U1");
  EXPECT_TRUE(rs->Fields("DocumentTitle")->IsNull());
  EXPECT_EQ(shown(rs->Fields("ManualName")->Value()), "Manual");
}

TEST_F(Joins, ALineOutlivesRowsThatItDoesNotShow) {
  const auto rs = reg_.open(
      "Select Personals.* From Personals Left Join Documents On Personals.DocumentID = "
      "Documents.DocumentID");
  reg_.execute("Delete * From Documents Where DocumentID = 'D1'");
  EXPECT_EQ(shown(rs->Fields("UserID")->Value()), "U1");
}

TEST_F(Joins, ALineWithoutAPartnerStaysWithoutOne) {
  const auto rs = reg_.open(kCopies);
  rs->MoveLast();
  EXPECT_TRUE(rs->Fields("DocumentTitle")->IsNull());
  reg_.execute("Insert Into Documents (DocumentID, DocumentTitle) Values ('D9', 'Nine')");
  EXPECT_TRUE(rs->Fields("DocumentTitle")->IsNull());
  EXPECT_EQ(shown(rs->Fields("UserID")->Value()), "U3");
  rs->Requery();
  rs->MoveLast();
  EXPECT_EQ(shown(rs->Fields("DocumentTitle")->Value()), "Nine");
}

TEST_F(Joins, ALineComesBackWithTheRowThatWasRolledBack) {
  const auto rs = reg_.open(kCopies);
  reg_.connection()->BeginTrans();
  reg_.execute("Delete * From Documents Where DocumentID = 'D1'");
  EXPECT_RAISES(-2147217885, (void)rs->Fields("UserID")->Value());
  reg_.connection()->RollbackTrans();
  EXPECT_EQ(shown(rs->Fields("DocumentTitle")->Value()), "One");
}

TEST_F(Joins, AReadOnlySetOfKeylessRowsCanBeMovedSearchedAndRequeried) {
  const auto rs = reg_.open("Select Distinct UserID From Personals");
  EXPECT_EQ(test::rowsOf(*rs), (std::vector<std::string>{"U1", "U2", "U3"}));
  rs->MoveFirst();
  rs->Find("UserID = 'u3'");
  EXPECT_EQ(rs->AbsolutePosition(), 3);
  const Variant here = rs->Bookmark();
  rs->MoveFirst();
  rs->Bookmark(here);
  EXPECT_EQ(test::rowOf(*rs), "U3");
  copy("U4", "D1", "0", false);
  rs->Requery();
  EXPECT_EQ(rs->RecordCount(), 4);
  rs->Sort("UserID DESC");
  EXPECT_EQ(test::rowOf(*rs), "U4");
  EXPECT_EQ(rs->Clone()->RecordCount(), 4);
}

TEST_F(Joins, TheTwoNamesOfTheWorkgroupAreOneStoredColumn) {
  reg_.execute("Insert Into VeskProfiles (UserID) Values ('U1')");
  reg_.execute("Update VeskPRofiles Set VeskProfiles.WorkGroupID = '5' Where USerID = 'U1'");
  EXPECT_EQ(reg_.value("Select GroupID, WorkGroupID From VeskProfiles"), "5|5");
  EXPECT_EQ(reg_.value("Select Count(*) From VeskProfiles Where WorkGroupID = '5' and GroupID = 5"),
            "1");
  EXPECT_RAISES(kMismatch, reg_.execute("Update VeskProfiles Set WorkGroupID = 'five'"));
  const auto rs = reg_.open("Select * From VeskProfiles");
  rs->Fields("GroupID")->Value(6);
  rs->Fields("WorkGroupID")->Value("7");
  rs->Update();
  EXPECT_EQ(reg_.value("Select GroupID, WorkGroupID From VeskProfiles"), "7|7")
      << "the last assignment counts";
  rs->Fields("WorkGroupID")->Value("8");
  rs->Fields("GroupID")->Value(9);
  rs->Update();
  EXPECT_EQ(reg_.value("Select GroupID, WorkGroupID From VeskProfiles"), "9|9");
}

TEST_F(Joins, ASetOfTheSecondNameAloneStillSeesTheConflict) {
  reg_.execute("Insert Into VeskProfiles (UserID, GroupID) Values ('U1', 1)");
  const auto rs = reg_.open("Select UserID, WorkGroupID From VeskProfiles");
  rs->Fields("UserID")->Value("U2");
  const auto other = reg_.openAnother();
  std::int32_t affected = 0;
  other->Execute("Update VeskProfiles Set GroupID = 2", affected);
  EXPECT_RAISES(-2147217864, rs->Update());
}

TEST_F(Joins, LargeJoinsReadByBlocks) {
  for (int i = 0; i < 500; ++i) copy("U" + std::to_string(i), i % 2 == 0 ? "D1" : "D9", "0", false);
  const auto rs = reg_.open(kCopies);
  ASSERT_EQ(rs->RecordCount(), 504);
  int withTitle = 0;
  for (; !rs->Eof(); rs->MoveNext()) withTitle += rs->Fields("DocumentTitle")->IsNull() ? 0 : 1;
  EXPECT_EQ(withTitle, 253);
  int backwards = 0;
  for (rs->MoveLast(); !rs->Bof(); rs->MovePrevious())
    backwards += rs->Fields("DocumentTitle")->IsNull() ? 0 : 1;
  EXPECT_EQ(backwards, 253);
}

}  // namespace
}  // namespace kv
