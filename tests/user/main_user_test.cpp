// SPDX-License-Identifier: Apache-2.0
#include "user/main_user.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

class MainUser : public testing::Test {
 protected:
  MainUser() : user_(test::kCheapPasswords) {
    reg_.addUser(1, "Anna", "secret");
    reg_.addUser(2, "O'Brien", "öffne dich", true);
    reg_.addUser(3, "Without", "");
    user_.OpenConnection(reg_.path());
  }
  // The ID of whoever comes in with this name and password, "" for nobody.
  std::string login(const std::string& name, const std::string& password) {
    user_.Login(name, password);
    return user_.Profile()->UserID();
  }
  std::string rightsHeld() {
    std::string out;
    for (std::int16_t n = 1; n <= 255; ++n)
      if (user_.Profile()->HasRight(n)) out += std::to_string(n) + " ";
    return out;
  }
  test::TestRegister reg_;
  kvUser user_;
};

TEST_F(MainUser, LogsInWithNameAndPassword) {
  EXPECT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(user_.Profile()->UserName(), "Anna");
  EXPECT_EQ(login("anna", "secret"), "User1") << "names ignore case";
  EXPECT_EQ(login("O'Brien", "öffne dich"), "User2");
}

TEST_F(MainUser, LetsNobodyElseIn) {
  EXPECT_EQ(login("Anna", "Secret"), "") << "passwords do not ignore case";
  EXPECT_EQ(login("Anna", "secret "), "");
  EXPECT_EQ(login("Nobody", "secret"), "");
  EXPECT_EQ(login("", ""), "");
  EXPECT_EQ(login("Anna", ""), "");
  EXPECT_EQ(login("Without", ""), "");
  EXPECT_EQ(login("Without", "anything"), "");
  EXPECT_EQ(login("x' or 'a'='a", "secret"), "");
  EXPECT_EQ(login("caf\xE9", "secret"), "");
  EXPECT_EQ(login(std::string(10000, 'x'), "secret"), "");
}

TEST_F(MainUser, AFailedLogInForgetsWhoWasThereBefore) {
  ASSERT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(login("Anna", "wrong"), "");
  EXPECT_EQ(user_.Profile()->Rights(), "");
  EXPECT_EQ(user_.Profile()->Administrator(), 0);
}

TEST_F(MainUser, EveryLogInVerifiesOnce) {
  const auto cost = [&](const char* name, const char* password) {
    const auto before = user_.passwords().verifications();
    (void)login(name, password);
    return user_.passwords().verifications() - before;
  };
  EXPECT_EQ(cost("Anna", "secret"), 1U);
  EXPECT_EQ(cost("Anna", "wrong"), 1U);
  EXPECT_EQ(cost("Anna", ""), 1U);
  EXPECT_EQ(cost("Nobody", "secret"), 1U);
  EXPECT_EQ(cost("Without", "secret"), 1U);
  EXPECT_EQ(cost("caf\xE9", "secret"), 1U);
  reg_.execute("Update Users Set [Password] = 'clear' Where UserID = 'User3'");
  EXPECT_EQ(cost("Without", "wrong"), 1U);
  EXPECT_EQ(cost("Without", "clear"), 1U);
}

TEST_F(MainUser, AClearTextPasswordLetsItsUserInOnceMoreAndIsReplaced) {
  reg_.execute("Update Users Set [Password] = 'clear' Where UserID = 'User3'");
  EXPECT_EQ(login("Without", "Clear"), "");
  EXPECT_EQ(reg_.value("Select [Password] From Users Where UserID = 'User3'"), "clear");
  EXPECT_EQ(login("Without", "clear"), "User3");
  EXPECT_THAT(reg_.value("Select [Password] From Users Where UserID = 'User3'"),
              testing::StartsWith("$argon2id$"));
  EXPECT_EQ(login("Without", "clear"), "User3");
}

TEST_F(MainUser, TwoUsersOfOneNameAreToldApartByTheirPasswords) {
  reg_.addUser(4, "Anna", "other");
  EXPECT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(login("Anna", "other"), "User4");
  EXPECT_EQ(login("Anna", "neither"), "");
}

TEST_F(MainUser, AdministratorsHoldEveryRight) {
  ASSERT_EQ(login("O'Brien", "öffne dich"), "User2");
  EXPECT_EQ(user_.Profile()->Administrator(), -1);
  EXPECT_EQ(user_.Profile()->OwnerOverride(), -1);
  EXPECT_TRUE(user_.Profile()->HasRight(255));
}

TEST_F(MainUser, SuperUsersAreAdministrators) {
  reg_.execute("Update VeskProfiles Set GroupID = -1 Where UserID = 'User1'");
  ASSERT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(user_.Profile()->Administrator(), -1);
}

TEST_F(MainUser, OwnRightsCountBeforeThoseOfTheGroup) {
  reg_.execute("Insert Into Groups (GroupID, GroupTitle, Rights) Values (5, 'Quality', '0011')");
  reg_.execute("Update VeskProfiles Set GroupID = 5, Rights = '01' Where UserID = 'User1'");
  ASSERT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(rightsHeld(), "2 ");
  reg_.execute("Update VeskProfiles Set Rights = Null Where UserID = 'User1'");
  ASSERT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(rightsHeld(), "3 4 ");
}

TEST_F(MainUser, GroupZeroMayView) {
  ASSERT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(rightsHeld(), "1 10 20 30 50 70 90 ");
  EXPECT_EQ(user_.Profile()->Rights().size(), 255U);
}

TEST_F(MainUser, AGroupThatIsGoneGrantsNothing) {
  reg_.execute("Update VeskProfiles Set GroupID = 77 Where UserID = 'User1'");
  ASSERT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(user_.Profile()->Rights(), std::string(255, '0'));
}

TEST_F(MainUser, AUserWithoutAProfileRowHasNoRightsText) {
  reg_.execute("Delete * From VeskProfiles Where UserID = 'User1'");
  ASSERT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(user_.Profile()->Rights(), "");
  EXPECT_EQ(reg_.value("Select Count(*) From VeskProfiles Where UserID = 'User1'"), "0");
}

TEST_F(MainUser, AMissingNameIsCopiedIntoTheProfile) {
  reg_.execute("Update VeskProfiles Set UserName = Null");
  ASSERT_EQ(login("Anna", "secret"), "User1");
  EXPECT_EQ(reg_.value("Select UserName From VeskProfiles Where UserID = 'User1'"), "Anna");
  EXPECT_EQ(reg_.value("Select UserName From VeskProfiles Where UserID = 'User2'"), "~");
  reg_.execute("Update VeskProfiles Set UserName = 'kept' Where UserID = 'User1'");
  (void)login("Anna", "secret");
  EXPECT_EQ(reg_.value("Select UserName From VeskProfiles Where UserID = 'User1'"), "kept");
}

TEST_F(MainUser, NothingSecretIsLogged) {
  const std::string path = reg_.folder().file("log");
  user_.DataServer()->StatementLog(path);
  reg_.execute("Update Users Set [Password] = 'clear' Where UserID = 'User3'");
  (void)login("Anna", "secret");
  (void)login("Without", "clear");
  (void)login("Anna", "wrong-guess");
  user_.setPassword("User1", "another");
  user_.DataServer()->StatementLog("");
  EXPECT_EQ(test::contents(path), "");
}

TEST_F(MainUser, LoggingInNeedsAConnection) {
  kvUser unconnected(test::kCheapPasswords);
  EXPECT_RAISES(3709, unconnected.Login("Anna", "secret"));
  EXPECT_RAISES(3709, (void)unconnected.UserValue("User1", "UserName"));
}

TEST_F(MainUser, FillsTheProfileItIsGiven) {
  const auto profile = user_.Profile();
  kvUser second(test::kCheapPasswords);
  second.OpenConnection("", profile);
  second.Login("Anna", "secret", profile);
  EXPECT_EQ(profile->UserID(), "User1");
  EXPECT_EQ(second.Profile(), profile);
}

TEST_F(MainUser, ReadsValuesOfUsers) {
  EXPECT_EQ(user_.UserValue("user2", "UserName"), Variant("O'Brien"));
  EXPECT_TRUE(user_.UserValue("User1", "Title").isEmpty());
  EXPECT_TRUE(user_.UserValue("O'Nobody", "UserName").isEmpty());
  EXPECT_RAISES(3265, (void)user_.UserValue("User1", "Colour"));
}

TEST_F(MainUser, RecordsKeepTheOrderGivenEachOnce) {
  for (const char* id : {"User3", "User1", "User9", "user3", "User2"})
    reg_.execute(std::string("Insert Into Owners (UserID) Values ('") + id + "')");
  const auto records = user_.UserRecords("Select UserID From Owners");
  std::string ids;
  for (; !records->Eof(); records->MoveNext())
    ids += test::shown(records->Fields("UserID")->Value()) + " ";
  EXPECT_EQ(ids, "User3 User1 User2 ");
  const auto rs = reg_.open("Select UserID From Owners Where UserID = 'none'");
  EXPECT_EQ(user_.UserRecords(rs)->RecordCount(), 0);
  records->MoveFirst();
  records->Fields("Alias")->Value("A");
  records->Update();
  EXPECT_EQ(reg_.value("Select UserID From Users Where Alias = 'a'"), "User3")
      << "they are the users' own rows";
}

TEST_F(MainUser, RecordsOfThousandsOfUsers) {
  reg_.connection()->BeginTrans();
  for (int i = 10; i < 2010; ++i)
    reg_.execute("Insert Into Users (UserID) Values ('User" + std::to_string(i) + "')");
  reg_.connection()->CommitTrans();
  const auto records = user_.UserRecords("Select UserID From Users Order By ID Desc");
  EXPECT_EQ(records->RecordCount(), 2003);
  EXPECT_EQ(records->Fields("UserID")->Value(), Variant("User2009"));
}

TEST_F(MainUser, GivesUsersNewPasswords) {
  EXPECT_TRUE(user_.setPassword("User3", "new"));
  EXPECT_EQ(login("Without", "new"), "User3");
  EXPECT_TRUE(user_.setPassword("User3", ""));
  EXPECT_EQ(login("Without", "new"), "");
  EXPECT_EQ(reg_.value("Select [Password] From Users Where UserID = 'User3'"), "~");
  EXPECT_FALSE(user_.setPassword("Nobody", "x"));
}

}  // namespace
}  // namespace kv
