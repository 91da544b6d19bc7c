// SPDX-License-Identifier: Apache-2.0
// kvvesk queries: saved document queries and the lists they give.

#include <nlohmann/json.hpp>

#include "cli/verb_register.h"

namespace kv {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;
using Rows = std::vector<std::string>;

class QueryVerbs : public test::VerbTest {
 protected:
  [[nodiscard]] std::string condition(const std::string& query) const {
    return json::parse(reg_.done("queries show", {query, "--json"}))["rows"][0][3];
  }
  // The identifiers that a query lists.
  [[nodiscard]] std::string listed(const std::string& query) const {
    const auto answer =
        json::parse(reg_.done("documents", {"--query", query, "--fields", "DocumentID", "--json"}));
    std::string out;
    for (const auto& row : answer["rows"]) out += row[0].get<std::string>() + " ";
    return out;
  }
};

TEST_F(QueryVerbs, ShowsAllAndOne) {
  EXPECT_EQ(reg_.done("queries show"),
            "QueryID  QueryName      Kind  Condition\n"
            "-------  -------------  ----  ---------------------------------\n"
            "      1  All documents  all\n"
            "      2  Plans          all   Where DocumentTitle Like '%plan%'\n"
            "(2 rows)\n");
  EXPECT_EQ(reg_.done("queries show", {"plans"}),
            "QueryID    2\n"
            "QueryName  Plans\n"
            "Kind       all\n"
            "Condition  Where DocumentTitle Like '%plan%'\n");
  EXPECT_EQ(reg_.done("queries show", {"2", "--csv"}),
            "\"QueryID\",\"QueryName\",\"Kind\",\"Condition\"\r\n2,\"Plans\",\"all\",\"Where "
            "DocumentTitle Like '%plan%'\"\r\n");
  EXPECT_EQ(json::parse(reg_.done("queries show", {"--json"}))["rows"].size(), 2U);
}

TEST_F(QueryVerbs, AQueryWithoutAConditionThatCanBeToldDoesNotHideTheOthers) {
  reg_.execute("Update DocumentQuerys Set Field1Key = Null Where QueryID = 2");
  EXPECT_THAT(reg_.done("queries show"), HasSubstr("(Invalid use of Null)\n(2 rows)\n"));
}

TEST_F(QueryVerbs, AddsAQueryWithCriteria) {
  EXPECT_EQ(reg_.done("queries add", {"Bert's", "--kind", "controlled", "--where", "title",
                                      "contains", "'s", "--where", "DocumentNumber", "<>", "-3"}),
            "added the query 3, Bert's\n");
  EXPECT_EQ(condition("Bert's"),
            "Where Controlled <> 0 and DocumentTitle Like '%''s%' and DocumentNumber <> '-3'");
  EXPECT_EQ(listed("Bert's"), "D1 ");
  EXPECT_EQ(json::parse(reg_.done("queries add", {"documents", "--json"})),
            json::parse(R"({"columns":["QueryID"],"rows":[[4]]})"))
      << "the name of a verb is a name like any other";
  EXPECT_EQ(listed("documents"), "D2 D1 D3 ");
}

TEST_F(QueryVerbs, EveryColumnAndOperator) {
  (void)reg_.done("queries add",
                  {"All columns", "--where", "title",    "=",  "a", "--where", "number", "contains",
                   "b",           "--where", "field1",   ">",  "c", "--where", "field2", "<",
                   "d",           "--where", "DocUser3", "<>", "e", "--where", "field4", "=",
                   "f",           "--where", "level",    "<>", "g"});
  EXPECT_EQ(condition("All columns"),
            "Where DocumentTitle = 'a' and DocumentNumber Like '%b%' and DocUser1 > 'c' and "
            "DocUser2 < 'd' and DocUser3 <> 'e' and DocUser4 = 'f' and Documents.RevisionLevel <> "
            "'g'");
  EXPECT_EQ(reg_.value("Select Rev1, Rev1Key, Field7 From DocumentQuerys Where QueryID = 3"),
            "g|4|g")
      << "reports read the level elsewhere";
  const std::map<std::string, std::string> byTitle = {
      {"=", "D2 "}, {"contains", "D2 "}, {">", "D1 D3 "}, {"<", ""}, {"<>", "D1 D3 "}};
  for (const auto& [op, documents] : byTitle) {
    (void)reg_.done("queries add", {"by " + op, "--where", "TITLE", op, "budget"});
    EXPECT_EQ(listed("by " + op), documents) << op;
  }
}

TEST_F(QueryVerbs, DatesAreSearchedByDayAndRange) {
  const auto query = [&](std::vector<std::string> words) {
    words.insert(words.begin(), {"Dates"});
    if (reg_.value("Select Count(*) From DocumentQuerys") == "2")
      (void)reg_.done("queries add", words);
    else
      (void)reg_.done("queries edit", words);
    return condition("Dates") + ": " + listed("Dates");
  };
  EXPECT_EQ(query({"--on", "2001-03-09"}), "Where Documents.EffectiveDate = #3/9/2001#: D1 ");
  EXPECT_EQ(query({"--after", "2001-03-09"}), "Where Documents.EffectiveDate > #3/9/2001#: D2 ");
  EXPECT_EQ(query({"--before", "4/1/2002"}), "Where Documents.EffectiveDate < #4/1/2002#: D1 ");
  EXPECT_EQ(
      query({"--after", "2001-03-09", "--before", "2002-04-01"}),
      "Where Documents.EffectiveDate > #3/9/2001# and Documents.EffectiveDate < #4/1/2002#: ");
  EXPECT_EQ(query({"--after", "2001-03-08", "--before", "2002-04-02"}),
            "Where Documents.EffectiveDate > #3/8/2001# and Documents.EffectiveDate < #4/2/2002#: "
            "D2 D1 ");
  EXPECT_EQ(query({"--drop", "effective"}), ": D2 D1 D3 ");
}

TEST_F(QueryVerbs, KindsAreControlledUncontrolledAndAll) {
  (void)reg_.done("queries edit", {"Plans", "--drop", "title", "--kind", "uncontrolled"});
  EXPECT_EQ(listed("Plans"), "D3 ");
  EXPECT_THAT(reg_.done("queries show", {"Plans"}), HasSubstr("Kind       uncontrolled\n"));
  (void)reg_.done("queries edit", {"Plans", "--kind", "controlled"});
  EXPECT_EQ(listed("Plans"), "D2 D1 ");
  (void)reg_.done("queries edit", {"Plans", "--kind", "all"});
  EXPECT_EQ(listed("Plans"), "D2 D1 D3 ");
}

TEST_F(QueryVerbs, ChangesWhatIsGivenAndNothingElse) {
  EXPECT_EQ(reg_.done("queries edit", {"Plans", "--name", "PLANS", "--where", "level", "=", "A"}),
            "changed the query 2\n");
  EXPECT_EQ(condition("2"), "Where DocumentTitle Like '%plan%' and Documents.RevisionLevel = 'A'");
  EXPECT_EQ(reg_.value("Select QueryName From DocumentQuerys Where QueryID = 2"), "PLANS");
  EXPECT_EQ(reg_.done("queries edit", {"2", "--drop", "level", "--drop", "Title", "--csv"}),
            "\"QueryID\"\r\n2\r\n");
  EXPECT_EQ(condition("2"), "");
  EXPECT_EQ(reg_.value("Select Field1, Field1Key, Rev1, Rev1Key, Field7 From DocumentQuerys Where "
                       "QueryID = 2"),
            "~|~|~|~|~");
}

TEST_F(QueryVerbs, SetsAQueryWhetherItIsThereOrNot) {
  EXPECT_EQ(reg_.done("queries set", {"plans", "--where", "level", "=", "A"}),
            "changed the query 2, plans\n");
  EXPECT_EQ(condition("2"), "Where DocumentTitle Like '%plan%' and Documents.RevisionLevel = 'A'");
  EXPECT_EQ(reg_.value("Select QueryName From DocumentQuerys Where QueryID = 2"), "Plans");
  EXPECT_EQ(reg_.done("queries set", {"1", "--where", "title", "=", "x"}),
            "added the query 3, 1\n");
  EXPECT_EQ(reg_.done("queries set", {"1", "--where", "title", "=", "y"}),
            "changed the query 3, 1\n")
      << "what is set goes by its name alone";
  EXPECT_EQ(condition("3"), "Where DocumentTitle = 'y'");
  EXPECT_EQ(condition("1"), "");
  EXPECT_EQ(reg_.done("queries list"), reg_.done("queries show"));
}

TEST_F(QueryVerbs, DeletesAQuery) {
  EXPECT_EQ(reg_.done("queries delete", {"Plans"}), "deleted the query 2\n");
  EXPECT_EQ(reg_.rows("Select QueryID From DocumentQuerys"), Rows{"1"});
}

TEST_F(QueryVerbs, ANameIsGivenOnce) {
  const std::string taken = "error 5 (kvvesk): There is a document query 'plans' already.\n";
  EXPECT_EQ(refused("Anna", "queries add", {"plans"}), taken);
  EXPECT_EQ(refused("Anna", "queries edit", {"1", "--name", "plans", "--kind", "all"}), taken);
  (void)reg_.done("queries add", {"1", "--where", "title", "=", "x"});
  EXPECT_EQ(condition("1"), "") << "a number goes before a name";
  EXPECT_EQ(reg_.done("queries edit", {"3", "--name", "1"}), "changed the query 3\n");
}

TEST_F(QueryVerbs, WhatIsNotThereIsNotFound) {
  for (const char* query : {"Bert's", "99", "", "-1", "1x"}) {
    const std::string none =
        "error 5 (kvvesk): There is no document query '" + std::string(query) + "'.\n";
    EXPECT_EQ(refused("Anna", "queries show", {"--", query}), none);
    EXPECT_EQ(refused("Anna", "queries edit", {"--kind", "all", "--", query}), none);
    EXPECT_EQ(refused("Anna", "queries delete", {"--", query}), none);
  }
  EXPECT_THAT(refused("Anna", "queries add", {std::string(101, 'x')}), StartsWith("error 3421"));
  EXPECT_THAT(refused("Anna", "queries add", {"x", "--where", "title", "=", std::string(256, 'x')}),
              StartsWith("error 3421"));
}

TEST_F(QueryVerbs, ManualsHaveQueriesOfTheirOwn) {
  reg_.execute("Insert Into Manuals (ManualID, ManualName, ManUser4) Values ('M1', 'Dan''s', 'x')");
  reg_.execute("Insert Into Manuals (ManualID, ManualName) Values ('M2', 'Leaflet')");
  EXPECT_EQ(reg_.done("queries add", {"Plans", "--of", "manuals", "--where", "name", "contains",
                                      "n's", "--where", "field4", "=", "x"}),
            "added the query 1, Plans\n")
      << "names are given once for each kind";
  EXPECT_EQ(reg_.done("queries show", {"--of", "manuals"}),
            "QueryID  QueryName  Condition\n"
            "-------  ---------  -------------------------------------------------\n"
            "      1  Plans      Where ManualName Like '%n''s%' and ManUser4 = 'x'\n"
            "(1 row)\n");
  const auto found = [&] {
    return reg_.done("manuals", {"--query", "plans", "--fields", "ManualID", "--csv"});
  };
  EXPECT_EQ(found(), "\"ManualID\"\r\n\"M1\"\r\n");
  EXPECT_EQ(reg_.done("queries edit", {"--of", "Manuals", "1", "--drop", "ManualName", "--where",
                                       "field4", "<>", "y", "--name", "Others"}),
            "changed the query 1\n");
  EXPECT_EQ(reg_.done("queries show", {"Others", "--of", "manuals"}),
            "QueryID    1\n"
            "QueryName  Others\n"
            "Condition  Where ManUser4 <> 'y'\n");
  EXPECT_EQ(refused("Anna", "queries delete", {"Plans", "--of", "manuals"}),
            "error 5 (kvvesk): There is no manual query 'Plans'.\n");
  EXPECT_EQ(reg_.done("queries delete", {"Others", "--of", "manuals"}), "deleted the query 1\n");
  EXPECT_EQ(reg_.rows("Select QueryID From ManualQuerys"), Rows{});
  EXPECT_EQ(reg_.value("Select Count(*) From DocumentQuerys"), "2")
      << "the others are as they were";
}

TEST_F(QueryVerbs, EveryColumnOfManualsCanBeSearchedBy) {
  (void)reg_.done("queries add",
                  {"All",    "--of",     "manuals", "--where", "ManualName", "=",  "a", "--where",
                   "field1", "contains", "b",       "--where", "field2",     ">",  "c", "--where",
                   "field3", "<",        "d",       "--where", "ManUser4",   "<>", "e"});
  EXPECT_THAT(reg_.done("queries show", {"All", "--of", "manuals"}),
              HasSubstr("Where ManualName = 'a' and ManUser1 Like '%b%' and ManUser2 > 'c' and "
                        "ManUser3 < 'd' and ManUser4 <> 'e'\n"));
}

TEST_F(QueryVerbs, UsersAreSearchedByWhatTheirFieldsHold) {
  reg_.execute("Update UserConfig Set TypeUser01 = 1, TypeUser02 = 2");
  reg_.execute("Update Users Set UserName = 'Bert O''Hara' Where UserID = 'User902'");
  const auto conditionWith = [&](std::vector<std::string> words) {
    const bool first = reg_.value("Select Count(*) From UserQuerys") == "0";
    words.insert(words.begin(), {"Some", "--of", "users"});
    (void)reg_.done(first ? "queries add" : "queries edit", words);
    return json::parse(reg_.done("queries show", {"Some", "--of", "users", "--json"}))["rows"][0][2]
        .get<std::string>();
  };
  EXPECT_EQ(conditionWith({"--where", "name", "contains", "O'h"}), " Where UserName Like '%O''h%'");
  EXPECT_EQ(reg_.done("users", {"--query", "Some", "--fields", "UserID", "--csv"}),
            "\"UserID\"\r\n\"User902\"\r\n");
  EXPECT_EQ(conditionWith({"--drop", "name", "--where", "title", "<>", "x", "--where", "Alias", ">",
                           "b", "--where", "user11", "=", "z"}),
            " Where Alias > 'b' and Title <> 'x' and User11 = 'z'");
  EXPECT_EQ(conditionWith({"--drop", "title", "--drop", "alias", "--drop", "user11", "--where",
                           "user01", ">", "-3.5"}),
            " Where User01 > -3.5");
  EXPECT_EQ(conditionWith({"--drop", "user01", "--where", "user02", "<", "2024-03-09"}),
            " Where User02 < #3/9/2024#");
  EXPECT_EQ(conditionWith({"--where", "user02", "between", "2024-03-09..2024-12-31"}),
            " Where User02 > #3/9/2024# and User02 < #12/31/2024#");
  EXPECT_EQ(conditionWith({"--where", "user02", "=", "3/9/2024"}), " Where User02 = #3/9/2024#");
  EXPECT_EQ(reg_.value("Select User02Upper From UserQuerys"), "~") << "the range is over";
  EXPECT_EQ(conditionWith({"--drop", "user02"}), "");
  EXPECT_EQ(reg_.done("queries delete", {"some", "--of", "users"}), "deleted the query 1\n");
  EXPECT_EQ(reg_.rows("Select QueryID From UserQuerys"), Rows{});
}

TEST_F(QueryVerbs, AUsersFieldIsComparedAsWhatItHolds) {
  reg_.execute("Update UserConfig Set TypeUser01 = 1, TypeUser02 = 2");
  const std::vector<std::pair<std::vector<std::string>, std::string>> wrong = {
      {{"user01", "=", "many"}, "'many' is not a number"},
      {{"user01", "contains", "1"},
       "'contains' does not go with the column 'user01', which is a number: =, >, <"},
      {{"user01", "<>", "1"},
       "'<>' does not go with the column 'user01', which is a number: =, >, <"},
      {{"user01", "between", "1..2"},
       "'between' does not go with the column 'user01', which is a number: =, >, <"},
      {{"user02", "=", "soon"}, "'soon' is not a date such as 2024-03-09"},
      {{"user02", "between", "2024-03-09"},
       "between takes two dates, such as 2024-01-01..2024-12-31"},
      {{"user02", "between", "2024-03-09.."}, "'' is not a date such as 2024-03-09"},
      {{"user02", "<>", "2024-03-09"},
       "'<>' does not go with the column 'user02', which is a date: =, >, <, between"},
      {{"name", "between", "a..b"},
       "'between' does not go with the column 'name', which is a text: =, contains, >, <, <>"}};
  for (const auto& [where, why] : wrong) {
    std::vector<std::string> words = {"Some", "--of", "users", "--where"};
    words.insert(words.end(), where.begin(), where.end());
    EXPECT_EQ(refused("Anna", "queries add", words, 2), "kvvesk: " + why + "\n");
  }
}

TEST_F(QueryVerbs, WrongUsageEndsWithTwo) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> wrong = {
      {"queries", {}},
      {"queries add", {}},
      {"queries add", {""}},
      {"queries add", {"x", "--where", "colour", "=", "red"}},
      {"queries add", {"x", "--where", "title", "like", "red"}},
      {"queries add", {"x", "--where", "title", "="}},
      {"queries add", {"x", "--where", "title", "=", ""}},
      {"queries add", {"x", "--where", "effective", "=", "2024-03-09"}},
      {"queries add", {"x", "--where", "title", "=", "a", "--where", "DocumentTitle", "=", "b"}},
      {"queries add", {"x", "--on", "soon"}},
      {"queries add", {"x", "--on", "2024-03-09", "--before", "2024-03-09"}},
      {"queries add", {"x", "--kind", "secured"}},
      {"queries add", {"x", "--drop", "title"}},
      {"queries edit", {"Plans"}},
      {"queries edit", {"Plans", "--name", ""}},
      {"queries edit", {"Plans", "--drop", "colour"}},
      {"queries edit", {"Plans", "--drop", "title", "--where", "title", "=", "x"}},
      {"queries edit", {"Plans", "--drop", "effective", "--on", "2024-03-09"}},
      {"queries delete", {}},
      {"queries show", {"--of", "revisions"}},
      {"queries add", {"x", "--of", "manuals", "--kind", "all"}},
      {"queries add", {"x", "--of", "users", "--on", "2024-03-09"}},
      {"queries add", {"x", "--of", "manuals", "--where", "title", "=", "x"}},
      {"queries add", {"x", "--of", "manuals", "--where", "name", "between", "x..y"}},
      {"queries add", {"x", "--where", "title", "between", "x..y"}},
      {"queries add", {"x", "--of", "users", "--where", "level", "=", "x"}}};
  for (const auto& [verb, words] : wrong)
    EXPECT_NE(refused("Anna", verb, words, 2), "") << verb << ' ' << testing::PrintToString(words);
}

}  // namespace
}  // namespace kv
