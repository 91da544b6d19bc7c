// SPDX-License-Identifier: Apache-2.0
// The program for a user whose identifier has an apostrophe, and documents and manuals like that.
#include <nlohmann/json.hpp>

#include "cli/verb_register.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class ApostropheVerbs : public test::VerbTest {
 protected:
  // Pat, an administrator; the document Plan'6 and the manual Man'1.
  ApostropheVerbs() {
    reg_.execute(
        "Insert Into Users (ID, UserID, UserName, [Password]) Select 950, 'O''Brien', 'Pat', "
        "[Password] From Users Where UserID = 'User901'");
    reg_.execute(
        "Insert Into VeskProfiles (UserID, UserName, Administrator) Values ('O''Brien', 'Pat', "
        "True)");
    reg_.execute(
        "Insert Into Documents (ID, DocumentID, DocumentTitle, Controlled, CurrentRevID) Values "
        "(950, 'Plan''6', 'Plan', True, 950)");
    reg_.execute(
        "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, RoutingStatus, "
        "RevisionStatus) Values (950, 'Plan''6', 'A', 0, 1)");
    reg_.execute("Insert Into Manuals (ID, ManualID, ManualName) Values (950, 'Man''1', 'Book')");
  }
  // Does something as Pat; what it printed.
  std::string done(const std::string& verb, const std::vector<std::string>& words) {
    const auto outcome = reg_.as("Pat", verb, words);
    EXPECT_EQ(outcome.code, 0) << verb << ": " << outcome.err;
    return outcome.out;
  }
};

TEST_F(ApostropheVerbs, NewThingsAreNamedAfterTheUser) {
  EXPECT_THAT(done("document add", {"--title", "t"}), HasSubstr("added the document O'Brien"));
  EXPECT_THAT(done("manual add", {"--name", "m"}), HasSubstr("added the manual O'Brien"));
  EXPECT_EQ(reg_.value("Select ResponsibleID From Revisions Where DocumentID Like 'O''Brien%'"),
            "O'Brien");
}

TEST_F(ApostropheVerbs, ARevisionFromBeginningToEnd) {
  for (const char* options : {"00000000010", "00000000000"}) {  // in order, in any order
    reg_.execute(std::string("Update VeskConfig Set ProgramOptions = '") + options + "'");
    reg_.execute("Delete * From Routing");
    done("approvers add", {"Plan'6", "O'Brien"});
    const auto answer = json::parse(
        done("revision add", {"Plan'6", "--level", "B", "--responsible", "Pat", "--json"}));
    const std::string id = answer["rows"][0][0].dump();
    done("revision route", {id});
    EXPECT_THAT(done("revision status", {id}), HasSubstr("Awaiting Approval from Pat"));
    done("revision approve", {id, "--notes", "it's so"});
    EXPECT_EQ(reg_.value("Select ApprovalStatus, Notes From ApprovalRouting Where UserID = "
                         "'O''Brien' and RevID = " +
                         id),
              "1|it's so");
    done("revision set-current", {id});
    EXPECT_EQ(reg_.value("Select DocumentID, ResponsibleID, RevisionStatus From Revisions Where "
                         "RevisionID = " +
                         id),
              "Plan'6|O'Brien|1");
  }
  EXPECT_THAT(done("actions", {}), HasSubstr("approval"));
}

TEST_F(ApostropheVerbs, CopiesAndContents) {
  done("manual put", {"Man'1", "Plan'6"});
  done("release", {"--manual", "Man'1", "--to", "O'Brien", "--hard"});
  done("release", {"--document", "Plan'6", "--to", "O'Brien"});
  EXPECT_THAT(done("holdings", {}), HasSubstr("Plan'6"));
  done("collect", {"--manual", "Man'1", "--from", "O'Brien"});
  done("owners add", {"Plan'6", "O'Brien"});
  done("manual delete", {"Man'1"});
  done("document delete", {"Plan'6"});
  EXPECT_EQ(reg_.value("Select Count(*) From Personals"), "0");
}

}  // namespace
}  // namespace kv
