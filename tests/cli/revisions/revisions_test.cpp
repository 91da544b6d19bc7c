// SPDX-License-Identifier: Apache-2.0
// kvvesk revisions and revision.

#include <algorithm>
#include <nlohmann/json.hpp>

#include "cli/verb_register.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;
using Rows = std::vector<std::string>;

class RevisionVerbs : public test::VerbTest {
 protected:
  [[nodiscard]] std::string row(int revision) const {
    return reg_.value(
        "Select DocumentID, RevisionLevel, RevUser1, RevUser2, ChangeDescription, Location, "
        "EffectiveDate, ResponsibleID, RoutingStatus, RevisionStatus From Revisions Where "
        "RevisionID = " +
        std::to_string(revision));
  }
};

TEST_F(RevisionVerbs, RevisionsAreListedWithWhereTheyStand) {
  EXPECT_EQ(
      reg_.done("revisions", {"P-1"}),
      "RevisionID  RevisionLevel  Status                 EffectiveDate  ResponsibleID  Location  "
      "ChangeDescription\n"
      "----------  -------------  ---------------------  -------------  -------------  --------  "
      "-----------------\n"
      "       901  A              Current Revision       2001-03-09     User903\n"
      "       902  B              Being Revised by Bert                 User902                  "
      "Shorter\n"
      "(2 rows)\n");
  EXPECT_EQ(reg_.done("revisions", {"D2", "--csv"}),
            "\"RevisionID\",\"RevisionLevel\",\"Status\",\"EffectiveDate\",\"ResponsibleID\","
            "\"Location\",\"ChangeDescription\"\r\n"
            "903,\"1\",\"Current Revision\",2002-04-01,\"User903\",,\r\n");
  reg_.execute("Delete * From Revisions Where DocumentID = 'D3'");
  EXPECT_THAT(reg_.done("revisions", {"D3"}), EndsWith("(0 rows)\n"));
}

TEST_F(RevisionVerbs, AStatusThatCannotBeToldDoesNotHideTheOthers) {
  reg_.execute("Update Revisions Set RevisionStatus = Null Where RevisionID = 902");
  reg_.execute("Update Revisions Set RevisionStatus = 7 Where RevisionID = 901");
  const auto rows = json::parse(reg_.done("revisions", {"D1", "--json"}))["rows"];
  EXPECT_EQ(rows[0][2], "") << "a status without words";
  EXPECT_EQ(rows[1][2], "(Invalid use of Null)");
  EXPECT_THAT(reg_.done("revision show", {"902"}), HasSubstr("(Invalid use of Null)"));
  EXPECT_EQ(reg_.done("revision status", {"902"}), "(Invalid use of Null)\n");
}

TEST_F(RevisionVerbs, EveryVerbSaysWhereARevisionStandsInTheRegistersWords) {
  reg_.execute("Update VeskConfig Set [Revision] = 'Issue'");
  const std::vector<std::string> texts = {
      "Out of date Issue", "Current Issue", "Being Revised by Carla",
      "Awaiting Approval", "Approved",      "Rejected"};
  const auto told = [&](const std::string& verb, const char* of) {
    const auto answer = json::parse(reg_.done(verb, {of, "--json"}));
    const auto& columns = answer["columns"];
    const auto place = std::find(columns.begin(), columns.end(), "Status") - columns.begin();
    return answer["rows"][0][static_cast<std::size_t>(place)].get<std::string>();
  };
  for (std::size_t status = 0; status < texts.size(); ++status) {
    reg_.execute("Update Revisions Set RevisionStatus = " + std::to_string(status) +
                 " Where RevisionID = 901");
    EXPECT_EQ(told("revisions", "D1"), texts[status]);
    EXPECT_EQ(told("revision show", "901"), texts[status]);
    EXPECT_EQ(told("revision status", "901"), texts[status]);
  }
}

TEST_F(RevisionVerbs, ShowsARevision) {
  EXPECT_EQ(reg_.done("revision show", {"902"}),
            "RevisionID         902\n"
            "DocumentID         D1\n"
            "RevisionLevel      B\n"
            "Status             Being Revised by Bert\n"
            "RevisionStatus     2\n"
            "RoutingStatus      0\n"
            "EffectiveDate\n"
            "ResponsibleID      User902\n"
            "RevUser1\n"
            "RevUser2\n"
            "Location\n"
            "ChangeDescription  Shorter\n");
  EXPECT_EQ(json::parse(reg_.done("revision show", {"901", "--json"})), json::parse(R"({
    "columns": ["RevisionID","DocumentID","RevisionLevel","Status","RevisionStatus",
                "RoutingStatus","EffectiveDate","ResponsibleID","RevUser1","RevUser2","Location",
                "ChangeDescription"],
    "rows": [[901,"D1","A","Current Revision",1,0,"2001-03-09","User903",null,null,null,null]]})"));
  EXPECT_THAT(
      reg_.done("revision show", {"901", "--csv"}),
      HasSubstr("\r\n901,\"D1\",\"A\",\"Current Revision\",1,0,2001-03-09,\"User903\",,,,"));
}

TEST_F(RevisionVerbs, AddsARevisionInPreparation) {
  const auto added = json::parse(reg_.done(
      "revision add",
      {"P-1", "--level", "C", "--field1", "a", "--field2", "b", "--description", "It's shorter",
       "--location", "c.pdf", "--effective", "2024-03-09", "--responsible", "bert", "--json"}));
  EXPECT_EQ(added, json::parse(R"({"columns":["RevisionID","DocumentID"],"rows":[[905,"D1"]]})"));
  EXPECT_EQ(row(905), "D1|C|a|b|It's shorter|c.pdf|3/9/2024|User902|0|2");
  EXPECT_EQ(reg_.done("revision add", {"D1"}), "added the revision 906 to D1\n");
  EXPECT_EQ(row(906), "D1|~|~|~|~|~|~|User901|0|2") << "whoever logs in prepares it";
  EXPECT_EQ(reg_.value("Select CurrentRevID, RevisionLevel From Documents Where DocumentID = 'D1'"),
            "901|A");
}

TEST_F(RevisionVerbs, ChangesWhatIsGivenAndNothingElse) {
  EXPECT_EQ(reg_.done("revision edit", {"902", "--description", "It's longer", "--level", "C"}),
            "changed the revision 902\n");
  EXPECT_EQ(row(902), "D1|C|~|~|It's longer|~|~|User902|0|2");
  test::write(reg_.file("c.pdf"), "x");
  EXPECT_EQ(json::parse(reg_.done("revision edit",
                                  {"902", "--field1", "a", "--field2", "b", "--effective",
                                   "3/9/2024", "--location", reg_.file("c.pdf"), "--json"})),
            json::parse(R"({"columns":["RevisionID"],"rows":[[902]]})"));
  EXPECT_EQ(row(902), "D1|C|a|b|It's longer|" + reg_.file("c.pdf") + "|3/9/2024|User902|0|2");
  (void)reg_.done("revision edit", {"902", "--effective", "", "--field1", "", "--location", ""});
  EXPECT_EQ(row(902), "D1|C|~|b|It's longer|~|~|User902|0|2");
}

TEST_F(RevisionVerbs, ARevisionIsSavedOnlyWhileItsFileIsThere) {
  const std::string noFile =
      "error 55666 (Revision.SaveData): No File Found at present location.  To save this revision "
      "data a valide file location is required.\n";
  EXPECT_EQ(refused("Anna", "revision edit", {"902", "--location", reg_.file("none.pdf")}), noFile);
  reg_.execute("Update Revisions Set Location = 'none.pdf' Where RevisionID = 902");
  EXPECT_EQ(refused("Anna", "revision edit", {"902", "--description", "x"}), noFile);
}

TEST_F(RevisionVerbs, TheDocumentSaysWhatItsRevisionInForceSays) {
  (void)reg_.done("revision edit", {"901", "--level", "A1", "--effective", "2024-03-09"});
  EXPECT_EQ(reg_.value("Select RevisionLevel, EffectiveDate, CurrentRevID From Documents Where "
                       "DocumentID = 'D1'"),
            "A1|3/9/2024|901");
  (void)reg_.done("revision edit", {"901", "--effective", ""});
  EXPECT_EQ(reg_.value("Select EffectiveDate From Documents Where DocumentID = 'D1'"),
            reg_.value("Select EffectiveDate From Revisions Where RevisionID = 901"))
      << "which is today: a revision in force always says since when";
  EXPECT_NE(row(901).find("/"), std::string::npos);
  (void)reg_.done("revision edit", {"902", "--level", "Z"});
  EXPECT_EQ(reg_.value("Select RevisionLevel From Documents Where DocumentID = 'D1'"), "A1");
  (void)reg_.done("revision edit", {"904", "--level", "Z"});
  EXPECT_EQ(reg_.value("Select RevisionLevel From Documents Where DocumentID = 'D3'"),
            "Uncontrolled");
}

TEST_F(RevisionVerbs, DeletesARevisionThatIsNotInForce) {
  EXPECT_EQ(reg_.done("revision delete", {"902"}), "deleted the revision 902\n");
  EXPECT_EQ(reg_.rows("Select RevisionID From Revisions Where DocumentID = 'D1'"), Rows{"901"});
  const std::string inForce =
      "error 5 (kvvesk): Revision 901 is in force; a document does not lose its current revision "
      "this way.\n";
  EXPECT_EQ(refused("Anna", "revision delete", {"901"}), inForce);
  reg_.execute("Update Revisions Set RevisionStatus = 0 Where RevisionID = 901");
  EXPECT_EQ(refused("Anna", "revision delete", {"901"}), inForce) << "the document says so";
  reg_.execute("Update Revisions Set DocumentID = 'gone' Where RevisionID = 901");
  EXPECT_EQ(reg_.done("revision delete", {"901", "--csv"}), "\"RevisionID\"\r\n901\r\n")
      << "one of a document that is gone";
}

TEST_F(RevisionVerbs, WhatIsNotThereIsNotFound) {
  for (const char* revision : {"99", "0", "2147483647"}) {
    const std::string none =
        "error 5 (kvvesk): There is no revision " + std::string(revision) + ".\n";
    EXPECT_EQ(refused("Anna", "revision show", {revision}), none);
    EXPECT_EQ(refused("Anna", "revision edit", {revision, "--level", "x"}), none);
    EXPECT_EQ(refused("Anna", "revision delete", {revision}), none);
  }
  EXPECT_EQ(refused("Anna", "revision add", {"D1", "--responsible", "O'Hara"}),
            "error 5 (kvvesk): There is no user 'O'Hara'.\n");
  EXPECT_THAT(refused("Anna", "revision add", {"D1", "--level", std::string(51, 'x')}),
              StartsWith("error 3421"));
  EXPECT_THAT(refused("Anna", "revision edit", {"901", "--level", std::string(51, 'x')}),
              StartsWith("error 3421"));
}

TEST_F(RevisionVerbs, AllRightsOfAChangeAreTestedFirst) {
  reg_.setRights("User902", {93, 95});
  EXPECT_EQ(refused("Bert", "revision edit", {"902", "--description", "x", "--field2", "y"}),
            test::denied("Edit the revision's second data field"));
  EXPECT_EQ(refused("Bert", "revision edit", {"902", "--description", "x", "--level", "y"}),
            test::denied("Owner rights for all documents"));
  reg_.own("D1", "User902");
  EXPECT_EQ(reg_.as("Bert", "revision edit", {"902", "--description", "x", "--level", "y"}).code,
            0);
}

TEST_F(RevisionVerbs, WrongUsageEndsWithTwo) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> wrong = {
      {"revision", {}},
      {"revision show", {}},
      {"revision show", {"first"}},
      {"revision show", {"99999999999"}},
      {"revision add", {}},
      {"revision add", {"D1", "--effective", "2024-02-30"}},
      {"revision edit", {"902"}},
      {"revision edit", {"902", "--responsible", "Bert"}},
      {"revision edit", {"902", "--effective", "soon"}},
      {"revision delete", {"902", "901"}},
      {"revisions", {}}};
  for (const auto& [verb, words] : wrong)
    EXPECT_NE(refused("Anna", verb, words, 2), "") << verb << ' ' << testing::PrintToString(words);
}

}  // namespace
}  // namespace kv
