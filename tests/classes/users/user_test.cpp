// SPDX-License-Identifier: Apache-2.0
// The record operations of clsVeskUser: what they run, give back, store, raise and leave behind.
#include <gtest/gtest.h>

#include <chrono>

#include "classes/rights/rights.h"
#include "schema/change_columns.h"
#include "support/engine_answers.h"
#include "support/session_test.h"

namespace kv {
namespace {

using test::Texts;

// What LoadUser writes into; the values before it tell whether it did.
struct LoadedUser {
  std::string name = "?", alias = "?", password = "?", title = "?", email = "?", group = "?";

  bool from(clsVeskUser& user, const Ref<Recordset>& rs, const std::string& id) {
    return user.LoadUser(rs, id, name, alias, password, title, email, group);
  }
  [[nodiscard]] std::string text() const {
    return name + "|" + alias + "|" + password + "|" + title + "|" + email + "|" + group;
  }
};

const char* const kUntouched = "?|?|?|?|?|?";

template <class Session>
class UserSession : public Session {
 protected:
  [[nodiscard]] clsVeskUser& user() { return *this->vesk_->User(); }
  [[nodiscard]] Ref<Recordset> everybody() { return user().Records(-1); }
  // Carl, User3, with a row in every table that names users; twice where that can be.
  void addCarl() {
    this->reg_.addUser(3, "Carl", "");
    for (const char* id : {"D1", "D2"}) {
      const std::string row = std::string(" Values ('") + id + "', 'User3')";
      this->reg_.execute("Insert Into Routing (DocumentID, UserID)" + row);
      this->reg_.execute("Insert Into Owners (DocumentID, UserID)" + row);
      this->reg_.execute("Insert Into Personals (DocumentID, UserID)" + row);
    }
    for (const char* table : {"Routing", "Owners", "Personals"})
      this->reg_.execute(std::string("Insert Into ") + table +
                         " (DocumentID, UserID) Values ('D1', 'User30')");
  }
  // How many rows name a user: profile, approver, owner, copies, record.
  [[nodiscard]] std::string rowsOfUser(const std::string& id) const {
    std::string out;
    for (const char* table : {"VeskProfiles", "Routing", "Owners", "Personals", "Users"})
      out += this->reg_.value(std::string("Select Count(*) From ") + table + " Where UserID = '" +
                              id + "'");
    return out;
  }
  [[nodiscard]] std::string row(const std::string& id) const {
    return this->reg_.value(
        "Select UserID, UserName, Alias, [Password], Title, Email From Users Where UserID = '" +
        id + "'");
  }
};

class Users : public UserSession<test::SessionTest> {
 protected:
  Users() { logIn("Bert"); }  // no right is tested
  // User02 becomes a number, User04 a date.
  void typeFields() {
    reg_.execute("Update UserConfig Set TypeUser02 = 1, TypeUser04 = 2");
    const auto& database = vesk_->DataServer()->Connection()->database();
    Transaction transaction(*database, engine::Access::Write);
    changeColumns(database, "Users",
                  {{.name = "User02", .type = ColumnType::Double},
                   {.name = "User04", .type = ColumnType::Date}});
    transaction.commit();
  }
};

// ---- lists ----

TEST_F(Users, WithoutTextAndFilterThereIsNoSet) {
  EXPECT_EQ(statementsOf([&] {
              EXPECT_FALSE(user().Records());
              EXPECT_FALSE(user().Records(0));
              EXPECT_FALSE(user().Records(0, "Alias", "", "UserID"));
              EXPECT_FALSE(user().Records(0, "", "   "));
            }),
            Texts{});
}

TEST_F(Users, EverybodyIsListedByName) {
  reg_.addUser(3, "aaron", "");
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = user().Records(-1); }),
            Texts{"Select * from Users Order By UserName"});
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(rs->Fields("UserName")->Value(), Variant("aaron"));
  EXPECT_EQ(statementsOf([&] { rs = user().Records(-1, "UserID Desc", "", "UserID, Alias"); }),
            Texts{"Select UserID, Alias from Users Order By UserID Desc"});
  EXPECT_EQ(test::rowsOf(*rs), (Texts{"User3|~", "User2|~", "User1|~"}));
  rs->MoveFirst();
  rs->Fields("Alias")->Value("c");
  rs->Update();
  EXPECT_EQ(row("User3"), "User3|aaron|c|~|~|~") << "the set can be edited";
}

TEST_F(Users, AGivenTextIsOpenedAsItStands) {
  for (const std::int32_t filter : {0, -1, 17}) {
    std::string sql = " Select UserID From Users Where UserID = 'User2' ";
    Ref<Recordset> rs;
    EXPECT_EQ(statementsOf([&] { rs = user().Records(filter, "no such", sql, "no such"); }),
              Texts{" Select UserID From Users Where UserID = 'User2' "});
    EXPECT_EQ(test::rowsOf(*rs), Texts{"User2"});
    EXPECT_EQ(sql, " Select UserID From Users Where UserID = 'User2' ");
  }
}

TEST_F(Users, AListOverASavedQuery) {
  const auto query = user().NewQuery();
  query->SetQueryValue("Alias", "eng");
  query->SetQueryValue("AliasOperator", 1);
  user().SaveQuery(query);
  reg_.execute("Update Users Set Alias = 'Engineer' Where UserID = 'User2'");
  std::string sql;
  Ref<Recordset> rs;
  const auto statements =
      statementsOf([&] { rs = user().Records(query->id(), "", sql, "UserID"); });
  ASSERT_GE(statements.size(), 2U);
  EXPECT_EQ(statements[statements.size() - 2], "Select * From UserConfig");
  EXPECT_EQ(statements.back(),
            "Select UserID from Users  Where Alias Like '%eng%' Order By UserName");
  EXPECT_EQ(sql, " Where Alias Like '%eng%'") << "and is handed back";
  EXPECT_EQ(test::rowsOf(*rs), Texts{"User2"});

  const auto empty = user().NewQuery();
  EXPECT_EQ(statementsOf([&] { rs = user().Records(empty->id(), "UserID"); }).back(),
            "Select * from Users  Order By UserID");
  EXPECT_EQ(rs->RecordCount(), 2) << "a query without criteria is about everybody";
}

TEST_F(Users, ListsPassErrorsOn) {
  EXPECT_RAISES(kNoCurrentRow, (void)user().Records(999));
  EXPECT_RAISES(kUnknownName, (void)user().Records(-1, "NoColumn"));
  EXPECT_RAISES(kUnknownName, (void)user().Records(-1, "", "", "NoColumn"));
  EXPECT_RAISES(kUnknownTable, (void)user().Records(0, "", "Select * From NoTable"));
  const auto query = user().NewQuery();
  query->SetQueryValue("Alias", "x' or 'a'='a");
  query->SetQueryValue("AliasOperator", 0);
  user().SaveQuery(query);
  EXPECT_RAISES(kSyntax, (void)user().Records(query->id()));
}

// Fields of users that a register keeps as numbers and dates; queries of them are text.
TEST_F(Users, QueriesOfNumbersAndDatesTakeWhatAStatementReads) {
  typeFields();
  const auto query = user().NewQuery();
  const auto ask = [&](const std::string& field, const std::string& value, int code) {
    for (const char* other : {"User02", "User04"}) query->SetQueryValue(other, Null);
    query->SetQueryValue(field, value);
    query->SetQueryValue(field + "Operator", code);
    user().SaveQuery(query);
    return statementsOf([&] { (void)user().Records(query->id(), "ID"); }).back();
  };
  const std::string select = "Select * from Users  Where ";
  for (const char* date : {"3/9/2001", "2001-03-09", "25/7/2018", "20 Jan 2001", "1/2/99",
                           "2:05 PM", "March 9, 2001", "3/9/2001 2:05 PM", " 3/9/2001 "})
    EXPECT_EQ(ask("User04", date, 0), select + "User04 = #" + date + "# Order By ID");
  for (const char* number : {"5", " 5", "5 ", "-5", "- 5", "+5", ".5", "5.", "1e3", "1.5E-3"})
    EXPECT_EQ(ask("User02", number, 0), select + "User02 = " + number + " Order By ID");
}

TEST_F(Users, AndNothingElse) {
  typeFields();
  const auto query = user().NewQuery();
  const auto refused = [&](const std::string& field, const std::string& value) {
    for (const char* other : {"User02", "User04"}) query->SetQueryValue(other, Null);
    query->SetQueryValue(field, value);
    query->SetQueryValue(field + "Operator", 0);
    user().SaveQuery(query);
    EXPECT_EQ(statementsOf([&] {
                EXPECT_RAISES(kSyntax, (void)user().Records(query->id(), "ID"));
              }).size(),
              1U)
        << field << " = " << value << ": only the types are asked for";
  };
  for (const char* date :
       {"5", "soon", "13/13/2001", "3/9/2001# or #1/1/2001", "#", "2:75 PM", "3/9", "1/2/3/4"})
    refused("User04", date);
  for (const char* number : {"--5", "+-5", "5 5", "5 or 1=1", "'5'", "#3/9/2001#", "1,5", "0x5",
                             "5a", "(5)", "ID", "1e999", "-"})
    refused("User02", number);
}

TEST_F(Users, RecordIsTheSetOfOneUser) {
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = user().Record("User2"); }),
            Texts{"Select * From users Where UserID = 'User2'"});
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(rs->Fields("UserName")->Value(), Variant("Bert"));
  EXPECT_EQ(user().Record("nobody")->RecordCount(), 0);
}

TEST_F(Users, GetRecordsetGivesNothingAndRunsNothing) {
  EXPECT_EQ(statementsOf([&] { EXPECT_FALSE(user().GetRecordset("Select * From Users")); }),
            Texts{});
  EXPECT_FALSE(user().GetRecordset("this is no statement"));
}

// ---- keys and names ----

TEST_F(Users, KeysAndNamesOfUsers) {
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(user().UserIDFromID(2), "User2"); }),
            Texts{"Select UserID From Users Where ID = 2"});
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(user().UserID("bert"), "User2"); }),
            Texts{"Select UserID From VeskProfiles Where UserName = 'bert'"});
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(user().getUserName("User2"), "Bert"); }),
            Texts{"Select UserName From VeskProfiles Where UserID = 'User2'"});
  for (const std::int32_t id : {0, -1, 99, 2147483647, -2147483647 - 1})
    EXPECT_EQ(user().UserIDFromID(id), "");
  EXPECT_EQ(user().UserID("nobody"), "");
  EXPECT_EQ(user().getUserName("nobody"), "");
}

TEST_F(Users, NamesComeFromTheProfiles) {
  reg_.execute("Update VeskProfiles Set UserName = 'Berta' Where UserID = 'User2'");
  EXPECT_EQ(user().getUserName("User2"), "Berta");
  EXPECT_EQ(user().UserID("Berta"), "User2");
  EXPECT_EQ(user().UserID("Bert"), "");
  reg_.execute("Update VeskProfiles Set UserName = Null Where UserID = 'User2'");
  EXPECT_EQ(user().getUserName("User2"), "") << "Null reads as nothing";
  reg_.execute("Update Users Set UserID = Null Where ID = 2");
  EXPECT_EQ(user().UserIDFromID(2), "");
}

TEST_F(Users, IdentifiersThatWouldChangeTheStatementAreRefused) {
  const std::string bad = "x' or 'a'='a";
  const auto before = everything();
  const auto rs = everybody();
  LoadedUser loaded;
  EXPECT_EQ(statementsOf([&] {
              EXPECT_RAISES(kSyntax, (void)user().Record(bad));
              EXPECT_RAISES(kSyntax, (void)user().UserID(bad));
              EXPECT_RAISES(kSyntax, (void)user().getUserName(bad));
              EXPECT_RAISES(kSyntax, (void)loaded.from(user(), rs, bad));
              EXPECT_RAISES(kSyntax, user().SaveUser(rs, bad, "", "", "", "", ""));
              EXPECT_RAISES(kSyntax, (void)user().UserIsOwner(bad, "D1"));
              EXPECT_RAISES(kSyntax, (void)user().UserIsOwner("User1", bad));
              EXPECT_FALSE(user().DeleteUser(bad));
            }),
            Texts{});
  EXPECT_EQ(loaded.text(), kUntouched);
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(user().getUserName("O''Brien"), "") << "doubled apostrophes pass";
}

// ---- reading and saving ----

TEST_F(Users, LoadUserReadsEveryField) {
  reg_.execute(
      "Update Users Set Alias = 'B', [Password] = 'hash', Title = 'Clerk', Email = 'b@x' Where "
      "UserID = 'User2'");
  reg_.execute("Update VeskProfiles Set GroupID = 4 Where UserID = 'User2'");
  const auto rs = everybody();
  LoadedUser loaded;
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(loaded.from(user(), rs, "User2")); }),
            Texts{"Select GroupID From VeskProfiles Where UserID = 'User2'"});
  EXPECT_EQ(loaded.text(), "Bert|B|hash|Clerk|b@x|4");
  EXPECT_EQ(rs->Fields("UserID")->Value(), Variant("User2")) << "where the caller's set now stands";
}

TEST_F(Users, NullLoadsAsNothingAndAMissingProfileAsNoWorkgroup) {
  reg_.execute("Insert Into Users (ID, UserID) Values (3, 'User3')");
  LoadedUser loaded;
  EXPECT_TRUE(loaded.from(user(), everybody(), "User3"));
  EXPECT_EQ(loaded.text(), "|||||0");
  reg_.execute("Insert Into VeskProfiles (UserID, GroupID) Values ('User3', Null)");
  EXPECT_TRUE(loaded.from(user(), everybody(), "User3"));
  EXPECT_EQ(loaded.text(), "|||||") << "a profile without one is another thing";
}

TEST_F(Users, TheSearchGoesForwardFromTheCurrentRow) {
  const auto rs = everybody();  // Anna, Bert
  LoadedUser loaded;
  EXPECT_TRUE(loaded.from(user(), rs, "User2"));
  EXPECT_TRUE(loaded.from(user(), rs, "User2")) << "the current row counts";
  LoadedUser other;
  EXPECT_FALSE(other.from(user(), rs, "User1")) << "Anna is before it";
  EXPECT_EQ(other.text(), kUntouched);
  EXPECT_TRUE(rs->Eof());
  EXPECT_FALSE(user().SaveUser(rs, "User1", "A", "", "", "", ""));
  rs->MoveFirst();
  EXPECT_TRUE(other.from(user(), rs, "User1"));
  EXPECT_EQ(rs->State(), 1) << "the set stays open";
}

TEST_F(Users, NobodyIsFoundInAnEmptySet) {
  const auto rs = user().Record("nobody");
  LoadedUser loaded;
  EXPECT_FALSE(loaded.from(user(), rs, "User1"));
  EXPECT_EQ(loaded.text(), kUntouched);
  EXPECT_FALSE(user().SaveUser(rs, "User1", "A", "", "", "", ""));
}

TEST_F(Users, ASetWithoutTheColumnsRaises) {
  LoadedUser loaded;
  const auto rs = user().Records(-1, "", "", "UserID, UserName");
  EXPECT_RAISES(kNoSuchItem, (void)loaded.from(user(), rs, "User1"));
  EXPECT_RAISES(kNoSuchItem, user().SaveUser(rs, "User1", "A", "", "", "", ""));
}

TEST_F(Users, SaveUserWritesTheFieldsAndNothingElse) {
  const std::string other = row("User1");
  const auto profiles = reg_.rows("Select * From VeskProfiles");
  const auto rs = everybody();
  EXPECT_EQ(statementsOf([&] {
              EXPECT_TRUE(user().SaveUser(rs, "User2", "Berta", "b", "p", "Clerk", "b@x"));
            }),
            Texts{});
  EXPECT_EQ(row("User2"), "User2|Berta|b|p|Clerk|b@x");
  EXPECT_TRUE(user().SaveUser(rs, "User2", "", "", "", "", ""));
  EXPECT_EQ(row("User2"), "User2|~|~|~|~|~") << "empty text is stored as Null";
  EXPECT_EQ(row("User1"), other);
  EXPECT_EQ(reg_.rows("Select * From VeskProfiles"), profiles);
}

TEST_F(Users, AnEditThatFailsHalfWayIsTakenBack) {
  const auto rs = everybody();
  const std::string bert = row("User2");
  rs->Fields("Title")->Value("pending");
  EXPECT_RAISES(kWrongType,
                user().SaveUser(rs, "User2", "half", std::string(300, 'x'), "", "", ""));
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->Fields("UserName")->Value(), Variant("Bert"));
  rs->MoveFirst();
  EXPECT_EQ(row("User2"), bert) << "no later move stores a part of it";
  EXPECT_EQ(reg_.value("Select Title From Users Where UserID = 'User1'"), "pending")
      << "what the caller had pending is saved";
  const auto narrow = user().Records(-1, "", "", "UserID, UserName");
  EXPECT_RAISES(kNoSuchItem, user().SaveUser(narrow, "User2", "half", "", "", "", ""));
  EXPECT_EQ(narrow->EditMode(), kEditNone);
  narrow->MoveFirst();
  EXPECT_EQ(row("User2"), bert);
}

// ---- adding ----

TEST_F(Users, NewUserAddsTheRecordAndAProfile) {
  reg_.execute("Insert Into Users (ID, UserID) Values (41, 'User41')");
  const auto rs = everybody();
  const auto before = rs->RecordCount();
  EXPECT_EQ(statementsOf([&] {
              EXPECT_EQ(user().NewUser(rs, "Dora", "d", "p", "Clerk", "d@x", "7"), "User42");
            }),
            Texts{"Select * from VeskProfiles Where UserID = '-1'"});
  EXPECT_EQ(row("User42"), "User42|Dora|d|p|Clerk|d@x");
  EXPECT_EQ(reg_.value("Select ID From Users Where UserID = 'User42'"), "42");
  EXPECT_EQ(reg_.value("Select UserName, GroupID, Rights, UserOptions, Administrator From "
                       "VeskProfiles Where UserID = 'User42'"),
            "~|0|~|0000000|False")
      << "the workgroup is not stored";
  EXPECT_EQ(rs->RecordCount(), before + 1);
  EXPECT_EQ(rs->Fields("UserID")->Value(), Variant("User42")) << "the new row is current";
  EXPECT_EQ(user().NewUser(rs, "", "", "", "", "", ""), "User43");
  EXPECT_EQ(row("User43"), "User43|~|~|~|~|~");
}

// The operation holds the lock that the set would wait for.
TEST_F(Users, NewUserWithASetOfAnotherSessionIsAnsweredAtOnce) {
  test::TestSession other;
  other->Login("Bert", "secret", reg_.path());
  const auto rs = other->User()->Records(-1);
  const auto before = everything();
  const auto start = std::chrono::steady_clock::now();
  const auto error = test::errorOf([&] { (void)user().NewUser(rs, "Dora", "", "", "", "", ""); });
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  if (!test::oneWriterAtATime()) {
    EXPECT_FALSE(error);
    EXPECT_EQ(reg_.value("Select Count(*) From Users Inner Join VeskProfiles On Users.UserID = "
                         "VeskProfiles.UserID Where Users.UserName = 'Dora'"),
              "1");
    return;
  }
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kEngineFailure);
  EXPECT_THAT(error->description(),
              testing::StartsWith("The register is locked by another session of the same thread"));
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(other->User()->NewUser(rs, "Dora", "", "", "", "", "").substr(0, 4), "User");
}

// The same the other way round, and on every engine: a set's row is locked by a client of this
// thread.
TEST_F(Users, SaveUserInARowThatAnotherSessionHoldsIsAnsweredAtOnce) {
  test::TestSession other;
  other->Login("Bert", "secret", reg_.path());
  const auto rs = other->User()->Records(-1);
  const auto& connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  (void)vesk_->Execute("Update Users Set Title = 'held' Where UserID = 'User1'");
  const auto start = std::chrono::steady_clock::now();
  const auto error =
      test::errorOf([&] { (void)other->User()->SaveUser(rs, "User1", "A", "", "", "", ""); });
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(),
              testing::StartsWith("The register is locked by another session of the same thread"));
  connection->RollbackTrans();
  EXPECT_EQ(row("User1").substr(0, 10), "User1|Anna");
}

TEST_F(Users, NewUserSavesWhatTheCallerHasPending) {
  const auto rs = everybody();
  rs->Fields("Alias")->Value("a");
  const std::string id = user().NewUser(rs, "Dora", "", "", "", "", "");
  EXPECT_EQ(reg_.value("Select Alias From Users Where UserID = 'User1'"), "a");
  EXPECT_EQ(row(id), id + "|Dora|~|~|~|~");
}

// ---- deleting ----

TEST_F(Users, DeleteUserRunsTheseStatements) {
  addCarl();
  ASSERT_EQ(rowsOfUser("User3"), "12221");
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(user().DeleteUser("User3")); }),
            (Texts{"Delete * from VeskProfiles Where UserID = 'User3'",
                   "Delete * from Routing Where UserID = 'User3'",
                   "Delete * from Owners Where UserID = 'User3'",
                   "Delete * from Personals Where UserID = 'User3'",
                   "Delete * From Users Where UserID = 'User3'"}));
  EXPECT_EQ(rowsOfUser("User3"), "00000");
  EXPECT_EQ(rowsOfUser("User30"), "01110") << "whose name only begins the same";
  EXPECT_EQ(rowsOfUser("User1"), "10001");
}

TEST_F(Users, DeletingNobodyIsNoFailure) {
  const auto before = everything();
  EXPECT_TRUE(user().DeleteUser("nobody"));
  EXPECT_TRUE(user().DeleteUser(""));
  EXPECT_EQ(everything(), before);
}

TEST_F(Users, AFailedDeletionKeepsTheStepsBeforeIt) {
  const struct {
    const char* table;
    const char* left;
  } cases[] = {{"VeskProfiles", "12221"},
               {"Routing", "02221"},
               {"Owners", "00221"},
               {"Personals", "00021"},
               {"Users", "00001"}};
  addCarl();
  const test::RawRegister raw(reg_.path());
  for (const auto& c : cases) {
    raw.refuse("DELETE", c.table);
    EXPECT_FALSE(user().DeleteUser("User3"));
    raw.allowAgain(c.table);
    EXPECT_EQ(rowsOfUser("User3"), c.left) << c.table;
  }
  EXPECT_TRUE(user().DeleteUser("User3"));
  EXPECT_EQ(rowsOfUser("User3"), "00000");
}

TEST_F(Users, InAClientsTransactionRollbackUndoesEveryOperation) {
  addCarl();
  const auto before = everything();
  const auto rs = everybody();
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  EXPECT_TRUE(user().SaveUser(rs, "User2", "Berta", "", "", "", ""));
  const std::string id = user().NewUser(rs, "Dora", "", "", "", "", "");
  EXPECT_TRUE(user().DeleteUser("User3"));
  EXPECT_EQ(user().Record(id)->RecordCount(), 1);
  EXPECT_EQ(user().Record("User3")->RecordCount(), 0);
  EXPECT_EQ(everything(), before) << "others see nothing of it yet";
  connection->RollbackTrans();
  EXPECT_EQ(everything(), before);
}

TEST_F(Users, AFailedDeletionInAClientsTransactionKeepsItsStepsToo) {
  addCarl();
  test::RawRegister(reg_.path()).refuse("DELETE", "Owners");
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  EXPECT_FALSE(user().DeleteUser("User3"));
  connection->CommitTrans();
  EXPECT_EQ(rowsOfUser("User3"), "00221");
}

// ---- these users ----

TEST_F(Users, GetTheseUsersSelectsTheUsersOfASet) {
  addCarl();
  const auto some = reg_.open("Select UserID From Users Order By ID");
  some->MoveLast();
  Ref<Recordset> rs;
  EXPECT_EQ(
      statementsOf([&] { rs = user().GetTheseUsers(some); }),
      Texts{"Select * From Users Where UserID = 'User1' or UserID = 'User2' or UserID = 'User3'"});
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_TRUE(some->Eof()) << "which it leaves behind its last row";
  const auto twice = reg_.open("Select UserID From Personals Where UserID = 'User3'");
  EXPECT_EQ(statementsOf([&] { rs = user().GetTheseUsers(twice); }),
            Texts{"Select * From Users Where UserID = 'User3' or UserID = 'User3'"});
  EXPECT_EQ(rs->RecordCount(), 1);
}

TEST_F(Users, OfAnEmptySetThereAreNone) {
  const auto nobody = user().Record("nobody");
  EXPECT_EQ(statementsOf([&] { EXPECT_FALSE(user().GetTheseUsers(nobody)); }), Texts{});
}

TEST_F(Users, GetTheseUsersPassesErrorsOn) {
  EXPECT_RAISES(kNoSuchItem, (void)user().GetTheseUsers(reg_.open("Select UserName From Users")));
}

TEST_F(Users, GetTheseUsersNamesThemWhateverTheyAreCalled) {
  reg_.execute("Update Users Set UserID = 'a'' or ''a''=''a' Where ID = 2");
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] {
              rs = user().GetTheseUsers(reg_.open("Select UserID From Users Where ID = 2"));
            }),
            Texts{"Select * From Users Where UserID = 'a'' or ''a''=''a'"});
  EXPECT_EQ(rs->RecordCount(), 1);
}

// ---- owners ----

TEST_F(Users, AnOwnerIsWhoIsNamedAsOne) {
  reg_.execute("Insert Into Owners (DocumentID, UserID) Values ('D1', 'User1')");
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(user().UserIsOwner("User1", "D1")); }),
            Texts{"Select UserID From Owners Where DocumentID = 'D1' and UserID = 'User1'"});
  EXPECT_TRUE(user().UserIsOwner("user1", "d1"));
  EXPECT_FALSE(user().UserIsOwner("User2", "D1"));
  EXPECT_FALSE(user().UserIsOwner("User1", "D2"));
  EXPECT_FALSE(user().UserIsOwner("", ""));
}

TEST_F(Users, ForAnAdministratorEverybodyIsAnOwner) {
  test::TestSession anna;
  anna->Login("Anna", "secret", reg_.path());
  EXPECT_TRUE(anna->User()->UserIsOwner("User2", "D1"));
  EXPECT_TRUE(anna->User()->UserIsOwner("nobody", "no document"));
}

TEST_F(Users, ForWhoActsAsOwnerEverybodyIsAnOwner) {
  std::string rights(255, '0');
  rights[urActAsDocumentOwner - 1] = '1';
  reg_.addUser(3, "Carl", "secret", false, rights);
  test::TestSession carl;
  carl->Login("Carl", "secret", reg_.path());
  EXPECT_TRUE(carl->User()->UserIsOwner("User2", "D1"));
  EXPECT_FALSE(user().UserIsOwner("User3", "D1")) << "the right of the current user counts";
}

// ---- saved queries ----

TEST_F(Users, SavedQueriesAreCreatedSavedAndLoaded) {
  const auto query = user().NewQuery();
  const auto other = user().NewQuery();
  EXPECT_NE(query->id(), other->id());
  EXPECT_EQ(query->GetQueryValue("QueryName"), Variant("<<New Query>>"));
  query->SetQueryValue("QueryName", "Mine");
  query->SetQueryValue("Title", "Clerk");
  query->SetQueryValue("TitleOperator", 0);
  EXPECT_EQ(user().GetQuery(query->id())->GetQueryValue("QueryName"), Variant("<<New Query>>"));
  user().SaveQuery(query);
  const auto again = user().GetQuery(query->id());
  EXPECT_EQ(again->id(), query->id());
  EXPECT_EQ(again->GetQueryValue("QueryName"), Variant("Mine"));
  again->LoadFieldTypes(reg_.open("Select * From UserConfig"));
  EXPECT_EQ(again->JetSQL(), " Where Title = 'Clerk'");
  EXPECT_EQ(reg_.rows("Select QueryName From UserQuerys Order By QueryID"),
            (Texts{"Mine", "<<New Query>>"}));
  EXPECT_RAISES(kNoCurrentRow, (void)user().GetQuery(999));
  EXPECT_RAISES(kNoCurrentRow, (void)user().GetQuery(0));
}

TEST_F(Users, WithoutARootThereIsNoObject) {
  clsVeskUser own;
  EXPECT_RAISES(kObjectNotSet, (void)own.Records(-1));
  EXPECT_RAISES(kObjectNotSet, (void)own.Record("User1"));
  EXPECT_RAISES(kObjectNotSet, (void)own.UserIDFromID(1));
  EXPECT_RAISES(kObjectNotSet, (void)own.UserID("Anna"));
  EXPECT_RAISES(kObjectNotSet, (void)own.getUserName("User1"));
  EXPECT_RAISES(kObjectNotSet, (void)own.UserIsOwner("User1", "D1"));
  EXPECT_RAISES(kObjectNotSet, (void)own.GetQuery(1));
  EXPECT_RAISES(kObjectNotSet, (void)own.NewQuery());
  EXPECT_FALSE(own.DeleteUser("User1")) << "which never raises";
  EXPECT_RAISES(kObjectNotSet, (void)own.Records());
}

// ---- failures ----

class UserFaults : public UserSession<test::FaultySessionTest> {};

TEST_F(UserFaults, ANewUserIsAddedAsAWholeOrNotAtAll) {
  addCarl();
  const auto before = everything();
  const auto rs = everybody();
  int writes = 0;
  for (bool failed = true; failed && writes < 20; writes += failed ? 1 : 0) {
    faults_->failCommitAfter = 0;
    faults_->failWriteAfter = writes;
    EXPECT_RAISES(kEngineFailure, user().NewUser(rs, "Dora", "", "", "", "", "")) << writes;
    failed = faults_->failCommitAfter == 0;
    EXPECT_EQ(everything(), before) << "after " << writes << " writes";
    if (failed) {
      EXPECT_EQ(rs->RecordCount(), 3) << "and the set has no row of it";
    }
  }
  EXPECT_RAISES(kRowDeleted, (void)rs->Fields("UserID")->Value())
      << "a commit is too late for that";
  EXPECT_EQ(writes, 2);
  faults_->failCommitAfter = -1;
  faults_->failWriteAfter = -1;
  const std::string id = user().NewUser(rs, "Dora", "", "", "", "", "");
  EXPECT_EQ(rowsOfUser(id), "10001");
  if (test::countersGoBack()) {
    EXPECT_EQ(id, "User4") << "no number was used up";
  }
}

TEST_F(UserFaults, ADeletionWhoseCommitFailsLeavesEverything) {
  addCarl();
  const auto before = everything();
  faults_->failCommitAfter = 0;
  EXPECT_FALSE(user().DeleteUser("User3"));
  EXPECT_EQ(everything(), before);
}

TEST_F(UserFaults, SavingPassesErrorsOn) {
  const auto before = everything();
  const auto rs = everybody();
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, user().SaveUser(rs, "User2", "Berta", "", "", "", ""));
  EXPECT_EQ(everything(), before);
  rs->CancelUpdate();
}

}  // namespace
}  // namespace kv
