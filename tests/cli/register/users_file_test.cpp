// SPDX-License-Identifier: Apache-2.0
// Registers that share users and actions, from the shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "cli/program.h"
#include "support/temp_folder.h"
#include "support/test_server.h"

namespace kv::test {
namespace {

using testing::HasSubstr;

class UsersFile : public testing::Test {
 protected:
  // On a server its databases; they are there, and empty.
  UsersFile() {
    for (auto* place : {&users_, &first_, &second_})
      if (onServer()) *place = TestServer::newDatabase();
  }
  ~UsersFile() override {
    if (onServer())
      for (const auto& place : {users_, first_, second_}) TestServer::drop(place);
  }
  void make(const std::string& place, const std::string& user) const {
    const auto made = run({"new", place, "-u", user, "--users", users_});
    ASSERT_EQ(made.code, 0) << made.err;
    EXPECT_EQ(made.out, "made " + place + " with the administrator " + user +
                            ", users and actions in " + users_ + "\n");
  }
  // An answer's rows without their heading, each followed by a semicolon.
  [[nodiscard]] static std::string sql(const std::string& place, const std::string& statement,
                                       const std::string& user = "Anna") {
    const auto answer = run({"sql", place, statement, "-u", user, "--csv"});
    EXPECT_EQ(answer.code, 0) << statement << ": " << answer.err;
    std::string rows;
    for (const char c : answer.out.substr(std::min(answer.out.find('\n') + 1, answer.out.size())))
      if (c == '\n')
        rows += ';';
      else if (c != '"' && c != '\r')
        rows += c;
    return rows;
  }

  TempFolder folder_;
  std::string users_ = folder_.file("users.kvv");
  std::string first_ = folder_.file("first.kvv");
  std::string second_ = folder_.file("second.kvv");
};

TEST_F(UsersFile, IsSharedByRegisters) {
  EXPECT_EQ(run({"new", "--users", users_}).out, "made " + users_ + " for users and actions\n");
  make(first_, "Anna");
  make(second_, "Bert");
  EXPECT_EQ(sql(first_, "Select UserID, UserName From Users Order By ID"),
            "User0,Anna;User1,Bert;");
  EXPECT_EQ(sql(second_, "Select UserID, UserName From Users Order By ID", "Bert"),
            "User0,Anna;User1,Bert;");
  EXPECT_EQ(sql(first_, "Select UserID From VeskProfiles"), "User0;");
  EXPECT_EQ(sql(second_, "Select UserID From VeskProfiles", "Bert"), "User1;");
  EXPECT_EQ(run({"sql", second_, "Select * From Users", "-u", "Anna"}).code, 1)
      << "known there, and no administrator here";
  // A password is one and the same in all of them.
  ASSERT_EQ(run({.arguments = {"passwd", second_, "Bert", "-u", "Bert"},
                 .environment = {{"KVVESK_PASSWORD", "secret"}, {"KVVESK_NEW_PASSWORD", "other"}}})
                .code,
            0);
  EXPECT_EQ(run({"config", second_, "-u", "Bert"}).code, 1);
  EXPECT_EQ(run({.arguments = {"config", first_, "-u", "Bert"},
                 .environment = {{"KVVESK_PASSWORD", "other"}}})
                .code,
            0);
}

TEST_F(UsersFile, UsersAreAddedAndToldThere) {
  ASSERT_EQ(run({"new", "--users", users_}).code, 0);
  make(first_, "Anna");
  make(second_, "Bert");
  const auto done = [](const Outcome& outcome) {
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
  };
  EXPECT_EQ(done(run({"user", "add", first_, "--name", "Carla", "--no-password", "-u", "Anna"})),
            "added the user User2, Carla\n");
  EXPECT_EQ(run({"user", "add", second_, "--name", "Carla", "--no-password", "-u", "Bert"}).err,
            "error 5 (kvvesk): There is a user 'Carla' already.\n");
  EXPECT_THAT(done(run({"users", second_, "--fields", "*", "--csv", "-u", "Bert"})),
              HasSubstr("\r\n2,\"User2\",\"Carla\","));
  EXPECT_THAT(done(run({"user", "show", second_, "Carla", "-u", "Bert"})),
              HasSubstr("WorkgroupID\nWorkgroup\n"));
  EXPECT_EQ(done(run({"user", "edit", second_, "Carla", "--workgroup", "0", "-u", "Bert"})),
            "changed the user User2\n");
  EXPECT_EQ(sql(second_, "Select UserName From VeskProfiles Order By UserID", "Bert"),
            "Bert;Carla;")
      << "from now on she has rights here too";

  (void)done(run({"document", "add", first_, "--title", "Plan", "--number", "P-1", "-u", "Anna"}));
  (void)sql(first_,
            "Insert Into Routing (DocumentID, UserID, ListOrder) Select DocumentID, 'User2', 1 "
            "From Documents");
  EXPECT_THAT(done(run({"revision", "route", first_, "1", "-u", "Anna"})),
              HasSubstr("told Carla (User2): Your approval is required\n"));
  EXPECT_THAT(done(run({"actions", first_, "--of", "Carla", "-u", "Anna"})), HasSubstr("(1 row)"));
  EXPECT_THAT(done(run({"actions", second_, "--of", "Carla", "-u", "Bert"})), HasSubstr("(0 rows)"))
      << "the other register has not sent it";
  EXPECT_EQ(run({"action", "close", second_, "1", "-u", "Bert"}).err,
            "error 5 (kvvesk): There is no action 1.\n");
  EXPECT_EQ(done(run({"action", "close", first_, "1", "-u", "Anna"})), "closed the action 1\n");

  EXPECT_THAT(done(run({"user", "delete", first_, "Carla", "-u", "Anna"})),
              HasSubstr("deleted the user User2; copies held: 0, documents owned: 0, approval "
                        "lists: 1\n"));
  EXPECT_THAT(done(run({"users", second_, "-u", "Bert"})), HasSubstr("(2 rows)"));
}

TEST_F(UsersFile, WhoIsKnownThereBecomesAdministratorWithHisPassword) {
  ASSERT_EQ(run({"new", "--users", users_}).code, 0);
  make(first_, "Anna");
  const auto refused = run({.arguments = {"new", second_, "-u", "anna", "--users", users_},
                            .environment = {{"KVVESK_PASSWORD", "guessed"}}});
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.err, HasSubstr("with another password"));
  if (!onServer()) {
    EXPECT_FALSE(std::filesystem::exists(second_));
  }
  make(second_, "Anna");
  EXPECT_EQ(sql(second_, "Select UserID From Users"), "User0;");
}

TEST_F(UsersFile, ARegisterThatCannotBeMadeLeavesNobodyInIt) {
  FILES_ONLY();
  ASSERT_EQ(run({"new", "--users", users_}).code, 0);
  make(first_, "Anna");
  EXPECT_EQ(run({"new", first_, "-u", "Bert", "--users", users_}).code, 1);
  EXPECT_EQ(sql(first_, "Select UserName From Users"), "Anna;");
}

TEST_F(UsersFile, MustBeThereToBeUsed) {
  FILES_ONLY();
  const auto missing = run({"new", first_, "-u", "Anna", "--users", users_});
  EXPECT_EQ(missing.code, 1);
  EXPECT_THAT(missing.err, HasSubstr("users.kvv"));
  EXPECT_FALSE(std::filesystem::exists(first_));
  EXPECT_FALSE(std::filesystem::exists(users_));
}

TEST_F(UsersFile, CommandLinesThatMakeNoSense) {
  EXPECT_EQ(run({"new"}).code, 2);
  EXPECT_EQ(run({"new", first_}).code, 2);
  EXPECT_EQ(run({"new", "-u", "Anna", "--users", users_}).code, 2);
}

TEST_F(UsersFile, IsSwitchedOnAndOffByTheConfiguration) {
  FILES_ONLY();
  ASSERT_EQ(run({"new", first_, "-u", "Anna"}).code, 0);
  ASSERT_EQ(run({"new", "--users", users_}).code, 0);
  ASSERT_EQ(run({"new", second_, "-u", "Anna", "--users", users_}).code, 0);
  const auto missing =
      run({"config", first_, "UserDBLocation", folder_.file("missing.kvv"), "-u", "Anna"});
  EXPECT_EQ(missing.code, 1);
  EXPECT_THAT(missing.err, HasSubstr("Unable to connect to external Database :"));
  EXPECT_EQ(sql(first_, "Select ExternalActionSystem, UserDBLocation From VeskConfig"), "false,;");
  EXPECT_EQ(run({"config", first_, "ExternalActionSystem", "True", "-u", "Anna"}).code, 1)
      << "no place is known";
  ASSERT_EQ(run({"config", first_, "UserDBLocation", users_, "-u", "Anna"}).code, 0);
  EXPECT_EQ(sql(first_, "Select ExternalActionSystem, UserDBLocation From VeskConfig"),
            "true," + users_ + ";");
  ASSERT_EQ(run({"config", first_, "externalactionsystem", "False", "-u", "Anna"}).code, 0);
  EXPECT_EQ(sql(first_, "Select ExternalActionSystem, UserDBLocation From VeskConfig"),
            "false," + users_ + ";");
}

TEST_F(UsersFile, TheUsersOfARegisterCanBeTakenOut) {
  if (onServer()) {
    GTEST_SKIP() << "the same from a server is in the copying tests";
  }
  ASSERT_EQ(run({"new", first_, "-u", "Keeper"}).code, 0);
  ASSERT_EQ(
      run({"import", std::string(KVVESK_SOURCE) + "/examples/register", first_, "-u", "Keeper"})
          .code,
      0);
  const auto ask = [&](const std::string& statement) { return sql(first_, statement, "Keeper"); };
  const std::vector<std::string> all = {"Select * From Users Order By ID",
                                        "Select * From Actions Order By ActionID"};
  std::vector<std::string> before;
  before.reserve(all.size());
  for (const auto& statement : all) before.push_back(ask(statement));
  const auto copied = run({"copy", first_, users_, "--users", "-u", "Keeper"});
  ASSERT_EQ(copied.code, 0) << copied.err;
  EXPECT_THAT(copied.out, HasSubstr("both sides are the same"));
  ASSERT_EQ(run({"config", first_, "UserDBLocation", users_, "-u", "Keeper"}).code, 0);
  ASSERT_EQ(run({"sql", first_, "Update Users Set Title = 'outside'", "-u", "Keeper"}).code, 0);
  EXPECT_NE(ask(all[0]), before[0]);
  EXPECT_EQ(ask(all[1]), before[1]);
  ASSERT_EQ(run({"config", first_, "ExternalActionSystem", "False", "-u", "Keeper"}).code, 0);
  for (std::size_t i = 0; i < all.size(); ++i) EXPECT_EQ(ask(all[i]), before[i]);
}

// The administrator has a record in the register itself, and can switch off what is lost.
TEST_F(UsersFile, WhenItIsLostTheConfigurationCanStillBeChanged) {
  FILES_ONLY();
  ASSERT_EQ(run({"new", "--users", users_}).code, 0);
  make(first_, "Anna");
  std::filesystem::rename(users_, folder_.file("away.kvv"));
  const auto refused = run({"documents", first_, "-u", "Anna"});
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.err,
              HasSubstr("The Following Error Occured Opening External User/Action DataSource : "));
  const auto changed =
      run({"config", first_, "UserDBLocation", folder_.file("away.kvv"), "-u", "Anna"});
  EXPECT_EQ(changed.code, 0) << changed.err;
  EXPECT_THAT(changed.err, HasSubstr("the register's own users are taken"));
  EXPECT_EQ(run({"documents", first_, "-u", "Anna"}).code, 0);
  std::filesystem::rename(folder_.file("away.kvv"), users_);
  EXPECT_EQ(run({"config", first_, "ExternalActionSystem", "False", "-u", "Anna"}).code, 0);
  EXPECT_EQ(run({"documents", first_, "-u", "Anna"}).code, 0);
}

TEST_F(UsersFile, ARegisterIsImportedWithItsUsersThere) {
  ASSERT_EQ(run({"new", "--users", users_}).code, 0);
  make(first_, "Keeper");
  const std::string folder = std::string(KVVESK_SOURCE) + "/examples/register";
  const auto imported = run({"import", folder, first_, "-u", "Keeper"});
  ASSERT_EQ(imported.code, 0) << imported.err;
  EXPECT_EQ(sql(first_, "Select Count(*) As N From VeskProfiles", "Keeper"),
            sql(first_, "Select Count(*) As N From Users", "Keeper"));
  EXPECT_NE(sql(first_, "Select Count(*) As N From Actions", "Keeper"), "0;");
  ASSERT_EQ(run({"config", first_, "ExternalActionSystem", "False", "-u", "Keeper"}).code, 0);
  EXPECT_EQ(sql(first_, "Select Count(*) As N From Users", "Keeper"), "1;")
      << "in the register itself there is only who made it";
  EXPECT_EQ(sql(first_, "Select Count(*) As N From Actions", "Keeper"), "0;");
}

}  // namespace
}  // namespace kv::test
