// SPDX-License-Identifier: Apache-2.0
// The program from the shell: what it prints, where, and how it ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/program.h"
#include "support/test_register.h"

namespace kv {
namespace {

using nlohmann::json;
using test::run;
using testing::HasSubstr;
using testing::StartsWith;

class Program : public testing::Test {
 protected:
  Program() : path_(folder_.file("r.kvv")) {
    const auto made = run({"new", path_, "--user", "Anna"});
    EXPECT_EQ(made.code, 0) << made.err;
  }
  test::Outcome sql(const std::string& text, std::vector<std::string> more = {}) {
    std::vector<std::string> arguments = {"sql", path_, text, "-u", "Anna"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
  }
  // A user who may view and nothing else.
  void addBert() {
    const auto c = kvConnection::open(path_);
    std::int32_t n = 0;
    c->Execute("Insert Into Users (UserID, UserName, [Password]) Values ('User1', 'Bert', '" +
                   Passwords(test::kCheapPasswords).hash("secret") + "')",
               n);
    c->Execute("Insert Into VeskProfiles (UserID, UserName) Values ('User1', 'Bert')", n);
    c->Close();
  }
  test::TempFolder folder_;
  std::string path_;
};

TEST_F(Program, NewMakesARegisterWithAnAdministrator) {
  const auto r = sql("Select UserID, UserName From Users", {"--csv"});
  EXPECT_EQ(r.code, 0) << r.err;
  EXPECT_EQ(r.out, "\"UserID\",\"UserName\"\r\n\"User0\",\"Anna\"\r\n");
  EXPECT_EQ(sql("Select Administrator, GroupID From VeskProfiles", {"--jsonl"}).out,
            "{\"columns\":[\"Administrator\",\"GroupID\"],\"rows\":[[true,0]]}\n");
}

TEST_F(Program, NewRefusesToOverwrite) {
  const std::string before = test::contents(path_);
  const auto r = run({"new", path_, "--user", "Bert"});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.err, "error -2147467259 (kvData): There is already something of this name: '" +
                       path_ + "'\n");
  EXPECT_EQ(test::contents(path_), before);
}

TEST_F(Program, APasswordIsNeverTakenFromTheCommandLineAndNeverEmpty) {
  EXPECT_EQ(run({"new", folder_.file("x"), "--user", "A", "--password", "p"}).code, 2);
  const auto none = run({.arguments = {"new", folder_.file("x"), "--user", "A"},
                         .environment = {{"KVVESK_PASSWORD", "-"}}});
  EXPECT_EQ(none.code, 2);
  EXPECT_EQ(none.err, "kvvesk: no password: set KVVESK_PASSWORD or run this at a terminal\n");
  const auto empty = run({.arguments = {"new", folder_.file("x"), "--user", "A"},
                          .environment = {{"KVVESK_PASSWORD", ""}}});
  EXPECT_EQ(empty.code, 2);
  EXPECT_FALSE(std::filesystem::exists(folder_.file("x")));
}

TEST_F(Program, WrongUsageEndsWithTwo) {
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {"frobnicate"},
      {"sql", path_, "-u", "Anna"},
      {"sql", path_, "Select 1"},
      {"new"},
      {"new", folder_.file("y")},
      {"sql", path_, "Select 1", "-u", "Anna", "--csv", "--json"},
      {"import", folder_.file("none"), path_, "-u", "Anna"}};
  for (const auto& arguments : wrong) {
    const auto r = run(arguments);
    EXPECT_EQ(r.code, 2) << (arguments.empty() ? "" : arguments[0]) << r.out << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err, "");
  }
}

TEST_F(Program, HelpAndVersionSuffice) {
  const auto help = run({"--help"});
  EXPECT_EQ(help.code, 0);
  for (const char* verb : {"new", "documents", "document", "revisions", "revision", "queries",
                           "rights", "passwd", "config", "import", "sql"})
    EXPECT_THAT(help.out, HasSubstr(verb));
  EXPECT_THAT(run({"sql", "--help"}).out, HasSubstr("--jsonl"));
  EXPECT_THAT(run({"--version"}).out, StartsWith("kvvesk "));
}

TEST_F(Program, WhoeverIsNotKnownIsRefused) {
  for (const auto& [user, password] :
       {std::pair{"Anna", "wrong"}, {"Nobody", "secret"}, {"Anna", ""}}) {
    const auto r = run({.arguments = {"sql", path_, "Select 1", "-u", user},
                        .environment = {{"KVVESK_PASSWORD", password}}});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err, "error -2147218998 (Login): UserName or Password is incorrect\n");
    EXPECT_EQ(r.out, "");
  }
}

TEST_F(Program, WhatIsNoRegisterIsRefusedByName) {
  const auto r = run({"sql", folder_.file("missing"), "Select 1", "-u", "Anna"});
  EXPECT_EQ(r.code, 1);
  EXPECT_THAT(r.err, StartsWith("error -2147467259 (kvData): There is no such file:"));
  std::string access(4096, '\0');
  access.replace(4, 15, "Standard Jet DB");
  access[20] = 1;
  test::write(folder_.file("old.mdb"), access);
  EXPECT_THAT(run({"sql", folder_.file("old.mdb"), "Select 1", "-u", "Anna"}).err,
              HasSubstr("Access 2000 to 2003 (Jet 4)"));
}

TEST_F(Program, SqlShowsReadableTables) {
  (void)sql(
      "Insert Into Documents (DocumentID, DocumentTitle, DocumentNotes, EffectiveDate, Controlled) "
      "Values ('D1', 'Äpfel', 'one\ntwo', #3/9/2001#, True)");
  (void)sql("Insert Into Documents (DocumentID, DocumentTitle) Values ('D10', '" +
            std::string(100, 'x') + "')");
  EXPECT_EQ(sql("Select ID, DocumentID, DocumentTitle, DocumentNotes, EffectiveDate, Controlled "
                "From Documents")
                .out,
            "ID  DocumentID  DocumentTitle                                                 "
            "DocumentNotes  EffectiveDate  Controlled\n"
            "--  ----------  ------------------------------------------------------------  "
            "-------------  -------------  ----------\n"
            " 1  D1          Äpfel                                                         one↵two "
            "       2001-03-09     true\n"
            " 2  D10         " +
                std::string(59, 'x') +
                "…                                false\n"
                "(2 rows)\n");
  EXPECT_EQ(sql("Select ID From Documents Where ID = 99").out, "ID\n--\n(0 rows)\n");
}

TEST_F(Program, SqlWritesCsv) {
  (void)sql(
      "Insert Into Documents (DocumentTitle, DocumentNotes, DocUser1, EffectiveDate) Values "
      "('a,\"b\"', 'x\ny', '', #2001-03-09 14:05#)");
  EXPECT_EQ(sql("Select DocumentTitle, DocumentNotes, DocUser1, DocUser2, EffectiveDate, "
                "Controlled, ID From Documents",
                {"--csv"})
                .out,
            "\"DocumentTitle\",\"DocumentNotes\",\"DocUser1\",\"DocUser2\",\"EffectiveDate\","
            "\"Controlled\",\"ID\"\r\n"
            "\"a,\"\"b\"\"\",\"x\ny\",\"\",,2001-03-09 14:05:00,false,1\r\n");
}

TEST_F(Program, SqlWritesJson) {
  (void)sql("Insert Into Routing (DocumentID, ListOrder) Values ('D', 0.1)");
  const auto r = sql("Select DocumentID, UserID, ListOrder From Routing", {"--json"});
  EXPECT_EQ(
      json::parse(r.out),
      json::parse(R"({"columns":["DocumentID","UserID","ListOrder"],"rows":[["D",null,0.1]]})"));
  EXPECT_EQ(json::parse(sql("Delete * From Routing", {"--json"}).out),
            json::parse(R"({"affected":1})"));
  EXPECT_EQ(json::parse(sql("Select * From Routing", {"--json"}).out)["rows"], json::array());
}

TEST_F(Program, SqlReadsStatementsFromStandardInput) {
  const auto r = run({.arguments = {"sql", path_, "-", "-u", "Anna", "--jsonl"},
                      .input = "Insert Into Keywords Values ('a', 'b')\r\n\n  \nSelect nonsense "
                               "From Keywords\nSelect Keyword, Null, 1 = 1 "
                               "From Keywords\nSelect 'unfinished"});
  EXPECT_EQ(r.code, 1) << "one of them failed";
  std::istringstream lines(r.out);
  std::vector<json> answers;
  for (std::string line; std::getline(lines, line);) answers.push_back(json::parse(line));
  ASSERT_EQ(answers.size(), 4U) << r.out;
  EXPECT_EQ(answers[0], json::parse(R"({"affected":1})"));
  EXPECT_EQ(answers[1]["error"]["number"], -2147217904);
  EXPECT_EQ(answers[1]["error"]["source"], "kvData");
  EXPECT_EQ(answers[1]["error"]["description"],
            "No value given for one or more required parameters. (position 8: 'nonsense')");
  EXPECT_EQ(
      answers[2],
      json::parse(R"({"columns":["Keyword","Expr1000","Expr1001"],"rows":[["b",null,true]]})"));
  EXPECT_EQ(answers[3]["error"]["number"], -2147217900);
}

TEST_F(Program, SqlStopsAtAnErrorAndShowsThePlace) {
  const auto r = run({.arguments = {"sql", path_, "-", "-u", "Anna"},
                      .input = "Select 1\nSelect ä, Colour From Users\nDelete * From Users\n"});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.err,
            "Select ä, Colour From Users\n"
            "       ^\n"
            "error -2147217904 (kvData): No value given for one or more required parameters. "
            "(position 8: 'ä')\n");
  EXPECT_THAT(sql("Select UserID From Users").out, HasSubstr("User0")) << "the third did not run";
}

TEST_F(Program, InvalidTextIsRefusedAtTheBoundary) {
  const auto r = sql("Insert Into Keywords Values ('caf\xE9', 'x')", {"--jsonl"});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(json::parse(r.out)["error"]["number"], -2147217900);
  EXPECT_THAT(sql("Select Count(*) From Keywords", {"--jsonl"}).out, HasSubstr("[[0]]"));
}

TEST_F(Program, TraceWritesEveryStatement) {
  const std::string trace = folder_.file("trace");
  (void)sql("Select 1 As One", {"--trace", trace});
  (void)sql("Delete * From Keywords", {"--trace", trace});
  EXPECT_EQ(test::contents(trace), "Select 1 As One\nDelete * From Keywords\n");
  EXPECT_EQ(test::contents(trace).find("secret"), std::string::npos);
}

TEST_F(Program, OnlyAdministratorsMayRunSqlImportAndConfigure) {
  addBert();
  const auto refused = [&](std::vector<std::string> arguments, const char* why) {
    const auto r = run(arguments);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, std::string("error 70 (kvvesk): Permission denied: ") + why + "\n");
  };
  refused({"sql", path_, "Select 1", "-u", "Bert"}, "only administrators may run SQL");
  refused({"import", folder_.path().string(), path_, "-u", "Bert"},
          "only administrators may import");
  refused({"config", path_, "DBID", "x", "-u", "Bert"},
          "only administrators may set configuration values");
  refused({"passwd", path_, "Anna", "-u", "Bert"}, "Edit the User Password Field");
  refused({"passwd", path_, "Bert", "-u", "Bert"}, "Change their own password");
  EXPECT_EQ(run({"config", path_, "DBID", "-u", "Bert"}).code, 0);
}

TEST_F(Program, PasswdGivesAUserANewPassword) {
  addBert();
  const auto changed = run({.arguments = {"passwd", path_, "bert", "-u", "Anna"},
                            .environment = {{"KVVESK_NEW_PASSWORD", "neu"}}});
  EXPECT_EQ(changed.code, 0) << changed.err;
  EXPECT_EQ(changed.out, "changed the password of User1\n");
  EXPECT_EQ(run({"config", path_, "-u", "Bert"}).code, 1);
  EXPECT_EQ(run({.arguments = {"config", path_, "-u", "Bert"},
                 .environment = {{"KVVESK_PASSWORD", "neu"}}})
                .code,
            0);
  const auto nobody = run({.arguments = {"passwd", path_, "Nobody's", "-u", "Anna"},
                           .environment = {{"KVVESK_NEW_PASSWORD", "x"}}});
  EXPECT_EQ(nobody.code, 1);
  EXPECT_EQ(nobody.err, "error 5 (kvvesk): There is no user 'Nobody's'.\n");
  EXPECT_EQ(run({.arguments = {"passwd", path_, "User1", "-u", "Anna"},
                 .environment = {{"KVVESK_NEW_PASSWORD", ""}}})
                .code,
            2);
}

TEST_F(Program, ConfigShowsAndSetsValues) {
  EXPECT_THAT(run({"config", path_, "-u", "Anna"}).out, HasSubstr("DatabaseVersion       02.01\n"));
  EXPECT_EQ(run({"config", path_, "revision", "-u", "Anna"}).out, "Revision\n");
  const auto set = run({"config", path_, "Revision", "Issue", "-u", "Anna"});
  EXPECT_EQ(set.out, "Revision = Issue\n");
  EXPECT_EQ(run({"config", path_, "Revision", "-u", "Anna"}).out, "Issue\n");
  EXPECT_EQ(run({"config", path_, "Revision", "", "-u", "Anna"}).out, "Revision = \n");
  EXPECT_EQ(json::parse(run({"config", path_, "--json", "-u", "Anna"}).out)["columns"][0],
            "DatabaseVersion");
  const auto unknown = run({"config", path_, "Colour", "red", "-u", "Anna"});
  EXPECT_EQ(unknown.code, 1);
  EXPECT_THAT(unknown.err, StartsWith("error 3265 (kvData):"));
  EXPECT_EQ(run({"config", path_, "Originator", "many", "-u", "Anna"}).code, 1);
  EXPECT_EQ(run({"config", path_, "DatabaseVersion", "03.00", "-u", "Anna"}).code, 1);
}

TEST_F(Program, AnOldOrNewRegisterIsRefused) {
  (void)sql("Update VeskConfig Set DatabaseVersion = '03.00'");
  const auto young = run({"config", path_, "-u", "Anna"});
  EXPECT_EQ(young.code, 1);
  EXPECT_EQ(
      young.err,
      "error -2147219002 (OpenConnection): Vesk needs to be updated to use this database.02.01\n");
}

}  // namespace
}  // namespace kv
