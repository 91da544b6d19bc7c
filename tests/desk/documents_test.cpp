// SPDX-License-Identifier: Apache-2.0
// Documents as those who keep a register look at them, add, change and delete them.
#include "classes/rights/rights.h"
#include "common/clock.h"
#include "common/text.h"
#include "desk/desk_register.h"
#include "desk/documents/add_document.h"
#include "desk/documents/delete_document.h"
#include "desk/documents/edit_document.h"
#include "desk/documents/view_documents.h"

namespace kv {
namespace {

using test::rowsOf;
using Rows = std::vector<std::string>;

class DeskDocuments : public test::DeskTest {
 protected:
  [[nodiscard]] std::string row(const std::string& id) const {
    return reg_.value(
        "Select DocumentTitle, DocumentNumber, RevisionLevel, EffectiveDate, DocUser1, Controlled, "
        "SecurityLevel, CurrentRevID From Documents Where DocumentID = '" +
        id + "'");
  }
};

TEST_F(DeskDocuments, OneIsAddedWithItsFirstRevisionInForce) {
  const StoppedClock clock(*parseDate("2024-05-06T07:08:09"));
  const auto session = as("Bert", {urCreateNewDocument, urSetCurrentRevision});
  desk::NewDocument given;
  given.fields.title = "Rules";
  given.fields.field1 = "Works";
  given.fields.secured = true;
  given.level = "A";
  given.current = true;
  const std::string id = desk::addDocument(session, given);
  EXPECT_EQ(id, "User902050624070809");
  const std::string revision =
      reg_.value("Select RevisionID From Revisions Where DocumentID = '" + id + "'");
  EXPECT_EQ(row(id), "Rules|~|A|5/6/2024|Works|True|True|" + revision);
}

TEST_F(DeskDocuments, TwoAddedInOneSecondHaveTwoIdentifiers) {
  const auto session = as("Anna");
  desk::NewDocument given;
  given.fields.title = "Rules";
  const std::string first = desk::addDocument(session, given);
  EXPECT_NE(desk::addDocument(session, given), first);
}

TEST_F(DeskDocuments, AddingTakesItsRights) {
  desk::NewDocument given;
  given.fields.title = "Rules";
  expectDenied(std::string(userRightText(urCreateNewDocument)),
               [&] { (void)desk::addDocument(as("Bert"), given); });
  given.current = true;
  const auto session = as("Bert", {urCreateNewDocument});
  expectDenied(std::string(userRightText(urSetCurrentRevision)),
               [&] { (void)desk::addDocument(session, given); });
  const auto anna = as("Anna");
  expectWrongInput("nothing to add: give a title, a number or another field",
                   [&] { (void)desk::addDocument(anna, {}); });
}

TEST_F(DeskDocuments, TheFieldsGivenAreWrittenAndNoOthers) {
  const auto session = as("Bert", {urEditDocumentTitles});
  EXPECT_EQ(desk::editDocument(session, "P-1", {.title = "O'Brien's plan"}), "D1");
  EXPECT_EQ(row("D1"), "O'Brien's plan|P-1|A|3/9/2001|~|True|False|901");
}

TEST_F(DeskDocuments, EveryFieldTakesItsRight) {
  const auto session = as("Bert", {urEditDocumentTitles});
  const std::string numbers(userRightText(ureditdocumentnumbers));
  expectDenied(numbers,
               [&] { desk::editDocument(session, "D1", {.title = "X", .number = "P-9"}); });
  expectWrongInput("nothing to change: give at least one field",
                   [&] { desk::editDocument(session, "D1", {}); });
  expectRefused(5, "There is no document 'D9'.",
                [&] { desk::editDocument(session, "D9", {.title = "X"}); });
  expectRefused(5, "There is no document 'D2'.",
                [&] { desk::editDocument(session, "D2", {.title = "X"}); });
  own("D1", "User902");
  expectDenied(std::string(ownerRightText(orEditDocumentNumber)),
               [&] { desk::editDocument(session, "D1", {.number = "P-9"}); });
}

TEST_F(DeskDocuments, OneThatLeavesControlKeepsItsCurrentRevisionAlone) {
  const auto session = as("Anna");
  desk::editDocument(session, "D1", {.controlled = false});
  EXPECT_EQ(row("D1"), "Plan's end|P-1|Uncontrolled|~|~|False|False|0");
  EXPECT_EQ(reg_.rows("Select RevisionID From Revisions Where DocumentID = 'D1'"), Rows{"901"});
  desk::editDocument(session, "D1", {.controlled = true});
  EXPECT_EQ(row("D1"), "Plan's end|P-1|A|3/9/2001|~|True|False|901");
}

TEST_F(DeskDocuments, OneIsDeletedWithWhatBelongsToIt) {
  expectDenied(std::string(userRightText(urdeletedocument)),
               [&] { desk::deleteDocument(as("Bert"), "D1"); });
  EXPECT_EQ(desk::deleteDocument(as("Bert", {urdeletedocument}), "P-1"), "D1");
  for (const char* table : {"Documents", "Revisions", "ManualContents"})
    EXPECT_EQ(
        reg_.rows(std::string("Select DocumentID From ") + table + " Where DocumentID = 'D1'"),
        Rows{})
        << table;
  const auto anna = as("Anna");
  expectRefused(5, "There is no document 'D1'.", [&] { desk::deleteDocument(anna, "D1"); });
}

TEST_F(DeskDocuments, OneIsViewedWithItsLabels) {
  reg_.execute("Update DocumentConfig Set DocUser1 = 'Works'");
  const auto detail = desk::viewDocument(as("Bert", {urviewdocumentdetail}), "P-1");
  EXPECT_EQ(test::shown(detail.row->Fields("DocumentID")->Value()), "D1");
  EXPECT_EQ(detail.labels.at("DocUser1"), "Works");
  expectDenied(std::string(userRightText(urviewdocumentdetail)),
               [&] { (void)desk::viewDocument(as("Carla"), "P-1"); });
}

TEST_F(DeskDocuments, TheyAreListedAsAsked) {
  const auto session = as("Bert", {urViewDocumentList});
  EXPECT_EQ(rowsOf(*desk::listDocuments(session, {.fields = "DocumentID"})), Rows{"D1"})
      << "the other one is secured";
  EXPECT_EQ(rowsOf(*desk::listDocuments(as("Anna"), {.sort = "documentnumber desc",
                                                     .fields = "DocumentID, DocumentTitle"})),
            (Rows{"D2|Budget", "D1|Plan's end"}));
  expectDenied(std::string(userRightText(urViewDocumentList)),
               [&] { (void)desk::listDocuments(as("Carla"), {}); });
  expectRefused(5, "There is no document query 'Plans'.",
                [&] { (void)desk::listDocuments(session, {.query = "Plans"}); });
  EXPECT_RAISES(3265, (void)desk::listDocuments(session, {.fields = "Count(*)"}));
}

}  // namespace
}  // namespace kv
