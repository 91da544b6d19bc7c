// SPDX-License-Identifier: Apache-2.0
// The register as a whole: keywords, labels, configuration, making and copying one, statements.
#include "classes/rights/rights.h"
#include "desk/desk_register.h"
#include "desk/register/configuration.h"
#include "desk/register/copy_to.h"
#include "desk/register/export/export_register.h"
#include "desk/register/import/import_register.h"
#include "desk/register/keywords.h"
#include "desk/register/labels.h"
#include "desk/register/new_register.h"
#include "desk/register/run_statement.h"
#include "support/temp_folder.h"

namespace kv {
namespace {

using test::rowsOf;
using Rows = std::vector<std::string>;

class DeskRegister : public test::DeskTest {};

TEST_F(DeskRegister, KeywordsComeAndGo) {
  const auto session = as("Bert", {urAddKeywordsToValidatedFields});
  EXPECT_EQ(desk::addKeyword(session, {.field = "docuser2", .keyword = "East"}).field, "DocUser2");
  EXPECT_EQ(rowsOf(*desk::listKeywords(session)), Rows{"DocUser2|East"});
  EXPECT_EQ(rowsOf(*desk::listKeywords(session, "DocUser3")), Rows{});
  expectRefused(5, "The field DocUser2 has the keyword 'EAST' already.",
                [&] { desk::addKeyword(session, {.field = "DocUser2", .keyword = "EAST"}); });
  expectRefused(5, "There is no field 'Colour' of documents, revisions, manuals or users.",
                [&] { desk::addKeyword(session, {.field = "Colour", .keyword = "Red"}); });
  expectWrongInput("an empty text is no keyword",
                   [&] { desk::addKeyword(session, {.field = "DocUser2", .keyword = " "}); });
  desk::deleteKeyword(session, {.field = "DocUser2", .keyword = "East"});
  EXPECT_EQ(rowsOf(*desk::listKeywords(session)), Rows{});
  expectRefused(5, "The field DocUser2 has no keyword 'East'.",
                [&] { desk::deleteKeyword(session, {.field = "DocUser2", .keyword = "East"}); });
  const auto carla = as("Carla");
  const std::string right(userRightText(urAddKeywordsToValidatedFields));
  expectDenied(right, [&] { desk::addKeyword(carla, {.field = "DocUser2", .keyword = "East"}); });
  expectDenied(right,
               [&] { desk::deleteKeyword(carla, {.field = "DocUser2", .keyword = "East"}); });
}

TEST_F(DeskRegister, FieldsAreCalledSomethingElse) {
  const auto session = as("Anna");
  EXPECT_EQ(
      desk::setLabel(session, {.of = "Documents", .field = "docuser1", .label = "Works"}).field,
      "DocUser1");
  EXPECT_THAT(rowsOf(*desk::listLabels(session)), testing::Contains("documents|DocUser1|Works|~"));
  expectDenied("only administrators may change labels", [&] {
    desk::setLabel(as("Bert"), {.of = "documents", .field = "DocUser1", .label = "X"});
  });
  expectRefused(5, "There is no field 'Colour' of documents that has a label.", [&] {
    desk::setLabel(session, {.of = "documents", .field = "Colour", .label = "X"});
  });
  expectWrongInput(
      "there are fields of documents, revisions, manuals and users, not of 'cars'",
      [&] { desk::setLabel(session, {.of = "cars", .field = "DocUser1", .label = "X"}); });
}

TEST_F(DeskRegister, ConfigurationValuesAreReadAndSet) {
  const auto session = as("Anna");
  EXPECT_EQ(test::shown(desk::setConfiguration(session, "DBID", "Works")), "Works");
  EXPECT_EQ(rowsOf(*desk::configuration(as("Bert"), "dbid")), Rows{"Works"});
  EXPECT_EQ(desk::configuration(session)->RecordCount(), 1);
  EXPECT_RAISES(3265, (void)desk::configuration(session, "Colour"));
  expectRefused(kPermission, "The version of a register is not a setting.",
                [&] { desk::setConfiguration(session, "DatabaseVersion", "1"); });
  expectDenied("only administrators may set configuration values",
               [&] { desk::setConfiguration(as("Bert"), "DBID", "X"); });
}

TEST_F(DeskRegister, ANewOneHasAnAdministratorAndAListOfDocuments) {
  const test::TempFolder folder;
  const std::string place = folder.file("new.kvv");
  const std::string users = folder.file("users.kvv");
  desk::makeUsers(users);
  desk::makeRegister(
      {.place = place, .administrator = "O'Brien", .password = "word", .users = users});
  const auto vesk = clsVesk::create(test::kCheapPasswords);
  vesk->OpenConnection("Data Source=" + place);
  vesk->Login("O'Brien", "word");
  EXPECT_TRUE(desk::Session(vesk).isAdministrator());
  EXPECT_EQ(rowsOf(*vesk->GetRecordset("Select QueryName From DocumentQuerys")),
            Rows{"All documents"});
  vesk->CloseSession();
  EXPECT_EQ(test::descriptionOf([&] {
              desk::makeRegister({.place = folder.file("other.kvv"),
                                  .administrator = "O'Brien",
                                  .password = "guess",
                                  .users = users});
            }),
            "Permission denied: there is a user of that name in the database of users, with "
            "another password");
  EXPECT_FALSE(std::filesystem::exists(folder.file("other.kvv")));
  EXPECT_RAISES(
      5, desk::makeRegister({.place = place, .administrator = "A", .password = "", .users = {}}));
}

TEST_F(DeskRegister, OneIsCopied) {
  const test::TempFolder folder;
  const std::string place = folder.file("copy.kvv");
  expectDenied("only administrators may copy a register",
               [&] { desk::copyTo(as("Bert"), place, desk::CopyWhat::Register); });
  EXPECT_FALSE(std::filesystem::exists(place));
  EXPECT_FALSE(desk::copyTo(as("Anna"), place, desk::CopyWhat::Register).empty());
  const auto copied = kvConnection::open(place);
  EXPECT_EQ(rowsOf(*copied->OpenRecordset("Select DocumentID From Documents Order By DocumentID")),
            (Rows{"D1", "D2"}));
  copied->Close();
  EXPECT_RAISES(kEngineFailure, desk::copyTo(as("Anna"), place, desk::CopyWhat::Users))
      << "there is something already";
}

TEST_F(DeskRegister, OneIsExportedAndImportedAgain) {
  const test::TempFolder folder;
  const std::filesystem::path files = folder.file("files");
  std::filesystem::create_directory(files);
  const auto session = as("Anna");
  const auto report = desk::exportRegister(session, files, folder.file("check.kvv"));
  EXPECT_EQ(report.problems, Rows{});
  EXPECT_THAT(report.written, testing::Contains(testing::Pair("documents", 2U)));
  const test::TestRegister other;
  other.addUser(0, "Root", "secret", true);
  const auto vesk = clsVesk::create(test::kCheapPasswords);
  vesk->OpenConnection("Data Source=" + other.path());
  vesk->Login("Root", "secret");
  const auto taken =
      desk::importRegister(desk::Session(vesk), files.string(), *parseDate("2024-05-06T07:08:09"));
  vesk->CloseSession();
  EXPECT_TRUE(taken.problems.empty());
  EXPECT_EQ(
      other.rows("Select DocumentNumber, DocumentTitle, RevisionLevel From Documents Order By "
                 "DocumentNumber"),
      (Rows{"P-1|Plan's end|A", "P-2|Budget|1"}));
}

TEST_F(DeskRegister, ExportAndImportAreForAdministrators) {
  const test::TempFolder folder;
  const auto session = as("Bert");
  expectDenied("only administrators may export", [&] {
    (void)desk::exportRegister(session, folder.file("files"), folder.file("check.kvv"));
  });
  expectDenied("only administrators may import", [&] {
    (void)desk::importRegister(session, folder.file("files"), *parseDate("2024-05-06"));
  });
  const auto report =
      desk::importRegister(as("Anna"), folder.file("none"), *parseDate("2024-05-06"));
  EXPECT_FALSE(report.problems.empty()) << "there are no such files";
}

TEST_F(DeskRegister, AdministratorsRunStatements) {
  const auto session = as("Anna");
  EXPECT_EQ(
      rowsOf(*desk::runStatement(session, "Select ManualID From Manuals Where ID = 901").rows),
      Rows{"M1"});
  const auto changed =
      desk::runStatement(session, "Update Manuals Set ManualName = 'X' Where ID = 901");
  EXPECT_FALSE(changed.rows);
  EXPECT_EQ(changed.affected, 1);
  EXPECT_RAISES(kSyntax, (void)desk::runStatement(session, "Selekt 1"));
  expectDenied("only administrators may run SQL",
               [&] { (void)desk::runStatement(as("Bert"), "Delete * From Manuals"); });
}

}  // namespace
}  // namespace kv
