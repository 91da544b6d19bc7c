// SPDX-License-Identifier: Apache-2.0
// kvvesk documents and document: listing, showing, adding, changing, deleting.

#include <chrono>
#include <nlohmann/json.hpp>
#include <set>
#include <thread>

#include "cli/verb_register.h"
#include "common/clock.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using Rows = std::vector<std::string>;

class DocumentVerbs : public test::VerbTest {
 protected:
  // A document's row, its number and identifier left out.
  [[nodiscard]] std::string row(const std::string& where) const {
    return reg_.value(
        "Select DocumentTitle, DocumentNumber, RevisionLevel, EffectiveDate, DocUser1, DocUser2, "
        "DocUser3, DocUser4, DocumentNotes, SecurityLevel, Location, Controlled, CurrentRevID From "
        "Documents Where " +
        where);
  }
};

TEST_F(DocumentVerbs, DocumentsAreListedByTitle) {
  EXPECT_EQ(reg_.done("documents"),
            "DocumentID  DocumentNumber  DocumentTitle  RevisionLevel  EffectiveDate  Controlled\n"
            "----------  --------------  -------------  -------------  -------------  ----------\n"
            "D2          P-2             Budget         1              2002-04-01     true\n"
            "D1          P-1             Plan's end     A              2001-03-09     true\n"
            "D3          P-3             Sketch         Uncontrolled                  false\n"
            "(3 rows)\n");
  EXPECT_EQ(reg_.done("documents", {"--csv", "--fields", "DocumentTitle, currentrevid"}),
            "\"DocumentTitle\",\"CurrentRevID\"\r\n\"Budget\",903\r\n\"Plan's "
            "end\",901\r\n\"Sketch\",0\r\n");
  const auto all = json::parse(reg_.done("documents", {"--json", "--fields", "*"}));
  EXPECT_EQ(all["columns"].size(), 15U);
  EXPECT_EQ(all["rows"].size(), 3U);
}

TEST_F(DocumentVerbs, OnlyAdministratorsHaveSecuredDocumentsListed) {
  reg_.setRights("User902", {1});
  reg_.own("D2", "User902");
  const auto list = reg_.as("Bert", "documents", {"--csv", "--fields", "DocumentID"});
  EXPECT_EQ(list.out, "\"DocumentID\"\r\n\"D1\"\r\n\"D3\"\r\n");
}

TEST_F(DocumentVerbs, ListsAreSortedAsAsked) {
  const auto ids = [&](const std::string& sort) {
    return reg_.done("documents", {"--csv", "--fields", "DocumentID", "--sort", sort});
  };
  EXPECT_EQ(ids("DocumentNumber"), "\"DocumentID\"\r\n\"D1\"\r\n\"D2\"\r\n\"D3\"\r\n");
  EXPECT_EQ(ids("controlled ASC , DocumentNumber desc"),
            "\"DocumentID\"\r\n\"D2\"\r\n\"D1\"\r\n\"D3\"\r\n");
  reg_.execute("Update VeskConfig Set ProgramOptions = '00000000001'");
  EXPECT_EQ(reg_.done("documents", {"--csv", "--fields", "DocumentID"}),
            "\"DocumentID\"\r\n\"D1\"\r\n\"D2\"\r\n\"D3\"\r\n")
      << "the register says: by number";
}

TEST_F(DocumentVerbs, NothingButColumnsGetsIntoTheStatement) {
  reg_.setRights("User902", {1});
  for (const char* columns :
       {"Colour", "", "*, DocumentID", "DocumentID,", "[Password] From Users --",
        "DocumentID] From Documents --", "Count(*)", "1", "DocumentID desc"})
    EXPECT_THAT(refused("Bert", "documents", {"--fields", columns}), StartsWith("error 3265"))
        << columns;
  for (const char* columns : {"Colour", "DocumentID; Delete * From Users", "*", "DocumentID desc x",
                              "desc", "(Select UserID From Users)"})
    EXPECT_THAT(refused("Bert", "documents", {"--sort", columns}), StartsWith("error 3265"))
        << columns;
}

TEST_F(DocumentVerbs, ListsGoThroughASavedQuery) {
  EXPECT_THAT(reg_.done("documents", {"--query", "plans"}), HasSubstr("(1 row)\n"));
  EXPECT_THAT(reg_.done("documents", {"--query", "2"}), HasSubstr("Plan's end"));
  EXPECT_EQ(refused("Anna", "documents", {"--query", "Plan's"}),
            "error 5 (kvvesk): There is no document query 'Plan's'.\n");
  EXPECT_EQ(refused("Anna", "documents", {"--query", ""}),
            "error 5 (kvvesk): There is no document query ''.\n");
  EXPECT_EQ(refused("Anna", "documents", {"--query", "99999999999999999999"}),
            "error 5 (kvvesk): There is no document query '99999999999999999999'.\n");
  reg_.execute("Insert Into DocumentQuerys (QueryName) Values ('PLANS')");
  EXPECT_EQ(refused("Anna", "documents", {"--query", "Plans"}),
            "error 5 (kvvesk): Several document queries have the name 'Plans'; give the query's "
            "number.\n");
}

TEST_F(DocumentVerbs, WithoutTheQueryForAllTheListSaysHowToMakeIt) {
  reg_.execute("Delete * From DocumentQuerys");
  EXPECT_EQ(refused("Anna", "documents", {}),
            "error 5 (kvvesk): There is no document query 'All documents' to list by; add it with "
            "'kvvesk queries add', or give --query.\n");
  (void)reg_.done("queries add", {"All documents"});
  EXPECT_THAT(reg_.done("documents"), HasSubstr("(3 rows)\n"));
}

TEST_F(DocumentVerbs, ANewRegisterHasTheQueryForAll) {
  const std::string path = reg_.file("new.kvv");
  ASSERT_EQ(test::run({"new", path, "-u", "Anna"}).code, 0);
  EXPECT_THAT(test::run({"documents", path, "-u", "Anna"}).out, EndsWith("(0 rows)\n"));
  EXPECT_THAT(test::run({"queries", "show", path, "-u", "Anna", "--csv"}).out,
              HasSubstr("\r\n1,\"All documents\",\"all\",\"\"\r\n"));
}

TEST_F(DocumentVerbs, ShowsADocument) {
  reg_.execute("Update DocumentConfig Set DocUser1 = 'Workgroup'");
  reg_.execute(
      "Update Documents Set DocUser1 = 'Quality', DocumentNotes = 'one\r\n\r\ntwo' Where "
      "DocumentID = 'D1'");
  EXPECT_EQ(reg_.done("document show", {"D1"}),
            "ID                    901\n"
            "DocumentID            D1\n"
            "DocumentTitle         Plan's end\n"
            "DocumentNumber        P-1\n"
            "RevisionLevel         A\n"
            "EffectiveDate         2001-03-09\n"
            "DocUser1 (Workgroup)  Quality\n"
            "DocUser2\n"
            "DocUser3\n"
            "DocUser4\n"
            "DocumentNotes         one\n"
            "\n"
            "                      two\n"
            "SecurityLevel         false\n"
            "Location\n"
            "Controlled            true\n"
            "CurrentRevID          901\n");
  EXPECT_EQ(json::parse(reg_.done("document show", {"P-3", "--json"})), json::parse(R"({
    "columns": ["ID","DocumentID","DocumentTitle","DocumentNumber","RevisionLevel","EffectiveDate",
                "DocUser1","DocUser2","DocUser3","DocUser4","DocumentNotes","SecurityLevel",
                "Location","Controlled","CurrentRevID"],
    "rows": [[903,"D3","Sketch","P-3","Uncontrolled",null,null,null,null,null,null,false,null,
              false,0]]})"));
  EXPECT_THAT(reg_.done("document show", {"p-1", "--csv"}),
              HasSubstr("901,\"D1\",\"Plan's end\",\"P-1\",\"A\",2001-03-09,\"Quality\",,,,"));
}

TEST_F(DocumentVerbs, ASecuredDocumentIsThereForAdministratorsAndOwners) {
  reg_.setRights("User902", {1, 2, 3, 30, 32, 90, 93});
  const std::string none = "error 5 (kvvesk): There is no document 'P-2'.\n";
  EXPECT_EQ(refused("Bert", "document show", {"P-2"}), none);
  EXPECT_EQ(refused("Bert", "document edit", {"P-2", "--title", "x"}), none);
  EXPECT_EQ(refused("Bert", "document edit", {"P-2", "--number", "x"}), none)
      << "the same without the right";
  EXPECT_EQ(refused("Bert", "document delete", {"P-2"}), none);
  EXPECT_EQ(refused("Bert", "revisions", {"P-2"}), none);
  EXPECT_EQ(refused("Bert", "revision add", {"P-2", "--level", "2"}), none);
  const std::string noRevision = "error 5 (kvvesk): There is no revision 903.\n";
  EXPECT_EQ(refused("Bert", "revision show", {"903"}), noRevision);
  EXPECT_EQ(refused("Bert", "revision edit", {"903", "--description", "x"}), noRevision);
  EXPECT_EQ(refused("Bert", "revision delete", {"903"}), noRevision);

  reg_.own("D2", "User902");
  EXPECT_EQ(reg_.as("Bert", "document show", {"D2"}).code, 0);
  EXPECT_EQ(reg_.as("Bert", "revisions", {"D2"}).code, 0);
  EXPECT_EQ(reg_.as("Bert", "revision show", {"903"}).code, 0);
  reg_.setRights("User903", {30, 40});
  EXPECT_EQ(reg_.as("Carla", "document show", {"D2"}).code, 0) << "everybody's owner";
}

TEST_F(DocumentVerbs, ANumberIsTakenWhereItNamesOneVisibleDocument) {
  reg_.setRights("User902", {30});
  reg_.execute("Update Documents Set DocumentNumber = 'P-1' Where DocumentID = 'D2'");
  EXPECT_EQ(refused("Anna", "document show", {"P-1"}),
            "error 5 (kvvesk): Several documents have the number 'P-1'; give the document's "
            "identifier.\n");
  EXPECT_THAT(reg_.as("Bert", "document show", {"P-1"}).out, HasSubstr("Plan's end"));
  reg_.execute("Update Documents Set DocumentNumber = 'D1' Where DocumentID = 'D3'");
  EXPECT_THAT(reg_.as("Bert", "document show", {"D1"}).out, HasSubstr("Plan's end"))
      << "identifiers go first";
}

TEST_F(DocumentVerbs, AnIdentifierThatOccursTwiceIsLeftAlone) {
  reg_.execute("Insert Into Documents (DocumentID, DocumentNumber) Values ('D1', 'P-9')");
  const std::string twice = "error 5 (kvvesk): Several documents have the identifier 'D1'.\n";
  for (const char* document : {"D1", "P-1", "P-9"}) {
    EXPECT_EQ(refused("Anna", "document show", {document}), twice);
    EXPECT_EQ(refused("Anna", "document edit", {document, "--title", "x"}), twice);
    EXPECT_EQ(refused("Anna", "document delete", {document}), twice);
    EXPECT_EQ(refused("Anna", "revisions", {document}), twice);
    EXPECT_EQ(refused("Anna", "revision add", {document}), twice);
  }
  reg_.execute("Update Documents Set SecurityLevel = True Where DocumentNumber = 'P-9'");
  reg_.setRights("User902", {3});
  EXPECT_EQ(refused("Bert", "document delete", {"P-1"}), twice)
      << "it would take along one that the user cannot see";
}

TEST_F(DocumentVerbs, WhatIsNotThereIsNotFound) {
  for (const std::string& document :
       {std::string("P-9"), std::string(""), std::string("x' or 'a'='a"), std::string("O'Brien"),
        std::string("''"), std::string("*"), std::string("P-_"), std::string("P-%"),
        std::string(10000, 'x')}) {
    const std::string none = "error 5 (kvvesk): There is no document '" + document + "'.\n";
    EXPECT_EQ(refused("Anna", "document show", {document}), none);
    EXPECT_EQ(refused("Anna", "document edit", {document, "--title", "x"}), none);
    EXPECT_EQ(refused("Anna", "document delete", {document}), none);
    EXPECT_EQ(refused("Anna", "revisions", {document}), none);
    EXPECT_EQ(refused("Anna", "revision add", {document, "--level", "x"}), none);
  }
  reg_.execute("Insert Into Documents (DocumentNumber) Values ('P-8')");
  EXPECT_EQ(refused("Anna", "document show", {"P-8"}),
            "error 5 (kvvesk): The document 'P-8' has no identifier.\n");
}

TEST_F(DocumentVerbs, ApostrophesInIdentifiersAreNoHindrance) {
  reg_.execute("Update Documents Set DocumentID = 'O''Brien' Where DocumentID = 'D1'");
  reg_.execute("Update Revisions Set DocumentID = 'O''Brien' Where DocumentID = 'D1'");
  EXPECT_THAT(reg_.done("document show", {"O'Brien"}), HasSubstr("Plan's end"));
  EXPECT_EQ(reg_.done("document edit", {"O'Brien", "--title", "It's"}),
            "changed the document O'Brien\n");
  EXPECT_THAT(reg_.done("revisions", {"O'Brien"}), HasSubstr("(2 rows)"));
  EXPECT_THAT(reg_.done("revision add", {"O'Brien", "--level", "C"}),
              MatchesRegex("added the revision [0-9]+ to O'Brien\n"));
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions Where DocumentID = 'O''Brien'"), "3");
  EXPECT_EQ(reg_.done("document edit", {"O'Brien", "--controlled", "no"}),
            "changed the document O'Brien\n");
  EXPECT_EQ(reg_.done("document delete", {"O'Brien"}), "deleted the document O'Brien\n");
  EXPECT_EQ(reg_.value("Select Count(*) From Documents"), "2");
}

TEST_F(DocumentVerbs, AddsADocumentWithItsFirstRevision) {
  const auto added = json::parse(reg_.done(
      "document add", {"--title",     "It's new",   "--number",   "P-4",   "--field1",  "a",
                       "--field2",    "b",          "--field3",   "c",     "--field4",  "d",
                       "--notes",     "one\ntwo",   "--location", "shelf", "--level",   "A",
                       "--effective", "2024-03-09", "--secured",  "yes",   "--current", "--json"}));
  const std::string id = added["rows"][0][0];
  EXPECT_EQ(added["columns"], json::array({"DocumentID"}));
  EXPECT_THAT(id, MatchesRegex("User901[0-9]{12}"));
  const std::string revision = reg_.value("Select Max(RevisionID) From Revisions");
  EXPECT_EQ(row("DocumentID = '" + id + "'"),
            "It's new|P-4|A|3/9/2024|a|b|c|d|one\ntwo|True|shelf|True|" + revision);
  EXPECT_EQ(reg_.value("Select DocumentID, RevisionLevel, EffectiveDate, ResponsibleID, Location, "
                       "RevisionStatus From Revisions Where RevisionID = " +
                       revision),
            id + "|A|3/9/2024|User901|shelf|1");
}

TEST_F(DocumentVerbs, ANewDocumentIsControlledAndInPreparation) {
  EXPECT_THAT(reg_.done("document add", {"--title", "-x", "--notes={}"}),
              MatchesRegex("added the document User901[0-9]{12}\n"));
  EXPECT_EQ(row("DocumentTitle = '-x'"), "-x|~|~|~|~|~|~|~|{}|False|~|True|~");
  EXPECT_EQ(reg_.value("Select RevisionStatus From Revisions Where RevisionLevel Is Null"), "2");
  const std::string before = dateText(today());
  (void)reg_.done("document add", {"--title", "y", "--current"});
  EXPECT_THAT(reg_.value("Select EffectiveDate From Documents Where DocumentTitle = 'y'"),
              AnyOf(before, dateText(today())))
      << "in force since the day it was added";
  (void)reg_.done("document add", {"--title", "z", "--controlled", "no", "--level", "A"});
  EXPECT_EQ(row("DocumentTitle = 'z'"), "z|~|Uncontrolled|~|~|~|~|~|~|False|~|False|0");
}

TEST_F(DocumentVerbs, DocumentsAddedInOneSecondGetIdentifiersOfTheirOwn) {
  constexpr int kDocuments = 4;
  std::set<std::string> ids;
  for (int i = 0; i < kDocuments; ++i)
    ids.insert(reg_.done("document add", {"--title", "one of several"}));
  EXPECT_EQ(ids.size(), static_cast<std::size_t>(kDocuments));
  EXPECT_EQ(reg_.rows("Select Distinct DocumentID From Documents Where DocumentTitle = 'one of "
                      "several'")
                .size(),
            static_cast<std::size_t>(kDocuments));
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions"), "8") << "and one revision each";
}

TEST_F(DocumentVerbs, AddingThatFailsAddsNothing) {
  EXPECT_THAT(refused("Anna", "document add", {"--title", std::string(256, 'x')}),
              StartsWith("error 3421"));
  EXPECT_THAT(refused("Anna", "document add", {"--title", "x", "--level", std::string(51, 'x')}),
              StartsWith("error 3421"));
  EXPECT_THAT(refused("Anna", "document add", {"--title", "caf\xE9"}), StartsWith("error 3421"));
}

TEST_F(DocumentVerbs, ChangesWhatIsGivenAndNothingElse) {
  reg_.execute(
      "Update Documents Set DocumentNotes = 'old', DocUser4 = 'kept' Where DocumentID = "
      "'D1'");
  EXPECT_EQ(reg_.done("document edit", {"P-1", "--title", "It's \"new\"", "--notes", ""}),
            "changed the document D1\n");
  EXPECT_EQ(row("DocumentID = 'D1'"), "It's \"new\"|P-1|A|3/9/2001|~|~|~|kept|~|False|~|True|901");
  EXPECT_EQ(json::parse(reg_.done("document edit", {"D1", "--number", "P-7", "--field1", "a",
                                                    "--field2", "b", "--field3", "c", "--field4",
                                                    "d", "--location", "shelf", "--secured", "yes",
                                                    "--notes", std::string(10000, 'n'), "--json"})),
            json::parse(R"({"columns":["DocumentID"],"rows":[["D1"]]})"));
  EXPECT_EQ(row("DocumentID = 'D1'"), "It's \"new\"|P-7|A|3/9/2001|a|b|c|d|" +
                                          std::string(10000, 'n') + "|True|shelf|True|901");
  EXPECT_EQ(reg_.done("document edit", {"D1", "--secured", "no", "--csv"}),
            "\"DocumentID\"\r\n\"D1\"\r\n");
}

TEST_F(DocumentVerbs, AChangeIsMadeWholeOrNotAtAll) {
  EXPECT_THAT(refused("Anna", "document edit",
                      {"D1", "--controlled", "no", "--title", std::string(256, 'x')}),
              StartsWith("error 3421"));
  reg_.setRights("User902", {32, 42});
  EXPECT_EQ(refused("Bert", "document edit",
                    {"D1", "--title", "x", "--controlled", "no", "--number", "y"}),
            test::denied("Edit the document number field"));
}

TEST_F(DocumentVerbs, AChangeWaitsForAnotherAndKeepsIt) {
  const auto other = kvConnection::open(reg_.path());
  other->BeginTrans();
  std::int32_t affected = 0;
  other->Execute("Update Documents Set DocumentNumber = 'P-7' Where DocumentID = 'D1'", affected);
  std::thread committing([&other] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    other->CommitTrans();
  });
  const auto outcome = reg_.as("Anna", "document edit", {"D1", "--title", "New"});
  committing.join();
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(row("DocumentID = 'D1'"), "New|P-7|A|3/9/2001|~|~|~|~|~|False|~|True|901");
}

TEST_F(DocumentVerbs, TakesADocumentOutOfControlAndBack) {
  for (const char* sql :
       {"Insert Into ManualContents (ManualID, DocumentID) Values ('M1', 'D1')",
        "Insert Into Personals (UserID, DocumentID, HardCopy) Values ('User902', 'D1', True)",
        "Insert Into Personals (UserID, DocumentID, HardCopy) Values ('User903', 'D1', False)",
        "Insert Into Routing (DocumentID, UserID) Values ('D1', 'User902')"})
    reg_.execute(sql);
  (void)reg_.done("document edit", {"D1", "--controlled", "no", "--title", "Loose"});
  EXPECT_EQ(row("DocumentID = 'D1'"), "Loose|P-1|Uncontrolled|~|~|~|~|~|~|False|~|False|0");
  EXPECT_EQ(reg_.value("Select Count(*) From ManualContents"), "0");
  EXPECT_EQ(reg_.rows("Select UserID From Personals"), Rows{"User903"});
  EXPECT_EQ(reg_.value("Select Count(*) From Routing"), "0");
  EXPECT_EQ(reg_.rows("Select RevisionID From Revisions Where DocumentID = 'D1'"), Rows{"901"});

  (void)reg_.done("document edit", {"D1", "--controlled", "no"});
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions Where DocumentID = 'D1'"), "1");

  (void)reg_.done("document edit", {"D1", "--controlled", "yes"});
  EXPECT_EQ(row("DocumentID = 'D1'"), "Loose|P-1|A|3/9/2001|~|~|~|~|~|False|~|True|901")
      << "the revision that was kept is in force again";
  reg_.execute("Delete * From Revisions Where DocumentID = 'D3'");
  (void)reg_.done("document edit", {"D3", "--controlled", "yes"});
  EXPECT_EQ(row("DocumentID = 'D3'"), "Sketch|P-3|~|~|~|~|~|~|~|False|~|True|0");
}

TEST_F(DocumentVerbs, DeletesADocumentWithWhatHangsOffIt) {
  reg_.own("D1", "User902");
  EXPECT_EQ(reg_.done("document delete", {"P-1", "--json"}),
            "{\n  \"columns\": [\"DocumentID\"],\n  \"rows\": [\n    [\"D1\"]\n  ]\n}\n");
  EXPECT_EQ(reg_.rows("Select DocumentID From Documents"), (Rows{"D2", "D3"}));
  EXPECT_EQ(reg_.value("Select Count(*) From Owners"), "0");
  EXPECT_EQ(reg_.rows("Select DocumentID From Revisions"), (Rows{"D2", "D3"}));
  EXPECT_EQ(refused("Anna", "document delete", {"P-1"}),
            "error 5 (kvvesk): There is no document 'P-1'.\n");
}

TEST_F(DocumentVerbs, WrongUsageEndsWithTwo) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> wrong = {
      {"document", {}},
      {"document frobnicate", {"D1"}},
      {"document show", {}},
      {"document show", {"D1", "D2"}},
      {"document show", {"D1", "--csv", "--json"}},
      {"document add", {}},
      {"document add", {"--secured", "perhaps", "--title", "x"}},
      {"document add", {"--title", "x", "--effective", "soon"}},
      {"document add", {"--title", "x", "--effective", ""}},
      {"document edit", {"D1"}},
      {"document edit", {"D1", "--colour", "red"}},
      {"document edit", {"D1", "--title"}},
      {"document edit", {"D1", "--level", "A"}},
      {"document edit", {"D1", "--title", "a", "--title", "b"}},
      {"document edit", {"D1", "--controlled", ""}},
      {"document delete", {}},
      {"documents", {"--fields"}}};
  for (const auto& [verb, words] : wrong)
    EXPECT_NE(refused("Anna", verb, words, 2), "") << verb << ' ' << testing::PrintToString(words);
}

TEST_F(DocumentVerbs, HelpNamesEveryOption) {
  for (const char* verb : {"show", "add", "edit", "delete"})
    EXPECT_THAT(test::run({"document", "--help"}).out, HasSubstr(verb));
  const auto help = test::run({"document", "edit", "--help"}).out;
  for (const char* option : {"--title", "--number", "--field1", "--field4", "--notes", "--location",
                             "--secured", "--controlled", "--json"})
    EXPECT_THAT(help, HasSubstr(option));
  EXPECT_THAT(help, Not(HasSubstr("--level")));
}

}  // namespace
}  // namespace kv
