// SPDX-License-Identifier: Apache-2.0
// A real register of 1613 revisions: each loaded, and compared with what the CSV files say of it.
#include <gtest/gtest.h>

#include <map>

#include "classes/revisions/revision_session.h"
#include "desk/register/import/csv_table.h"
#include "desk/register/import/importer.h"
#include "support/shared_data.h"

namespace kv {
namespace {

using desk::CsvTable;
using test::LoadedRevision;

CsvTable csv(const std::string& folder, const std::string& name,
             const std::vector<std::string>& columns) {
  std::vector<desk::Problem> problems;
  CsvTable table(folder, name, columns, problems);
  EXPECT_TRUE(problems.empty()) << name;
  return table;
}

std::string userId(const std::string& key) {
  return key.empty() || key == "TBD" ? key : "User" + std::to_string(std::stoi(key.substr(4)));
}

std::string usDate(const std::string& iso) {
  if (iso.empty()) return "";
  return std::to_string(std::stoi(iso.substr(5, 2))) + "/" +
         std::to_string(std::stoi(iso.substr(8, 2))) + "/" + iso.substr(0, 4);
}

TEST(RealRevisions, LoadRevisionDataGivesWhatTheFilesSay) {
  REQUIRE_SHARED_DATA(folder, "proposals-register");
  const test::TestRegister reg;
  desk::Importer importer(reg.connection(), test::at(2026, 7, 24, 23, 57, 50), "User0", {});
  ASSERT_TRUE(importer.run(folder).problems.empty());
  reg.addUser(9001, "Anna", "secret", true);
  const test::TestSession vesk;
  vesk->Login("Anna", "secret", reg.path());

  const auto users = csv(folder, "users", {"user_id", "user_name"});
  std::map<std::string, std::string> names;
  for (std::size_t r = 0; r < users.rows(); ++r)
    names[users.at(r, "user_id")] = users.at(r, "user_name");
  const auto documents = csv(folder, "documents", {"document_key", "location"});
  std::map<std::string, std::string> locations;
  for (std::size_t r = 0; r < documents.rows(); ++r)
    locations[documents.at(r, "document_key")] = documents.at(r, "location");
  const auto approvals = csv(folder, "approvals", {"revision_key", "list_order", "user_id"});
  std::map<std::string, std::map<int, std::string>> lists;
  for (std::size_t r = 0; r < approvals.rows(); ++r)
    lists[approvals.at(r, "revision_key")][std::stoi(approvals.at(r, "list_order"))] =
        approvals.at(r, "user_id");
  const auto revisions = csv(
      folder, "revisions",
      {"revision_key", "document_key", "level", "effective_date", "revision_status",
       "routing_status", "responsible_user", "reference", "source_status", "change_description"});
  ASSERT_EQ(revisions.rows(), 1613U);

  std::map<int, int> statuses;
  for (std::size_t r = 0; r < revisions.rows(); ++r) {
    const auto text = [&](const char* column) { return revisions.at(r, column); };
    const std::string key = text("revision_key");
    const int status = std::stoi(text("revision_status"));
    const int turn = std::stoi(text("routing_status"));
    const auto& list = lists[key];
    ++statuses[status];
    std::string told;
    switch (status) {
      case 0: told = "Out of date revision"; break;
      case 1: told = "Current Revision"; break;
      case 2: told = "Being Revised by " + names[text("responsible_user")]; break;
      case 3:
        told = list.empty()
                   ? "Awaiting Approval"
                   : "Awaiting Approval from " + names[std::next(list.begin(), turn - 1)->second];
        break;
      case 4: told = "Approved"; break;
      default: told = "Rejected"; break;
    }
    LoadedRevision loaded;
    const std::int32_t id = std::stoi(key.substr(1));
    ASSERT_TRUE(loaded.from(*vesk->Revision(), id)) << key;
    const std::string document = loaded.document;
    loaded.document = text("document_key");
    EXPECT_EQ(loaded.text(),
              fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}", text("document_key"), turn, status,
                          text("level"), text("reference"), text("source_status"),
                          usDate(text("effective_date")), text("change_description"),
                          locations[text("document_key")], told));
    EXPECT_EQ(vesk->Document()->Value(document, "ID"),
              Variant(std::stoi(text("document_key").substr(1))))
        << key;
    EXPECT_EQ(vesk->Revision()->GetRevFileName(std::to_string(id)),
              Variant(locations[text("document_key")]));
    std::vector<std::string> approvers;
    for (const auto& row : test::rowsOf(*loaded.approvals))
      approvers.push_back(row.substr(0, row.find('|', row.find('|') + 1)));
    std::vector<std::string> expected;
    for (const auto& [order, user] : list)
      expected.push_back(std::to_string(id) + "|" + userId(user));
    EXPECT_EQ(approvers, expected) << key;
    if (testing::Test::HasFailure()) break;
  }
  EXPECT_GT(statuses[0], 0);
  EXPECT_GT(statuses[1], 0);
  EXPECT_GT(statuses[2], 0);
  EXPECT_GT(statuses[3], 0);
}

}  // namespace
}  // namespace kv
