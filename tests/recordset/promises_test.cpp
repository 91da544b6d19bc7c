// SPDX-License-Identifier: Apache-2.0
// What record sets promise, one test per sentence.

#include <gtest/gtest.h>

#include <limits>

#include "common/convert.h"
#include "support/engine_answers.h"
#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

using test::shown;

class RecordSet : public testing::Test {
 protected:
  // Manuals named M1 to Mn, in that order; ManUser1 is their number.
  void fill(int count) {
    for (int i = 1; i <= count; ++i)
      reg_.execute("Insert Into Manuals (ManualID, ManualName, ManUser1) Values ('ID" +
                   std::to_string(i) + "', 'M" + std::to_string(i) + "', '" + std::to_string(i) +
                   "')");
  }
  Ref<Recordset> open(const std::string& sql = "Select * From Manuals Order By ID") {
    return reg_.open(sql);
  }
  static std::string name(Recordset& rs) { return shown(rs.Fields("ManualName")->Value()); }
  static std::string name(const Ref<Recordset>& rs) { return name(*rs); }
  // Another connection, as another process would have it.
  std::int32_t elsewhere(const std::string& sql) {
    const auto other = reg_.openAnother("Lock Timeout=0;");
    std::int32_t affected = 0;
    other->Execute(sql, affected);
    other->Close();
    return affected;
  }
  test::TestRegister reg_;
};

// ---- numbers ----

TEST_F(RecordSet, NumbersWithoutEndAreNeverAssigned) {
  const double endless = std::numeric_limits<double>::infinity();
  const std::initializer_list<Variant> bad = {
      endless, -endless, std::numeric_limits<double>::quiet_NaN(),
      std::numeric_limits<float>::infinity(), Variant("1e999")};
  reg_.execute("Insert Into ManualContents ([Position]) Values (1)");
  reg_.execute("Insert Into Routing (ListOrder) Values (1)");
  const auto free = Recordset::create();
  free->Fields().Append("ListOrder", kTypeSingle, 4);
  free->Fields().Append("Position", kTypeDouble, 8);
  free->Open();
  free->AddNew();
  free->Update();
  const auto contents = open("Select * From ManualContents");
  const auto list = open("Select * From Routing");
  for (const auto& value : bad) {
    EXPECT_RAISES(kOverflow, contents->Fields("Position")->Value(value));
    EXPECT_RAISES(kOverflow, list->Fields("ListOrder")->Value(value));
    EXPECT_RAISES(kOverflow, free->Fields("Position")->Value(value));
    EXPECT_RAISES(kOverflow, free->Fields("ListOrder")->Value(value));
  }
  EXPECT_RAISES(kOverflow, list->Fields("ListOrder")->Value(1E39)) << "a double, and no single";
  EXPECT_EQ(contents->EditMode(), kEditNone);
  EXPECT_EQ(list->EditMode(), kEditNone);
  contents->Fields("Position")->Value(1E308);
  contents->Update();
  EXPECT_EQ(reg_.value("Select [Position] From ManualContents"), "1E+308");
}

// ---- membership ----

TEST_F(RecordSet, MembershipAndOrderAreFixedWhenItOpens) {
  fill(3);
  const auto rs = open("Select * From Manuals Where ManUser1 <> '9' Order By ManualName");
  elsewhere("Insert Into Manuals (ManualName, ManUser1) Values ('M0', '0')");
  elsewhere("Update Manuals Set ManualName = 'Z' Where ManualName = 'M1'");
  elsewhere("Update Manuals Set ManUser1 = '9' Where ManualName = 'M2'");
  EXPECT_EQ(rs->RecordCount(), 3);
  reg_.execute("Update Manuals Set ManUserMemo = 'x'");  // so that every row is read again
  std::vector<std::string> names;
  for (; !rs->Eof(); rs->MoveNext()) names.push_back(name(rs));
  EXPECT_EQ(names, (std::vector<std::string>{"Z", "M2", "M3"}));
}

TEST_F(RecordSet, RecordCountIsExact) {
  EXPECT_EQ(open()->RecordCount(), 0);
  fill(3);
  EXPECT_EQ(open()->RecordCount(), 3);
  fill(297);
  EXPECT_EQ(open()->RecordCount(), 300) << "also where the set is more than is read at once";
}

TEST_F(RecordSet, AnOpenSetHoldsNoLock) {
  fill(300);
  const auto rs = open();
  rs->MoveNext();
  (void)name(rs);
  rs->Fields("ManualName")->Value("pending");
  EXPECT_EQ(elsewhere("Update Manuals Set ManUser2 = 'written'"), 300);
}

TEST_F(RecordSet, OwnAdditionsAreAtTheEndAndCounted) {
  fill(2);
  const auto rs = open("Select * From Manuals Order By ManualName");
  rs->AddNew();
  rs->Fields("ManualName")->Value("A");
  EXPECT_EQ(rs->RecordCount(), 2) << "not before it is stored";
  rs->Update();
  EXPECT_EQ(rs->RecordCount(), 3);
  rs->MoveFirst();
  EXPECT_EQ(name(rs), "M1");
  rs->MoveLast();
  EXPECT_EQ(name(rs), "A");
}

// ---- reading ----

TEST_F(RecordSet, ABlockIsThrownAwayAsSoonAsTheConnectionWritesAnything) {
  fill(3);
  const auto rs = open();
  EXPECT_EQ(name(rs), "M1");
  elsewhere("Update Manuals Set ManualName = 'changed' Where ManualName = 'M1'");
  EXPECT_EQ(name(rs), "M1") << "what was read stays read";
  reg_.execute("Insert Into Keywords Values ('a', 'b')");
  EXPECT_EQ(name(rs), "changed") << "until this connection writes, whatever it writes";
}

TEST_F(RecordSet, TextIsHandedOutWithoutACopy) {
  fill(1);
  const auto rs = open();
  const auto field = rs->Fields("ManualName");
  EXPECT_EQ(field->Text(), "M1");
  EXPECT_FALSE(field->IsNull());
  EXPECT_EQ(rs->Fields("ManUser4")->Text(), "");
  EXPECT_TRUE(rs->Fields("ManUser4")->IsNull());
  field->Value("pending");
  EXPECT_EQ(field->Text(), "pending");
}

// ---- editing ----

TEST_F(RecordSet, EditingStartsWithTheFirstAssignment) {
  fill(1);
  const auto rs = open();
  EXPECT_EQ(rs->EditMode(), kEditNone);
  rs->Fields("ManualName")->Value("new");
  EXPECT_EQ(rs->EditMode(), kEditInProgress);
  EXPECT_EQ(name(rs), "new");
  EXPECT_EQ(reg_.value("Select ManualName From Manuals"), "M1")
      << "nothing is written before Update";
  rs->Update();
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(reg_.value("Select ManualName From Manuals"), "new");
}

TEST_F(RecordSet, TheRowIsReadAgainWhenTheConnectionHasWrittenSince) {
  fill(1);
  const auto rs = open();
  EXPECT_EQ(name(rs), "M1");
  reg_.execute("Update Manuals Set ManualName = 'between'");
  rs->Fields("ManUser1")->Value("new");
  EXPECT_EQ(shown(rs->Fields("ManualName")->OriginalValue()), "between");
  rs->Update();
  EXPECT_EQ(reg_.value("Select ManualName, ManUser1 From Manuals"), "between|new");
}

TEST_F(RecordSet, OriginalValueIsTheValueAsReadForThisEdit) {
  fill(1);
  const auto rs = open();
  const auto field = rs->Fields("ManualName");
  field->Value("a");
  field->Value("b");
  EXPECT_EQ(shown(field->OriginalValue()), "M1");
  rs->Update();
  EXPECT_EQ(shown(field->OriginalValue()), "b");
}

TEST_F(RecordSet, UpdateWritesEveryFieldAssignedInThisEdit) {
  fill(1);
  const auto rs = open();
  rs->Fields("ManualName")->Value("a");
  rs->Fields("ManUser1")->Value("b");
  rs->Fields("ManUserMemo")->Value(Null);
  rs->Update();
  EXPECT_EQ(reg_.value("Select ManualName, ManUser1, ManUserMemo From Manuals"), "a|b|~");
}

TEST_F(RecordSet, AChangeBySomebodyElseIsNotOverwritten) {
  fill(1);
  const auto rs = open();
  rs->Fields("ManualName")->Value("mine");
  elsewhere("Update Manuals Set ManUser3 = 'theirs'");
  const auto error = test::errorOf([&] { rs->Update(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), -2147217864);
  EXPECT_EQ(reg_.value("Select ManualName, ManUser3 From Manuals"), "M1|theirs");
  EXPECT_EQ(rs->EditMode(), kEditInProgress) << "the edit stays pending";
  EXPECT_EQ(name(rs), "mine");
  rs->CancelUpdate();
  EXPECT_EQ(rs->EditMode(), kEditNone);
}

TEST_F(RecordSet, AChangeOfCaseAloneIsAChange) {
  fill(1);
  const auto rs = open();
  rs->Fields("ManUser1")->Value("mine");
  elsewhere("Update Manuals Set ManualName = 'm1'");
  EXPECT_RAISES(-2147217864, rs->Update());
}

TEST_F(RecordSet, AChangeOfAColumnTheSetDoesNotHaveIsNoConflict) {
  fill(1);
  const auto rs = open("Select ManualID, ManualName From Manuals");
  rs->Fields("ManualName")->Value("mine");
  elsewhere("Update Manuals Set ManUser3 = 'theirs'");
  rs->Update();
  EXPECT_EQ(reg_.value("Select ManualName, ManUser3 From Manuals"), "mine|theirs");
}

TEST_F(RecordSet, AnEditOfARowThatIsGoneSaysSo) {
  fill(1);
  const auto rs = open();
  rs->Fields("ManualName")->Value("mine");
  elsewhere("Delete * From Manuals");
  EXPECT_RAISES(-2147217885, rs->Update());
  EXPECT_EQ(rs->EditMode(), kEditInProgress);
}

TEST_F(RecordSet, TwoCursorsRacingForARowHaveOneWinner) {
  fill(1);
  const auto first = open();
  const auto second = open();
  first->Fields("ManUser1")->Value("first");
  second->Fields("ManUser1")->Value("second");
  first->Update();
  EXPECT_RAISES(-2147217864, second->Update());
  EXPECT_EQ(reg_.value("Select ManUser1 From Manuals"), "first");
}

TEST_F(RecordSet, UpdateWithNothingPendingDoesNothingAndNeverFails) {
  const auto empty = open();
  EXPECT_NO_THROW(empty->Update());
  fill(2);
  const auto rs = open();
  EXPECT_NO_THROW(rs->Update());
  rs->Delete();
  EXPECT_NO_THROW(rs->Update()) << "on a deleted row";
  rs->MoveLast();
  rs->MoveNext();
  ASSERT_TRUE(rs->Eof());
  EXPECT_NO_THROW(rs->Update()) << "at Eof";
}

TEST_F(RecordSet, AValueTheFieldCannotHoldChangesNothing) {
  reg_.execute("Insert Into Documents (DocumentTitle) Values ('T')");
  const auto rs = open("Select * From Documents");
  struct Case {
    const char* field;
    Variant value;
  };
  const Case cases[] = {{"DocumentID", std::string(51, 'x')},
                        {"EffectiveDate", "soon"},
                        {"CurrentRevID", "three"},
                        {"CurrentRevID", 3e9},
                        {"Controlled", "perhaps"},
                        {"DocumentTitle", "caf\xE9"},
                        {"DocumentTitle", std::string("a\0b", 3)}};
  for (const auto& c : cases) {
    EXPECT_RAISES(3421, rs->Fields(c.field)->Value(c.value));
    EXPECT_EQ(rs->EditMode(), kEditNone) << c.field;
  }
  rs->Fields("DocumentID")->Value(std::string(50, 'x'));
  rs->Fields("Controlled")->Value(Null);
  EXPECT_EQ(rs->Fields("Controlled")->Value(), Variant(false)) << "Null in a boolean is False";
  rs->Fields("EffectiveDate")->Value("3/9/2001");
  rs->Fields("CurrentRevID")->Value("2.5");
  rs->Update();
  EXPECT_EQ(reg_.value("Select EffectiveDate, CurrentRevID From Documents"), "3/9/2001|2");
}

TEST_F(RecordSet, TheCounterCannotBeAssigned) {
  fill(1);
  const auto rs = open();
  EXPECT_RAISES(3251, rs->Fields("ID")->Value(7));
  EXPECT_EQ(rs->EditMode(), kEditNone);
}

// ---- moving ----

TEST_F(RecordSet, EveryMoveFirstSavesWhatIsPending) {
  fill(4);
  const auto rs = open();
  const auto edit = [&](const char* value) { rs->Fields("ManUser2")->Value(value); };
  const auto saved = [&] { return reg_.value("Select Max(ManUser2) From Manuals"); };
  const Variant bookmark = rs->Bookmark();
  edit("a");
  rs->MoveNext();
  EXPECT_EQ(saved(), "a");
  edit("b");
  rs->MovePrevious();
  EXPECT_EQ(saved(), "b");
  edit("c");
  rs->MoveLast();
  EXPECT_EQ(saved(), "c");
  edit("d");
  rs->MoveFirst();
  EXPECT_EQ(saved(), "d");
  edit("e");
  rs->Move(2);
  EXPECT_EQ(saved(), "e");
  edit("f");
  rs->Move(0);
  EXPECT_EQ(saved(), "f") << "also a move that lands on the same row";
  edit("g");
  rs->Find("ManualName = 'M4'");
  EXPECT_EQ(saved(), "g");
  edit("h");
  rs->Bookmark(bookmark);
  EXPECT_EQ(saved(), "h");
  edit("i");
  rs->AddNew();
  EXPECT_EQ(saved(), "i");
  rs->CancelUpdate();
  edit("j");
  rs->Requery();
  EXPECT_EQ(saved(), "j");
  edit("k");
  rs->AbsolutePosition(2);
  EXPECT_EQ(saved(), "k");
  edit("l");
  rs->Sort("ManualName DESC");
  EXPECT_EQ(saved(), "l");
  EXPECT_EQ(rs->EditMode(), kEditNone);
  edit("m");
  rs->Filter("ManualName <> 'M1'");
  EXPECT_EQ(saved(), "m");
  EXPECT_EQ(rs->EditMode(), kEditNone);
  edit("n");
  (void)rs->GetRows(1);
  EXPECT_EQ(saved(), "n");
}

TEST_F(RecordSet, AMoveThatCannotSaveLeavesPositionAndEdit) {
  fill(3);
  const auto rs = open();
  rs->MoveNext();
  rs->Fields("ManUser2")->Value("mine");
  elsewhere("Update Manuals Set ManUser2 = 'theirs'");
  const Variant last = [&] {
    const auto other = rs->Clone();
    other->MoveLast();
    return other->Bookmark();
  }();
  const std::function<void()> moves[] = {[&] { rs->MoveNext(); },
                                         [&] { rs->MovePrevious(); },
                                         [&] { rs->MoveFirst(); },
                                         [&] { rs->MoveLast(); },
                                         [&] { rs->Move(0); },
                                         [&] { rs->Find("ManualName = 'M3'"); },
                                         [&] { rs->AddNew(); },
                                         [&] { rs->Requery(); },
                                         [&] { rs->Bookmark(last); },
                                         [&] { (void)rs->GetRows(); },
                                         [&] { rs->Sort("ID DESC"); },
                                         [&] { rs->Filter("ID = 1"); },
                                         [&] { rs->AbsolutePosition(1); }};
  for (const auto& move : moves) {
    EXPECT_EQ(test::numberOf(move), -2147217864);
    EXPECT_EQ(rs->EditMode(), kEditInProgress);
    EXPECT_EQ(rs->AbsolutePosition(), 2);
    EXPECT_EQ(shown(rs->Fields("ManUser2")->Value()), "mine");
  }
}

TEST_F(RecordSet, MovesStopBehindTheEndsAndRaiseBeyondThem) {
  fill(2);
  const auto rs = open();
  rs->MovePrevious();
  EXPECT_TRUE(rs->Bof());
  EXPECT_FALSE(rs->Eof());
  EXPECT_RAISES(3021, rs->MovePrevious());
  EXPECT_RAISES(3021, rs->Move(-1));
  rs->MoveNext();
  EXPECT_EQ(name(rs), "M1");
  rs->Move(99);
  EXPECT_TRUE(rs->Eof());
  EXPECT_RAISES(3021, rs->MoveNext());
  EXPECT_RAISES(3021, rs->Move(1));
  rs->MovePrevious();
  EXPECT_EQ(name(rs), "M2");
  rs->Move(-99);
  EXPECT_TRUE(rs->Bof());
}

TEST_F(RecordSet, MoveStartsWhereItIsTold) {
  fill(5);
  const auto rs = open();
  rs->Move(1, kFromLast);
  EXPECT_TRUE(rs->Eof());
  rs->Move(-1, kFromLast);
  EXPECT_EQ(name(rs), "M4");
  rs->Move(2, kFromFirst);
  EXPECT_EQ(name(rs), "M3");
  const Variant here = rs->Bookmark();
  rs->MoveFirst();
  rs->Move(1, here);
  EXPECT_EQ(name(rs), "M4");
  EXPECT_RAISES(3001, rs->Move(1, "nonsense"));
}

TEST_F(RecordSet, AnEmptySetHasNowhereToMove) {
  const auto rs = open();
  EXPECT_TRUE(rs->Bof());
  EXPECT_TRUE(rs->Eof());
  EXPECT_RAISES(3021, rs->MoveFirst());
  EXPECT_RAISES(3021, rs->MoveLast());
  EXPECT_RAISES(3021, rs->MoveNext());
  EXPECT_RAISES(3021, rs->MovePrevious());
  EXPECT_RAISES(3021, rs->Move(0));
  EXPECT_RAISES(3021, (void)name(rs));
  EXPECT_RAISES(3021, rs->Fields("ManualName")->Value("x"));
}

// ---- adding ----

TEST_F(RecordSet, AddNewAssignsTheCounterAtOnce) {
  fill(3);
  const auto rs = open("Select * From Manuals Where ID = -1");
  rs->AddNew();
  EXPECT_EQ(rs->EditMode(), kEditAdd);
  EXPECT_EQ(rs->Fields("ID")->Value(), Variant(4));
  EXPECT_EQ(reg_.value("Select Count(*) From Manuals"), "3");
  rs->Update();
  EXPECT_EQ(reg_.value("Select Max(ID) From Manuals"), "4");
}

TEST_F(RecordSet, TwoProcessesNeverGetTheSameCounter) {
  const auto other = reg_.openAnother();
  const auto here = open();
  const auto there = other->OpenRecordset("Select * From Manuals");
  std::vector<std::int32_t> numbers;
  for (int i = 0; i < 5; ++i) {
    here->AddNew();
    there->AddNew();
    numbers.push_back(toInt32(here->Fields("ID")->Value()));
    numbers.push_back(toInt32(there->Fields("ID")->Value()));
    there->Update();
    here->Update();
  }
  std::sort(numbers.begin(), numbers.end());
  EXPECT_EQ(std::adjacent_find(numbers.begin(), numbers.end()), numbers.end());
  EXPECT_EQ(reg_.value("Select Count(*) From Manuals"), "10");
}

TEST_F(RecordSet, ACounterTakenInATransactionGoesWithIt) {
  const auto rs = open();
  reg_.connection()->BeginTrans();
  rs->AddNew();
  EXPECT_EQ(rs->Fields("ID")->Value(), Variant(1));
  rs->CancelUpdate();
  reg_.connection()->RollbackTrans();
  rs->AddNew();
  EXPECT_EQ(rs->Fields("ID")->Value(), Variant(test::countersGoBack() ? 1 : 2));
  rs->CancelUpdate();
}

TEST_F(RecordSet, AfterUpdateOfAnAdditionTheNewRowIsCurrent) {
  fill(2);
  const auto rs = open();
  rs->AddNew();
  EXPECT_FALSE(rs->Eof());
  EXPECT_FALSE(rs->Bof());
  rs->Fields("ManualName")->Value("new");
  rs->Update();
  EXPECT_EQ(name(rs), "new");
  EXPECT_EQ(rs->AbsolutePosition(), 3);
  rs->MoveNext();
  EXPECT_TRUE(rs->Eof());
}

TEST_F(RecordSet, CancelUpdateReturnsToTheRowLeft) {
  fill(3);
  const auto rs = open();
  rs->MoveNext();
  rs->AddNew();
  rs->Fields("ManualName")->Value("never");
  rs->CancelUpdate();
  EXPECT_EQ(name(rs), "M2");
  EXPECT_EQ(rs->RecordCount(), 3);
  rs->MoveLast();
  rs->MoveNext();
  rs->AddNew();
  rs->CancelUpdate();
  EXPECT_TRUE(rs->Eof());
}

TEST_F(RecordSet, AnAdditionStartsWithTheColumnsInitialValues) {
  const auto rs = open("Select * From VeskProfiles Where UserID = '-1'");
  rs->AddNew();
  rs->Fields("UserID")->Value("User1");
  EXPECT_EQ(shown(rs->Fields("UserOptions")->Value()), "0000000");
  EXPECT_EQ(rs->Fields("GroupID")->Value(), Variant(0));
  EXPECT_EQ(rs->Fields("Administrator")->Value(), Variant(false));
  EXPECT_TRUE(rs->Fields("Rights")->IsNull());
  rs->Update();
  EXPECT_EQ(test::rowOf(*rs), "User1|~|0|0|~|0000000|False");
}

TEST_F(RecordSet, RowsOfATableWithoutACounterAreAddedAndEditedToo) {
  const auto rs = open("Select * From Keywords");
  for (const char* word : {"a", "b", "a"}) {
    rs->AddNew();
    rs->Fields("FieldName")->Value("F");
    rs->Fields("Keyword")->Value(word);
    rs->Update();
  }
  rs->MoveFirst();
  rs->Fields("Keyword")->Value("first");
  rs->Update();
  rs->MoveLast();
  rs->Delete();
  EXPECT_EQ(reg_.rows("Select * From Keywords"), (std::vector<std::string>{"F|first", "F|b"}));
}

// ---- deleting ----

TEST_F(RecordSet, AfterDeleteThePositionIsAHole) {
  fill(3);
  const auto rs = open();
  rs->MoveNext();
  rs->Delete();
  EXPECT_FALSE(rs->Bof());
  EXPECT_FALSE(rs->Eof());
  EXPECT_RAISES(3021, (void)name(rs));
  EXPECT_RAISES(3021, rs->Fields("ManualName")->Value("x"));
  EXPECT_RAISES(3021, rs->Delete());
  EXPECT_RAISES(3021, (void)rs->Bookmark());
  EXPECT_EQ(rs->AbsolutePosition(), kPositionUnknown);
}

TEST_F(RecordSet, MovesPassOverHoles) {
  fill(4);
  const auto rs = open();
  rs->MoveNext();
  rs->Delete();
  rs->MoveNext();
  EXPECT_EQ(name(rs), "M3");
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  rs->Delete();
  rs->MovePrevious();
  EXPECT_EQ(name(rs), "M1");
  rs->MoveNext();
  EXPECT_EQ(name(rs), "M4");
}

TEST_F(RecordSet, RecordCountNoLongerCountsAHole) {
  fill(3);
  const auto rs = open();
  rs->Delete();
  EXPECT_EQ(rs->RecordCount(), 2);
}

TEST_F(RecordSet, DeletingEveryRowOneAfterTheOtherEndsAtEof) {
  fill(250);
  const auto rs = open();
  for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) rs->Delete();
  EXPECT_EQ(rs->RecordCount(), 0);
  EXPECT_TRUE(rs->Bof());
  EXPECT_EQ(reg_.value("Select Count(*) From Manuals"), "0");
  EXPECT_RAISES(3021, rs->MoveFirst());
}

TEST_F(RecordSet, DeleteAllDeletesWhatIsLeftOfTheSetAndEndsAtEof) {
  for (const int rows : {3, 250}) {
    fill(rows);
    elsewhere("Insert Into Manuals (ManualID) Values ('other')");
    const auto rs = open("Select * From Manuals Where ManualName Like 'M%'");
    rs->MoveNext();
    rs->Delete();
    rs->DeleteAll();
    EXPECT_TRUE(rs->Eof());
    EXPECT_EQ(rs->RecordCount(), 0);
    EXPECT_RAISES(3021, (void)name(rs));
    EXPECT_EQ(reg_.rows("Select ManualID From Manuals"), (std::vector<std::string>{"other"}));
    rs->DeleteAll();  // of nothing
    elsewhere("Delete * From Manuals");
  }
}

TEST_F(RecordSet, DeleteAllKeepsWhatTheFilterHides) {
  fill(4);
  const auto rs = open();
  rs->Filter("ManualName <> 'M2'");
  rs->DeleteAll();
  rs->Filter("");
  EXPECT_EQ(rs->RecordCount(), 1);
  rs->MoveFirst();
  EXPECT_EQ(name(rs), "M2");
  EXPECT_EQ(reg_.rows("Select ManualName From Manuals"), (std::vector<std::string>{"M2"}));
}

TEST_F(RecordSet, DeleteAllDeletesNothingWhenARowIsGone) {
  fill(4);
  const auto rs = open();
  elsewhere("Delete * From Manuals Where ManualName = 'M3'");
  EXPECT_RAISES(-2147217885, rs->DeleteAll());
  EXPECT_EQ(reg_.rows("Select ManualName From Manuals"),
            (std::vector<std::string>{"M1", "M2", "M4"}));
  EXPECT_EQ(rs->RecordCount(), 4);
  rs->MoveFirst();
  EXPECT_EQ(name(rs), "M1");
}

TEST_F(RecordSet, DeleteAllDropsAPendingEditAndIsRefusedDuringAnAddition) {
  fill(2);
  const auto rs = open();
  rs->AddNew();
  EXPECT_RAISES(3219, rs->DeleteAll());
  rs->CancelUpdate();
  rs->Fields("ManualName")->Value("never");
  rs->DeleteAll();
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(reg_.value("Select Count(*) From Manuals"), "0");
  EXPECT_RAISES(3251, open("Select Distinct ManualName From Manuals")->DeleteAll());
}

TEST_F(RecordSet, DeleteDropsAPendingEditOfItsRow) {
  fill(2);
  const auto rs = open();
  rs->Fields("ManualName")->Value("x");
  rs->Delete();
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(reg_.value("Select ManualName From Manuals"), "M2");
}

TEST_F(RecordSet, ARowThatSomebodyElseDeletedSaysSoWhenRead) {
  fill(3);
  const auto rs = open();
  elsewhere("Delete * From Manuals Where ManualName = 'M2'");
  reg_.execute("Update Manuals Set ManUser2 = 'x'");
  rs->MoveNext();
  EXPECT_RAISES(-2147217885, (void)name(rs));
  EXPECT_RAISES(-2147217885, rs->Fields("ManualName")->Value("x"));
  EXPECT_RAISES(-2147217885, rs->Delete());
  rs->MoveNext();
  EXPECT_EQ(name(rs), "M3") << "and can be left";
}

// ---- closing ----

TEST_F(RecordSet, CloseWithSomethingPendingIsRefusedAndLeavesSetAndEdit) {
  fill(1);
  const auto rs = open();
  rs->Fields("ManualName")->Value("pending");
  EXPECT_RAISES(3219, rs->Close());
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_EQ(name(rs), "pending");
  rs->CancelUpdate();
  rs->AddNew();
  EXPECT_RAISES(3219, rs->Close());
  EXPECT_EQ(rs->EditMode(), kEditAdd);
  rs->CancelUpdate();
  rs->Close();
  EXPECT_EQ(rs->State(), kStateClosed);
}

TEST_F(RecordSet, ReleasingTheObjectDropsWhatIsPending) {
  fill(1);
  {
    const auto rs = open();
    rs->Fields("ManualName")->Value("dropped");
  }
  EXPECT_EQ(reg_.value("Select ManualName From Manuals"), "M1");
}

TEST_F(RecordSet, FieldsOutliveTheVariableTheSetWasIn) {
  fill(1);
  const auto field = open()->Fields("ManualName");
  EXPECT_EQ(shown(field->Value()), "M1");
}

// ---- finding ----

TEST_F(RecordSet, FindStartsAtTheCurrentRow) {
  fill(3);
  const auto rs = open();
  rs->MoveNext();
  rs->Find("ManualName = 'M2'");
  EXPECT_EQ(name(rs), "M2");
  rs->Find("ManualName = 'M1'");
  EXPECT_TRUE(rs->Eof());
}

TEST_F(RecordSet, FindStartsFromBofWithTheFirstRow) {
  fill(3);
  const auto rs = open();
  rs->MovePrevious();
  rs->Find("ManUser1 <> 'x'");
  EXPECT_EQ(name(rs), "M1");
}

TEST_F(RecordSet, FindComparesTextWithoutRegardToCase) {
  fill(3);
  const auto rs = open();
  rs->Find("manualname = 'm3'");
  EXPECT_EQ(name(rs), "M3");
}

TEST_F(RecordSet, FindStaysAtEofWithoutErrorWhenNothingMatches) {
  const auto empty = open();
  EXPECT_NO_THROW(empty->Find("ManualName = 'x'"));
  EXPECT_TRUE(empty->Eof());
  fill(2);
  const auto rs = open();
  rs->Find("ManualName = 'x'");
  EXPECT_TRUE(rs->Eof());
  EXPECT_FALSE(rs->Bof());
  EXPECT_NO_THROW(rs->Find("ManualName = 'M1'"));
  EXPECT_TRUE(rs->Eof()) << "from Eof there is nothing ahead";
}

TEST_F(RecordSet, FindGoesBackwardsAndSkips) {
  fill(4);
  const auto rs = open();
  rs->MoveLast();
  rs->Find("ManUser1 < '4'", 0, kBackward);
  EXPECT_EQ(name(rs), "M3");
  rs->Find("ManUser1 < '4'", 1, kBackward);
  EXPECT_EQ(name(rs), "M2");
  rs->Find("ManUser1 > '0'", 1);
  EXPECT_EQ(name(rs), "M3");
  rs->Find("ManUser1 = '4'", 0, kForward, kFromFirst);
  EXPECT_EQ(name(rs), "M4");
  rs->Find("ManUser1 = 'x'", 0, kBackward);
  EXPECT_TRUE(rs->Bof());
}

TEST_F(RecordSet, FindTakesOneComparisonAndNothingElse) {
  fill(1);
  const auto rs = open();
  for (const char* bad :
       {"", "ManualName", "ManualName =", "= 'x'", "ManualName = 'a' and ID = 1", "ManualName 'x'",
        "ManualName = x", "ManualName Is Null", "ID = 'abc'", "ManualName = 'x", "ID = --1"})
    EXPECT_RAISES(3001, rs->Find(bad));
  EXPECT_RAISES(3265, rs->Find("Colour = 'red'"));
  EXPECT_RAISES(3001, rs->Find("ID = 1", -1));
  EXPECT_RAISES(3001, rs->Find("ID = 1", 0, 7));
}

TEST_F(RecordSet, FindPassesOverRowsThatSomebodyElseDeleted) {
  fill(3);
  const auto rs = open();
  elsewhere("Delete * From Manuals Where ManualName = 'M2'");
  reg_.execute("Update Manuals Set ManUser2 = 'x'");
  rs->Find("ManUser1 = '3'");
  EXPECT_EQ(name(rs), "M3");
}

// ---- bookmarks and positions ----

TEST_F(RecordSet, ABookmarkLeadsBackToItsRow) {
  fill(3);
  const auto rs = open();
  rs->MoveNext();
  const Variant here = rs->Bookmark();
  rs->MoveLast();
  rs->Bookmark(here);
  EXPECT_EQ(name(rs), "M2");
}

TEST_F(RecordSet, ABookmarkOfADeletedRowOrAnotherSetIsRefused) {
  fill(3);
  const auto rs = open();
  const Variant first = rs->Bookmark();
  rs->Delete();
  rs->MoveNext();
  EXPECT_RAISES(3021, rs->Bookmark(first));
  EXPECT_EQ(name(rs), "M2");
  const Variant second = rs->Bookmark();
  rs->Requery();
  EXPECT_RAISES(3001, rs->Bookmark(second));
  EXPECT_RAISES(3001, rs->Bookmark("x"));
  EXPECT_RAISES(3001, rs->Bookmark(1e18));
}

TEST_F(RecordSet, AbsolutePositionCountsFromOne) {
  fill(3);
  const auto rs = open();
  EXPECT_EQ(rs->AbsolutePosition(), 1);
  rs->AbsolutePosition(3);
  EXPECT_EQ(name(rs), "M3");
  EXPECT_RAISES(3001, rs->AbsolutePosition(4));
  EXPECT_RAISES(3001, rs->AbsolutePosition(0));
  rs->MoveNext();
  EXPECT_EQ(rs->AbsolutePosition(), kPositionEof);
  rs->Move(-4);
  EXPECT_EQ(rs->AbsolutePosition(), kPositionBof);
  EXPECT_EQ(open("Select * From Manuals Where ID = -1")->AbsolutePosition(), kPositionUnknown);
}

// ---- whole sets ----

TEST_F(RecordSet, RequerySeesWhatOthersDid) {
  fill(2);
  const auto rs = open();
  elsewhere("Insert Into Manuals (ManualName) Values ('new')");
  rs->MoveLast();
  rs->Requery();
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(name(rs), "M1");
}

TEST_F(RecordSet, GetRowsGivesValuesByFieldAndRow) {
  fill(3);
  const auto rs = open();
  rs->MoveNext();
  const auto rest = rs->GetRows(kRestOfRows, {}, {"ManualName", "id"});
  ASSERT_EQ(rest.size(), 2U);
  EXPECT_EQ(rest[0], (std::vector<Variant>{"M2", "M3"}));
  EXPECT_EQ(rest[1], (std::vector<Variant>{2, 3}));
  EXPECT_TRUE(rs->Eof());
  EXPECT_RAISES(3021, (void)rs->GetRows());
  const auto one = rs->GetRows(1, kFromFirst);
  EXPECT_EQ(one.size(), 8U);
  EXPECT_EQ(one[0].size(), 1U);
  EXPECT_EQ(name(rs), "M2") << "behind the rows given";
  EXPECT_RAISES(3265, (void)rs->GetRows(1, {}, {"Colour"}));
  EXPECT_RAISES(3001, (void)rs->GetRows(-2));
}

TEST_F(RecordSet, ACloneSharesTheRowsAndHasAPositionOfItsOwn) {
  fill(3);
  const auto rs = open();
  rs->MoveLast();
  const auto clone = rs->Clone();
  EXPECT_EQ(name(clone), "M1");
  EXPECT_EQ(name(rs), "M3");
  clone->Bookmark(rs->Bookmark());
  EXPECT_EQ(name(clone), "M3");
  clone->Fields("ManualName")->Value("changed");
  EXPECT_EQ(name(rs), "M3");
  clone->Update();
  EXPECT_EQ(name(rs), "changed");
  rs->AddNew();
  rs->Update();
  EXPECT_EQ(clone->RecordCount(), 4);
  clone->MoveFirst();
  clone->Delete();
  rs->MoveFirst();
  EXPECT_EQ(name(rs), "M2");
}

TEST_F(RecordSet, AFilterShowsTheRowsThatHold) {
  fill(12);
  const auto rs = open();
  rs->Filter("ManUser1 > '1' and (ManualName = 'm3' or ManualName Like 'M1*')");
  EXPECT_EQ(test::rowsOf(*rs).size(), 4U);
  EXPECT_EQ(rs->RecordCount(), 4);
  rs->MoveFirst();
  EXPECT_EQ(name(rs), "M3");
  rs->AddNew();
  rs->Fields("ManualName")->Value("other");
  rs->Update();
  EXPECT_EQ(name(rs), "other") << "own additions stay visible";
  EXPECT_EQ(rs->RecordCount(), 5);
  rs->Filter("");
  EXPECT_EQ(rs->RecordCount(), 13);
  EXPECT_RAISES(3001, rs->Filter("ManualName ="));
  EXPECT_EQ(rs->Filter(), "");
  rs->Filter("ID = -5");
  EXPECT_TRUE(rs->Eof());
  EXPECT_TRUE(rs->Bof());
}

TEST_F(RecordSet, ZeroIsNoFilter) {
  fill(3);
  const auto rs = open();
  const std::function<void()> clears[] = {
      [&] { rs->Filter(""); },    [&] { rs->Filter(" "); }, [&] { rs->Filter("0"); },
      [&] { rs->Filter(" 0 "); }, [&] { rs->Filter(0); },   [&] { rs->Filter(kFilterNone); }};
  for (const auto& clear : clears) {
    rs->Filter("ManualName = 'M2'");
    EXPECT_EQ(rs->RecordCount(), 1);
    clear();
    EXPECT_EQ(rs->RecordCount(), 3);
    EXPECT_EQ(rs->Filter(), "");
    EXPECT_EQ(name(rs), "M1");
  }
  rs->Filter("ManualName = 'M2'");
  EXPECT_RAISES(3001, rs->Filter(1));
  EXPECT_RAISES(3001, rs->Filter("1"));
  EXPECT_RAISES(3001, rs->Filter("00"));
  EXPECT_EQ(rs->Filter(), "ManualName = 'M2'") << "other numbers are no filter";
  EXPECT_EQ(rs->RecordCount(), 1);
}

TEST_F(RecordSet, ASortOrdersTheRowsShown) {
  fill(3);
  reg_.execute("Insert Into Manuals (ManualName, ManUser1) Values (Null, '2')");
  const auto rs = open();
  rs->Sort("ManUser1 DESC, ManualName");
  std::vector<std::string> names;
  for (; !rs->Eof(); rs->MoveNext()) names.push_back(name(rs));
  EXPECT_EQ(names, (std::vector<std::string>{"M3", "~", "M2", "M1"})) << "Null sorts first";
  rs->Filter("ManUser1 = '2'");
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(name(rs), "~");
  rs->Fields("ManualName")->Value("given");
  rs->MoveNext();
  EXPECT_EQ(name(rs), "M2");
  rs->Filter("");
  rs->Sort("");
  EXPECT_EQ(name(rs), "M1");
  EXPECT_RAISES(3265, rs->Sort("Colour"));
}

TEST_F(RecordSet, FieldsAreFoundByNameWithoutRegardToCaseAndByPlace) {
  fill(1);
  const auto rs = open();
  EXPECT_EQ(rs->Fields().Count(), 8);
  EXPECT_EQ(rs->Fields(2)->Name(), "ManualName");
  EXPECT_EQ(rs->Fields("manualNAME")->Name(), "ManualName");
  EXPECT_RAISES(3265, (void)rs->Fields("Colour"));
  EXPECT_RAISES(3265, (void)rs->Fields(8));
  EXPECT_RAISES(3265, (void)rs->Fields(-1));
}

TEST_F(RecordSet, FieldsSayWhatTheyAre) {
  reg_.execute("Insert Into Documents (DocumentTitle, DocumentNotes) Values ('äöü', 'abc')");
  const auto rs = open("Select * From Documents");
  struct Case {
    const char* field;
    std::int32_t type;
    std::int32_t definedSize;
    std::int32_t actualSize;
    std::int32_t attributes;
  };
  const std::int32_t nullable = kFieldIsNullable | kFieldMayBeNull;
  const Case cases[] = {
      {"ID", kTypeInteger, 4, 4, kFieldFixed},
      {"DocumentTitle", kTypeVarWChar, 255, 3, kFieldUpdatable | nullable},
      {"DocumentNotes", kTypeLongVarWChar, 536870910, 3, kFieldUpdatable | nullable | kFieldLong},
      {"EffectiveDate", kTypeDate, 8, 0, kFieldUpdatable | nullable | kFieldFixed},
      {"Controlled", kTypeBoolean, 2, 2, kFieldUpdatable | kFieldFixed},
      {"CurrentRevID", kTypeInteger, 4, 0, kFieldUpdatable | nullable | kFieldFixed},
  };
  for (const auto& c : cases) {
    const auto field = rs->Fields(c.field);
    EXPECT_EQ(field->Type(), c.type) << c.field;
    EXPECT_EQ(field->DefinedSize(), c.definedSize) << c.field;
    EXPECT_EQ(field->ActualSize(), c.actualSize) << c.field;
    EXPECT_EQ(field->Attributes(), c.attributes) << c.field;
  }
  EXPECT_EQ(open("Select * From ManualContents")->Fields("Position")->Type(), kTypeDouble);
  EXPECT_EQ(open("Select * From Routing")->Fields("ListOrder")->Type(), kTypeSingle);
  EXPECT_EQ(open("Select * From Revisions")->Fields("RevisionStatus")->Type(), kTypeSmallInt);
}

TEST_F(RecordSet, KnowsWhatItSupports) {
  EXPECT_TRUE(open()->Supports(kSupportsAddNew | kSupportsUpdate | kSupportsDelete | kSupportsFind |
                               kSupportsBookmark));
  EXPECT_FALSE(open()->Supports(kSupportsUpdateBatch));
  const auto readOnly = reg_.open("Select * From Manuals", kReadOnly);
  EXPECT_TRUE(readOnly->Supports(kSupportsMovePrevious));
  EXPECT_FALSE(readOnly->Supports(kSupportsUpdate));
  EXPECT_FALSE(open("Select Distinct ManualName From Manuals")->Supports(kSupportsUpdate));
}

// ---- transactions ----

TEST_F(RecordSet, SetsWhoseRowsWereWrittenInATransactionThatRolledBackReadThemAgain) {
  fill(2);
  const auto rs = open();
  reg_.connection()->BeginTrans();
  rs->Fields("ManualName")->Value("never");
  rs->Update();
  EXPECT_EQ(name(rs), "never");
  reg_.connection()->RollbackTrans();
  EXPECT_EQ(name(rs), "M1");
}

TEST_F(RecordSet, AnAdditionThatWasRolledBackIsARowThatIsGone) {
  fill(1);
  const auto rs = open();
  reg_.connection()->BeginTrans();
  rs->AddNew();
  rs->Fields("ManualName")->Value("never");
  rs->Update();
  reg_.connection()->RollbackTrans();
  EXPECT_RAISES(-2147217885, (void)name(rs));
  rs->MovePrevious();
  EXPECT_EQ(name(rs), "M1");
}

}  // namespace
}  // namespace kv
