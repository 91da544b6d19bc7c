// SPDX-License-Identifier: Apache-2.0
// kvvesk revision route, approve, reject, set-current and status: a revision's way from its
// preparation into force, and what each person is told on the way.

#include <nlohmann/json.hpp>

#include "cli/verb_register.h"
#include "common/clock.h"
#include "support/register_dump.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;
using Rows = std::vector<std::string>;

// Options of the register: who is told of what, and whether approval goes in order.
constexpr const char* kTellNobody = "00000000000";
constexpr const char* kTellAll = "00010111000";
constexpr const char* kTellAllInOrder = "00010111010";

const char* const kGone = "error 5 (kvvesk): There is no revision ";

// Bert prepares the revision 902 of D1; he and Carla, in this order, approve D1. Nobody owns it.
class RevisionLifeVerbs : public test::VerbTest {
 protected:
  RevisionLifeVerbs() {
    addApprover("D1", "User902", 1);
    addApprover("D1", "User903", 2);
    reg_.execute("Update VeskConfig Set DBID = 'DB1', [Revision] = 'Issue', [Document] = 'Sheet'");
    options(kTellAllInOrder);
  }
  void options(const std::string& text) const {
    reg_.execute("Update VeskConfig Set ProgramOptions = '" + text + "'");
  }
  void addApprover(const std::string& document, const std::string& user, int place) const {
    reg_.execute("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('" + document +
                 "', '" + user + "', " + std::to_string(place) + ")");
  }
  void setStatus(int revision, int status) const {
    reg_.execute("Update Revisions Set RevisionStatus = " + std::to_string(status) +
                 " Where RevisionID = " + std::to_string(revision));
  }
  // Runs a verb as somebody, expecting that it is done; what it printed.
  [[nodiscard]] std::string did(const std::string& user, const std::string& verb,
                                const Rows& words) const {
    const auto outcome = reg_.as(user, verb, words);
    EXPECT_EQ(outcome.code, 0) << user << ' ' << verb << ' ' << outcome.err;
    EXPECT_EQ(outcome.err, "") << user << ' ' << verb;
    return outcome.out;
  }
  [[nodiscard]] std::string states(int revision) const {
    return reg_.value("Select RevisionStatus, RoutingStatus From Revisions Where RevisionID = " +
                      std::to_string(revision));
  }
  [[nodiscard]] Rows approvals(int revision) const {
    return reg_.rows(
        "Select UserID, ApprovalStatus, ApprovedBy, Notes From ApprovalRouting Where RevID = " +
        std::to_string(revision) + " Order By ListOrder");
  }
  // What somebody has been asked to do so far.
  [[nodiscard]] Rows toldTo(const std::string& user) const {
    const auto rows = json::parse(did(user, "actions", {"--all", "--json"}))["rows"];
    Rows out;
    for (const auto& row : rows)
      out.push_back(row[1].get<std::string>() + "|" + row[8].get<std::string>());
    return out;
  }
};

TEST_F(RevisionLifeVerbs, AWholeLife) {
  reg_.own("D1", "User903");
  EXPECT_EQ(did("Carla", "revision add", {"P-1", "--level", "C", "--responsible", "Bert"}),
            "added the revision 905 to D1\n");
  EXPECT_EQ(did("Carla", "revision route", {"905"}),
            "routed the revision 905 of D1: Awaiting Approval from Bert\n"
            "told Bert (User902): Your approval is required\n");
  EXPECT_EQ(states(905), "3|1");

  EXPECT_EQ(refused("Carla", "revision approve", {"905"}),
            "error 5 (kvvesk): It is not the turn of Carla to decide about revision 905: Awaiting "
            "Approval from Bert\n");
  EXPECT_EQ(did("Bert", "revision approve", {"905", "--notes", "It's well"}),
            "approved the revision 905 of D1: Awaiting Approval from Carla\n"
            "told Carla (User903): Your Approval is required.\n");
  EXPECT_EQ(approvals(905), (Rows{"User902|1|User902|It's well", "User903|0|~|~"}));
  EXPECT_EQ(reg_.value("Select DateApproved From ApprovalRouting Where UserID = 'User902'"),
            dateText(today()));

  EXPECT_EQ(did("Carla", "revision reject", {"905", "--notes", "Too long"}),
            "rejected the revision 905 of D1: Rejected\n"
            "told Bert (User902): A revision has been rejected.\n");
  EXPECT_EQ(states(905), "5|2");
  EXPECT_EQ(approvals(905)[1], "User903|2|User903|Too long");

  EXPECT_EQ(did("Carla", "revision route", {"905"}),
            "routed the revision 905 of D1: Awaiting Approval from Bert\n"
            "told Bert (User902): Your approval is required\n");
  EXPECT_EQ(did("Bert", "revision approve", {"905"}),
            "approved the revision 905 of D1: Awaiting Approval from Carla\n"
            "told Carla (User903): Your Approval is required.\n");
  EXPECT_EQ(did("Carla", "revision approve", {"905", "--notes", ""}),
            "approved the revision 905 of D1: Approved\ntold nobody\n");
  EXPECT_EQ(approvals(905), (Rows{"User902|1|User902|It's well", "User903|1|User903|~"}))
      << "an empty remark takes the old one away, none leaves it";

  reg_.execute(
      "Insert Into Personals (UserID, DocumentID, HardCopy) Values ('User902', 'D1', True)");
  reg_.execute(
      "Insert Into Personals (UserID, DocumentID, HardCopy) Values ('User903', 'D1', False)");
  reg_.setRights("User903", {91});
  const std::string put = did("Carla", "revision set-current", {"905"});
  EXPECT_EQ(put,
            "put the revision 905 of D1 in force instead of 901: Current Issue\n"
            "told Bert (User902): Plan's end has been updated.\n"
            "told Carla (User903): Plan's end has been updated.\n");
  EXPECT_EQ(reg_.rows("Select RevisionID, RevisionStatus From Revisions Where DocumentID = 'D1'"),
            (Rows{"901|0", "902|2", "905|1"}));
  EXPECT_EQ(reg_.value("Select RevisionLevel, EffectiveDate, CurrentRevID From Documents Where "
                       "DocumentID = 'D1'"),
            "C|" + dateText(today()) + "|905");

  const std::string required =
      "Your approval is required|Issue C of the Plan's end Sheet requires "
      "your approval.";
  const std::string next =
      "Your Approval is required.|Your Approval is required for Issue C of "
      "the Plan's end Sheet";
  const std::string updated =
      "Plan's end has been updated.|Issue C of Sheet Plan's end has been released.";
  EXPECT_EQ(toldTo("Bert"),
            (Rows{required,
                  "A revision has been rejected.|Issue C of Sheet Plan's end has been rejected.",
                  required, updated}));
  EXPECT_EQ(toldTo("Carla"), (Rows{next, next, updated}));
  EXPECT_EQ(toldTo("Anna"), Rows{});
}

TEST_F(RevisionLifeVerbs, ScriptsAreToldTheSame) {
  const auto routed = json::parse(reg_.done("revision route", {"902", "--json"}));
  EXPECT_EQ(routed["columns"], json::parse(R"(["RevisionID","DocumentID","Status",
                                               "RevisionStatus","RoutingStatus"])"));
  EXPECT_EQ(routed["rows"], json::parse(R"([[902,"D1","Awaiting Approval from Bert",3,1]])"));
  EXPECT_EQ(
      routed["actions"]["columns"],
      json::parse(R"(["ActionID","AssigneeID","Assignee","Subject","Description","DateDue"])"));
  const std::string due = isoText(today().plusDays(5));
  const auto& sent = routed["actions"]["rows"];
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0][0].dump(), reg_.value("Select ActionID From Actions"));
  EXPECT_EQ(sent[0][1], "User902");
  EXPECT_EQ(sent[0][2], "Bert");
  EXPECT_EQ(sent[0][3], "Your approval is required");
  EXPECT_EQ(sent[0][4], "Issue B of the Plan's end Sheet requires your approval.");
  EXPECT_EQ(sent[0][5], due);

  const auto approved =
      json::parse(reg_.done("revision approve", {"902", "--for", "bert", "--json"}));
  EXPECT_EQ(approved["rows"], json::parse(R"([[902,"D1","Awaiting Approval from Carla",3,2]])"));
  ASSERT_EQ(approved["actions"]["rows"].size(), 1U) << "the first action was not sent by this verb";
  EXPECT_EQ(approved["actions"]["rows"][0][1], "User903");
  const auto rejected =
      json::parse(reg_.done("revision reject", {"902", "--for", "User903", "--json"}));
  EXPECT_EQ(rejected["rows"][0][2], "Rejected");
  EXPECT_EQ(rejected["actions"]["rows"][0][1], "User902");
  setStatus(902, 4);
  const auto put = json::parse(reg_.done("revision set-current", {"902", "--json"}));
  EXPECT_EQ(put["rows"], json::parse(R"([[902,"D1","Current Issue",1,2]])"));
  EXPECT_EQ(put["actions"]["rows"], json::array());
}

TEST_F(RevisionLifeVerbs, StatusSaysWhoHasDecidedWhat) {
  EXPECT_EQ(reg_.done("revision status", {"901"}), "Current Issue\n");
  EXPECT_EQ(reg_.done("revision status", {"902"}), "Being Revised by Bert\n");
  (void)reg_.done("revision route", {"902"});
  (void)did("Bert", "revision approve", {"902", "--notes", "Good"});
  const std::string day = isoText(today());
  EXPECT_EQ(reg_.done("revision status", {"902"}),
            "Awaiting Approval from Carla\n"
            "UserID   UserName  Decision  ApprovedBy  DateApproved  Notes\n"
            "-------  --------  --------  ----------  ------------  -----\n"
            "User902  Bert      approved  User902     " +
                day +
                "    Good\n"
                "User903  Carla     pending\n"
                "(2 rows)\n");
  reg_.execute("Update ApprovalRouting Set ApprovalStatus = 2 Where UserID = 'User903'");
  reg_.execute("Delete * From Users Where UserID = 'User903'");
  const auto shown = json::parse(reg_.done("revision status", {"902", "--json"}));
  EXPECT_EQ(shown["rows"], json::parse(R"([[902,"D1","Awaiting Approval from ",3,2]])"));
  EXPECT_EQ(shown["approvals"]["columns"],
            json::parse(R"(["UserID","UserName","Decision","ApprovedBy","DateApproved","Notes"])"));
  EXPECT_EQ(shown["approvals"]["rows"],
            json::parse(R"([["User902","Bert","approved","User902",")" + day + R"(","Good"],
                            ["User903",null,"rejected",null,null,null]])"));
  reg_.execute("Update Revisions Set RoutingStatus = 9 Where RevisionID = 902");
  EXPECT_THAT(reg_.done("revision status", {"902"}), StartsWith("(Either BOF or EOF is True"));
}

TEST_F(RevisionLifeVerbs, OnlyWhatIsPreparedOrRejectedIsRouted) {
  EXPECT_EQ(refused("Anna", "revision route", {"901"}),
            "error 5 (kvvesk): The revision 901 cannot be routed: Current Issue.\n");
  EXPECT_EQ(refused("Anna", "revision route", {"901", "--again"}),
            "error 5 (kvvesk): The revision 901 cannot be routed: Current Issue.\n");
  setStatus(901, 0);
  EXPECT_EQ(refused("Anna", "revision route", {"901"}),
            "error 5 (kvvesk): The revision 901 cannot be routed: Out of date Issue.\n");
  (void)reg_.done("revision route", {"902"});
  (void)did("Bert", "revision approve", {"902"});
  EXPECT_EQ(refused("Anna", "revision route", {"902"}),
            "error 5 (kvvesk): The revision 902 cannot be routed: Awaiting Approval from Carla. "
            "--again asks all approvers once more.\n");
  EXPECT_EQ(reg_.done("revision route", {"902", "--again"}),
            "routed the revision 902 of D1: Awaiting Approval from Bert\n"
            "told Bert (User902): Your approval is required\n");
  EXPECT_EQ(approvals(902), (Rows{"User902|0|User902|~", "User903|0|~|~"}));
  setStatus(902, 4);
  EXPECT_THAT(refused("Anna", "revision route", {"902"}), HasSubstr("Approved. --again asks"));
  (void)reg_.done("revision route", {"902", "--again"});
  EXPECT_EQ(states(902), "3|1");
}

TEST_F(RevisionLifeVerbs, WithoutApproversARevisionIsApprovedAtOnce) {
  reg_.execute("Delete * From Routing");
  EXPECT_EQ(reg_.done("revision route", {"902"}),
            "routed the revision 902 of D1: Approved\ntold nobody\n");
  EXPECT_EQ(states(902), "4|1");
}

TEST_F(RevisionLifeVerbs, WhoIsNotOnTheListDoesNotDecide) {
  (void)reg_.done("revision route", {"902"});
  for (const char* verb : {"revision approve", "revision reject"}) {
    EXPECT_EQ(refused("Anna", verb, {"902"}),
              "error 5 (kvvesk): Anna is not on the approval list of revision 902; --for says in "
              "whose place.\n");
    EXPECT_EQ(refused("Anna", verb, {"902", "--for", "Anna"}),
              "error 5 (kvvesk): Anna is not on the approval list of revision 902.\n");
    EXPECT_EQ(refused("Anna", verb, {"902", "--for", "O'Hara"}),
              "error 5 (kvvesk): There is no user 'O'Hara'.\n");
    EXPECT_EQ(refused("Anna", verb, {"902", "--for", ""}),
              "error 5 (kvvesk): There is no user ''.\n");
  }
  reg_.execute("Insert Into Users (ID, UserID, UserName) Values (904, 'User904', 'Carla')");
  EXPECT_EQ(refused("Anna", "revision approve", {"902", "--for", "Carla"}),
            "error 5 (kvvesk): Several users have the name 'Carla'; give the user's ID.\n");
}

TEST_F(RevisionLifeVerbs, DecidingInSomebodysPlaceTakesARight) {
  options(kTellAll);
  (void)reg_.done("revision route", {"902"});
  const std::string no = test::denied("Approve new revisions in place of the assigned approvers");
  EXPECT_EQ(refused("Bert", "revision approve", {"902", "--for", "Carla"}), no)
      << "it is Bert's turn, but to act for himself";
  EXPECT_EQ(refused("Carla", "revision reject", {"902", "--for", "Bert"}), no);
  reg_.own("D1", "User903");
  EXPECT_EQ(refused("Carla", "revision approve", {"902", "--for", "Bert"}),
            test::denied("Approve / Reject new revisions in place of the users in the approval "
                         "routing list"));
  reg_.setOwnerRights({18});
  EXPECT_EQ(did("Carla", "revision approve", {"902", "--for", "Bert", "--notes", "On leave"}),
            "approved the revision 902 of D1 for Bert: Awaiting Approval from Carla\n"
            "told Carla (User903): Your Approval is required.\n");
  EXPECT_EQ(approvals(902), (Rows{"User902|1|~|On leave", "User903|0|~|~"}));
}

TEST_F(RevisionLifeVerbs, ApprovalInOrderHoldsForThoseWhoOverrideToo) {
  (void)reg_.done("revision route", {"902"});
  EXPECT_EQ(refused("Anna", "revision approve", {"902", "--for", "Carla"}),
            "error 5 (kvvesk): It is not the turn of Carla to decide about revision 902: Awaiting "
            "Approval from Bert\n");
  reg_.setRights("User903", {92});
  EXPECT_EQ(did("Carla", "revision approve", {"902", "--for", "User902"}),
            "approved the revision 902 of D1 for Bert: Awaiting Approval from Carla\n"
            "told Carla (User903): Your Approval is required.\n");
  EXPECT_EQ(approvals(902)[0], "User902|1|User903|~") << "who decided is recorded";
}

TEST_F(RevisionLifeVerbs, OutOfOrderWhereTheRegisterAllowsIt) {
  options(kTellAll);
  (void)reg_.done("revision route", {"902"});
  EXPECT_EQ(refused("Carla", "revision approve", {"902"}),
            "error 5 (kvvesk): It is not the turn of Carla to decide about revision 902: Awaiting "
            "Approval from Bert\n")
      << "without the right to override, one's turn is asked for all the same";
  EXPECT_EQ(reg_.done("revision approve", {"902", "--for", "Carla"}),
            "approved the revision 902 of D1 for Carla: Awaiting Approval from Bert\n"
            "told Bert (User902): Your Approval is required.\n");
  EXPECT_EQ(approvals(902), (Rows{"User902|0|~|~", "User903|1|~|~"}));
}

TEST_F(RevisionLifeVerbs, AnApproverWhoIsGoneIsActedForByID) {
  (void)reg_.done("revision route", {"902"});
  (void)reg_.done("user delete", {"Bert"});
  EXPECT_EQ(reg_.done("revision approve", {"902", "--for", "User902"}),
            "approved the revision 902 of D1 for User902: Awaiting Approval from Carla\n"
            "told Carla (User903): Your Approval is required.\n");
}

TEST_F(RevisionLifeVerbs, OnlyWhatAwaitsApprovalIsDecided) {
  for (const char* verb : {"revision approve", "revision reject"}) {
    EXPECT_EQ(refused("Bert", verb, {"902"}),
              "error 5 (kvvesk): The revision 902 is not awaiting approval: Being Revised by "
              "Bert.\n");
    EXPECT_EQ(refused("Anna", verb, {"901", "--for", "Bert"}),
              "error 5 (kvvesk): The revision 901 is not awaiting approval: Current Issue.\n");
  }
}

TEST_F(RevisionLifeVerbs, OnlyWhatIsApprovedIsPutInForce) {
  EXPECT_EQ(refused("Anna", "revision set-current", {"901"}),
            "error 5 (kvvesk): The revision 901 is in force already.\n");
  EXPECT_EQ(refused("Anna", "revision set-current", {"902"}),
            "error 5 (kvvesk): The revision 902 is not approved: Being Revised by Bert.\n");
  (void)reg_.done("revision route", {"902"});
  EXPECT_EQ(refused("Anna", "revision set-current", {"902"}),
            "error 5 (kvvesk): The revision 902 is not approved: Awaiting Approval from Bert.\n");
  (void)did("Bert", "revision reject", {"902"});
  EXPECT_EQ(refused("Anna", "revision set-current", {"902"}),
            "error 5 (kvvesk): The revision 902 is not approved: Rejected.\n");
  reg_.execute("Delete * From Routing");
  EXPECT_EQ(refused("Anna", "revision set-current", {"902"}),
            "error 5 (kvvesk): The revision 902 is not approved: Rejected.\n");
  setStatus(902, 2);
  EXPECT_EQ(reg_.done("revision set-current", {"902"}),
            "put the revision 902 of D1 in force instead of 901: Current Issue\ntold nobody\n")
      << "there are no approvers to ask";
  EXPECT_EQ(reg_.done("revision set-current", {"901"}),
            "put the revision 901 of D1 in force instead of 902: Current Issue\ntold nobody\n")
      << "back to the one before";
  reg_.execute("Update Documents Set CurrentRevID = 0 Where DocumentID = 'D1'");
  EXPECT_EQ(reg_.done("revision set-current", {"901"}),
            "put the revision 901 of D1 in force: Current Issue\ntold nobody\n")
      << "for a document that does not point at it";
}

TEST_F(RevisionLifeVerbs, NobodyIsToldWhereTheRegisterSaysSo) {
  options(kTellNobody);
  EXPECT_EQ(reg_.done("revision route", {"902"}),
            "routed the revision 902 of D1: Awaiting Approval from Bert\n"
            "told Bert (User902): Your approval is required\n")
      << "the first approver is always told";
  EXPECT_EQ(did("Bert", "revision approve", {"902"}),
            "approved the revision 902 of D1: Awaiting Approval from Carla\ntold nobody\n");
  EXPECT_EQ(did("Carla", "revision reject", {"902"}),
            "rejected the revision 902 of D1: Rejected\ntold nobody\n");
  setStatus(902, 4);
  reg_.execute("Insert Into Personals (UserID, DocumentID) Values ('User902', 'D1')");
  EXPECT_EQ(reg_.done("revision set-current", {"902"}),
            "put the revision 902 of D1 in force instead of 901: Current Issue\ntold nobody\n");
  EXPECT_EQ(reg_.value("Select Count(*) From Actions"), "1");
}

TEST_F(RevisionLifeVerbs, WhatCannotBeToldIsNotDone) {
  const test::RawRegister raw(reg_.path());
  raw.refuse("INSERT", "Actions");
  EXPECT_THAT(refused("Anna", "revision route", {"902"}), StartsWith("error -2147467259"));
  raw.allowAgain("Actions");
  (void)reg_.done("revision route", {"902"});
  raw.refuse("INSERT", "Actions");
  EXPECT_THAT(refused("Bert", "revision approve", {"902"}), StartsWith("error -2147467259"));
  setStatus(902, 4);
  reg_.execute("Insert Into Personals (UserID, DocumentID) Values ('User902', 'D1')");
  EXPECT_THAT(refused("Anna", "revision set-current", {"902"}), StartsWith("error -2147467259"));
  raw.allowAgain("Actions");
}

TEST_F(RevisionLifeVerbs, WhatIsGoneIsNotThere) {
  for (const char* verb : {"revision route", "revision approve", "revision reject",
                           "revision set-current", "revision status"}) {
    EXPECT_EQ(refused("Anna", verb, {"99"}), kGone + std::string("99.\n"));
    EXPECT_EQ(refused("Anna", verb, {"2147483647"}), kGone + std::string("2147483647.\n"));
  }
  reg_.execute("Update Revisions Set DocumentID = 'gone' Where RevisionID = 902");
  EXPECT_EQ(refused("Anna", "revision route", {"902"}),
            "error 5 (kvvesk): There is no document 'gone'.\n");
  setStatus(902, 4);
  EXPECT_EQ(refused("Anna", "revision set-current", {"902"}),
            "error 5 (kvvesk): There is no document 'gone'.\n");
}

TEST_F(RevisionLifeVerbs, DocumentsOutOfControlHaveNoSuchRevisions) {
  const std::string no = "error 5 (kvvesk): The document D3 is not controlled.\n";
  EXPECT_EQ(refused("Anna", "revision set-current", {"904"}), no);
  setStatus(904, 2);
  EXPECT_EQ(refused("Anna", "revision route", {"904"}), no);
}

TEST_F(RevisionLifeVerbs, ApproversOfASecuredDocumentDecideAndOthersDoNotSeeIt) {
  reg_.execute(
      "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, ResponsibleID, RoutingStatus, "
      "RevisionStatus) Values (905, 'D2', '2', 'User901', 0, 2)");
  addApprover("D2", "User902", 1);
  reg_.setRights("User902", {90, 91});
  reg_.setRights("User903", {90, 91});
  (void)reg_.done("revision route", {"905"});
  for (const char* verb : {"revision route", "revision approve", "revision reject",
                           "revision set-current", "revision status"})
    EXPECT_EQ(refused("Carla", verb, {"905"}), kGone + std::string("905.\n")) << verb;
  EXPECT_EQ(refused("Bert", "revision status", {"905"}), kGone + std::string("905.\n"));
  EXPECT_EQ(did("Bert", "revision approve", {"905"}),
            "approved the revision 905 of D2: Approved\ntold nobody\n");
}

TEST_F(RevisionLifeVerbs, WrongUsageEndsWithTwo) {
  for (const char* part : {"route", "approve", "reject", "set-current", "status"}) {
    const std::string verb = std::string("revision ") + part;
    EXPECT_THAT(refused("Anna", verb, {}, 2), HasSubstr("revision is required"));
    EXPECT_THAT(refused("Anna", verb, {"first"}, 2), HasSubstr("'first' is not a number"));
    EXPECT_THAT(refused("Anna", verb, {"99999999999"}, 2), HasSubstr("is not a number"));
    EXPECT_NE(refused("Anna", verb, {"902", "901"}, 2), "");
    EXPECT_NE(refused("Anna", verb, {"902", "--csv"}, 2), "");
  }
  EXPECT_NE(refused("Anna", "revision route", {"902", "--for", "Bert"}, 2), "");
  EXPECT_NE(refused("Anna", "revision approve", {"902", "--for"}, 2), "");
}

}  // namespace
}  // namespace kv
