// SPDX-License-Identifier: Apache-2.0
// Workgroups, labels of user fields, keywords, and the action queries that a user may run.
#include <gtest/gtest.h>

#include "support/session_test.h"

namespace kv {
namespace {

using test::Texts;

class Settings : public test::SessionTest {
 protected:
  Settings() { logIn("Bert"); }
  clsVeskUser& user() { return *vesk_->User(); }
  [[nodiscard]] const Ref<kvProfile>& profile() { return vesk_->DataServer()->Profile(); }
};

// ---- workgroups ----

TEST_F(Settings, AUserChangesWorkgroups) {
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(user().ChangeWorkGroup("User2", "5").isEmpty()); }),
            Texts{"Update VeskPRofiles Set VeskProfiles.WorkGroupID = '5' Where USerID = 'User2'"});
  EXPECT_EQ(reg_.rows("Select GroupID, WorkGroupID From VeskProfiles"), (Texts{"0|0", "5|5"}));
  user().ChangeWorkGroup("User2", "-1");
  EXPECT_EQ(reg_.value("Select GroupID From VeskProfiles Where UserID = 'User2'"), "-1");
  const auto before = everything();
  user().ChangeWorkGroup("nobody", "5");
  EXPECT_THROW(user().ChangeWorkGroup("User2", "no number"), Error);
  EXPECT_EQ(everything(), before);
}

TEST_F(Settings, WorkgroupsByNumberAndByTitle) {
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (5, 'Editors')");
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (6, Null)");
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (0, 'never shown')");
  EXPECT_EQ(statementsOf([&] {
              EXPECT_EQ(user().WorkGroup(-1), "Super Users");
              EXPECT_EQ(user().WorkGroup(0), "View Only Users");
            }),
            Texts{});
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(user().WorkGroup(5), "Editors"); }),
            Texts{"Select GroupTitle from Groups Where GroupID = 5"});
  for (const std::int32_t number : {6, 99, -2, 2147483647, -2147483647 - 1})
    EXPECT_EQ(user().WorkGroup(number), "") << number;
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(user().WorkgroupID("editors"), "5"); }),
            Texts{"Select GroupID from Groups Where GroupTitle = 'editors'"});
  for (const std::string& title : {std::string("Super Users"), std::string("no such group"),
                                   std::string(), std::string(10000, 'x')})
    EXPECT_EQ(user().WorkgroupID(title), "");
}

TEST_F(Settings, TheListOfWorkgroupsIsAnotherTable) {
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (5, 'Editors')");
  reg_.execute("Insert Into VeskGroups (GroupID, GroupTitle) Values (7, 'Readers')");
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = user().Workgroups(); }), Texts{"Select * from VeskGroups"});
  EXPECT_EQ(test::rowsOf(*rs), Texts{"7|Readers|~"});
}

// Reaches what only this class and those made from it have.
class UserOfGroups : public clsVeskUser {
 public:
  using clsVeskUser::GroupRights;
};

TEST_F(Settings, TheRightsOfAGroupCompareANumberWithText) {
  reg_.execute("Insert Into Groups (GroupID, GroupTitle, Rights) Values (5, 'Editors', '101')");
  UserOfGroups groups;
  groups.oVesk(user().oVesk());
  EXPECT_EQ(statementsOf([&] { EXPECT_RAISES(kMismatch, (void)groups.GroupRights("5")); }),
            Texts{"Select Rights From Groups Where GroupID = '5'"});
  EXPECT_EQ(statementsOf([&] { EXPECT_RAISES(kSyntax, (void)groups.GroupRights("O'Brien")); }),
            Texts{});
  groups.oVesk(nullptr);
}

// ---- labels and keywords ----

TEST_F(Settings, LabelsOfUserFields) {
  EXPECT_EQ(statementsOf([&] {
              user().SaveLabel(profile(), "User00", "Room", 2);
              user().SaveLabel(nullptr, "[User01]", "O''Brien");
            }),
            (Texts{"Update UserConfig Set User00 = 'Room'",
                   "Update UserConfig Set [User01] = 'O''Brien'"}));
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = user().Labels(profile()); }),
            Texts{"Select * From UserConfig"});
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(rs->Fields("User00")->Value(), Variant("Room"));
  EXPECT_EQ(rs->Fields("User01")->Value(), Variant("O'Brien"));
  EXPECT_EQ(rs->Fields("TypeUser00")->Value(), Variant(std::int16_t{0}))
      << "the type is not stored";
}

TEST_F(Settings, WhatIsNoColumnHasNoLabel) {
  const auto before = everything();
  for (const std::string& field : {std::string(), std::string("User00 = 'x', User01"),
                                   std::string("User 00"), std::string("UserConfig.User00"),
                                   std::string("1"), std::string("[]"), std::string("O'Brien")})
    EXPECT_EQ(
        statementsOf([&] { EXPECT_RAISES(kSyntax, user().SaveLabel(profile(), field, "x")); }),
        Texts{})
        << field;
  EXPECT_RAISES(kSyntax, user().SaveLabel(profile(), "User00", "O'Brien"));
  EXPECT_RAISES(kUnknownName, user().SaveLabel(profile(), "User99", "x"));
  EXPECT_THROW(user().SaveLabel(profile(), "User00", std::string(10000, 'x')), Error);
  EXPECT_EQ(everything(), before);
}

TEST_F(Settings, KeywordsOfAField) {
  reg_.execute("Insert Into VeskKeywords (FieldName, Keyword) Values ('DocUser1', 'of another')");
  EXPECT_EQ(statementsOf([&] {
              user().AddKeyword(profile(), "DocUser1", "one");
              user().AddKeyword(nullptr, "DocUser1", "two");
              user().AddKeyword(profile(), "DocUser1", "two");
              user().AddKeyword(profile(), "DocUser2", "O''Brien");
              user().DeleteKeyword(profile(), "docuser1", "TWO");
            }),
            (Texts{"Insert Into Keywords(FieldName,Keyword) Values('DocUser1','one')",
                   "Insert Into Keywords(FieldName,Keyword) Values('DocUser1','two')",
                   "Insert Into Keywords(FieldName,Keyword) Values('DocUser1','two')",
                   "Insert Into Keywords(FieldName,Keyword) Values('DocUser2','O''Brien')",
                   "Delete * From Keywords Where FieldName = 'docuser1' and Keyword = 'TWO'"}));
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = user().Keywords(profile(), "DocUser1"); }),
            Texts{"Select * From Keywords Where FieldName = 'DocUser1'"});
  EXPECT_EQ(test::rowsOf(*rs), Texts{"DocUser1|one"});
  EXPECT_EQ(test::rowsOf(*user().Keywords(nullptr, "DocUser2")), Texts{"DocUser2|O'Brien"});
  const auto before = everything();
  user().DeleteKeyword(profile(), "DocUser1", "no such word");
  EXPECT_THROW(user().AddKeyword(profile(), std::string(10000, 'x'), "x"), Error);
  EXPECT_EQ(everything(), before);
}

TEST_F(Settings, AnActionIsNotMadeHere) {
  const auto before = everything();
  EXPECT_EQ(statementsOf([&] { user().NewAction("subject", "text", "User1", "User2"); }), Texts{});
  EXPECT_EQ(everything(), before);
}

// ---- queries for actions ----

TEST_F(Settings, TheActionQueriesThatAUserMayRun) {
  for (const char* filter : {"'mine', 0, 'User2'", "'yours', 0, 'User1'", "'everybody', 1, Null",
                             "'my group', 2, '5'", "'your group', 2, '6'", "'no kind', 3, 'User2'",
                             "'a group like me', 2, 'User2'", "'a user like my group', 0, '5'"})
    reg_.execute(std::string("Insert Into UserFilters (FilterName, FilterFor, GroupID) Values (") +
                 filter + ")");
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = user().ActionUserQueries("User2", "5"); }),
            Texts{"Select FilterID, FilterName from UserFilters Where (FilterFor = 0 and GroupID "
                  "= 'User2') or (FilterFor = 1) or (FilterFor = 2 and GroupID = '5')"});
  EXPECT_EQ(test::rowsOf(*rs), (Texts{"1|mine", "3|everybody", "4|my group"}));
  EXPECT_EQ(test::rowsOf(*user().ActionUserQueries("", "")), Texts{"3|everybody"});
}

TEST_F(Settings, ValuesThatWouldChangeAStatementRunNothing) {
  const auto before = everything();
  for (const std::string& bad : {std::string("O'Brien"), std::string("x' or 'a'='a"),
                                 std::string("caf\xE9"), std::string("x\0", 2)})
    EXPECT_EQ(statementsOf([&] {
                EXPECT_RAISES(kSyntax, user().ChangeWorkGroup(bad, "5"));
                EXPECT_RAISES(kSyntax, user().ChangeWorkGroup("User2", bad));
                EXPECT_RAISES(kSyntax, (void)user().WorkgroupID(bad));
                EXPECT_RAISES(kSyntax, (void)user().Keywords(profile(), bad));
                EXPECT_RAISES(kSyntax, user().AddKeyword(profile(), bad, "x"));
                EXPECT_RAISES(kSyntax, user().AddKeyword(profile(), "DocUser1", bad));
                EXPECT_RAISES(kSyntax, user().DeleteKeyword(profile(), bad, "x"));
                EXPECT_RAISES(kSyntax, user().DeleteKeyword(profile(), "DocUser1", bad));
                EXPECT_RAISES(kSyntax, (void)user().ActionUserQueries(bad, "5"));
                EXPECT_RAISES(kSyntax, (void)user().ActionUserQueries("User2", bad));
              }),
              Texts{});
  EXPECT_EQ(everything(), before);
}

}  // namespace
}  // namespace kv
