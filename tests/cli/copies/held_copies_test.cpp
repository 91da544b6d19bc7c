// SPDX-License-Identifier: Apache-2.0
// kvvesk holdings, releases and stale: who has which copies, and which of them are out of date.

#include <nlohmann/json.hpp>

#include "cli/verb_register.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class HeldCopies : public test::VerbTest {
 protected:
  // Bert has D1 on paper as the revision before the present one, with copy 0001 of Dan's manual as
  // it is in force, and on his list. Carla has D2, which is secured, on paper, the uncontrolled D3
  // on her list, and D1 with the manual on her list, out of date.
  HeldCopies() {
    for (const char* sql :
         {"Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, RevisionStatus) Values "
          "(900, 'D1', '0', 0)",
          "Insert Into Manuals (ManualID, ManualName) Values ('M''1', 'Dan''s')",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, RevisionID) "
          "Values (901, 'User902', 'D1', '0', True, 900)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber, "
          "RevisionID) Values (902, 'User902', 'D1', 'M''1', True, '0001', 901)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, RevisionID) "
          "Values (903, 'User902', 'D1', '0', False, 901)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, RevisionID) "
          "Values (904, 'User903', 'D2', '0', True, 903)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, RevisionID) "
          "Values (905, 'User903', 'D3', '0', False, 904)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber, "
          "RevisionID) Values (906, 'User903', 'D1', 'M''1', False, '-1', 900)"})
      reg_.execute(sql);
  }

  // The numbers of the releases that a verb lists, in its order.
  [[nodiscard]] static std::vector<int> releasesIn(const std::string& answer) {
    std::vector<int> numbers;
    const auto parsed = json::parse(answer);
    for (const auto& row : parsed["rows"]) numbers.push_back(row[0]);
    return numbers;
  }
  [[nodiscard]] std::vector<int> listed(const std::string& verb,
                                        std::vector<std::string> words = {}) const {
    words.emplace_back("--json");
    return releasesIn(reg_.done(verb, words));
  }
  [[nodiscard]] std::vector<int> listedFor(const std::string& user, const std::string& verb,
                                           std::vector<std::string> words = {}) const {
    words.emplace_back("--json");
    const auto outcome = reg_.as(user, verb, words);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return releasesIn(outcome.out);
  }
};

TEST_F(HeldCopies, HoldingsAreAUsersCopiesOnPaperFirst) {
  EXPECT_EQ(
      reg_.done("holdings", {"Bert"}),
      "ReleaseID  HardCopy  ManualName  CopyNumber  DocumentID  DocumentNumber  DocumentTitle  "
      "RevisionLevel  CurrentRevisionLevel  State\n"
      "---------  --------  ----------  ----------  ----------  --------------  -------------  "
      "-------------  --------------------  -------\n"
      "      901  true                              D1          P-1             Plan's end     "
      "0              A                     stale\n"
      "      902  true      Dan's       0001        D1          P-1             Plan's end     "
      "A              A                     current\n"
      "      903  false                             D1          P-1             Plan's end     "
      "A              A                     current\n"
      "(3 rows)\n");
  EXPECT_EQ(reg_.done("holdings", {"User903", "--csv", "--virtual"}),
            "\"ReleaseID\",\"HardCopy\",\"ManualName\",\"CopyNumber\",\"DocumentID\","
            "\"DocumentNumber\",\"DocumentTitle\",\"RevisionLevel\",\"CurrentRevisionLevel\","
            "\"State\"\r\n"
            "905,false,,,\"D3\",\"P-3\",\"Sketch\",\"C\",\"Uncontrolled\",\"uncontrolled\"\r\n"
            "906,false,\"Dan's\",,\"D1\",\"P-1\",\"Plan's end\",\"0\",\"A\",\"stale\"\r\n")
      << "a place on a list has no copy number";
  EXPECT_THAT(listed("holdings", {"Bert", "--hard"}), ElementsAre(901, 902));
  EXPECT_THAT(listed("holdings"), IsEmpty()) << "Anna has nothing";
}

TEST_F(HeldCopies, OnesOwnHoldingsTakeNoRightThoseOfOthersDo) {
  EXPECT_THAT(listedFor("Bert", "holdings"), ElementsAre(901, 902, 903));
  EXPECT_THAT(listedFor("Bert", "holdings", {"bert"}), ElementsAre(901, 902, 903));
  EXPECT_THAT(listedFor("Bert", "holdings", {"user902"}), ElementsAre(901, 902, 903));
  EXPECT_EQ(refused("Bert", "holdings", {"Carla"}), test::denied("View the user's detail form"));
  EXPECT_EQ(refused("Bert", "holdings", {"Nobody"}), test::denied("View the user's detail form"))
      << "who is there is not told either";
  EXPECT_EQ(refused("Anna", "holdings", {"Nobody"}),
            "error 5 (kvvesk): There is no user 'Nobody'.\n");
}

TEST_F(HeldCopies, DocumentsAreInTheOrderThatTheRegisterChooses) {
  reg_.execute(
      "Update Documents Set DocumentTitle = 'Zebra', DocumentNumber = 'A' Where "
      "DocumentID = 'D1'");
  reg_.execute("Update Personals Set DocumentID = 'D3' Where ReleaseID = 902");
  reg_.execute("Update Personals Set ManualID = '0', CopyNumber = Null");
  EXPECT_THAT(listed("holdings", {"Bert", "--hard"}), ElementsAre(902, 901));
  (void)reg_.done("rights edit", {"--app-on", "11"});
  EXPECT_THAT(listed("holdings", {"Bert", "--hard"}), ElementsAre(901, 902));
}

TEST_F(HeldCopies, ReleasesAreListedByHolderAndFiltered) {
  EXPECT_THAT(listed("releases"), ElementsAre(901, 902, 903, 904, 905, 906));
  EXPECT_THAT(listed("releases", {"--hard"}), ElementsAre(901, 902, 904));
  EXPECT_THAT(listed("releases", {"--virtual"}), ElementsAre(903, 905, 906));
  EXPECT_THAT(listed("releases", {"--of", "Carla"}), ElementsAre(904, 905, 906));
  EXPECT_THAT(listed("releases", {"--manual", "Dan's"}), ElementsAre(902, 906));
  EXPECT_THAT(listed("releases", {"--document", "P-1"}), ElementsAre(901, 902, 903, 906));
  EXPECT_THAT(listed("releases", {"--document-query", "Plans", "--of", "User903"}),
              ElementsAre(906));
  EXPECT_EQ(reg_.done("releases", {"--manual", "M'1", "--hard"}),
            "ReleaseID  UserID   UserName  HardCopy  ManualName  CopyNumber  DocumentID  "
            "DocumentNumber  DocumentTitle  RevisionLevel  CurrentRevisionLevel  State\n"
            "---------  -------  --------  --------  ----------  ----------  ----------  "
            "--------------  -------------  -------------  --------------------  -------\n"
            "      902  User902  Bert      true      Dan's       0001        D1          "
            "P-1             Plan's end     A              A                     current\n"
            "(1 row)\n");
}

TEST_F(HeldCopies, ManualsAreFilteredByASavedQuery) {
  (void)reg_.done("queries add", {"Dan's", "--of", "manuals", "--where", "name", "=", "dan's"});
  (void)reg_.done("queries add", {"Others", "--of", "manuals", "--where", "name", "<>", "dan's"});
  EXPECT_THAT(listed("releases", {"--manual-query", "Dan's"}), ElementsAre(902, 906));
  EXPECT_THAT(listed("releases", {"--manual-query", "Others"}), IsEmpty());
  EXPECT_THAT(
      listed("releases", {"--manual-query", "Dan's", "--document-query", "Plans", "--virtual"}),
      ElementsAre(906));
  EXPECT_EQ(refused("Anna", "releases", {"--manual-query", "Plans"}),
            "error 5 (kvvesk): There is no manual query 'Plans'.\n");
}

TEST_F(HeldCopies, StaleAreCopiesOfAnotherRevisionThanTheOneInForce) {
  EXPECT_EQ(reg_.done("stale"),
            "ReleaseID  UserID   UserName  HardCopy  ManualName  CopyNumber  DocumentID  "
            "DocumentNumber  DocumentTitle  RevisionLevel  CurrentRevisionLevel  State\n"
            "---------  -------  --------  --------  ----------  ----------  ----------  "
            "--------------  -------------  -------------  --------------------  -----\n"
            "      901  User902  Bert      true                              D1          "
            "P-1             Plan's end     0              A                     stale\n"
            "      906  User903  Carla     false     Dan's                   D1          "
            "P-1             Plan's end     0              A                     stale\n"
            "(2 rows)\n");
  EXPECT_THAT(listed("stale", {"--of", "Carla"}), ElementsAre(906));
  EXPECT_THAT(listed("stale", {"--hard"}), ElementsAre(901));
  EXPECT_THAT(listed("stale", {"--manual", "Dan's"}), ElementsAre(906));
  EXPECT_THAT(listed("stale", {"--document", "P-2"}), IsEmpty());
}

TEST_F(HeldCopies, ACopyOfWhatIsNotThereIsStale) {
  reg_.execute("Update Personals Set RevisionID = Null Where ReleaseID = 903");
  EXPECT_THAT(listed("stale", {"--of", "Bert"}), ElementsAre(901, 903))
      << "which revision it is nobody knows";
  reg_.execute("Delete * From Documents Where DocumentID = 'D1'");
  EXPECT_THAT(listed("stale", {"--of", "Bert"}), ElementsAre(901, 902, 903));
}

TEST_F(HeldCopies, WithoutARevisionOnEitherSideNothingIsOutOfDate) {
  reg_.execute("Update Documents Set CurrentRevID = Null Where DocumentID = 'D1'");
  EXPECT_THAT(listed("stale"), ElementsAre(901, 902, 903, 906));
  reg_.execute("Update Personals Set RevisionID = 0 Where DocumentID = 'D1'");
  EXPECT_THAT(listed("stale"), IsEmpty()) << "no revision was released, and none is in force";
}

TEST_F(HeldCopies, TheCopiesThatARevisionLeavesBehindAreStale) {
  (void)reg_.done("revision set-current", {"902"});
  EXPECT_THAT(listed("stale"), ElementsAre(901, 902, 903, 906));
  EXPECT_THAT(reg_.done("holdings", {"Bert", "--virtual"}), HasSubstr("  B  "));
}

TEST_F(HeldCopies, SecuredDocumentsAreLeftOut) {
  reg_.setRights("User902", {1, 10, 20, 70});
  reg_.execute("Update Personals Set RevisionID = 902 Where ReleaseID = 904");
  EXPECT_THAT(listed("stale"), ElementsAre(901, 904, 906));
  EXPECT_THAT(listedFor("Bert", "holdings", {"Carla"}), ElementsAre(905, 906));
  EXPECT_THAT(listedFor("Bert", "releases", {"--of", "Carla"}), ElementsAre(905, 906));
  EXPECT_THAT(listedFor("Bert", "stale"), ElementsAre(901, 906));
  EXPECT_EQ(refused("Bert", "releases", {"--document", "D2"}),
            "error 5 (kvvesk): There is no document 'D2'.\n");
  reg_.own("D2", "User902");
  EXPECT_THAT(listedFor("Bert", "stale"), ElementsAre(901, 904, 906));
  EXPECT_THAT(listedFor("Bert", "holdings", {"Carla"}), ElementsAre(904, 905, 906));
}

TEST_F(HeldCopies, AHolderWhoIsGoneHasNoName) {
  reg_.execute("Delete * From Users Where UserID = 'User903'");
  const auto rows = json::parse(reg_.done("stale", {"--json"}))["rows"];
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0][1], "User903");
  EXPECT_TRUE(rows[0][2].is_null());
}

TEST_F(HeldCopies, WhatIsAskedForMustBeThere) {
  EXPECT_EQ(refused("Anna", "stale", {"--of", "Nobody"}),
            "error 5 (kvvesk): There is no user 'Nobody'.\n");
  EXPECT_EQ(refused("Anna", "stale", {"--manual", "Nothing"}),
            "error 5 (kvvesk): There is no manual 'Nothing'.\n");
  EXPECT_EQ(refused("Anna", "releases", {"--document-query", "Nothing"}),
            "error 5 (kvvesk): There is no document query 'Nothing'.\n");
  EXPECT_NE(refused("Anna", "releases", {"--hard", "--virtual"}, 2), "");
  EXPECT_NE(refused("Anna", "holdings", {"Bert", "Carla"}, 2), "");
}

}  // namespace
}  // namespace kv
