// SPDX-License-Identifier: Apache-2.0
// A real register of 22 manuals with 1983 copies: every list compared with what the CSV files say,
// and its manuals changed, released and taken back.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "desk/register/import/csv_table.h"
#include "desk/register/import/importer.h"
#include "support/session_test.h"
#include "support/shared_data.h"

namespace kv {
namespace {

using desk::CsvTable;
using test::Texts;

CsvTable csv(const std::string& folder, const std::string& name,
             const std::vector<std::string>& columns) {
  std::vector<desk::Problem> problems;
  CsvTable table(folder, name, columns, problems);
  EXPECT_TRUE(problems.empty()) << name;
  return table;
}

// The number in a key such as D0012.
int numberIn(const std::string& key) {
  return std::stoi(key.substr(key.find_first_of("0123456789")));
}

// Some reviewers are not known: they are named "TBD".
std::string userId(const std::string& key) {
  return key == "TBD" ? key : "User" + std::to_string(numberIn(key));
}

TEST(RealCopies, ListsAreWhatTheFilesSayAndChangesCanBeUndone) {
  REQUIRE_SHARED_DATA(folder, "proposals-register");
  const test::TestRegister reg;
  desk::Importer importer(reg.connection(), test::at(2026, 7, 24, 23, 57, 50), "User0", {});
  ASSERT_TRUE(importer.run(folder).problems.empty());
  reg.addUser(9001, "Anna", "secret", true);
  const test::TestSession vesk;
  vesk->Login("Anna", "secret", reg.path());
  auto& manuals = *vesk->Manual();
  auto& users = *vesk->User();

  // What the files say: documents of a manual in order, copies by user.
  std::map<std::string, std::map<int, int>> places;
  const auto contents = csv(folder, "manual_contents", {"manual_key", "position", "document_key"});
  for (std::size_t r = 0; r < contents.rows(); ++r)
    places[contents.at(r, "manual_key")][std::stoi(contents.at(r, "position"))] =
        numberIn(contents.at(r, "document_key"));
  std::map<std::string, int> hardLines;
  std::map<std::string, int> virtualLines;
  std::map<std::string, std::set<std::string>> holders;
  const auto copies =
      csv(folder, "copies", {"user_id", "manual_key", "document_key", "kind", "copy_number"});
  for (std::size_t r = 0; r < copies.rows(); ++r) {
    const std::string user = userId(copies.at(r, "user_id"));
    const std::string& manual = copies.at(r, "manual_key");
    const bool hard = copies.at(r, "kind") == "hard";
    (hard ? hardLines : virtualLines)[user] +=
        manual.empty() ? 1 : static_cast<int>(places[manual].size());
    if (hard && !places[manual].empty())
      holders[manual].insert(user + "|" + copies.at(r, "copy_number"));
  }
  const auto keys = csv(folder, "manuals", {"manual_key"});
  ASSERT_EQ(keys.rows(), 22U);

  const auto personals = [&] {
    return reg.rows(
        "Select UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID From "
        "Personals Order By ReleaseID");
  };
  const auto before = personals();
  ASSERT_GT(before.size(), 1983U);
  for (std::size_t r = 0; r < keys.rows(); ++r) {
    const std::string& key = keys.at(r, "manual_key");
    const std::string id = test::shown(manuals.IDValue(numberIn(key), "ManualID"));
    std::vector<int> documents;
    for (const auto& [place, document] : places[key]) documents.push_back(document);
    std::vector<int> listed;
    const auto list = manuals.Contents(id);
    for (; !list->Eof(); list->MoveNext())
      listed.push_back(std::stoi(test::shown(list->Fields("ID")->Value())));
    EXPECT_EQ(listed, documents) << key;
    EXPECT_EQ(manuals.HasContents(id), !documents.empty());
    const auto named = test::rowsOf(*manuals.Copies(id));
    EXPECT_EQ((std::set<std::string>(named.begin(), named.end())), holders[key]) << key;
    if (documents.empty()) {
      EXPECT_RAISES(kErrorBase + 2520, users.ReleaseMan("User9001", id, true));
      continue;
    }
    // A copy more, under a number that is free, and back.
    const std::string number = users.ReleaseMan("User9001", id, true);
    EXPECT_FALSE(holders[key].contains("User9001|" + number));
    EXPECT_TRUE(manuals.DuplicateCopyNumber(id, number));
    EXPECT_EQ(users.HardCopies("User9001")->RecordCount(), static_cast<int>(documents.size()));
    EXPECT_EQ(vesk->Releases("User9001", id, "", 0, 0, 0, true)->RecordCount(),
              static_cast<int>(documents.size()));
    EXPECT_TRUE(users.ReturnMan("User9001", id, true, number));
    // A document out of it and in again: every holder loses a line and gets it back.
    const std::string document =
        test::shown(vesk->Document()->IDValue(documents.front(), "DocumentID"));
    std::int32_t lines = 0;
    EXPECT_TRUE(vesk->DocumentManualRelation(id, document, true, lines));
    EXPECT_EQ(lines, static_cast<int>(holders[key].size())) << key;
    EXPECT_TRUE(vesk->DocumentManualRelation(id, document, false, lines));
    EXPECT_EQ(lines, static_cast<int>(holders[key].size())) << key;
    if (testing::Test::HasFailure()) break;
  }
  const auto after = personals();
  EXPECT_EQ((std::multiset<std::string>(after.begin(), after.end())),
            (std::multiset<std::string>(before.begin(), before.end())));

  const auto known = csv(folder, "users", {"user_id"});
  for (std::size_t r = 0; r < known.rows(); ++r) {
    const std::string user = userId(known.at(r, "user_id"));
    EXPECT_EQ(users.HardCopies(user)->RecordCount(), hardLines[user]) << user;
    EXPECT_EQ(users.VirtualCopies(user)->RecordCount(), virtualLines[user]) << user;
    EXPECT_EQ(vesk->Releases(user)->RecordCount(), virtualLines[user]) << user;
    EXPECT_EQ(vesk->Document()->Personals(user)->RecordCount(),
              hardLines[user] + virtualLines[user])
        << user;
    if (testing::Test::HasFailure()) break;
  }
}

}  // namespace
}  // namespace kv
