// SPDX-License-Identifier: Apache-2.0
#include "schema/register_schema.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>

#include "schema/change_columns.h"
#include "schema/create_register.h"
#include "support/engine_answers.h"
#include "support/error_check.h"
#include "support/shared_data.h"
#include "support/test_register.h"

namespace kv {
namespace {

std::string output(const std::string& command) {
  std::string out;
  FILE* pipe = popen(command.c_str(), "r");
  char buffer[4096];
  while (const auto n = fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, n);
  EXPECT_EQ(pclose(pipe), 0) << command;
  return out;
}

std::string accessType(const ColumnInfo& c) {
  switch (c.type) {
    case ColumnType::Boolean: return "Boolean NOT NULL";
    case ColumnType::Int16: return "Integer";
    case ColumnType::Int32: return "Long Integer";
    case ColumnType::Single: return "Single";
    case ColumnType::Double: return "Double";
    case ColumnType::Date: return "DateTime";
    case ColumnType::Text: return fmt::format("Text ({})", c.size);
    case ColumnType::Memo: return "Memo/Hyperlink (255)";
  }
  return {};
}

// "Table.Column" to type, as mdb-schema shows an Access file.
std::map<std::string, std::string> accessColumns(const std::string& file) {
  std::map<std::string, std::string> out;
  std::istringstream in(output("mdb-schema '" + file + "'"));
  std::string table;
  for (std::string line; std::getline(in, line);) {
    const auto open = line.find('[');
    const auto close = line.find(']');
    if (open == std::string::npos) continue;
    const std::string name = line.substr(open + 1, close - open - 1);
    if (line.starts_with("CREATE TABLE")) {
      table = name;
      continue;
    }
    auto type = line.substr(close + 1);
    type.erase(0, type.find_first_not_of("\t "));
    type.erase(type.find_last_not_of(" ,") + 1);
    out[table + "." + name] = type;
  }
  return out;
}

TEST(RegisterSchema, IsThatOfTheAccessFiles) {
  REQUIRE_SHARED_DATA(file, "access/proposals-2000.mdb");
  auto access = accessColumns(file);
  ASSERT_GT(access.size(), 200U);
  // Where ours differ on purpose: room for a hash, and user fields that are text until somebody
  // gives them a type.
  access["Users.Password"] = "Text (255)";
  access["Users.User01"] = "Text (100)";
  access["Users.User02"] = "Text (100)";
  std::map<std::string, std::string> ours;
  for (const auto& table : registerTables())
    if (table.name != "VeskKeywords" && table.name != "VeskReporting")
      for (const auto& column : table.columns)
        ours[table.name + "." + column.name] = accessType(column);
  EXPECT_EQ(ours, access);
}

TEST(RegisterSchema, HasTheTwoTablesTheAccessFilesLack) {
  const Catalog catalog(registerTables());
  const auto names = [&](const char* table) {
    std::string out;
    for (const auto& column : catalog.find(table)->columns) out += column.name + " ";
    return out;
  };
  EXPECT_EQ(names("VeskKeywords"), "FieldName Keyword ");
  EXPECT_EQ(names("VeskReporting"), "FieldName Label ");
}

TEST(RegisterSchema, StatementsLookThingsUpInIndexes) {
  const test::TestRegister reg;
  const char* looked[] = {
      "Select * From Documents Where DocumentID = 'x'",
      "Select * From Revisions Where DocumentID = 'x' Order By EffectiveDate",
      "Select * From Revisions Where RevisionLevel = 'x'",
      "Select * From Manuals Where ManualID = 'x'",
      "Select * From ManualContents Where ManualID = 'x' and DocumentID = 'y'",
      "Select * From Personals Where UserID = 'x' and ManualID = '0'",
      "Select UserID From Owners Where DocumentID = 'x' and UserID = 'y'",
      "Select * From Routing Where DocumentID = 'x' Order By ListOrder",
      "Select * From ApprovalRouting Where RevID = 5 Order By ListOrder",
      "Select UserName From VeskProfiles Where UserID = 'x'",
      "Select UserID From VeskProfiles Where UserName = 'x'",
      "Select * From Users Where UserID = 'x' or UserID = 'y'",
      "Select * From Actions Where AssigneeID = 'x' and IsNull(DateClosed)",
      "Select * From Keywords Where FieldName = 'x'",
      ("Select Documents.* From Owners Inner Join Documents On Owners.DocumentID = "
       "Documents.DocumentID Where Owners.UserID = 'x'"),
  };
  for (const char* sql : looked)
    EXPECT_FALSE(test::scansATable(test::planOf(reg, sql))) << sql << test::planOf(reg, sql);
  for (const char* sql :
       {"Select * From Documents Order By DocumentTitle",
        "Select * From Documents Order By DocumentNumber",
        "Select * From Manuals Order By ManualName", "Select * From Users Order By UserName"}) {
    const std::string plan = test::planOf(reg, sql);
    EXPECT_THAT(plan, testing::HasSubstr("kv_order_")) << sql;
    EXPECT_FALSE(test::sorts(plan)) << sql << plan;
  }
}

// Which index it is decides whether a release takes as long as the document has holders or as long
// as the register has copies. A server counts its rows and finds out by itself.
TEST(RegisterSchema, StatementsAreAnsweredByTheIndexThatFindsFewestRows) {
  FILES_ONLY();
  const test::TestRegister reg;
  const std::pair<const char*, const char*> looked[] = {
      {"Select * From Personals Where DocumentID = 'd' and UserID = 'u' and ManualID = '0' and "
       "HardCopy = True",
       "kv_fold_Personals_DocumentID"},
      {"Select * From Personals Where UserID = 'u' and ManualID = 'm' and CopyNumber = '1' and "
       "HardCopy = True",
       "kv_fold_Personals_UserID"},
      {"Delete Personals.* From Personals Where ManualID = 'm' and DocumentID = 'd'",
       "kv_fold_Personals_DocumentID"},
      {"Select Personals.*, Manuals.ManualName From Personals Left Join Manuals On "
       "Personals.ManualID = Manuals.ManualID Where Personals.ManualID = 'm' and Personals.UserID "
       "= 'u' and HardCopy = 0",
       "kv_fold_Personals_UserID"},
      {"Select * From ManualContents Where ManualID = 'm' and DocumentID = 'd'",
       "kv_fold_ManualContents_DocumentID"},
      {"Select UserID From Owners Where DocumentID = 'd' and UserID = 'u'",
       "kv_fold_Owners_DocumentID"},
      {"Select UserID From Routing Where DocumentID = 'd' and UserID = 'u'",
       "kv_fold_Routing_DocumentID"},
      {"Select UserID From ApprovalRouting Where RevID = 5 and UserID = 'u'",
       "kv_plain_ApprovalRouting_RevID"},
  };
  for (const auto& [sql, index] : looked)
    EXPECT_THAT(test::planOf(reg, sql), testing::HasSubstr(index)) << sql;
}

TEST(NewRegister, HasItsFirstValues) {
  const test::TestRegister reg;
  EXPECT_EQ(reg.value("Select DatabaseVersion, Version, ExternalActionSystem, UserDBLocation, "
                      "OwnerRights, ProgramOptions, "
                      "Originator, OriginatorID, Document, Revision From VeskConfig"),
            "02.01|1.003.006|False|~|000000000000000000000|00000000000|0|~|Document|Revision");
  EXPECT_EQ(reg.value("Select User00, TypeUser00, User11, TypeUser11 From UserConfig"), "~|0|~|0");
  for (const char* table : {"DocumentConfig", "ManualConfig", "RevisionConfig"})
    EXPECT_EQ(reg.value(fmt::format("Select Count(*) From {}", table)), "1");
  for (const auto& table : registerTables())
    if (!table.name.ends_with("Config")) {
      EXPECT_EQ(reg.value(fmt::format("Select Count(*) From [{}]", table.name)), "0") << table.name;
    }
}

TEST(NewRegister, HasANameOfItsOwn) {
  const test::TempFolder folder;
  const auto name = [&](const char* file) {
    const auto c = createRegister(folder.file(file));
    const auto out =
        test::shown(c->OpenRecordset("Select DBID From VeskConfig")->Fields(0)->Value());
    c->Close();
    return out;
  };
  EXPECT_EQ(name("a").size(), 16U);
  EXPECT_NE(name("b"), name("c"));
}

TEST(NewRegister, OverwritesNothing) {
  const test::TempFolder folder;
  const std::string path = folder.file("there");
  test::write(path, "somebody's data");
  EXPECT_RAISES(kEngineFailure, (void)createRegister(path));
  EXPECT_EQ(test::contents(path), "somebody's data");
  EXPECT_RAISES(kEngineFailure, (void)createRegister(folder.path().string()));
}

TEST(NewRegister, LeavesNothingBehindWhenItFails) {
  const test::TempFolder folder;
  const std::string path = folder.file("new.kvv");
  EXPECT_RAISES(13, (void)createRegister(path, [](const auto&) { raise(13); }));
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  EXPECT_RAISES(kEngineFailure, (void)createRegister(folder.file("no/such/folder.kvv")));
}

TEST(NewRegister, IdentifiersMayOccurTwice) {
  const test::TestRegister reg;
  for (int i = 0; i < 2; ++i) {
    reg.execute("Insert Into Documents (DocumentID) Values ('D')");
    reg.execute("Insert Into Manuals (ManualID) Values ('M')");
    reg.execute("Insert Into Users (UserID, UserName) Values ('U', 'N')");
    reg.execute("Insert Into VeskProfiles (UserID) Values ('U')");
    reg.execute("Insert Into ManualContents Values ('M', 'D', 1)");
  }
  EXPECT_EQ(reg.value("Select Count(*) From Documents Where DocumentID = 'd'"), "2");
}

TEST(ChangeColumns, GivesColumnsOtherTypes) {
  const test::TestRegister reg;
  for (int i = 1; i <= 3; ++i)
    reg.execute(
        fmt::format("Insert Into Users (UserID, UserName, User01, User02) Values ('U{}', 'N{}', "
                    "'{}', '2001-03-0{}')",
                    i, i, i * 10, i));
  reg.execute("Delete * From Users Where ID = 3");
  const auto& database = reg.connection()->database();
  {
    Transaction t(*database, engine::Access::Write);
    changeColumns(database, "users",
                  {{.name = "User01", .type = ColumnType::Int32},
                   {.name = "User02", .type = ColumnType::Date}});
    t.commit();
  }
  EXPECT_EQ(
      reg.rows(
          "Select ID, UserID, User01, User02 From Users Where User01 > 5 and User02 > #1/1/2001#"),
      (std::vector<std::string>{"1|U1|10|3/1/2001", "2|U2|20|3/2/2001"}));
  const auto other = reg.openAnother();
  EXPECT_EQ(other->OpenRecordset("Select User01 From Users")->Fields(0)->Type(), kTypeInteger);
  const auto rs = reg.open("Select * From Users");
  rs->AddNew();
  EXPECT_EQ(rs->Fields("ID")->Value(), Variant(4))
      << "numbers given out once are not given out again";
  rs->CancelUpdate();
  const auto tables = database->engine().catalog();
  EXPECT_EQ(tables.size(), registerTables().size());
  EXPECT_THAT(test::planOf(reg, "Select * From Users Order By UserName"),
              testing::HasSubstr("kv_order_Users_UserName"))
      << "the indexes are there";
}

TEST(ChangeColumns, AValueThatCannotBeConvertedStopsIt) {
  const test::TestRegister reg;
  reg.execute("Insert Into Users (User01) Values ('ten')");
  const auto& database = reg.connection()->database();
  {
    Transaction t(*database, engine::Access::Write);
    EXPECT_RAISES(kMismatch, changeColumns(database, "Users",
                                           {{.name = "User01", .type = ColumnType::Int32}}));
  }
  EXPECT_EQ(reg.value("Select User01 From Users"), "ten");
}

}  // namespace
}  // namespace kv
