// SPDX-License-Identifier: Apache-2.0
// Programs that run at once: what must be there once is there once, whoever looked first. What is
// looked for may not exist yet, and on a server nobody sees what others have not committed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "cli/verb_register.h"
#include "support/other_user.h"
#include "support/temp_folder.h"

namespace kv {
namespace {

using Words = std::vector<std::string>;

class Parallel : public test::VerbTest {
 protected:
  static constexpr int kPrograms = 4;

  // Runs programs at once, each a verb with words of its own; how many of them said that it was
  // done. The others must have been refused for `reason`.
  int done(const std::string& verb, const std::vector<Words>& words, const std::string& reason) {
    const auto answers = test::inProcesses(static_cast<int>(words.size()), [&](int p) {
      const auto outcome = reg_.as("Anna", verb, words[static_cast<std::size_t>(p)]);
      return outcome.code == 0 ? std::string("done") : outcome.err;
    });
    int count = 0;
    for (const auto& answer : answers) {
      if (answer == "done")
        ++count;
      else
        EXPECT_THAT(answer, testing::HasSubstr(reason)) << verb;
    }
    return count;
  }
  // The same words for each.
  int doneOf(const std::string& verb, const Words& words, const std::string& reason) {
    return done(verb, std::vector<Words>(kPrograms, words), reason);
  }
  [[nodiscard]] int distinct(const std::string& column, const std::string& table) const {
    auto values = reg_.rows("Select " + column + " From " + table);
    std::sort(values.begin(), values.end());
    return static_cast<int>(std::unique(values.begin(), values.end()) - values.begin());
  }
};

TEST_F(Parallel, NewDocumentsAndManualsHaveIdentifiersOfTheirOwn) {
  const auto answers = test::inProcesses(2 * kPrograms, [&](int p) {
    const bool document = p % 2 == 0;
    const auto outcome = document
                             ? reg_.as("Anna", "document add", {"--title", "t"})
                             : reg_.as("Anna", "manual add", {"--name", "m" + std::to_string(p)});
    return outcome.err;
  });
  EXPECT_EQ(answers, Words(2 * kPrograms, ""));
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), std::to_string(3 + kPrograms));
  EXPECT_EQ(distinct("DocumentID", "Documents"), 3 + kPrograms);
  EXPECT_EQ(reg_.value("Select Count(*) From Manuals"), std::to_string(kPrograms));
  EXPECT_EQ(distinct("ManualID", "Manuals"), kPrograms);
}

// Each brings a document of its own number and of one identifier.
TEST_F(Parallel, ImportsLeaveAnIdentifierToOneOfThem) {
  std::vector<Words> folders;
  for (int p = 0; p < kPrograms; ++p) {
    const std::string folder = reg_.file("import" + std::to_string(p));
    std::filesystem::create_directory(folder);
    for (
        const auto& [name, text] : std::vector<std::pair<std::string, std::string>>{
            {"users", "user_id,user_name,workgroup,title,kind"},
            {"workgroups", "workgroup_id,workgroup"},
            {"documents",
             "document_key,document_id,document_number,title,workgroup,category,controlled,secured,"
             "current_level,effective_date,current_revision,location,creation_date,recorded,"
             "recorded_by,participating_groups,notes\nD" +
                 std::to_string(1000 + p) + ",Same,,,,,no,no,,,,,,,,,"},
            {"revisions",
             "revision_key,document_key,level,effective_date,recorded,revision_status,"
             "routing_status,responsible_user,reference,source_status,change_description"},
            {"owners", "document_key,user_id"},
            {"approvers", "document_key,list_order,user_id"},
            {"approvals",
             "revision_key,document_key,list_order,user_id,approval_status,approved_by,"
             "date_approved"},
            {"manuals", "manual_key,manual_name,workgroup,owned_documents,participating_documents"},
            {"manual_contents", "manual_key,position,document_key"},
            {"copies", "user_id,manual_key,document_key,kind,copy_number"},
            {"keywords", "field,keyword"}})
      test::write(folder + "/" + name + ".csv", text + "\n");
    folders.push_back({folder});
  }
  const auto answers = test::inProcesses(kPrograms, [&](int p) {
    const auto outcome = test::run(
        {"import", folders[static_cast<std::size_t>(p)].front(), reg_.path(), "-u", "Anna"});
    return outcome.code == 0 ? std::string("done") : outcome.err;
  });
  EXPECT_EQ(std::count(answers.begin(), answers.end(), "done"), 1);
  for (const auto& answer : answers)
    EXPECT_THAT(answer, testing::AnyOf("done", testing::HasSubstr("in the register already")));
  EXPECT_EQ(reg_.value("Select Count(*) From Documents Where DocumentID = 'Same'"), "1");
}

TEST_F(Parallel, TheFirstKeywordIsAddedOnce) {
  EXPECT_EQ(doneOf("keywords add", {"DocUser2", "plan"}, "already"), 1);
  EXPECT_EQ(reg_.value("Select Count(*) From Keywords"), "1");
  EXPECT_EQ(doneOf("keywords delete", {"DocUser2", "plan"}, "no keyword"), 1);
}

TEST_F(Parallel, TheFirstQueryOfAKindHasItsNameForItself) {
  for (const auto& [kind, table] : {std::pair{"documents", "DocumentQuerys"},
                                    {"manuals", "ManualQuerys"},
                                    {"users", "UserQuerys"}}) {
    reg_.execute(std::string("Delete * From ") + table);
    EXPECT_EQ(doneOf("queries add", {"q", "--of", kind}, "already"), 1) << kind;
    EXPECT_EQ(reg_.value(std::string("Select Count(*) From ") + table), "1");
    EXPECT_EQ(doneOf("queries delete", {"q", "--of", kind}, "no"), 1) << kind;
    EXPECT_EQ(doneOf("queries set", {"q", "--of", kind}, "none is refused"), kPrograms) << kind;
    EXPECT_EQ(reg_.value(std::string("Select Count(*) From ") + table), "1") << kind;
  }
}

TEST_F(Parallel, UsersHaveTheirNamesForThemselves) {
  EXPECT_EQ(doneOf("user add", {"--name", "Pat", "--no-password"}, "already"), 1);
  EXPECT_EQ(reg_.value("Select Count(*) From Users"), "4");
  EXPECT_EQ(done("user add",
                 {{"--name", "A", "--no-password"},
                  {"--name", "B", "--no-password"},
                  {"--name", "C", "--no-password"}},
                 "none is refused"),
            3);
  EXPECT_EQ(distinct("UserID", "Users"), 7);
  EXPECT_EQ(distinct("UserID", "VeskProfiles"), 7);
}

TEST_F(Parallel, ListsOfADocumentNameAUserOnce) {
  EXPECT_EQ(doneOf("owners add", {"D1", "Bert"}, "owner"), 1);
  EXPECT_EQ(doneOf("approvers add", {"D1", "Bert"}, "approv"), 1);
  EXPECT_EQ(reg_.value("Select Count(*) From Owners"), "1");
  EXPECT_EQ(reg_.value("Select Count(*) From Routing"), "1");
}

// What is given to a user names one who is there afterwards, or nobody.
TEST_F(Parallel, NothingIsLeftOfADeletedUser) {
  for (int round = 0; round < 4; ++round) {
    reg_.execute("Insert Into Users (ID, UserID, UserName) Values (950, 'User950', 'Gone')");
    reg_.execute("Insert Into VeskProfiles (UserID, UserName) Values ('User950', 'Gone')");
    const std::vector<std::pair<std::string, Words>> programs = {
        {"user delete", {"Gone"}},
        {"owners add", {"D1", "Gone"}},
        {"approvers add", {"D1", "Gone"}},
        {"release", {"--document", "D1", "--to", "Gone", "--hard"}}};
    const auto answers = test::inProcesses(static_cast<int>(programs.size()), [&](int p) {
      const auto& [verb, words] = programs[static_cast<std::size_t>(p)];
      const auto outcome = reg_.as("Anna", verb, words);
      return outcome.code == 0 ? std::string("done") : outcome.err;
    });
    EXPECT_EQ(answers.front(), "done");
    for (const auto& answer : answers) {
      EXPECT_THAT(answer, testing::AnyOf("done", testing::HasSubstr("There is no user"))) << round;
    }
    for (const char* table : {"Users", "Owners", "Routing", "Personals"})
      EXPECT_EQ(
          reg_.value(std::string("Select Count(*) From ") + table + " Where UserID = 'User950'"),
          "0")
          << table << " in round " << round;
  }
}

}  // namespace
}  // namespace kv
