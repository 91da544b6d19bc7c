// SPDX-License-Identifier: Apache-2.0
// kvvesk actions and action.

#include <nlohmann/json.hpp>

#include "cli/verb_register.h"
#include "common/clock.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;
using Rows = std::vector<std::string>;

class ActionVerbs : public test::VerbTest {
 protected:
  ActionVerbs() {
    reg_.execute("Update VeskConfig Set DBID = 'DB1'");
    add(11, "User902", "Approve it", "DB1");
    add(12, "User902", "Read it", "DB1");
    add(13, "User903", "Print it", "DB1");
    add(14, "User902", "Of another register", "DB2");
    reg_.execute(
        "Update Actions Set DateOpened = #3/9/2001#, DateDue = #3/14/2001#, Originator = 'Anna', "
        "Reference = 'D1', Description = 'All of it' Where ActionID = 11");
    reg_.execute(
        "Update Actions Set DateCompleted = #3/10/2001#, DateClosed = #3/11/2001# Where ActionID = "
        "12");
  }
  void add(int number, const std::string& user, const std::string& subject,
           const std::string& sender) const {
    reg_.execute("Insert Into Actions (ActionID, AssigneeID, Subject, ReferenceID) Values (" +
                 std::to_string(number) + ", '" + user + "', '" + subject + "', '" + sender + "')");
  }
  [[nodiscard]] std::string dates(int number) const {
    return reg_.value("Select DateCompleted, DateClosed From Actions Where ActionID = " +
                      std::to_string(number));
  }
};

TEST_F(ActionVerbs, OnesOwnOpenActionsAreListed) {
  EXPECT_EQ(reg_.as("Bert", "actions").out,
            "ActionID  Subject     Originator  DateOpened  DateDue     DateCompleted  DateClosed  "
            "Reference  Description\n"
            "--------  ----------  ----------  ----------  ----------  -------------  ----------  "
            "---------  -----------\n"
            "      11  Approve it  Anna        2001-03-09  2001-03-14                             "
            "D1         All of it\n"
            "(1 row)\n");
  EXPECT_EQ(reg_.as("Bert", "actions", {"--all", "--csv"}).out,
            "\"ActionID\",\"Subject\",\"Originator\",\"DateOpened\",\"DateDue\",\"DateCompleted\","
            "\"DateClosed\",\"Reference\",\"Description\"\r\n"
            "11,\"Approve it\",\"Anna\",2001-03-09,2001-03-14,,,\"D1\",\"All of it\"\r\n"
            "12,\"Read it\",,,,2001-03-10,2001-03-11,,\r\n");
  EXPECT_EQ(json::parse(reg_.done("actions", {"--json"}))["rows"], json::array());
}

TEST_F(ActionVerbs, ThoseOfOthersAreListedForWhoMayLookAtUsers) {
  EXPECT_EQ(refused("Bert", "actions", {"--of", "Carla"}),
            test::denied("View the user's detail form"));
  for (const char* self : {"Bert", "bert", "User902"})
    EXPECT_THAT(reg_.as("Bert", "actions", {"--of", self}).out, HasSubstr("Approve it")) << self;
  EXPECT_THAT(reg_.done("actions", {"--of", "Carla"}), HasSubstr("Print it"));
  EXPECT_EQ(refused("Anna", "actions", {"--of", "Nobody"}),
            "error 5 (kvvesk): There is no user 'Nobody'.\n");
}

TEST_F(ActionVerbs, AnActionIsCompletedAndThenClosed) {
  const auto completed = reg_.as("Bert", "action complete", {"11", "--on", "3/12/2001"});
  EXPECT_EQ(completed.out, "completed the action 11\n") << completed.err;
  EXPECT_EQ(dates(11), "3/12/2001|~");
  EXPECT_THAT(reg_.as("Bert", "actions").out, HasSubstr("Approve it")) << "it is still open";
  const auto closed = reg_.as("Bert", "action close", {"11", "--on", "2001-03-13", "--json"});
  EXPECT_EQ(json::parse(closed.out),
            json::parse(R"({"columns":["ActionID","DateCompleted","DateClosed"],
                            "rows":[[11,"2001-03-12","2001-03-13"]]})"));
  EXPECT_EQ(dates(11), "3/12/2001|3/13/2001");
  EXPECT_THAT(reg_.as("Bert", "actions").out, HasSubstr("(0 rows)"));
}

TEST_F(ActionVerbs, ClosingCompletesWhatIsNotCompleted) {
  EXPECT_EQ(reg_.as("Bert", "action close", {"11"}).out, "closed the action 11\n");
  EXPECT_EQ(dates(11), dateText(today()) + "|" + dateText(today()));
  EXPECT_EQ(reg_.done("action complete", {"13", "--on", "2001-03-12", "--csv"}),
            "\"ActionID\",\"DateCompleted\",\"DateClosed\"\r\n13,2001-03-12,\r\n")
      << "Anna is an administrator";
}

TEST_F(ActionVerbs, WhatIsSettledStaysAsItIs) {
  for (const char* verb : {"action complete", "action close"})
    EXPECT_EQ(refused("Bert", verb, {"12"}),
              "error 5 (kvvesk): The action 12 was closed on 2001-03-11.\n");
  (void)reg_.as("Bert", "action complete", {"11", "--on", "2001-03-12"});
  EXPECT_EQ(refused("Bert", "action complete", {"11"}),
            "error 5 (kvvesk): The action 11 was completed on 2001-03-12.\n");
}

TEST_F(ActionVerbs, OthersAreNotSettled) {
  for (const char* verb : {"action complete", "action close"}) {
    EXPECT_EQ(refused("Bert", verb, {"13"}),
              test::denied("only administrators may settle the actions of others"));
    for (const char* none : {"99", "0", "14"})
      EXPECT_EQ(refused("Anna", verb, {none}),
                "error 5 (kvvesk): There is no action " + std::string(none) + ".\n")
          << "14 is another register's";
  }
}

TEST_F(ActionVerbs, WrongUsageEndsWithTwo) {
  for (const char* verb : {"action complete", "action close"}) {
    EXPECT_THAT(refused("Bert", verb, {}, 2), HasSubstr("action is required"));
    for (const char* word : {"first", "1 or 2", "99999999999", "1e3", "1;2", "0x1"})
      EXPECT_THAT(refused("Bert", verb, {word}, 2), HasSubstr("is not a number")) << word;
    for (const char* day : {"soon", "2024-02-30", "", "31.12.2024"})
      EXPECT_THAT(refused("Bert", verb, {"11", "--on", day}, 2),
                  HasSubstr("is not a date such as 2024-03-09"))
          << day;
  }
  EXPECT_NE(refused("Bert", "action", {}, 2), "");
  EXPECT_NE(refused("Bert", "actions", {"--of"}, 2), "");
}

}  // namespace
}  // namespace kv
