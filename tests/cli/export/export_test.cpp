// SPDX-License-Identifier: Apache-2.0
// kvvesk export: a register as files, and the same register again out of them.

#include <algorithm>
#include <filesystem>
#include <map>

#include "cli/verb_register.h"
#include "common/convert.h"
#include "desk/register/import/importer.h"
#include "support/engine_answers.h"
#include "support/register_dump.h"
#include "support/shared_data.h"

namespace kv {
namespace {

using testing::HasSubstr;

// A register with an administrator of its own, the first user, filled from a folder.
class Filled {
 public:
  explicit Filled(const std::string& folder) {
    desk::Importer importer(reg_.connection(), *parseDate("2024-04-01T08:00:00"), "User0", {});
    const auto report = importer.run(folder);
    EXPECT_TRUE(report.problems.empty()) << report.problems[0].reason;
    reg_.addUser(0, "Maker", "secret", true);
  }
  [[nodiscard]] std::string file(const std::string& name) const { return reg_.folder().file(name); }
  [[nodiscard]] test::Outcome exportTo(const std::string& folder) const {
    return test::run({"export", reg_.path(), "-u", "Maker", folder});
  }
  void execute(const std::string& sql) const { (void)reg_.execute(sql); }
  void executeRaw(const std::string& sql) const { test::RawRegister(reg_.path()).execute(sql); }
  [[nodiscard]] std::vector<std::string> rows(const std::string& sql) const {
    return reg_.rows(sql);
  }
  [[nodiscard]] std::string value(const std::string& sql) const { return reg_.value(sql); }
  // All rows of the tables that the format carries, whatever order they are kept in.
  [[nodiscard]] std::map<std::string, std::vector<std::string>> contents() const {
    const std::map<std::string, std::string> columns = {
        {"Users", "ID, UserID, UserName, Title, User00, User01, User02, User03"},
        {"VeskProfiles", "UserID, UserName, GroupID, Rights, UserOptions, Administrator"},
        {"Groups", "*"},
        {"VeskGroups", "*"},
        {"Documents", "*"},
        {"Revisions", "*"},
        {"Owners", "*"},
        {"Routing", "*"},
        {"ApprovalRouting", "*"},
        // Without the identifier, which is made anew; the next two hold it where it matters.
        {"Manuals", "ID, ManualName, ManUser1, ManUser2, ManUser3, ManUser4, ManUserMemo"},
        {"ManualContents", "*"},
        {"Personals", "UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID"},
        {"Keywords", "*"},
        {"Actions",
         "AssigneeID, Assignee, Subject, Description, Originator, OriginatorID, DateOpened, "
         "DateDue, DateCompleted, DateClosed, Reference, ActionType"},
        {"UserConfig", "*"},
        {"DocumentConfig", "*"},
        {"ManualConfig", "*"},
        {"RevisionConfig", "*"}};
    std::map<std::string, std::vector<std::string>> out;
    for (const auto& [table, list] : columns) {
      auto& rows = out[table];
      rows = reg_.rows("Select " + list + " From " + table);
      std::sort(rows.begin(), rows.end());
    }
    return out;
  }

 private:
  test::TestRegister reg_;
};

void comesBack(const std::string& folder) {
  const Filled before(folder);
  const std::string exported = before.file("exported");
  const auto outcome = before.exportTo(exported);
  ASSERT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out.find("Not the same"), std::string::npos) << outcome.out;
  const Filled after(exported);
  const auto there = before.contents();
  for (const auto& [table, rows] : after.contents()) {
    EXPECT_FALSE(rows.empty()) << table;
    EXPECT_EQ(rows, there.at(table)) << table;
  }
}

TEST(ExportVerb, TheExampleComesBackTheSame) { comesBack(KVVESK_SOURCE "/examples/register"); }

TEST(ExportVerb, ARealRegisterComesBackTheSame) {
  REQUIRE_SHARED_DATA(folder, "proposals-register");
  comesBack(folder);
}

TEST(ExportVerb, SaysWhatTheFilesCannotCarry) {
  const Filled before(KVVESK_SOURCE "/examples/register");
  before.execute("Update Users Set Email = 'a@b.example' Where ID < 3");
  before.execute("Update VeskProfiles Set Rights = '1' Where UserID = 'User3'");
  before.execute("Update Personals Set RevisionID = 1 Where ReleaseID = 1");
  before.execute("Insert Into DocumentQuerys (QueryName) Values ('Mine')");
  const auto outcome = before.exportTo(before.file("exported"));
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("\nUsers.Email"));
  EXPECT_THAT(outcome.out, HasSubstr("2 values are not carried\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\nVeskProfiles.Rights"));
  EXPECT_THAT(outcome.out, HasSubstr("\nPersonals.RevisionID"));
  EXPECT_THAT(outcome.out, HasSubstr("\nDocumentQuerys"));
  EXPECT_EQ(outcome.out.find("Documents"), std::string::npos) << outcome.out;
}

TEST(ExportVerb, LeavesNothingBehindWhenSomethingWouldBeLost) {
  const Filled before(KVVESK_SOURCE "/examples/register");
  const std::string place = before.file("exported");
  const auto refusal = [&](const std::string& change, const std::string& back) {
    before.execute(change);
    const auto outcome = before.exportTo(place);
    EXPECT_EQ(outcome.code, 1) << change;
    EXPECT_EQ(outcome.out, "") << change;
    EXPECT_THAT(outcome.err, HasSubstr("nothing was exported: 1 problem\n"));
    EXPECT_FALSE(std::filesystem::exists(place)) << change;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(place).parent_path()))
      EXPECT_FALSE(entry.path().filename().string().starts_with("exported")) << entry.path();
    before.execute(back);
    return outcome.err.substr(0, outcome.err.find('\n'));
  };
  EXPECT_THAT(refusal("Insert Into Owners (DocumentID, UserID) Values ('nowhere', 'User1')",
                      "Delete * From Owners Where DocumentID = 'nowhere'"),
              HasSubstr("there is no document 'nowhere'"));
  EXPECT_THAT(refusal("Update Documents Set DocUser1 = 'Nobody''s' Where ID = 1",
                      "Update Documents Set DocUser1 = 'Quality' Where ID = 1"),
              HasSubstr("there is no workgroup 'Nobody's'"));
  EXPECT_EQ(refusal("Insert Into Personals (UserID, DocumentID, ManualID, HardCopy) Values "
                    "('User3', '" +
                        before.value("Select DocumentID From Documents Where ID = 1") + "', '" +
                        before.value("Select ManualID From Manuals Where ID = 1") + "', True)",
                    "Delete * From Personals Where UserID = 'User3' and IsNull(CopyNumber)"),
            "Personals: 6 rows are made that the register has not")
      << "one document of a manual is no copy of it";
}

// A place that the files cannot hold is no reason to keep a register where it is.
TEST(ExportVerb, PlacesThatLeftTheirTypeComeBackInTheirOrder) {
  for (const auto& endless : test::numbersWithoutEnd()) {
    const Filled before(KVVESK_SOURCE "/examples/register");
    const auto order = [](const Filled& filled, const std::string& what) {
      return filled.rows("Select " + what +
                         " From Manuals Inner Join ManualContents On Manuals.ManualID = "
                         "ManualContents.ManualID Order By Manuals.ID, [Position]");
    };
    before.execute("Update ManualContents Set [Position] = Null Where [Position] = 1");
    before.executeRaw("UPDATE \"ManualContents\" SET \"Position\" = " + endless +
                      " WHERE \"Position\" IN (7, 4.5)");
    const auto documents = order(before, "Manuals.ID, DocumentID");
    const auto outcome = before.exportTo(before.file("exported"));
    ASSERT_EQ(outcome.code, 0) << endless << outcome.err;
    const Filled after(before.file("exported"));
    EXPECT_EQ(order(after, "Manuals.ID, DocumentID"), documents) << endless;
    for (const auto& place : order(after, "[Position]"))
      EXPECT_TRUE(parseNumber(place)) << endless << ": " << place;
  }
}

class ExportRefusal : public test::VerbTest {};

TEST_F(ExportRefusal, NeedsAFolderOfItsOwnAndAnAdministrator) {
  const std::string place = reg_.file("exported");
  EXPECT_EQ(refused("Bert", "export", {place}), test::denied("only administrators may export"));
  EXPECT_FALSE(std::filesystem::exists(place));
  std::filesystem::create_directory(place);
  test::write(place + "/mine", "kept");
  EXPECT_EQ(refused("Anna", "export", {place}),
            "error 5 (kvvesk): There is something at '" + place + "' already.\n");
  EXPECT_EQ(test::contents(place + "/mine"), "kept");
  std::filesystem::remove(place + "/mine");
  (void)reg_.done("export", {place});
  EXPECT_THAT(test::contents(place + "/documents.csv"), HasSubstr("D0902,P-2,Budget,"))
      << "into an empty folder, secured documents too";
}

// Identifiers that no import makes come back as they are.
TEST_F(ExportRefusal, OtherIdentifiersAreWrittenOut) {
  const std::string place = reg_.file("exported");
  (void)reg_.done("export", {place});
  const Filled after(place);
  EXPECT_THAT(after.contents().at("Documents"),
              testing::Contains(HasSubstr("901|D1|Plan's end|P-1|A|")));
}

}  // namespace
}  // namespace kv
