// SPDX-License-Identifier: Apache-2.0
// kvvesk users and user.

#include <nlohmann/json.hpp>

#include "cli/verb_register.h"
#include "support/engine_answers.h"
#include "support/register_dump.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Rows = std::vector<std::string>;

class UserVerbs : public test::VerbTest {
 protected:
  // As VerbTest::refused, with a new password at hand.
  [[nodiscard]] test::Outcome withNewPassword(const std::string& user, const std::string& verb,
                                              const Rows& words,
                                              const std::string& password = "neu") const {
    std::istringstream parts(verb);
    Rows arguments;
    for (std::string part; parts >> part;) arguments.push_back(part);
    arguments.insert(arguments.end(), {"-u", user, reg_.path()});
    arguments.insert(arguments.end(), words.begin(), words.end());
    return test::run({.arguments = arguments, .environment = {{"KVVESK_NEW_PASSWORD", password}}});
  }
  [[nodiscard]] bool comesIn(const std::string& user, const std::string& password) const {
    return test::run({.arguments = {"config", reg_.path(), "-u", user},
                      .environment = {{"KVVESK_PASSWORD", password}}})
               .code == 0;
  }
  [[nodiscard]] std::string row(const std::string& id) const {
    return reg_.value("Select UserName, Alias, Title, Email From Users Where UserID = '" + id +
                      "'");
  }
  [[nodiscard]] std::string profile(const std::string& id) const {
    return reg_.value("Select UserName, GroupID From VeskProfiles Where UserID = '" + id + "'");
  }
};

TEST_F(UserVerbs, UsersAreListedByName) {
  reg_.execute("Update Users Set Alias = 'B', Title = 'Lead' Where UserID = 'User902'");
  EXPECT_EQ(reg_.done("users"),
            "UserID   UserName  Alias  Title  Email\n"
            "-------  --------  -----  -----  -----\n"
            "User901  Anna\n"
            "User902  Bert      B      Lead\n"
            "User903  Carla\n"
            "(3 rows)\n");
  EXPECT_EQ(reg_.done("users", {"--csv", "--fields", "username", "--sort", "UserID desc"}),
            "\"UserName\"\r\n\"Carla\"\r\n\"Bert\"\r\n\"Anna\"\r\n");
  const auto all = json::parse(reg_.done("users", {"--json", "--fields", "*"}));
  EXPECT_EQ(all["columns"].size(), 18U);
  EXPECT_THAT(all["columns"].dump(), Not(HasSubstr("assword")));
  EXPECT_EQ(refused("Anna", "users", {"--fields", "Colour"}),
            "error 3265 (kvData): Item cannot be found in the collection corresponding to the "
            "requested name or ordinal. Colour\n");
}

TEST_F(UserVerbs, PasswordsAreListedForNobody) {
  const std::string no = test::denied("passwords are not listed");
  for (const char* list : {"Password", "password", "UserID, PASSWORD"})
    EXPECT_EQ(refused("Anna", "users", {"--fields", list}), no);
  EXPECT_EQ(refused("Anna", "users", {"--sort", "Password desc"}), no);
}

TEST_F(UserVerbs, UsersAreListedByASavedQuery) {
  reg_.execute(
      "Insert Into UserQuerys (QueryID, QueryName, UserName, UserNameOperator) Values (4, 'With "
      "r', "
      "'r', 1)");
  const std::string found = "\"UserName\"\r\n\"Bert\"\r\n\"Carla\"\r\n";
  EXPECT_EQ(reg_.done("users", {"--query", "with r", "--csv", "--fields", "UserName"}), found);
  EXPECT_EQ(reg_.done("users", {"--query", "4", "--csv", "--fields", "UserName"}), found);
  EXPECT_EQ(refused("Anna", "users", {"--query", "Plans"}),
            "error 5 (kvvesk): There is no user query 'Plans'.\n")
      << "that is one of documents";
  reg_.execute("Insert Into UserQuerys (QueryID, QueryName) Values (5, 'With r')");
  EXPECT_EQ(refused("Anna", "users", {"--query", "With r"}),
            "error 5 (kvvesk): Several user queries have the name 'With r'; give the query's "
            "number.\n");
}

TEST_F(UserVerbs, ShowsAUserAndNoPassword) {
  reg_.execute("Update Users Set Email = 'b@x', User00 = 'left' Where UserID = 'User902'");
  reg_.execute("Update UserConfig Set User00 = 'Hand'");
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (5, 'Quality')");
  reg_.execute("Update VeskProfiles Set GroupID = 5 Where UserID = 'User902'");
  const std::string shown = reg_.done("user show", {"bert"});
  EXPECT_THAT(shown, AllOf(HasSubstr("UserID         User902\n"), HasSubstr("Email          b@x\n"),
                           HasSubstr("HasPassword    true\n"), HasSubstr("User00 (Hand)  left\n"),
                           HasSubstr("WorkgroupID    5\nWorkgroup      Quality\n"),
                           Not(HasSubstr("argon"))));
  reg_.execute("Update Users Set [Password] = Null Where UserID = 'User902'");
  reg_.execute("Delete * From VeskProfiles Where UserID = 'User902'");
  const auto fields = json::parse(reg_.done("user show", {"User902", "--json"}));
  EXPECT_EQ(fields["rows"][0][4], false);
  EXPECT_EQ(fields["columns"][4], "HasPassword");
  EXPECT_EQ(fields["rows"][0].back(), nullptr);
}

TEST_F(UserVerbs, AddsAUserWhoCanLogInAndIsListedByName) {
  const auto added = withNewPassword(
      "Anna", "user add",
      {"--name", "D'Arcy", "--alias", "d", "--title", "Lead", "--email", "d@x", "--json"});
  EXPECT_EQ(added.code, 0) << added.err;
  EXPECT_EQ(json::parse(added.out), json::parse(R"({"columns":["UserID"],"rows":[["User904"]]})"));
  EXPECT_EQ(row("User904"), "D'Arcy|d|Lead|d@x");
  EXPECT_EQ(profile("User904"), "D'Arcy|0");
  EXPECT_THAT(reg_.value("Select [Password] From Users Where UserID = 'User904'"),
              StartsWith("$argon2id$"))
      << "never in clear text";
  EXPECT_TRUE(comesIn("D'Arcy", "neu"));
  EXPECT_FALSE(comesIn("D'Arcy", "secret"));
  EXPECT_EQ(reg_.done("user add", {"--name", "Emil", "--no-password"}),
            "added the user User905, Emil\n");
  EXPECT_EQ(reg_.value("Select [Password] From Users Where UserID = 'User905'"), "~");
  EXPECT_FALSE(comesIn("Emil", ""));
}

TEST_F(UserVerbs, APasswordComesFromTheEnvironmentOrTheTerminal) {
  EXPECT_EQ(refused("Anna", "user add", {"--name", "Emil"}, 2),
            "kvvesk: no password: set KVVESK_NEW_PASSWORD or run this at a terminal\n");
  EXPECT_NE(refused("Anna", "user add", {"--name", "Emil", "--password", "x"}, 2), "");
  const auto before = reg_.everything();
  EXPECT_EQ(withNewPassword("Anna", "user add", {"--name", "Emil"}, "").err,
            "kvvesk: an empty password would let nobody in\n");
  EXPECT_EQ(reg_.everything(), before);
}

TEST_F(UserVerbs, NamesStayUnique) {
  for (const char* name : {"Bert", "BERT", "user903"})
    EXPECT_EQ(refused("Anna", "user add", {"--name", name, "--no-password"}),
              "error 5 (kvvesk): There is a user '" + std::string(name) + "' already.\n");
  EXPECT_EQ(refused("Anna", "user edit", {"Carla", "--name", "bert"}),
            "error 5 (kvvesk): There is a user 'bert' already.\n");
  EXPECT_EQ(reg_.done("user edit", {"Carla", "--name", "CARLA"}), "changed the user User903\n")
      << "her own name in other letters";
  reg_.execute("Insert Into Users (ID, UserID, UserName) Values (904, 'User904', 'Bert')");
  const std::string several =
      "error 5 (kvvesk): Several users have the name 'Bert'; give the user's ID.\n";
  EXPECT_EQ(refused("Anna", "user show", {"Bert"}), several);
  EXPECT_EQ(refused("Anna", "user edit", {"Bert", "--alias", "x"}), several);
  EXPECT_EQ(refused("Anna", "user passwd", {"Bert"}), several);
  EXPECT_EQ(refused("Anna", "user delete", {"Bert"}), several);
  EXPECT_EQ(reg_.done("user edit", {"User904", "--alias", "x"}), "changed the user User904\n");
}

TEST_F(UserVerbs, AnIdentifierThatIsTakenIsLetPass) {
  reg_.execute("Insert Into Users (ID, UserID, UserName) Values (100, 'User904', 'Elsewhere')");
  reg_.execute("Insert Into VeskProfiles (UserID, Administrator) Values ('User904', True)");
  EXPECT_THAT(reg_.done("user add", {"--name", "Emil", "--no-password"}),
              StartsWith("added the user User90"));
  EXPECT_EQ(reg_.value("Select Count(*) From Users Where UserID = 'User904'"), "1");
  EXPECT_EQ(reg_.value("Select Count(*) From VeskProfiles Where UserID = 'User904'"), "1");
  EXPECT_EQ(reg_.value("Select Count(*) From Users Where UserName = 'Emil'"), "1");
  reg_.execute("Insert Into Users (ID, UserID, UserName) Values (101, 'user904', 'Twice')");
  for (const char* verb : {"user show", "user delete", "user passwd"})
    EXPECT_EQ(refused("Anna", verb, {"User904"}),
              "error 5 (kvvesk): Several users have the identifier 'User904'.\n");
}

TEST_F(UserVerbs, ChangesWhatIsGivenAndNothingElse) {
  const std::string hash = reg_.value("Select [Password] From Users Where UserID = 'User902'");
  EXPECT_EQ(reg_.done("user edit", {"Bert", "--name", "Berta", "--alias", "b", "--title", "Head",
                                    "--email", "b@x"}),
            "changed the user User902\n");
  EXPECT_EQ(row("User902"), "Berta|b|Head|b@x");
  EXPECT_EQ(profile("User902"), "Berta|0") << "lists show the name from there";
  EXPECT_EQ(json::parse(reg_.done("user edit", {"User902", "--title", "", "--json"})),
            json::parse(R"({"columns":["UserID"],"rows":[["User902"]]})"));
  EXPECT_EQ(row("User902"), "Berta|b|~|b@x");
  EXPECT_EQ(reg_.value("Select [Password] From Users Where UserID = 'User902'"), hash);
  EXPECT_TRUE(comesIn("Berta", "secret"));
  EXPECT_THAT(refused("Anna", "user edit", {"Berta", "--alias", std::string(51, 'x')}),
              StartsWith("error 3421"));
}

TEST_F(UserVerbs, AllRightsOfAChangeAreTestedFirst) {
  reg_.setRights("User902", {71, 72, 74});
  EXPECT_EQ(refused("Bert", "user edit",
                    {"Carla", "--name", "C", "--alias", "c", "--title", "t", "--email", "e"}),
            test::denied("Edit the User E-mail field"));
  EXPECT_EQ(refused("Bert", "user edit", {"Nobody", "--email", "e"}),
            test::denied("Edit the User E-mail field"))
      << "who may not learns nothing";
}

TEST_F(UserVerbs, WorkgroupsAreGivenByNumberOrTitle) {
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (5, 'Quality')");
  (void)reg_.done("user edit", {"Bert", "--workgroup", "quality"});
  EXPECT_EQ(profile("User902"), "Bert|5");
  (void)reg_.done("user edit", {"Bert", "--workgroup", "View Only Users"});
  EXPECT_EQ(profile("User902"), "Bert|0");
  (void)reg_.done("user add", {"--name", "Emil", "--no-password", "--workgroup", "5"});
  EXPECT_EQ(profile("User904"), "Emil|5");
  for (const char* none : {"6", "Nobody's", "-2"})
    EXPECT_EQ(refused("Anna", "user edit", {"Bert", "--workgroup", none}),
              "error 5 (kvvesk): There is no workgroup '" + std::string(none) + "'.\n");
  EXPECT_EQ(refused("Anna", "user add", {"--name", "Fritz", "--no-password", "--workgroup", "6"}),
            "error 5 (kvvesk): There is no workgroup '6'.\n");
  reg_.execute("Insert Into Groups (GroupID, GroupTitle) Values (6, 'Quality')");
  EXPECT_EQ(refused("Anna", "user edit", {"Bert", "--workgroup", "Quality"}),
            "error 5 (kvvesk): Several workgroups have the title 'Quality'; give the workgroup's "
            "number.\n");
  reg_.execute("Delete * From VeskProfiles Where UserID = 'User903'");
  (void)reg_.done("user edit", {"Carla", "--workgroup", "5"});
  EXPECT_EQ(profile("User903"), "Carla|5") << "she has a profile now";
}

TEST_F(UserVerbs, OnlyAdministratorsMakeUnmakeOrTakeOverAdministrators) {
  reg_.setRights("User902", {21, 22, 52, 71, 73, 133});
  const std::string no = test::denied("only administrators may change who is one");
  EXPECT_EQ(refused("Bert", "user edit", {"Bert", "--workgroup", "-1"}), no);
  EXPECT_EQ(refused("Bert", "user edit", {"Bert", "--workgroup", "super users"}), no);
  EXPECT_EQ(refused("Bert", "user edit", {"Anna", "--workgroup", "0"}), no);
  EXPECT_EQ(refused("Bert", "user add", {"--name", "E", "--no-password", "--workgroup", "-1"}), no);
  EXPECT_EQ(refused("Bert", "user delete", {"Anna"}),
            test::denied("only administrators may delete an administrator"));
  for (const char* verb : {"user passwd", "passwd"}) {
    EXPECT_EQ(refused("Bert", verb, {"Anna"}),
              test::denied("only administrators may change the password of an administrator"));
    EXPECT_EQ(withNewPassword("Bert", verb, {"Carla"}, "secret").code, 0);
  }
  (void)reg_.done("user edit", {"Bert", "--workgroup", "-1"});
  EXPECT_EQ(reg_.as("Bert", "user edit", {"Carla", "--workgroup", "-1"}).code, 0)
      << "he is one now";
}

TEST_F(UserVerbs, AWorkgroupEndsBeingAnAdministratorHoweverOneBecameIt) {
  const auto administrator = [&] {
    return reg_.value("Select Administrator From VeskProfiles Where UserID = 'User901'");
  };
  EXPECT_EQ(refused("Anna", "user edit", {"Anna", "--workgroup", "0"}),
            "error 5 (kvvesk): This would leave the register without an administrator.\n")
      << "the mark in her profile is what makes her one";
  (void)reg_.done("user edit", {"Bert", "--workgroup", "-1"});
  (void)reg_.done("user edit", {"Anna", "--workgroup", "-1"});
  EXPECT_EQ(administrator(), "True") << "she is one all the more";
  (void)reg_.done("user edit", {"Anna", "--workgroup", "0"});
  EXPECT_EQ(administrator(), "False");
  EXPECT_EQ(refused("Anna", "user edit", {"Anna", "--workgroup", "-1"}),
            test::denied("Change which workgroup a user is in"));
}

TEST_F(UserVerbs, AnAdministratorIsLeft) {
  const std::string no =
      "error 5 (kvvesk): This would leave the register without an administrator.\n";
  EXPECT_EQ(refused("Anna", "user delete", {"Anna"}), no);
  reg_.execute(
      "Update VeskProfiles Set Administrator = False, GroupID = -1 Where UserID = 'User901'");
  EXPECT_EQ(refused("Anna", "user delete", {"Anna"}), no);
  EXPECT_EQ(refused("Anna", "user edit", {"Anna", "--workgroup", "0"}), no);
  (void)reg_.done("user edit", {"Bert", "--workgroup", "-1"});
  (void)reg_.done("user edit", {"Anna", "--workgroup", "0"});
  EXPECT_EQ(refused("Anna", "user delete", {"Bert"}), test::denied("Delete a user"));
}

TEST_F(UserVerbs, PasswdIsTheSameHereAndByItself) {
  EXPECT_EQ(withNewPassword("Anna", "user passwd", {"bert"}).out,
            "changed the password of User902\n");
  EXPECT_TRUE(comesIn("Bert", "neu"));
  EXPECT_FALSE(comesIn("Bert", "secret"));
  EXPECT_EQ(json::parse(withNewPassword("Anna", "passwd", {"User902", "--json"}, "x").out),
            json::parse(R"({"columns":["UserID"],"rows":[["User902"]]})"));
  EXPECT_TRUE(comesIn("Bert", "x"));
  EXPECT_EQ(refused("Anna", "user passwd", {"Bert"}, 2),
            "kvvesk: no password: set KVVESK_NEW_PASSWORD or run this at a terminal\n");
}

TEST_F(UserVerbs, DeletesAUserAndSaysWhatWentWithHim) {
  reg_.own("D1", "User902");
  reg_.own("D2", "User902");
  reg_.execute("Insert Into Routing (DocumentID, UserID) Values ('D1', 'User902')");
  for (int copy = 0; copy < 3; ++copy)
    reg_.execute("Insert Into Personals (DocumentID, UserID) Values ('D1', 'User902')");
  const test::RawRegister raw(reg_.path());
  raw.refuse("DELETE", "Personals");
  EXPECT_EQ(refused("Anna", "user delete", {"Bert"}),
            "error -2147467259 (kvvesk): The user 'User902' could not be deleted.\n")
      << "nothing of it is done then";
  raw.allowAgain("Personals");
  EXPECT_EQ(reg_.done("user delete", {"Bert"}),
            "deleted the user User902; copies held: 3, documents owned: 2, approval lists: 1\n");
  for (const char* table : {"Users", "VeskProfiles", "Owners", "Routing", "Personals"})
    EXPECT_EQ(
        reg_.value(std::string("Select Count(*) From ") + table + " Where UserID = 'User902'"), "0")
        << table;
  EXPECT_EQ(json::parse(reg_.done("user delete", {"User903", "--json"})),
            json::parse(R"({"columns":["UserID","Copies","Owned","ApprovalLists"],
                            "rows":[["User903",0,0,0]]})"));
}

TEST_F(UserVerbs, WhoIsNotThereIsNotFound) {
  const std::string none = "error 5 (kvvesk): There is no user 'O'Hara'.\n";
  EXPECT_EQ(refused("Anna", "user show", {"O'Hara"}), none);
  EXPECT_EQ(refused("Anna", "user edit", {"O'Hara", "--alias", "x"}), none);
  EXPECT_EQ(refused("Anna", "user passwd", {"O'Hara"}), none);
  EXPECT_EQ(refused("Anna", "user delete", {"O'Hara"}), none);
}

TEST_F(UserVerbs, WrongUsageEndsWithTwo) {
  const std::vector<std::pair<std::string, Rows>> wrong = {
      {"user", {}},
      {"user show", {}},
      {"user show", {"Bert", "Carla"}},
      {"user add", {"--no-password"}},
      {"user add", {"--name", "", "--no-password"}},
      {"user add", {"--name", " ", "--no-password"}},
      {"user add", {"--name", "Emil", "--no-password", "--workgroup", ""}},
      {"user add", {"Emil", "--no-password"}},
      {"user edit", {"Bert"}},
      {"user edit", {"Bert", "--name", ""}},
      {"user edit", {"Bert", "--password", "x"}},
      {"user delete", {}},
      {"users", {"Bert"}},
      {"users", {"--csv", "--json"}}};
  for (const auto& [verb, words] : wrong)
    EXPECT_NE(refused("Anna", verb, words, 2), "") << verb << ' ' << testing::PrintToString(words);
}

}  // namespace
}  // namespace kv
