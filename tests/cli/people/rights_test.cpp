// SPDX-License-Identifier: Apache-2.0
// kvvesk rights: what users and owners may do, and the options.

#include <map>
#include <nlohmann/json.hpp>

#include "cli/verb_register.h"
#include "desk/people/settings.h"
#include "desk/refusal.h"

namespace kv {
namespace {

using desk::SettingKind;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

class RightsVerbs : public test::VerbTest {
 protected:
  // What a user is shown, by kind and number.
  [[nodiscard]] std::map<std::string, bool> shown(const std::string& user,
                                                  std::vector<std::string> words = {}) const {
    words.emplace_back("--json");
    const auto outcome = reg_.as(user, "rights show", words);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    std::map<std::string, bool> out;
    const auto answer = json::parse(outcome.out);
    for (const auto& row : answer["rows"])
      out[row[0].get<std::string>() + " " + std::to_string(row[1].get<int>())] = row[3];
    return out;
  }
  [[nodiscard]] std::string rightsOf(const std::string& userId) const {
    return reg_.value("Select Rights From VeskProfiles Where UserID = '" + userId + "'");
  }
};

TEST_F(RightsVerbs, ShowsWhatOneMayDo) {
  reg_.setRights("User902", {1, 133});
  reg_.setOwnerRights({19});
  reg_.execute("Update VeskProfiles Set UserOptions = '0000100' Where UserID = 'User902'");
  reg_.execute("Update VeskConfig Set ProgramOptions = '00000000011'");
  const auto mine = shown("Bert");
  EXPECT_EQ(mine.size(), 68U + 21U + 7U + 11U);
  EXPECT_EQ(mine.count("user right 99") + mine.count("user right 129"), 0U) << "headings";
  std::vector<std::string> on;
  for (const auto& [setting, granted] : mine)
    if (granted) on.push_back(setting);
  EXPECT_THAT(on, ElementsAre("application option 10", "application option 11", "owner right 19",
                              "user option 5", "user right 1", "user right 133"));
  const auto table = reg_.as("Bert", "rights show").out;
  EXPECT_THAT(table, HasSubstr("user right               1  View the document list "));
  EXPECT_THAT(reg_.as("Bert", "rights show", {"--csv"}).out,
              HasSubstr("\"owner right\",19,\"Change the controlled/uncontrolled setting for the "
                        "document\",true\r\n"));
}

TEST_F(RightsVerbs, AdministratorsHoldEveryUserRight) {
  for (const auto& [setting, granted] : shown("Anna")) {
    if (setting.starts_with("user right")) {
      EXPECT_TRUE(granted) << setting;
    }
    if (setting.starts_with("owner right")) {
      EXPECT_FALSE(granted) << setting << ": what is configured";
    }
  }
}

TEST_F(RightsVerbs, ShowsOthersToThoseWhoMayLookAtUsers) {
  EXPECT_EQ(refused("Bert", "rights show", {"--of", "Carla"}),
            test::denied("View the user's detail form"));
  EXPECT_EQ(refused("Bert", "rights show", {"--of", "Nobody"}),
            test::denied("View the user's detail form"));
  EXPECT_EQ(shown("Bert", {"--of", "bert"}), shown("Bert")) << "oneself is no other";
  EXPECT_EQ(shown("Bert", {"--of", "user902"}), shown("Bert"));
  reg_.setRights("User902", {70});
  reg_.setRights("User903", {2});
  EXPECT_TRUE(shown("Bert", {"--of", "Carla"})["user right 2"]);
  EXPECT_FALSE(shown("Bert", {"--of", "Carla"})["user right 70"]);
  EXPECT_TRUE(shown("Bert", {"--of", "Anna"})["user right 114"]) << "an administrator";
  EXPECT_EQ(refused("Bert", "rights show", {"--of", "O'Hara"}),
            "error 5 (kvvesk): There is no user 'O'Hara'.\n");
}

TEST_F(RightsVerbs, GrantsAndRevokesRightsOfAUser) {
  EXPECT_EQ(reg_.done("rights edit", {"--of", "Bert", "--grant", "1,30-32,133"}),
            "Kind        Number  Description                        Granted\n"
            "----------  ------  ---------------------------------  -------\n"
            "user right       1  View the document list             true\n"
            "user right      30  View a document's detail form      true\n"
            "user right      31  Edit the Customizable User Fields  true\n"
            "user right      32  Edit the document title field      true\n"
            "user right     133  Change their own password          true\n"
            "(5 rows)\n");
  const std::string rights = rightsOf("User902");
  EXPECT_EQ(rights.size(), 255U);
  EXPECT_EQ(std::count(rights.begin(), rights.end(), '1'), 5);
  EXPECT_EQ(reg_.as("Bert", "document edit", {"D1", "--title", "x"}).code, 0);
  EXPECT_EQ(json::parse(reg_.done("rights edit", {"--of", "User902", "--revoke", "32", "--grant",
                                                  "2", "--json"}))["rows"],
            json::parse(R"([["user right",2,"Create a new document",true],
                            ["user right",32,"Edit the document title field",false]])"));
  EXPECT_EQ(refused("Bert", "document edit", {"D1", "--title", "y"}),
            test::denied("Edit the document title field"));
}

TEST_F(RightsVerbs, FirstRightsOfOnesOwnBeginWithTheWorkgroups) {
  reg_.execute("Update VeskProfiles Set Rights = Null, GroupID = 5 Where UserID = 'User902'");
  reg_.execute("Insert Into Groups (GroupID, GroupTitle, Rights) Values (5, 'Q', '0110')");
  (void)reg_.done("rights edit", {"--of", "Bert", "--grant", "1", "--revoke", "2"});
  EXPECT_EQ(rightsOf("User902"), "101" + std::string(252, '0'));
  (void)reg_.done("rights edit", {"--of", "Bert", "--inherit"});
  EXPECT_EQ(rightsOf("User902"), "~");
  EXPECT_TRUE(shown("Bert")["user right 2"]) << "the workgroup's again";
}

TEST_F(RightsVerbs, RightsThatCannotBeChangedAreRefused) {
  EXPECT_EQ(refused("Anna", "rights edit", {"--of", "Anna", "--revoke", "3"}),
            "error 5 (kvvesk): The user 'User901' is an administrator, who holds every right.\n");
  reg_.execute("Insert Into Users (UserID, UserName) Values ('User9', 'O''Hara')");
  EXPECT_EQ(refused("Anna", "rights edit", {"--of", "O'Hara", "--grant", "3"}),
            "error 5 (kvvesk): The user 'User9' has no profile to keep rights in.\n");
  EXPECT_FALSE(shown("Anna", {"--of", "O'Hara"})["user right 3"]);
  EXPECT_EQ(refused("Anna", "rights edit", {"--of", "Nobody", "--grant", "3"}),
            "error 5 (kvvesk): There is no user 'Nobody'.\n");
}

TEST_F(RightsVerbs, OwnersRightsAndOptionsAreSwitched) {
  EXPECT_EQ(
      json::parse(reg_.done("rights edit", {"--owner-grant", "1-3,21", "--owner-revoke", "4",
                                            "--option-on", "5", "--option-off", "1", "--app-on",
                                            "11", "--app-off", "10", "--json"}))["rows"]
          .size(),
      9U);
  EXPECT_EQ(reg_.value("Select OwnerRights, ProgramOptions From VeskConfig"),
            "111000000000000000001|00000000001");
  EXPECT_EQ(reg_.value("Select UserOptions From VeskProfiles Where UserID = 'User901'"), "0000100");
  EXPECT_EQ(reg_.as("Bert", "rights edit", {"--option-on", "1-7"}).code, 0);
  EXPECT_EQ(reg_.value("Select UserOptions From VeskProfiles Where UserID = 'User902'"), "1111111");
  EXPECT_EQ(refused("Bert", "rights edit", {"--option-off", "1-7", "--app-on", "1"}),
            test::denied("only administrators may change application options"));
  EXPECT_EQ(refused("Bert", "rights edit", {"--option-off", "1-7", "--owner-grant", "1"}),
            test::denied("only administrators may change rights"));
}

TEST_F(RightsVerbs, TextsThatAreTooShortAreFilledUp) {
  reg_.execute("Update VeskConfig Set OwnerRights = '1', ProgramOptions = Null");
  reg_.execute("Update VeskProfiles Set UserOptions = Null, Rights = '1' Where UserID = 'User902'");
  EXPECT_EQ(reg_.as("Bert", "rights edit", {"--option-on", "7"}).code, 0);
  (void)reg_.done("rights edit",
                  {"--owner-grant", "21", "--app-on", "2", "--of", "Bert", "--grant", "3"});
  EXPECT_EQ(reg_.value("Select OwnerRights, ProgramOptions From VeskConfig"),
            "100000000000000000001|01000000000");
  EXPECT_EQ(reg_.value("Select UserOptions From VeskProfiles Where UserID = 'User902'"), "0000001");
  EXPECT_EQ(rightsOf("User902"), "101" + std::string(252, '0'));
}

TEST_F(RightsVerbs, WrongUsageEndsWithTwo) {
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {"--grant", "1"},
      {"--of", "Bert"},
      {"--of", "Bert", "--app-on", "1"},
      {"--of", "Bert", "--grant", ""},
      {"--of", "Bert", "--grant", "6"},
      {"--of", "Bert", "--grant", "99"},
      {"--of", "Bert", "--grant", "134"},
      {"--of", "Bert", "--grant", "0"},
      {"--of", "Bert", "--grant", "1,"},
      {"--of", "Bert", "--grant", "3-1"},
      {"--of", "Bert", "--grant", "all"},
      {"--of", "Bert", "--grant", "1-5", "--revoke", "3"},
      {"--of", "Bert", "--grant", "1", "--inherit"},
      {"--owner-grant", "22"},
      {"--option-on", "8"},
      {"--app-on", "12"}};
  for (const auto& words : wrong)
    EXPECT_NE(refused("Anna", "rights edit", words, 2), "") << testing::PrintToString(words);
  EXPECT_NE(refused("Anna", "rights", {}, 2), "");
}

TEST(Settings, NumbersAreReadWithRanges) {
  EXPECT_THAT(desk::readSettings(SettingKind::UserRight, "1, 3 , 98-101"),
              ElementsAre(1, 3, 100, 101));
  EXPECT_THAT(desk::readSettings(SettingKind::OwnerRight, "20-99"), ElementsAre(20, 21));
  EXPECT_THROW((void)desk::readSettings(SettingKind::UserRight, "6-9"), desk::WrongInput);
  EXPECT_THROW((void)desk::readSettings(SettingKind::UserRight, "99999"), desk::WrongInput);
}

TEST(Settings, EverySettingHasAText) {
  EXPECT_EQ(desk::settingsOf(SettingKind::UserRight).size(), 68U);
  EXPECT_EQ(desk::settingsOf(SettingKind::OwnerRight).size(), 21U);
  EXPECT_EQ(desk::settingsOf(SettingKind::UserOption).size(), 7U);
  EXPECT_EQ(desk::settingsOf(SettingKind::ApplicationOption).size(), 11U);
  EXPECT_EQ(desk::settingText(SettingKind::UserRight, 134), "") << "not the end mark of lists";
}

}  // namespace
}  // namespace kv
