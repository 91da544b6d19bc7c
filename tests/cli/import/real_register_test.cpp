// SPDX-License-Identifier: Apache-2.0
// A real register of 655 documents: imported, and asked questions whose answers are worked out from
// the CSV files by plain loops. Then compared, value by value, with the Access file that holds the
// same register.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

#include "common/plain_text.h"
#include "desk/register/import/csv_table.h"
#include "desk/register/import/importer.h"
#include "recordset/database.h"
#include "schema/create_register.h"
#include "support/shared_data.h"
#include "support/test_register.h"

namespace kv {
namespace {

using desk::CsvTable;
using Rows = std::vector<std::string>;

class RealRegister : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    const auto folder = test::sharedData("proposals-register");
    if (!folder) return;
    folder_ = new std::string(*folder);
    reg_ = new test::TestRegister;
    desk::Importer importer(reg_->connection(), *parseDate("2026-07-24T23:57:50"), "User0", {});
    report_ = new desk::ImportReport(importer.run(*folder_));
  }
  static void TearDownTestSuite() {
    delete reg_;
    delete folder_;
    delete report_;
  }
  void SetUp() override {
    if (folder_ == nullptr)
      GTEST_SKIP() << "no proposals-register beside the checkout or in KVVESK_DATA";
    ASSERT_TRUE(report_->problems.empty())
        << report_->problems[0].file << ": " << report_->problems[0].reason;
  }
  static CsvTable csv(const std::string& name, const std::vector<std::string>& columns) {
    std::vector<desk::Problem> problems;
    CsvTable table(*folder_, name, columns, problems);
    EXPECT_TRUE(problems.empty());
    return table;
  }
  static std::string userId(const std::string& key) {
    return key == "TBD" ? key : "User" + std::to_string(std::stoi(key.substr(4)));
  }
  // The DocumentID of each key, as the register has it, found by the row number.
  static std::map<std::string, std::string> documentIds() {
    std::map<std::string, std::string> out;
    for (const auto& row : reg_->rows("Select ID, DocumentID From Documents")) {
      const auto bar = row.find('|');
      out[fmt::format("D{:04}", std::stoi(row.substr(0, bar)))] = row.substr(bar + 1);
    }
    return out;
  }
  static test::TestRegister* reg_;
  static std::string* folder_;
  static desk::ImportReport* report_;
};

test::TestRegister* RealRegister::reg_ = nullptr;
std::string* RealRegister::folder_ = nullptr;
desk::ImportReport* RealRegister::report_ = nullptr;

TEST_F(RealRegister, ReadsAndWritesEveryRow) {
  const std::map<std::string, std::size_t> read(report_->read.begin(), report_->read.end());
  EXPECT_EQ(read, (std::map<std::string, std::size_t>{{"users", 771},
                                                      {"workgroups", 32},
                                                      {"documents", 655},
                                                      {"revisions", 1613},
                                                      {"owners", 1109},
                                                      {"approvers", 1245},
                                                      {"approvals", 897},
                                                      {"manuals", 22},
                                                      {"manual_contents", 825},
                                                      {"copies", 1983},
                                                      {"keywords", 20}}));
  const std::map<std::string, std::size_t> written(report_->written.begin(),
                                                   report_->written.end());
  EXPECT_EQ(written.at("Personals"), 5602U);
  EXPECT_EQ(written.at("Actions"), 863U);
  for (const auto& [table, count] : written)
    EXPECT_EQ(reg_->value(fmt::format("Select Count(*) From [{}]", table)), std::to_string(count))
        << table;
}

TEST_F(RealRegister, DocumentsPerWorkgroup) {
  const auto documents = csv("documents", {"workgroup"});
  std::map<std::string, int> counts;
  for (std::size_t r = 0; r < documents.rows(); ++r) ++counts[documents.at(r, "workgroup")];
  Rows expected;
  for (const auto& [group, count] : counts) expected.push_back(fmt::format("{}|{}", group, count));
  EXPECT_EQ(reg_->rows("Select DocUser1, Count(*) From Documents Group By DocUser1"), expected);
}

TEST_F(RealRegister, TitlesOfAWorkgroupInOrder) {
  const auto documents = csv("documents", {"workgroup", "title"});
  std::vector<std::pair<std::string, std::size_t>> titles;
  for (std::size_t r = 0; r < documents.rows(); ++r)
    if (documents.at(r, "workgroup") == "sig-node")
      titles.emplace_back(documents.at(r, "title"), r);
  const auto lower = [](std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
  };
  std::sort(titles.begin(), titles.end(), [&](const auto& a, const auto& b) {
    return std::pair(lower(a.first), a.second) < std::pair(lower(b.first), b.second);
  });
  Rows expected;
  for (const auto& [title, row] : titles) expected.push_back(title);
  EXPECT_EQ(
      reg_->rows(
          "Select DocumentTitle From Documents Where DocUser1 = 'SIG-NODE' Order By DocumentTitle"),
      expected);
}

TEST_F(RealRegister, ControlledDocumentsWithoutACurrentRevision) {
  const auto documents = csv("documents", {"document_key", "controlled", "current_revision"});
  const auto ids = documentIds();
  Rows expected;
  for (std::size_t r = 0; r < documents.rows(); ++r)
    if (documents.at(r, "controlled") == "yes" && documents.at(r, "current_revision").empty())
      expected.push_back(ids.at(documents.at(r, "document_key")));
  EXPECT_EQ(expected.size(), 95U);
  EXPECT_EQ(
      reg_->rows("Select DocumentID From Documents Where Controlled <> 0 and CurrentRevID Is Null"),
      expected);
}

TEST_F(RealRegister, HoldersOfEveryManual) {
  const auto copies = csv("copies", {"user_id", "manual_key", "copy_number"});
  const auto manuals = csv("manuals", {"manual_key", "manual_name"});
  const auto contents = csv("manual_contents", {"manual_key"});
  for (std::size_t m = 0; m < manuals.rows(); ++m) {
    const std::string& key = manuals.at(m, "manual_key");
    bool empty = true;
    for (std::size_t r = 0; r < contents.rows(); ++r)
      empty = empty && contents.at(r, "manual_key") != key;
    std::set<std::pair<std::string, std::string>> holders;
    for (std::size_t r = 0; r < copies.rows() && !empty; ++r)
      if (copies.at(r, "manual_key") == key)
        holders.emplace(userId(copies.at(r, "user_id")), copies.at(r, "copy_number"));
    std::set<std::string> expected;
    for (const auto& [user, number] : holders) expected.insert(user + "|" + number);
    const auto actual = reg_->rows(
        "Select Distinct Personals.UserID, Personals.CopyNumber From Personals Inner Join Manuals "
        "On Personals.ManualID = "
        "Manuals.ManualID Where Manuals.ManualName = '" +
        manuals.at(m, "manual_name") + "' and Personals.HardCopy <> 0");
    EXPECT_EQ(std::set<std::string>(actual.begin(), actual.end()), expected) << key;
  }
}

TEST_F(RealRegister, ApproversOfEveryDocumentInOrder) {
  const auto approvers = csv("approvers", {"document_key", "list_order", "user_id"});
  const auto ids = documentIds();
  std::map<std::string, std::map<int, std::string>> lists;
  for (std::size_t r = 0; r < approvers.rows(); ++r)
    lists[approvers.at(r, "document_key")][std::stoi(approvers.at(r, "list_order"))] =
        userId(approvers.at(r, "user_id"));
  EXPECT_EQ(lists.size(), 654U) << "one document has none";
  for (const auto& [key, list] : lists) {
    Rows expected;
    for (const auto& [order, user] : list) expected.push_back(user);
    EXPECT_EQ(reg_->rows("Select UserID from Routing Where Routing.DocumentID = '" + ids.at(key) +
                         "' Order By Routing.ListOrder"),
              expected)
        << key;
  }
}

TEST_F(RealRegister, OdditiesAreKept) {
  EXPECT_EQ(reg_->value("Select Count(*) From Documents Where DocumentNumber = '0000'"), "4");
  EXPECT_EQ(reg_->value("Select Count(*) From Documents Where DocumentTitle = 'kep template'"),
            "6");
  EXPECT_EQ(reg_->value("Select Count(*) From Documents Where DocumentTitle Like '%''%'"), "6");
  EXPECT_EQ(reg_->value("Select Count(*) From Routing Where UserID = 'TBD'"), "20");
  EXPECT_EQ(reg_->value("Select Count(*) From Users Where UserID = 'TBD'"), "0");
  EXPECT_EQ(reg_->value("Select Count(*) From Documents Where DocUser3 = '2023-14-05'"), "1");
  EXPECT_EQ(reg_->value("Select Count(*) From Revisions Where ResponsibleID Is Null"), "1");
}

// A table of the Access file as rows of text, sorted; Null and empty are the same there.
Rows accessRows(const std::string& file, const std::string& table,
                const std::vector<std::string>& columns) {
  const test::TempFolder folder;
  const std::string command = "mdb-export -D '%Y-%m-%d' -T '%Y-%m-%d %H:%M:%S' '" + file + "' " +
                              table + " > '" + folder.file(table + ".csv") + "'";
  EXPECT_EQ(std::system(command.c_str()), 0) << command;
  std::vector<desk::Problem> problems;
  const CsvTable csv(folder.path().string(), table, columns, problems);
  EXPECT_TRUE(problems.empty()) << table << ": " << (problems.empty() ? "" : problems[0].reason);
  Rows out;
  for (std::size_t r = 0; r < csv.rows(); ++r) {
    std::string row;
    for (const auto& column : columns) {
      std::string value = csv.at(r, column);
      if (value.ends_with(" 00:00:00")) value.resize(value.size() - 9);
      row += value + "|";
    }
    out.push_back(row);
  }
  std::sort(out.begin(), out.end());
  return out;
}

TEST_F(RealRegister, IsTheRegisterThatTheAccessFileHolds) {
  REQUIRE_SHARED_DATA(file, "access/proposals-2000.mdb");
  // Left out: VeskConfig and the saved queries, which were made for the Access file, and the name
  // of the sending register.
  const std::map<std::string, std::set<std::string>> tables = {
      {"Documents", {}},      {"Revisions", {}},       {"Manuals", {}},
      {"ManualContents", {}}, {"Personals", {}},       {"Owners", {}},
      {"Routing", {}},        {"ApprovalRouting", {}}, {"VeskGroups", {}},
      {"Groups", {}},         {"VeskProfiles", {}},    {"Users", {}},
      {"UserConfig", {}},     {"Keywords", {}},        {"DocumentConfig", {}},
      {"ManualConfig", {}},   {"RevisionConfig", {}},  {"Actions", {"ReferenceID"}}};
  for (const auto& [table, leftOut] : tables) {
    std::vector<std::string> columns;
    std::string list;
    for (const auto& column : reg_->connection()->database()->catalog()->find(table)->columns)
      if (!leftOut.contains(column.name)) {
        columns.push_back(column.name);
        list += (list.empty() ? "[" : ", [") + column.name + "]";
      }
    const auto rs = reg_->open("Select " + list + " From [" + table + "]");
    Rows ours;
    for (; !rs->Eof(); rs->MoveNext()) {
      std::string row;
      for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
        const Variant value = rs->Fields(i)->Value();
        const auto* truth = value.as<bool>();
        row += (truth != nullptr ? (*truth ? "1" : "0") : plainText(value)) + "|";
      }
      ours.push_back(row);
    }
    std::sort(ours.begin(), ours.end());
    const auto access = accessRows(file, table, columns);
    EXPECT_EQ(ours.size(), access.size()) << table;
    for (std::size_t i = 0; i < std::min(ours.size(), access.size()); ++i)
      if (ours[i] != access[i]) {
        ADD_FAILURE() << table << "\n ours:   " << ours[i] << "\n access: " << access[i];
        break;
      }
  }
}

}  // namespace
}  // namespace kv
