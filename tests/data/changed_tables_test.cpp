// SPDX-License-Identifier: Apache-2.0
// What a connection sees of tables that another connection has made, changed or dropped.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/operation.h"
#include "jet/emit/schema.h"
#include "schema/change_columns.h"
#include "schema/create_register.h"
#include "support/engine_answers.h"
#include "support/error_check.h"
#include "support/test_register.h"
#include "support/test_server.h"

namespace kv {
namespace {

using Texts = std::vector<std::string>;

class ChangedTables : public testing::Test {
 protected:
  ChangedTables() : other_(reg_.openAnother()) {
    make("Parts", {{.name = "Number", .type = ColumnType::Int32},
                   {.name = "Name", .type = ColumnType::Text, .size = 20}});
    mine_ = reg_.openAnother();
    execute("Insert Into Parts Values (1, 'one')");
    execute("Insert Into Parts Values (2, 'two')");
  }

  // What the other connection does, in its engine's own words.
  void there(const std::string& sql) { other_->database()->engine().execute(sql); }
  void make(const std::string& name, std::vector<ColumnInfo> columns) {
    TableInfo table{
        .name = name, .columns = std::move(columns), .key = "kv_key", .hiddenKey = true};
    for (const auto& sql : jet::emitCreateTable(table, other_->database()->dialect())) there(sql);
  }
  void addColumn(const std::string& name = "Colour") {
    there("ALTER TABLE \"Parts\" ADD COLUMN \"" + name + "\" text");
  }

  std::int32_t execute(const std::string& sql) {
    std::int32_t affected = 0;
    mine_->Execute(sql, affected);
    return affected;
  }
  Ref<Recordset> open(const std::string& sql) { return mine_->OpenRecordset(sql); }
  // The names of a set's columns, joined by blanks.
  static std::string namesOf(Recordset& rs) {
    std::string out;
    for (std::int32_t i = 0; i < rs.Fields().Count(); ++i)
      out += (i > 0 ? " " : "") + rs.Fields(i)->Name();
    return out;
  }
  std::string columns(const std::string& sql) { return namesOf(*open(sql)); }
  Texts rows(const std::string& sql) { return test::rowsOf(*open(sql)); }

  test::TestRegister reg_;
  Ref<kvConnection> other_;
  Ref<kvConnection> mine_;  // knows Parts with two columns
};

TEST_F(ChangedTables, ATableThatAnotherHasMadeIsThere) {
  EXPECT_RAISES(kUnknownTable, (void)open("Select * From Fresh"));
  make("Fresh", {{.name = "Name", .type = ColumnType::Text, .size = 20}});
  EXPECT_EQ(execute("Insert Into Fresh Values ('new')"), 1);
  EXPECT_EQ(rows("Select * From Fresh"), Texts{"new"});
}

TEST_F(ChangedTables, AColumnThatAnotherHasAddedIsInEveryStar) {
  const Texts statements = {"Select * From Parts",
                            "Select * From Parts Where Number = 7",
                            "Select P.* From Parts As P",
                            "Select Distinct * From Parts",
                            "Select Top 1 * From Parts Order By Number",
                            "Select Parts.* From Parts Inner Join Parts As Q On Parts.Number = "
                            "Q.Number"};
  for (int round = 0; round < 3; ++round)  // sent as text, prepared, known
    for (const auto& sql : statements) EXPECT_EQ(columns(sql), "Number Name") << sql;
  std::string expected = "Number Name";
  for (const auto& sql : statements) {  // each has to find out by itself
    const std::string name = fmt::format("C{}", expected.size());
    addColumn(name);
    expected += " " + name;
    EXPECT_EQ(columns(sql), expected) << sql;
  }
  EXPECT_EQ(columns("Select Number From Parts"), "Number");
}

TEST_F(ChangedTables, AColumnThatAnotherHasAddedIsInALargeSet) {
  for (int i = 3; i < 300; ++i) execute(fmt::format("Insert Into Parts Values ({}, 'many')", i));
  for (int round = 0; round < 3; ++round) EXPECT_EQ(columns("Select * From Parts"), "Number Name");
  addColumn();
  there("UPDATE \"Parts\" SET \"Colour\" = 'red'");
  const auto rs = open("Select * From Parts Order By Number");
  EXPECT_EQ(namesOf(*rs), "Number Name Colour");
  rs->MoveLast();
  EXPECT_EQ(test::rowOf(*rs), "299|many|red");
}

TEST_F(ChangedTables, AColumnThatAnotherHasAddedHasItsName) {
  EXPECT_RAISES(kUnknownName, (void)open("Select Colour From Parts"));
  EXPECT_RAISES(kUnknownName, execute("Update Parts Set Colour = 'red'"));
  addColumn();
  EXPECT_EQ(execute("Update Parts Set Colour = 'red' Where Number = 1"), 1);
  EXPECT_EQ(rows("Select Number From Parts Where Colour = 'red'"), Texts{"1"});
  addColumn("Size");
  EXPECT_EQ(execute("Insert Into Parts (Number, Size) Values (3, 'large')"), 1);
  addColumn("Weight");
  EXPECT_EQ(execute("Insert Into Parts Values (4, 'four', 'blue', 'small', 'light')"), 1);
  EXPECT_EQ(rows("Select Weight From Parts Where Size = 'small'"), Texts{"light"});
}

TEST_F(ChangedTables, ATableThatAnotherHasDroppedIsUnknown) {
  const Texts statements = {"Select Name From Parts Where Number = 1", "Select * From Parts",
                            "Select Count(*) From Parts", "Update Parts Set Name = 'x'",
                            "Delete From Parts Where Number = 9"};
  for (int round = 0; round < 3; ++round)
    for (const auto& sql : statements) (void)open(sql);
  there("DROP TABLE \"Parts\"");
  for (int round = 0; round < 2; ++round)
    for (const auto& sql : statements) EXPECT_RAISES(kUnknownTable, (void)open(sql)) << sql;
  EXPECT_RAISES(kUnknownTable, execute("Insert Into Parts Values (3, 'three')"));
  EXPECT_EQ(rows("Select Count(*) From VeskConfig"), Texts{"1"});
}

TEST_F(ChangedTables, AColumnThatAnotherHasDroppedIsUnknown) {
  const Texts statements = {
      "Select Name From Parts Where Number = 1", "Select Number From Parts Order By Name",
      "Update Parts Set Name = 'x' Where Number = 9", "Delete From Parts Where Name = 'x'"};
  for (int round = 0; round < 3; ++round)
    for (const auto& sql : statements) (void)open(sql);
  EXPECT_EQ(columns("Select * From Parts"), "Number Name");
  there("ALTER TABLE \"Parts\" DROP COLUMN \"Name\"");
  for (int round = 0; round < 2; ++round)
    for (const auto& sql : statements) EXPECT_RAISES(kUnknownName, (void)open(sql)) << sql;
  EXPECT_EQ(columns("Select * From Parts"), "Number");
}

TEST_F(ChangedTables, AStarWithoutAColumnThatAnotherHasDropped) {
  for (int round = 0; round < 3; ++round) EXPECT_EQ(columns("Select * From Parts"), "Number Name");
  there("ALTER TABLE \"Parts\" DROP COLUMN \"Name\"");
  EXPECT_EQ(rows("Select * From Parts"), (Texts{"1", "2"}));
}

TEST_F(ChangedTables, ATableThatAnotherHasMadeAnewIsTheNewOne) {
  for (int round = 0; round < 3; ++round) EXPECT_EQ(columns("Select * From Parts"), "Number Name");
  there("DROP TABLE \"Parts\"");
  make("Parts", {{.name = "Number", .type = ColumnType::Text, .size = 5},
                 {.name = "Name", .type = ColumnType::Text, .size = 20},
                 {.name = "Colour", .type = ColumnType::Text, .size = 20}});
  EXPECT_EQ(columns("Select * From Parts"), "Number Name Colour");
  EXPECT_EQ(execute("Insert Into Parts Values ('1a', 'one', 'red')"), 1);
  EXPECT_EQ(rows("Select Name From Parts Where Number = '1A'"), Texts{"one"});
}

TEST_F(ChangedTables, AColumnThatAnotherHasGivenAnotherType) {
  const std::string text = "Select DocumentID From Documents Where DocUser1 = 'x'";
  const std::string number = "Select DocumentID From Documents Where DocUser1 = 7";
  EXPECT_TRUE(rows(text).empty());
  EXPECT_RAISES(kMismatch, (void)open(number));
  changeColumns(other_->database(), "Documents",
                {{.name = "DocUser1", .type = ColumnType::Int32, .size = 0}});
  EXPECT_TRUE(rows(number).empty());
  EXPECT_RAISES(kMismatch, (void)open(text));
}

TEST_F(ChangedTables, InATransactionOfAClientsTheRestOfItStays) {
  for (int round = 0; round < 3; ++round) EXPECT_EQ(columns("Select * From Parts"), "Number Name");
  addColumn();
  mine_->BeginTrans();
  EXPECT_EQ(execute("Update Parts Set Name = 'first' Where Number = 1"), 1);
  EXPECT_EQ(columns("Select * From Parts"), "Number Name Colour");
  EXPECT_EQ(execute("Update Parts Set Colour = 'red' Where Number = 2"), 1);
  mine_->CommitTrans();
  there("DROP TABLE \"Keywords\"");
  mine_->BeginTrans();
  EXPECT_EQ(execute("Update Parts Set Colour = 'blue' Where Number = 2"), 1);
  EXPECT_RAISES(kUnknownTable, execute("Insert Into Keywords Values ('a', 'b')"));
  mine_->CommitTrans();
  EXPECT_EQ(rows("Select * From Parts"), (Texts{"1|first|~", "2|two|blue"}));
}

// An operation cannot be taken back by one statement, so that a column which it has not asked for
// must not end it.
TEST_F(ChangedTables, AnOperationIsNotEndedByAColumnThatAnotherHasAdded) {
  for (int round = 0; round < 3; ++round) EXPECT_EQ(columns("Select * From Parts"), "Number Name");
  addColumn();
  {
    Operation operation(mine_);
    execute("Update Parts Set Name = 'first' Where Number = 1");
    EXPECT_EQ(open("Select * From Parts")->Fields("Name")->Value(), Variant("first"));
    operation.commit();
  }
  EXPECT_EQ(columns("Select * From Parts"), "Number Name Colour");
  for (int round = 0; round < 3; ++round) (void)execute("Update Keywords Set Keyword = 'x'");
  there("DROP TABLE \"Keywords\"");
  {
    Operation operation(mine_);
    EXPECT_RAISES(kUnknownTable, execute("Update Keywords Set Keyword = 'x'"));
  }
  EXPECT_EQ(rows("Select Count(*) From Parts"), Texts{"2"});
}

TEST_F(ChangedTables, AnOpenSetGoesOnWithTheColumnsItHas) {
  for (int i = 3; i < 300; ++i) execute(fmt::format("Insert Into Parts Values ({}, 'many')", i));
  const auto rs = open("Select * From Parts Order By Number");
  addColumn();
  rs->MoveLast();
  EXPECT_EQ(test::rowOf(*rs), "299|many");
  rs->Fields("Name")->Value("last");
  rs->Update();
  rs->AddNew();
  rs->Fields("Number")->Value(300);
  rs->Update();
  rs->Requery();
  EXPECT_EQ(namesOf(*rs), "Number Name");
  EXPECT_EQ(rs->RecordCount(), 300);
  rs->MoveFirst();
  rs->Delete();
  EXPECT_EQ(columns("Select * From Parts"), "Number Name Colour");
  EXPECT_EQ(rows("Select Name From Parts Where Number = 299"), Texts{"last"});
}

TEST_F(ChangedTables, OfUsersKeptApartAreSeenAsWell) {
  const test::TempFolder folder;
  const std::string location =
      test::onServer() ? test::TestServer::newDatabase() : folder.file("users.kvv");
  createUserDatabase(location)->Close();
  mine_->keepUsersIn(kvConnection::open(location));
  const auto keeper = kvConnection::open(location);
  for (int round = 0; round < 3; ++round)
    EXPECT_THAT(columns("Select * From Users"), testing::Not(testing::HasSubstr("Colour")));
  keeper->database()->engine().execute("ALTER TABLE \"Users\" ADD COLUMN \"Colour\" text");
  EXPECT_THAT(columns("Select * From Users"), testing::HasSubstr("Colour"));
  keeper->database()->engine().execute("ALTER TABLE \"Users\" ADD COLUMN \"Size\" text");
  EXPECT_TRUE(rows("Select UserID From Users Where Size = 'x'").empty());
  keeper->Close();
  mine_->Close();
  if (test::onServer()) test::TestServer::drop(location);
}

// Looking for changes costs no trip to the server.
TEST_F(ChangedTables, NothingIsAskedWhileNothingHasChanged) {
  for (int round = 0; round < 3; ++round) (void)open("Select * From Parts Where Number = 1");
  const auto& engine = mine_->database()->engine();
  const auto before = engine.roundTrips();
  (void)open("Select * From Parts Where Number = 2");
  (void)execute("Update Keywords Set Keyword = 'x'");
  EXPECT_EQ(engine.roundTrips() - before, test::onServer() ? 2 : 0);
}

}  // namespace
}  // namespace kv
