// SPDX-License-Identifier: Apache-2.0
// kvvesk manuals and manual: listing, showing, adding, changing, deleting; the documents in a
// manual and who has it.

#include <nlohmann/json.hpp>

#include "cli/verb_register.h"
#include "common/error.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

class ManualVerbs : public test::VerbTest {
 protected:
  // The handbook has D1 and D2, which is secured; Carla has a hard copy and Bert has it on his
  // list. The leaflet is empty.
  ManualVerbs() {
    for (const char* sql :
         {"Insert Into Manuals (ID, ManualID, ManualName, ManUser1, ManUserMemo) Values (901, "
          "'M''1', 'Handbook', 'Works', 'old')",
          "Insert Into Manuals (ID, ManualID, ManualName) Values (902, 'M2', 'A leaflet')",
          "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M''1', 'D2', 10)",
          "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M''1', 'D1', 20)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber, "
          "RevisionID) Values (901, 'User903', 'D1', 'M''1', True, '0007', 901)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber, "
          "RevisionID) Values (902, 'User902', 'D1', 'M''1', False, '-1', 901)"})
      reg_.execute(sql);
  }

  [[nodiscard]] std::vector<std::string> copies() const {
    return reg_.rows(
        "Select UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID From Personals "
        "Order By UserID, DocumentID");
  }
};

TEST_F(ManualVerbs, ManualsAreListedByName) {
  EXPECT_EQ(reg_.done("manuals"),
            "ManualID  ManualName\n"
            "--------  ----------\n"
            "M2        A leaflet\n"
            "M'1       Handbook\n"
            "(2 rows)\n");
  EXPECT_EQ(reg_.done("manuals", {"--csv", "--fields", "manuser1", "--sort", "ManualID"}),
            "\"ManUser1\"\r\n\"Works\"\r\n\r\n");
  EXPECT_EQ(json::parse(reg_.done("manuals", {"--json", "--fields", "*"}))["columns"].size(), 8U);
}

TEST_F(ManualVerbs, ListsGoThroughASavedQuery) {
  reg_.execute(
      "Insert Into ManualQuerys (QueryID, QueryName, Field1, Field1Key) Values (3, 'Hand', 'hand', "
      "1)");
  EXPECT_EQ(reg_.done("manuals", {"--query", "hand", "--csv", "--fields", "ManualID"}),
            "\"ManualID\"\r\n\"M'1\"\r\n");
  EXPECT_EQ(reg_.done("manuals", {"--query", "3", "--csv", "--fields", "ManualID"}),
            "\"ManualID\"\r\n\"M'1\"\r\n");
  EXPECT_EQ(refused("Anna", "manuals", {"--query", "Plans"}),
            "error 5 (kvvesk): There is no manual query 'Plans'.\n");
}

TEST_F(ManualVerbs, NothingButColumnsGetsIntoTheStatement) {
  reg_.setRights("User902", {10});
  EXPECT_THAT(refused("Bert", "manuals", {"--fields", "[Password] From Users --"}),
              StartsWith("error 3265"));
  EXPECT_THAT(refused("Bert", "manuals", {"--sort", "(Select UserID From Users)"}),
              StartsWith("error 3265"));
}

TEST_F(ManualVerbs, ShowsAManual) {
  reg_.execute("Update ManualConfig Set ManUser1 = 'Department'");
  EXPECT_EQ(reg_.done("manual show", {"handbook"}),
            "ID                     901\n"
            "ManualID               M'1\n"
            "ManualName             Handbook\n"
            "ManUser1 (Department)  Works\n"
            "ManUser2\n"
            "ManUser3\n"
            "ManUser4\n"
            "ManUserMemo            old\n");
  EXPECT_EQ(
      reg_.done("manual show", {"M2", "--csv"}),
      "\"ID\",\"ManualID\",\"ManualName\",\"ManUser1\",\"ManUser2\",\"ManUser3\",\"ManUser4\","
      "\"ManUserMemo\"\r\n902,\"M2\",\"A leaflet\",,,,,\r\n");
}

TEST_F(ManualVerbs, AManualThatIsNotClearIsNotGuessed) {
  EXPECT_EQ(refused("Anna", "manual show", {"Booklet"}),
            "error 5 (kvvesk): There is no manual 'Booklet'.\n");
  reg_.execute("Insert Into Manuals (ManualID, ManualName) Values ('M3', 'HANDBOOK')");
  EXPECT_EQ(refused("Anna", "manual delete", {"Handbook"}),
            "error 5 (kvvesk): Several manuals have the name 'Handbook'; give the manual's "
            "identifier.\n");
  EXPECT_THAT(reg_.done("manual show", {"M'1"}), HasSubstr("Handbook"));
  reg_.execute("Insert Into Manuals (ManualID, ManualName) Values ('m3', 'Third')");
  EXPECT_EQ(refused("Anna", "manual delete", {"Third"}),
            "error 5 (kvvesk): Several manuals have the identifier 'm3'.\n");
  reg_.execute("Insert Into Manuals (ManualName) Values ('Nameless')");
  EXPECT_EQ(refused("Anna", "manual delete", {"Nameless"}),
            "error 5 (kvvesk): The manual 'Nameless' has no identifier.\n");
}

TEST_F(ManualVerbs, AddsManualsEachWithItsOwnIdentifier) {
  const auto first = json::parse(
      reg_.done("manual add", {"--name", "Dan's", "--field1", "a", "--field2", "b", "--field3", "c",
                               "--field4", "d", "--notes", "n", "--json"}));
  EXPECT_THAT(reg_.done("manual add", {"--name", "Second"}),
              MatchesRegex("added the manual User901[0-9]+\n"));
  EXPECT_EQ(first["columns"], json::parse(R"(["ManualID"])"));
  EXPECT_THAT(reg_.rows("Select ManualName, ManUser1, ManUser2, ManUser3, ManUser4, ManUserMemo "
                        "From Manuals Where ManualID = '" +
                        first["rows"][0][0].get<std::string>() + "'"),
              ElementsAre("Dan's|a|b|c|d|n"));
  EXPECT_EQ(refused("Anna", "manual add", {"--notes", "n"}, 2),
            "kvvesk: nothing to add: give the manual's name\n");
}

TEST_F(ManualVerbs, ChangesTheFieldsGivenAndNoOthers) {
  EXPECT_EQ(reg_.done("manual edit", {"M'1", "--name", "Dan's", "--field2", "b", "--notes", ""}),
            "changed the manual M'1\n");
  EXPECT_THAT(reg_.rows("Select ManualName, ManUser1, ManUser2, ManUserMemo From Manuals Order By "
                        "ID"),
              ElementsAre("Dan's|Works|b|~", "A leaflet|~|~|~"));
  EXPECT_EQ(refused("Anna", "manual edit", {"M2"}, 2),
            "kvvesk: nothing to change: give at least one field\n");
}

TEST_F(ManualVerbs, EveryFieldChangedTakesItsRight) {
  reg_.setRights("User902", {51, 53});
  EXPECT_EQ(refused("Bert", "manual edit", {"M2", "--name", "B", "--field2", "b", "--notes", "n"}),
            test::denied("Edit the manual notes field"));
}

TEST_F(ManualVerbs, DeletesAManualWithItsCopies) {
  EXPECT_EQ(reg_.done("manual delete", {"M'1"}), "deleted the manual M'1\n");
  EXPECT_THAT(reg_.rows("Select ManualID From Manuals"), ElementsAre("M2"));
  EXPECT_THAT(reg_.rows("Select ManualID From ManualContents"), IsEmpty());
  EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(ManualVerbs, ListsTheDocumentsOfAManualInItsOrder) {
  EXPECT_EQ(reg_.done("manual contents", {"M'1"}),
            "Position  DocumentID  DocumentNumber  DocumentTitle  RevisionLevel  EffectiveDate\n"
            "--------  ----------  --------------  -------------  -------------  -------------\n"
            "       1  D2          P-2             Budget         1              2002-04-01\n"
            "       2  D1          P-1             Plan's end     A              2001-03-09\n"
            "(2 rows)\n");
  reg_.setRights("User902", {50});
  const auto places = [&] {
    return json::parse(reg_.as("Bert", "manual contents", {"M'1", "--json"}).out)["rows"];
  };
  EXPECT_EQ(places().size(), 1U) << "secured from him";
  EXPECT_EQ(places()[0][0], 2);
  reg_.own("d2", "User902");
  EXPECT_EQ(places().size(), 2U);
}

TEST_F(ManualVerbs, ListsWhoHasAManual) {
  EXPECT_EQ(reg_.done("manual copies", {"M'1"}),
            "UserID   UserName  HardCopy  CopyNumber\n"
            "-------  --------  --------  ----------\n"
            "User903  Carla     true      0007\n"
            "User902  Bert      false\n"
            "(2 rows)\n");
  reg_.execute("Delete * From Users Where UserID = 'User903'");
  EXPECT_THAT(reg_.done("manual copies", {"M'1", "--csv"}),
              HasSubstr("\"User903\",,true,\"0007\"\r\n"));
}

TEST_F(ManualVerbs, ADocumentPutIntoAManualComesIntoItsCopies) {
  reg_.execute("Delete * From ManualContents Where DocumentID = 'D1'");
  reg_.execute("Update Personals Set DocumentID = 'D2', RevisionID = 903");
  EXPECT_EQ(reg_.done("manual put", {"M'1", "P-1"}),
            "put the document D1 into the manual M'1 at place 2, and into 2 copies of it\n");
  EXPECT_THAT(copies(),
              ElementsAre("User902|D1|M'1|False|-1|901", "User902|D2|M'1|False|-1|903",
                          "User903|D1|M'1|True|0007|901", "User903|D2|M'1|True|0007|903"));
  EXPECT_EQ(refused("Anna", "manual put", {"M'1", "P-1"}),
            "error " + std::to_string(kErrorBase + 2506) +
                " (DocumentManualRelation): The Document is already in this manual\n");
  EXPECT_THAT(refused("Anna", "manual put", {"M'1", "P-3"}),
              HasSubstr("This Document is uncontrolled.  Only Controlled documents"));
}

TEST_F(ManualVerbs, ADocumentIsPutAtAPlace) {
  reg_.execute("Delete * From ManualContents Where DocumentID = 'D1'");
  EXPECT_EQ(refused("Anna", "manual put", {"M'1", "D1", "3"}),
            "error 5 (kvvesk): The manual has the places 1 to 2, not 3.\n");
  const auto put = json::parse(reg_.done("manual put", {"M2", "D1", "1", "--json"}));
  EXPECT_EQ(put, json::parse(R"({"columns": ["ManualID", "DocumentID", "Position", "Copies"],
                                 "rows": [["M2", "D1", 1, 0]]})"));
}

TEST_F(ManualVerbs, ADocumentTakenOutLeavesTheCopies) {
  EXPECT_EQ(reg_.done("manual take", {"M'1", "D1"}),
            "took the document D1 out of the manual M'1, and out of 2 copies of it\n");
  EXPECT_THAT(copies(), IsEmpty());
  EXPECT_THAT(refused("Anna", "manual take", {"M'1", "D1"}),
              HasSubstr("The Document is not part of the manual"));
}

TEST_F(ManualVerbs, ADocumentIsMoved) {
  EXPECT_EQ(reg_.done("manual move", {"M'1", "D2", "2"}),
            "moved the document D2 in the manual M'1 to place 2\n");
  const auto order = json::parse(reg_.done("manual contents", {"M'1", "--json"}))["rows"];
  EXPECT_EQ(order[0][1], "D1");
  EXPECT_EQ(order[1][1], "D2");
  // The register puts it behind the one at that place; the answer tells so.
  EXPECT_EQ(reg_.done("manual move", {"M'1", "D2", "1"}),
            "moved the document D2 in the manual M'1 to place 2\n");
  EXPECT_EQ(refused("Anna", "manual move", {"M'1", "D1", "0"}),
            "error 5 (kvvesk): The manual has the places 1 to 2, not 0.\n");
  EXPECT_EQ(refused("Anna", "manual move", {"M2", "D1", "1"}),
            "error 5 (kvvesk): The document D1 is not in the manual M2.\n");
}

TEST_F(ManualVerbs, ASecuredDocumentCannotBePutIntoAManualByOthers) {
  reg_.setRights("User902", {100, 101});
  for (const char* verb : {"manual put", "manual take"})
    EXPECT_EQ(refused("Bert", verb, {"M2", "D2"}),
              "error 5 (kvvesk): There is no document 'D2'.\n");
}

}  // namespace
}  // namespace kv
