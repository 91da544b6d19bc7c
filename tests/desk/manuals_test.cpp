// SPDX-License-Identifier: Apache-2.0
// Manuals as those who keep a register look at them, add, change and fill them.
#include "classes/rights/rights.h"
#include "common/clock.h"
#include "desk/desk_register.h"
#include "desk/manuals/add_manual.h"
#include "desk/manuals/delete_manual.h"
#include "desk/manuals/edit_manual.h"
#include "desk/manuals/place_documents.h"
#include "desk/manuals/view_manuals.h"

namespace kv {
namespace {

using test::rowsOf;
using Rows = std::vector<std::string>;

std::string right(std::int16_t number) { return std::string(userRightText(number)); }

class DeskManuals : public test::DeskTest {};

TEST_F(DeskManuals, OneIsAdded) {
  const StoppedClock clock(*parseDate("2024-05-06T07:08:09"));
  const auto session = as("Bert", {urCreateNewManual});
  EXPECT_EQ(desk::addManual(session, {.name = "Works", .field1 = "East"}), "User902050624070809");
  EXPECT_EQ(reg_.value("Select ManualID, ManUser1, ManUser2 From Manuals Where ManualName = "
                       "'Works'"),
            "User902050624070809|East|~");
  expectWrongInput("nothing to add: give the manual's name",
                   [&] { (void)desk::addManual(session, {.name = " "}); });
  expectDenied(right(urCreateNewManual),
               [&] { (void)desk::addManual(as("Carla"), {.name = "Works"}); });
}

TEST_F(DeskManuals, TwoAddedInOneSecondHaveTwoIdentifiers) {
  const auto session = as("Anna");
  const std::string first = desk::addManual(session, {.name = "Works"});
  EXPECT_NE(desk::addManual(session, {.name = "Works"}), first);
}

TEST_F(DeskManuals, TheFieldsGivenAreWrittenAndNoOthers) {
  const auto session = as("Bert", {urEditManualNotes});
  EXPECT_EQ(desk::editManual(session, "Handbook", {.notes = "In the hall"}), "M1");
  EXPECT_EQ(reg_.value("Select ManualName, ManUserMemo From Manuals Where ManualID = 'M1'"),
            "Handbook|In the hall");
  expectDenied(right(urEditManualName),
               [&] { desk::editManual(session, "M1", {.name = "X", .notes = "Y"}); });
  expectWrongInput("nothing to change: give at least one field",
                   [&] { desk::editManual(session, "M1", {}); });
  expectRefused(5, "There is no manual 'M9'.",
                [&] { desk::editManual(session, "M9", {.notes = "Y"}); });
}

TEST_F(DeskManuals, OneIsDeletedAndItsDocumentsStay) {
  expectDenied(right(urDeleteManual), [&] { desk::deleteManual(as("Bert"), "M1"); });
  EXPECT_EQ(desk::deleteManual(as("Bert", {urDeleteManual}), "Handbook"), "M1");
  EXPECT_EQ(reg_.rows("Select ManualID From ManualContents"), Rows{});
  EXPECT_EQ(reg_.value("Select DocumentTitle From Documents Where DocumentID = 'D1'"),
            "Plan's end");
}

TEST_F(DeskManuals, OneIsViewedWithContentsAndCopies) {
  reg_.execute(
      "Insert Into ManualContents (ManualID, DocumentID, Position) Values ('M1', 'D2', 2)");
  reg_.execute(
      "Insert Into Personals (UserID, DocumentID, ManualID, RevisionID, HardCopy, CopyNumber) "
      "Values ('User902', 'D1', 'M1', 901, True, '7')");
  const auto session = as("Bert", {urViewManualdetail});
  EXPECT_EQ(test::shown(desk::viewManual(session, "Handbook").row->Fields("ManualID")->Value()),
            "M1");
  EXPECT_EQ(rowsOf(*desk::manualContents(session, "M1")), Rows{"1|D1|P-1|Plan's end|A|3/9/2001"})
      << "the other one is secured";
  EXPECT_EQ(rowsOf(*desk::manualCopies(session, "M1")), Rows{"User902|Bert|True|7"});
  const auto carla = as("Carla");
  expectDenied(right(urViewManualdetail), [&] { (void)desk::viewManual(carla, "M1"); });
  expectDenied(right(urViewManualdetail), [&] { (void)desk::manualContents(carla, "M1"); });
  expectDenied(right(urViewManualdetail), [&] { (void)desk::manualCopies(carla, "M1"); });
}

TEST_F(DeskManuals, TheyAreListedAsAsked) {
  EXPECT_EQ(rowsOf(*desk::listManuals(as("Bert", {urViewManualList}), {})),
            (Rows{"M2|Annex", "M1|Handbook"}));
  expectDenied(right(urViewManualList), [&] { (void)desk::listManuals(as("Carla"), {}); });
  EXPECT_RAISES(3265, (void)desk::listManuals(as("Anna"), {.sort = "1"}));
}

TEST_F(DeskManuals, DocumentsArePutTakenAndMoved) {
  const auto session = as("Anna");
  auto placed = desk::putIntoManual(session, "Handbook", "P-2");
  EXPECT_EQ(placed.manualId, "M1");
  EXPECT_EQ(placed.documentId, "D2");
  EXPECT_EQ(placed.copies, 0);
  placed = desk::moveInManual(session, "M1", "D2", 1);
  EXPECT_GT(placed.place, 0);
  expectRefused(5, "The manual has the places 1 to 2, not 3.",
                [&] { desk::moveInManual(session, "M1", "D2", 3); });
  EXPECT_EQ(desk::takeOutOfManual(session, "M1", "D2").place, 0);
  EXPECT_EQ(reg_.rows("Select DocumentID From ManualContents"), Rows{"D1"});
  expectRefused(5, "The document D2 is not in the manual M1.",
                [&] { desk::moveInManual(session, "M1", "D2", 1); });
}

TEST_F(DeskManuals, PlacingTakesItsRights) {
  const auto session = as("Bert");
  expectRefused(kErrorBase + 2529,
                "Unable to add document to manual due to user access restrictions",
                [&] { desk::putIntoManual(session, "M2", "D1"); });
  expectRefused(kErrorBase + 2528,
                "Unable to remove document from manual due to user access restrictions",
                [&] { desk::takeOutOfManual(session, "M1", "D1"); });
  expectDenied(right(urAddDocumentsToManualContents),
               [&] { desk::moveInManual(session, "M1", "D1", 1); });
}

}  // namespace
}  // namespace kv
