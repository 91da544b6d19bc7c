// SPDX-License-Identifier: Apache-2.0
// Users, workgroups, rights, owners and approvers, and what people have been asked to do.
#include "classes/rights/rights.h"
#include "desk/desk_register.h"
#include "desk/people/actions.h"
#include "desk/people/add_user.h"
#include "desk/people/approvers.h"
#include "desk/people/change_password.h"
#include "desk/people/delete_user.h"
#include "desk/people/edit_user.h"
#include "desk/people/owners.h"
#include "desk/people/user_rights.h"
#include "desk/people/view_users.h"
#include "desk/people/view_workgroups.h"

namespace kv {
namespace {

using test::rowsOf;
using Rows = std::vector<std::string>;

std::string right(std::int16_t number) { return std::string(userRightText(number)); }

class DeskPeople : public test::DeskTest {
 protected:
  [[nodiscard]] std::string user(const std::string& id, const std::string& columns) const {
    return reg_.value("Select " + columns + " From Users Where UserID = '" + id + "'");
  }
  // Whether somebody comes in with this password.
  [[nodiscard]] bool logsIn(const std::string& name, const std::string& password) const {
    const auto vesk = clsVesk::create(test::kCheapPasswords);
    vesk->OpenConnection("Data Source=" + reg_.path());
    const bool in = test::numberOf([&] { vesk->Login(name, password); }) == 0;
    vesk->CloseSession();
    return in;
  }
};

// ---- users ----

TEST_F(DeskPeople, AUserIsAddedAndLogsIn) {
  const auto session = as("Bert", {urCreateNewUser});
  const std::string id =
      desk::addUser(session, {.name = "Dora", .title = "Clerk"}, std::string("word"));
  EXPECT_EQ(user(id, "UserName, Title, Alias"), "Dora|Clerk|~");
  EXPECT_TRUE(logsIn("Dora", "word"));
  expectRefused(5, "There is a user 'Dora' already.",
                [&] { (void)desk::addUser(session, {.name = "Dora"}, {}); });
  const std::string silent = desk::addUser(session, {.name = "Emil"}, {});
  EXPECT_FALSE(logsIn("Emil", ""));
  EXPECT_NE(silent, id);
}

TEST_F(DeskPeople, AddingAUserTakesItsRights) {
  const auto session = as("Bert");
  expectDenied(right(urCreateNewUser), [&] { (void)desk::addUser(session, {.name = "Dora"}, {}); });
  expectDenied(right(urCreateNewUser), [&] { desk::requireMayAddUser(session, {.name = "Dora"}); });
  const auto maker = as("Carla", {urCreateNewUser, urChangeUsersWorkGroup});
  expectDenied("only administrators may change who is one",
               [&] { (void)desk::addUser(maker, {.name = "Dora", .workgroup = "-1"}, {}); });
  expectWrongInput("a user needs a name", [&] { (void)desk::addUser(maker, {.name = " "}, {}); });
  expectWrongInput("an empty password would let nobody in",
                   [&] { (void)desk::addUser(maker, {.name = "Dora"}, std::string()); });
}

TEST_F(DeskPeople, TheFieldsGivenAreWrittenAndNoOthers) {
  const auto session = as("Bert", {uredituseremail});
  EXPECT_EQ(desk::editUser(session, "Carla", {.email = "c@example.org"}), "User903");
  EXPECT_EQ(user("User903", "UserName, Email"), "Carla|c@example.org");
  expectDenied(right(urEditUserName),
               [&] { desk::editUser(session, "Carla", {.name = "Cora", .email = "x"}); });
  expectWrongInput("nothing to change: give at least one field",
                   [&] { desk::editUser(session, "Carla", {}); });
  expectRefused(5, "There is no user 'Dora'.",
                [&] { desk::editUser(session, "Dora", {.email = "x"}); });
}

TEST_F(DeskPeople, AnAdministratorIsLeft) {
  const auto session = as("Anna");
  expectRefused(5, "This would leave the register without an administrator.",
                [&] { desk::editUser(session, "Anna", {.workgroup = "0"}); });
  expectRefused(5, "This would leave the register without an administrator.",
                [&] { desk::deleteUser(session, "Anna"); });
  desk::editUser(session, "Bert", {.workgroup = "Super Users"});
  desk::editUser(session, "Anna", {.workgroup = "0"});
  EXPECT_EQ(rowsOf(*desk::listWorkgroups(as("Bert"), "-1")), Rows{"User902|Bert"});
}

TEST_F(DeskPeople, AUserIsDeletedWithWhatHeHad) {
  own("D1", "User903");
  const auto session = as("Bert", {urDeleteUser});
  expectDenied("only administrators may delete an administrator",
               [&] { desk::deleteUser(session, "Anna"); });
  const auto deleted = desk::deleteUser(session, "Carla");
  EXPECT_EQ(deleted.userId, "User903");
  EXPECT_EQ(deleted.owned, 1);
  EXPECT_EQ(deleted.copies, 0);
  EXPECT_EQ(reg_.rows("Select UserID From Owners"), Rows{});
  expectRefused(5, "There is no user 'Carla'.", [&] { desk::deleteUser(session, "Carla"); });
}

TEST_F(DeskPeople, DeletingAUserTakesItsRight) {
  expectDenied(right(urDeleteUser), [&] { desk::deleteUser(as("Bert"), "Carla"); });
}

TEST_F(DeskPeople, PasswordsAreChanged) {
  const auto own = as("Bert", {urEditOwnUserPassword});
  EXPECT_EQ(desk::changePassword(own, "Bert", "new"), "User902");
  EXPECT_TRUE(logsIn("Bert", "new"));
  EXPECT_FALSE(logsIn("Bert", "secret"));
  expectDenied(right(urEditUserPassword), [&] { desk::changePassword(own, "Carla", "new"); });
  expectDenied(right(urEditOwnUserPassword),
               [&] { desk::changePassword(as("Carla"), "Carla", "new"); });
  const auto others = as("Carla", {urEditUserPassword});
  expectDenied("only administrators may change the password of an administrator",
               [&] { (void)desk::requireMayChangePassword(others, "Anna"); });
  expectWrongInput("an empty password would let nobody in",
                   [&] { desk::changePassword(others, "Bert", ""); });
}

TEST_F(DeskPeople, UsersAreViewedWithoutTheirPasswords) {
  const auto session = as("Bert", {urviewuserdetail, urVIEWUSERLIST});
  const auto detail = desk::viewUser(session, "Carla");
  EXPECT_EQ(test::shown(detail.row->Fields("HasPassword")->Value()), "True");
  EXPECT_RAISES(3265, (void)detail.row->Fields("Password"));
  EXPECT_EQ(rowsOf(*desk::listUsers(session, {.sort = "UserName desc", .fields = "UserName"})),
            (Rows{"Carla", "Bert", "Anna"}));
  expectDenied("passwords are not listed",
               [&] { (void)desk::listUsers(session, {.fields = "UserName, Password"}); });
  expectDenied("passwords are not listed",
               [&] { (void)desk::listUsers(session, {.sort = "password"}); });
  EXPECT_THAT(rowsOf(*desk::listUsers(session, {.fields = "*"}))[0],
              testing::Not(testing::HasSubstr("argon2")));
  const auto carla = as("Carla");
  expectDenied(right(urviewuserdetail), [&] { (void)desk::viewUser(carla, "Bert"); });
  expectDenied(right(urVIEWUSERLIST), [&] { (void)desk::listUsers(carla, {}); });
  expectDenied(right(urVIEWUSERLIST), [&] { (void)desk::listWorkgroups(carla); });
}

TEST_F(DeskPeople, WorkgroupsAreListed) {
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (4, 'Clerks')");
  const auto session = as("Anna");
  EXPECT_EQ(rowsOf(*desk::listWorkgroups(session)),
            (Rows{"-1|Super Users", "0|View Only Users", "4|Clerks"}));
  desk::editUser(session, "Bert", {.workgroup = "clerks"});
  EXPECT_EQ(rowsOf(*desk::listWorkgroups(session, "4")), Rows{"User902|Bert"});
  expectRefused(5, "There is no workgroup 'Porters'.",
                [&] { (void)desk::listWorkgroups(session, "Porters"); });
}

// ---- rights ----

TEST_F(DeskPeople, RightsAreGivenAndTaken) {
  const auto session = as("Anna");
  const auto changed = desk::changeRights(
      session, {.of = "Bert", .user = {.on = {urCreateNewDocument}, .off = {urDeleteUser}}});
  EXPECT_EQ(rowsOf(*changed), (Rows{"user right|2|" + right(urCreateNewDocument) + "|True",
                                    "user right|22|" + right(urDeleteUser) + "|False"}));
  EXPECT_NO_THROW(as("Bert").requireRight(urCreateNewDocument));
  expectRefused(5, "The user 'User901' is an administrator, who holds every right.", [&] {
    desk::changeRights(session, {.of = "Anna", .user = {.on = {}, .off = {urDeleteUser}}});
  });
}

TEST_F(DeskPeople, OptionsAreSwitched) {
  const auto bert = as("Bert");
  EXPECT_EQ(
      rowsOf(*desk::changeRights(bert, {.option = {.on = {uoVerifyDelete}, .off = {}}})).size(),
      1U);
  expectDenied("only administrators may change application options", [&] {
    desk::changeRights(bert, {.application = {.on = {aoDocSortByNum}, .off = {}}});
  });
  expectDenied("only administrators may change rights", [&] {
    desk::changeRights(bert, {.owner = {.on = {orEditDocumentTitle}, .off = {}}});
  });
  desk::changeRights(as("Anna"), {.owner = {.on = {orEditDocumentTitle}, .off = {}},
                                  .application = {.on = {aoDocSortByNum}, .off = {}}});
  const auto later = as("Bert");
  EXPECT_TRUE(later->AppOption(aoDocSortByNum));
  EXPECT_TRUE(later->OwnerAccess(orEditDocumentTitle));
}

TEST_F(DeskPeople, AChangeOfRightsMakesSense) {
  const auto session = as("Anna");
  expectWrongInput("nothing to change: give at least one right or option",
                   [&] { desk::changeRights(session, {}); });
  expectWrongInput("the user right 2 is both given and taken", [&] {
    desk::changeRights(session, {.of = "Bert", .user = {.on = {2}, .off = {2}}});
  });
  expectWrongInput("a user goes with a change of his rights, and the other way round",
                   [&] { desk::changeRights(session, {.inherit = true}); });
}

TEST_F(DeskPeople, EverybodySeesHisOwnRights) {
  const auto bert = as("Bert");
  const auto rights = rowsOf(*desk::listRights(bert, {}));
  EXPECT_THAT(rights, testing::Contains("user right|2|" + right(urCreateNewDocument) + "|False"));
  expectDenied(right(urviewuserdetail), [&] { (void)desk::listRights(bert, "Anna"); });
}

// ---- owners and approvers ----

TEST_F(DeskPeople, OwnersComeAndGo) {
  const auto session = as("Bert", {urAssigndocumentowners, urviewdocumentdetail});
  EXPECT_EQ(desk::addOwner(session, "P-1", "Carla").userId, "User903");
  EXPECT_EQ(rowsOf(*desk::listOwners(session, "D1")), Rows{"1|User903|Carla"});
  EXPECT_EQ(desk::removeOwner(session, "D1", "Carla").documentId, "D1");
  EXPECT_EQ(rowsOf(*desk::listOwners(session, "D1")), Rows{});
  const auto carla = as("Carla");
  expectDenied(right(urviewdocumentdetail), [&] { (void)desk::listOwners(carla, "D1"); });
  const std::string no =
      "Unable to add user to documents owner list due to user access restrictions";
  expectRefused(kErrorBase + 2530, no, [&] { desk::addOwner(carla, "D1", "Carla"); });
  expectRefused(kErrorBase + 2530, no, [&] { desk::removeOwner(carla, "D1", "Carla"); });
}

TEST_F(DeskPeople, ApproversStandInTheirOrder) {
  const auto session = as("Anna");
  desk::addApprover(session, "D1", "Bert");
  desk::addApprover(session, "D1", "Carla");
  EXPECT_EQ(desk::addApprover(session, "D1", "Anna", "Carla").before, "User903");
  EXPECT_EQ(rowsOf(*desk::listApprovers(session, "D1")),
            (Rows{"1|User902|Bert", "2|User901|Anna", "3|User903|Carla"}));
  desk::moveApprover(session, "D1", "Carla", "Bert");
  desk::removeApprover(session, "D1", "Anna");
  EXPECT_EQ(rowsOf(*desk::listApprovers(session, "D1")),
            (Rows{"1|User903|Carla", "2|User902|Bert"}));
  expectRefused(5, "The user 'Anna' is not in the approval list of the document.",
                [&] { desk::moveApprover(session, "D1", "Anna", "Bert"); });
  expectRefused(5, "Nobody can be moved before himself.",
                [&] { desk::moveApprover(session, "D1", "Bert", "Bert"); });
}

TEST_F(DeskPeople, TheApprovalListTakesItsRights) {
  desk::addApprover(as("Anna"), "D1", "Carla");
  const auto session = as("Bert");
  const std::string no =
      "You do not have the right to assign or remove approvers for this document";
  expectRefused(kErrorBase + 2532, no, [&] { desk::addApprover(session, "D1", "Bert"); });
  expectRefused(kErrorBase + 2532, no, [&] { desk::removeApprover(session, "D1", "Carla"); });
  expectDenied(right(urassigndocumentapprovers),
               [&] { desk::moveApprover(session, "D1", "Carla", "Carla"); });
  expectDenied(right(urviewdocumentdetail), [&] { (void)desk::listApprovers(session, "D1"); });
}

// ---- actions ----

class DeskActions : public DeskPeople {
 protected:
  DeskActions() {
    for (const char* sql :
         {"Insert Into Actions (ActionID, AssigneeID, Subject, DateOpened) Values (11, 'User902', "
          "'Read it', #3/9/2001#)",
          "Insert Into Actions (ActionID, AssigneeID, Subject, DateOpened) Values (12, 'User903', "
          "'Read it too', #3/9/2001#)"})
      reg_.execute(sql);
    reg_.execute("Update VeskConfig Set DBID = 'Works'");
    reg_.execute("Update Actions Set ReferenceID = 'Works'");
  }
};

TEST_F(DeskActions, TheyAreListedAndSettled) {
  const auto session = as("Bert");
  EXPECT_EQ(desk::listActions(session, {}, false)->RecordCount(), 1);
  const Date day = *parseDate("2001-04-01");
  EXPECT_EQ(desk::completeAction(session, 11, day).completed, day);
  EXPECT_EQ(desk::closeAction(session, 11, *parseDate("2001-05-01")).completed, day);
  EXPECT_EQ(reg_.value("Select DateCompleted, DateClosed From Actions Where ActionID = 11"),
            "4/1/2001|5/1/2001");
  EXPECT_EQ(desk::listActions(session, {}, false)->RecordCount(), 0);
  EXPECT_EQ(desk::listActions(session, {}, true)->RecordCount(), 1);
  expectRefused(5, "The action 11 was closed on 2001-05-01.",
                [&] { desk::completeAction(session, 11); });
  expectRefused(5, "There is no action 13.", [&] { desk::closeAction(session, 13); });
}

TEST_F(DeskActions, ThoseOfOthersAreForAdministrators) {
  const auto session = as("Bert");
  expectDenied("only administrators may settle the actions of others",
               [&] { desk::completeAction(session, 12); });
  expectDenied("only administrators may settle the actions of others",
               [&] { desk::closeAction(session, 12); });
  expectDenied(right(urviewuserdetail), [&] { (void)desk::listActions(session, "Carla", false); });
  EXPECT_TRUE(desk::closeAction(as("Anna"), 12).closed);
}

}  // namespace
}  // namespace kv
