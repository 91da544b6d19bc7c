// SPDX-License-Identifier: Apache-2.0
// Revisions as those who keep a register prepare them and lead them into force.
#include "classes/rights/rights.h"
#include "desk/desk_register.h"
#include "desk/people/approvers.h"
#include "desk/revisions/add_revision.h"
#include "desk/revisions/decide_revision.h"
#include "desk/revisions/delete_revision.h"
#include "desk/revisions/edit_revision.h"
#include "desk/revisions/route_revision.h"
#include "desk/revisions/set_current_revision.h"
#include "desk/revisions/view_revisions.h"
#include "recordset/text_field.h"

namespace kv {
namespace {

using desk::Decision;
using test::rowsOf;
using Rows = std::vector<std::string>;

std::string right(std::int16_t number) { return std::string(userRightText(number)); }

class DeskRevisions : public test::DeskTest {
 protected:
  // Bert and then Carla have to approve the revisions of D1.
  void askBertAndCarla() {
    const auto session = as("Anna");
    desk::addApprover(session, "D1", "Bert");
    desk::addApprover(session, "D1", "Carla");
  }
  [[nodiscard]] std::string status(std::int32_t revision) const {
    return reg_.value("Select RevisionStatus From Revisions Where RevisionID = " +
                      std::to_string(revision));
  }
};

TEST_F(DeskRevisions, OwnersAddThem) {
  expectDenied(right(urActAsDocumentOwner),
               [&] { desk::addRevision(as("Bert"), "D1", {.level = "C"}); });
  own("D1", "User902");
  const auto session = as("Bert");
  const auto added =
      desk::addRevision(session, "P-1", {.level = "C", .effective = "2024-05-06"}, "Carla");
  EXPECT_EQ(added.documentId, "D1");
  EXPECT_EQ(reg_.value("Select RevisionLevel, ResponsibleID, EffectiveDate, RevisionStatus From "
                       "Revisions Where RevisionID = " +
                       std::to_string(added.revision)),
            "C|User903|5/6/2024|2");
  expectRefused(5, "There is no user 'Dora'.",
                [&] { desk::addRevision(session, "D1", {.level = "D"}, "Dora"); });
}

TEST_F(DeskRevisions, TheDocumentFollowsItsRevisionInForce) {
  const auto session = as("Anna");
  desk::editRevision(session, 901, {.level = "A1", .effective = "2024-05-06"});
  EXPECT_EQ(reg_.value("Select RevisionLevel, EffectiveDate From Documents Where DocumentID = "
                       "'D1'"),
            "A1|5/6/2024");
  desk::editRevision(session, 902, {.level = "B1"});
  EXPECT_EQ(reg_.value("Select RevisionLevel From Documents Where DocumentID = 'D1'"), "A1");
}

TEST_F(DeskRevisions, EveryFieldTakesItsRight) {
  const auto session = as("Bert", {urEditRevUser1});
  desk::editRevision(session, 902, {.field1 = "East"});
  EXPECT_EQ(reg_.value("Select RevUser1, RevisionLevel From Revisions Where RevisionID = 902"),
            "East|B");
  expectDenied(right(urEditRevUser2), [&] { desk::editRevision(session, 902, {.field2 = "X"}); });
  expectDenied(right(urActAsDocumentOwner),
               [&] { desk::editRevision(session, 902, {.level = "X"}); });
  expectWrongInput("nothing to change: give at least one field",
                   [&] { desk::editRevision(session, 902, {}); });
  expectRefused(5, "There is no revision 903.",
                [&] { desk::editRevision(session, 903, {.field1 = "X"}); });
}

TEST_F(DeskRevisions, OnesThatAreNotInForceAreDeleted) {
  expectDenied(right(urActAsDocumentOwner), [&] { desk::deleteRevision(as("Bert"), 902); });
  const auto session = as("Anna");
  expectRefused(5,
                "Revision 901 is in force; a document does not lose its current revision this way.",
                [&] { desk::deleteRevision(session, 901); });
  desk::deleteRevision(session, 902);
  EXPECT_EQ(reg_.rows("Select RevisionID From Revisions Where DocumentID = 'D1'"), Rows{"901"});
}

TEST_F(DeskRevisions, OneIsApprovedByEverybodyInTurnAndPutInForce) {
  askBertAndCarla();
  const auto anna = as("Anna");
  auto step = desk::routeRevision(anna, 902);
  EXPECT_EQ(step.documentId, "D1");
  EXPECT_EQ(fieldText(*step.standing, "RevisionStatus"), "3");
  EXPECT_EQ(rowsOf(*desk::statusOfRevision(anna, 902).approvals),
            (Rows{"User902|Bert|pending|~|~|~", "User903|Carla|pending|~|~|~"}));
  const auto bert = as("Bert");
  const auto carla = as("Carla");
  reg_.execute("Update VeskConfig Set ProgramOptions = '00000000010'");  // in their order
  EXPECT_EQ(desk::decideRevision(bert, 902, Decision::Approve, {}, "Well done").approver, "Bert");
  EXPECT_EQ(status(902), "3");
  desk::decideRevision(carla, 902, Decision::Approve);
  EXPECT_EQ(status(902), "4");
  const auto current = desk::setCurrentRevision(anna, 902);
  EXPECT_EQ(current.outOfDate, std::vector<std::int32_t>{901});
  EXPECT_EQ(status(901), "0");
  EXPECT_EQ(status(902), "1");
  EXPECT_EQ(reg_.value("Select CurrentRevID, RevisionLevel From Documents Where DocumentID = 'D1'"),
            "902|B");
}

TEST_F(DeskRevisions, ARejectedOneIsRoutedOnceMore) {
  askBertAndCarla();
  const auto anna = as("Anna");
  desk::routeRevision(anna, 902);
  desk::decideRevision(as("Bert"), 902, Decision::Reject);
  EXPECT_EQ(status(902), "5");
  desk::routeRevision(anna, 902);
  EXPECT_EQ(status(902), "3");
  EXPECT_RAISES(5, desk::routeRevision(anna, 902)) << "it awaits approval already";
  desk::routeRevision(anna, 902, true);
}

TEST_F(DeskRevisions, StepsAreForThoseWhoMayTakeThem) {
  askBertAndCarla();
  expectDenied(right(urActAsDocumentOwner), [&] { desk::routeRevision(as("Bert"), 902); });
  desk::routeRevision(as("Anna"), 902);
  expectDenied(right(urSetCurrentRevision), [&] { desk::setCurrentRevision(as("Bert"), 902); });
  expectDenied(right(urApprovalOverride),
               [&] { desk::decideRevision(as("Bert"), 902, Decision::Approve, "Carla"); });
  const auto anna = as("Anna");
  expectRefused(5, "Anna is not on the approval list of revision 902; --for says in whose place.",
                [&] { desk::decideRevision(anna, 902, Decision::Approve); });
  EXPECT_RAISES(5, desk::setCurrentRevision(anna, 902)) << "it is not approved";
  EXPECT_RAISES(5, desk::decideRevision(anna, 901, Decision::Approve)) << "it awaits nothing";
  EXPECT_EQ(status(902), "3");
}

TEST_F(DeskRevisions, TheyAreViewed) {
  const auto session = as("Bert", {urViewRevisionDetail});
  const auto detail = desk::viewRevision(session, 902);
  EXPECT_EQ(fieldText(*detail.row, "RevisionLevel"), "B");
  EXPECT_EQ(fieldText(*detail.row, "DocumentID"), "D1");
  const auto list = rowsOf(*desk::listRevisions(session, "P-1"));
  ASSERT_EQ(list.size(), 2U);
  EXPECT_THAT(list[0], testing::StartsWith("901|A|"));
  EXPECT_EQ(fieldText(*desk::statusOfRevision(session, 901).standing, "RevisionStatus"), "1");
  expectRefused(5, "There is no revision 903.", [&] { (void)desk::viewRevision(session, 903); });
  const auto carla = as("Carla");
  expectDenied(right(urViewRevisionDetail), [&] { (void)desk::viewRevision(carla, 902); });
  expectDenied(right(urViewRevisionDetail), [&] { (void)desk::listRevisions(carla, "D1"); });
  expectDenied(right(urViewRevisionDetail), [&] { (void)desk::statusOfRevision(carla, 902); });
}

}  // namespace
}  // namespace kv
