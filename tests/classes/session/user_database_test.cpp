// SPDX-License-Identifier: Apache-2.0
// Users and actions in a database of their own.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "classes/queries/user_query.h"
#include "recordset/database.h"
#include "schema/create_register.h"
#include "support/session_test.h"
#include "support/test_server.h"

namespace kv {
namespace {

using test::Texts;

constexpr const char* kPrefix =
    "The Following Error Occured Opening External User/Action DataSource : ";
constexpr const char* kProvider =
    "Provider=Microsoft.Jet.OLEDB.3.51;Persist Security Info=False;Data Source=";

// The register has Anna and Bert in its own tables, too, under other names there.
template <class Session>
class UserDatabaseSession : public Session {
 protected:
  UserDatabaseSession() {
    location_ =
        test::onServer() ? test::TestServer::newDatabase() : this->reg_.folder().file("users.kvv");
    users_ = createUserDatabase(location_);
    for (int n = 1; n <= 2; ++n)
      inUsers("Insert Into Users (ID, UserID, UserName, [Password]) Values (" + std::to_string(n) +
              ", 'User" + std::to_string(n) + "', '" + (n == 1 ? "Anna" : "Bert") + "', '" +
              Passwords(test::kCheapPasswords).hash("secret") + "')");
    this->reg_.execute("Update Users Set UserName = 'Inner Anna' Where UserID = 'User1'");
    this->reg_.execute("Update Users Set UserName = 'Inner Bert' Where UserID = 'User2'");
    this->reg_.execute("Update VeskConfig Set DBID = 'DB1'");
    switchOn(location_);
  }
  ~UserDatabaseSession() override {
    users_->Close();
    if (test::onServer()) test::TestServer::drop(location_);
  }
  void switchOn(const std::string& location) {
    this->reg_.execute("Update VeskConfig Set ExternalActionSystem = True, UserDBLocation = '" +
                       location + "'");
  }
  void inUsers(const std::string& sql) {
    std::int32_t affected = 0;
    users_->Execute(sql, affected);
  }
  // What the users' database holds, asked past the session.
  [[nodiscard]] Texts outside(const std::string& sql) const {
    return test::rowsOf(*users_->OpenRecordset(sql));
  }
  [[nodiscard]] static Texts rows(const Ref<Recordset>& rs) { return test::rowsOf(*rs); }
  [[nodiscard]] Texts bothDumps() const {
    Texts all = this->everything();
    for (auto& line : test::RawRegister(location_).dump()) all.push_back(std::move(line));
    return all;
  }

  std::string location_;
  Ref<kvConnection> users_;
};

class UserDatabase : public UserDatabaseSession<test::SessionTest> {};

// ---- making and switching ----

TEST_F(UserDatabase, HoldsUsersActionsTheirQueriesAndItsVersion) {
  Texts names;
  for (const auto& table : users_->database()->catalog()->tables()) names.push_back(table.name);
  EXPECT_THAT(names, testing::UnorderedElementsAre("VeskConfig", "Users", "Actions", "UserQuerys",
                                                   "UserFilters"));
  EXPECT_EQ(outside("Select * From VeskConfig"), Texts{"1.003.006"});
  EXPECT_EQ(test::numberOf([&] { (void)createUserDatabase(location_); }), kEngineFailure)
      << "nothing is made over what is there";
}

TEST_F(UserDatabase, SwitchingOnStoresWhereItIs) {
  reg_.execute("Update VeskConfig Set ExternalActionSystem = False, UserDBLocation = Null");
  vesk_->OpenConnection(reg_.path());
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(vesk_->SetExternalActionSystem(true, location_)); }),
            Texts{"Update VeskConfig Set ExternalActionSystem = -1, UserDBLocation = '" +
                  location_ + "'"});
  EXPECT_EQ(reg_.value("Select ExternalActionSystem From VeskConfig"), "True");
  EXPECT_EQ(reg_.value("Select UserDBLocation From VeskConfig"), location_);
  EXPECT_EQ(rows(vesk_->GetRecordset("Select UserName From Users Order By ID")),
            (Texts{"Inner Anna", "Inner Bert"}))
      << "it counts from the next opening on";
  vesk_->OpenConnection(reg_.path());
  EXPECT_EQ(rows(vesk_->GetRecordset("Select UserName From Users Order By ID")),
            (Texts{"Anna", "Bert"}));
}

TEST_F(UserDatabase, SwitchingOffKeepsWhereItIs) {
  vesk_->OpenConnection(reg_.path());
  EXPECT_EQ(statementsOf([&] { EXPECT_TRUE(vesk_->SetExternalActionSystem(false)); }),
            Texts{"Update VeskCOnfig Set ExternalActionSystem = False"});
  EXPECT_EQ(reg_.value("Select ExternalActionSystem From VeskConfig"), "False");
  EXPECT_EQ(reg_.value("Select UserDBLocation From VeskConfig"), location_);
  vesk_->OpenConnection(reg_.path());
  EXPECT_EQ(rows(vesk_->GetRecordset("Select UserName From Users Order By ID")),
            (Texts{"Inner Anna", "Inner Bert"}));
}

TEST_F(UserDatabase, WhatCannotBeOpenedIsNotSwitchedOn) {
  reg_.execute("Update VeskConfig Set ExternalActionSystem = False, UserDBLocation = 'before'");
  const std::string foreign = reg_.folder().file("letter.txt");
  std::ofstream(foreign) << "Dear Sir or Madam, this is no database at all.";
  vesk_->OpenConnection(reg_.path());
  const auto before = everything();
  struct Case {
    std::string location;
    std::int32_t number;
    std::string source;
    std::string description;
  };
  std::vector<Case> cases = {
      {"", kErrorBase + 2550, "SetExternalActionSystem", "Valid Connection String Required"}};
  for (const auto& file : {reg_.folder().file("missing.kvv"), foreign}) {
    const auto plain = test::errorOf([&] { (void)kvConnection::open(file); });
    ASSERT_TRUE(plain);
    cases.push_back({file, plain->number(), plain->source(),
                     "Unable to connect to external Database :\r\n" + plain->description()});
  }
  for (const auto& c : cases) {
    const auto error = test::errorOf([&] { vesk_->SetExternalActionSystem(true, c.location); });
    ASSERT_TRUE(error) << c.location;
    EXPECT_EQ(error->number(), c.number) << c.location;
    EXPECT_EQ(error->source(), c.source) << c.location;
    EXPECT_EQ(error->description(), c.description);
    EXPECT_EQ(everything(), before) << c.location;
  }
}

TEST_F(UserDatabase, MayStandInAFolderWithAnApostrophe) {
  FILES_ONLY();
  for (const char* name : {"Pat O'Brien's", "two '' together"}) {
    reg_.execute("Update VeskConfig Set ExternalActionSystem = False, UserDBLocation = Null");
    vesk_->OpenConnection(reg_.path());
    const std::filesystem::path folder = reg_.folder().path() / name;
    std::filesystem::create_directory(folder);
    const std::string file = (folder / "users.kvv").string();
    std::int32_t affected = 0;
    const auto users = createUserDatabase(file);
    users->Execute("Insert Into Users (ID, UserID, UserName) Values (1, 'User1', 'Pat')", affected);
    users->Close();
    EXPECT_TRUE(vesk_->SetExternalActionSystem(true, file));
    EXPECT_EQ(reg_.value("Select UserDBLocation From VeskConfig"), file);
    vesk_->OpenConnection(reg_.path());
    EXPECT_EQ(rows(vesk_->GetRecordset("Select UserName From Users")), Texts{"Pat"});
  }
}

// ---- which statements run where ----

TEST_F(UserDatabase, StatementsThatNameOnlyItsTablesRunThereWhoeverIssuesThem) {
  vesk_->OpenConnection(reg_.path());
  reg_.execute("Insert Into Documents (DocumentID, DocumentTitle) Values ('D1', 'Pumps')");
  const auto root = vesk_->DataServer()->Connection();
  const auto own = vesk_->MainUser()->DataServer()->Connection();
  ASSERT_FALSE(root == own);
  for (const auto& connection : {root, own}) {
    const auto ask = [&](const std::string& sql) { return rows(connection->OpenRecordset(sql)); };
    EXPECT_EQ(ask("Select UserName From Users Order By ID"), (Texts{"Anna", "Bert"}));
    EXPECT_EQ(ask("select u.username from USERS as u where u.userid = 'user2'"), Texts{"Bert"});
    EXPECT_EQ(ask("Select a.UserName From Users As a, Users As b Where b.ID = 2 Order By a.ID"),
              (Texts{"Anna", "Bert"}));
    EXPECT_EQ(ask("Select DocumentTitle From Documents"), Texts{"Pumps"});
    EXPECT_EQ(ask("Select Count(*) From VeskProfiles"), Texts{"2"});
    EXPECT_EQ(ask("Select 1 + 1"), Texts{"2"});
    std::int32_t affected = 0;
    for (const char* table : {"Actions", "UserQuerys", "UserFilters"}) {
      const std::string column = std::string(table) == "Actions"       ? "Subject"
                                 : std::string(table) == "UserFilters" ? "FilterName"
                                                                       : "QueryName";
      connection->Execute(
          std::string("Insert Into ") + table + " (" + column + ") Values ('there')", affected);
      EXPECT_EQ(affected, 1);
      EXPECT_EQ(outside(std::string("Select ") + column + " From " + table), Texts{"there"});
      EXPECT_EQ(reg_.value(std::string("Select Count(*) From ") + table), "0");
      connection->Execute(std::string("Update ") + table + " Set " + column + " = 'changed'",
                          affected);
      EXPECT_EQ(outside(std::string("Select ") + column + " From " + table), Texts{"changed"});
      connection->Execute(std::string("Delete * From ") + table, affected);
      EXPECT_EQ(affected, 1);
    }
    connection->Execute("Update Documents Set DocumentTitle = 'Pumps'", affected);
    EXPECT_EQ(affected, 1);
  }
}

TEST_F(UserDatabase, SetsOverItsTablesAreEditedThere) {
  vesk_->OpenConnection(reg_.path());
  const auto rs = vesk_->GetRecordset("Select * From Users Order By ID");
  rs->Fields("Title")->Value("Boss");
  rs->Update();
  rs->AddNew();
  rs->Fields("UserName")->Value("Cleo");
  EXPECT_EQ(test::shown(rs->Fields("ID")->Value()), "3") << "its counter, not the register's";
  rs->Update();
  rs->MoveFirst();
  rs->MoveNext();
  rs->Delete();
  EXPECT_EQ(outside("Select ID, UserName, Title From Users Order By ID"),
            (Texts{"1|Anna|Boss", "3|Cleo|~"}));
  EXPECT_EQ(reg_.rows("Select UserName From Users Order By ID"),
            (Texts{"Inner Anna", "Inner Bert"}));
}

// Whatever a set over its tables writes belongs to the transactions that are open in the register.
TEST_F(UserDatabase, WhatSetsWriteThereBelongsToTheTransaction) {
  vesk_->OpenConnection(reg_.path());
  inUsers("Insert Into UserFilters (FilterName) Values ('all')");
  const std::string users = "Select * From Users Order By ID";
  const auto set = [&] { return vesk_->GetRecordset(users); };
  struct Case {
    const char* what;
    std::function<void()> write;
    Texts kept;  // names and titles when it is committed
  };
  const Case cases[] = {
      {"edit",
       [&] {
         const auto rs = set();
         rs->Fields("Title")->Value("Boss");
         rs->Update();
       },
       {"Anna|Boss", "Bert|~"}},
      {"addition",
       [&] {
         const auto rs = set();
         rs->AddNew();
         rs->Fields("UserName")->Value("Cleo");
         rs->Update();
       },
       {"Anna|Boss", "Bert|~", "Cleo|~"}},
      {"deletion",
       [&] {
         const auto rs = set();
         rs->MoveLast();
         rs->Delete();
       },
       {"Anna|Boss", "Bert|~"}},
      {"deletion of all", [&] { set()->DeleteAll(); }, {}},
  };
  const auto connection = vesk_->DataServer()->Connection();
  const auto stored = [&] { return outside("Select UserName, Title From Users Order By ID"); };
  for (const auto& c : cases) {
    const auto before = bothDumps();
    connection->BeginTrans();
    c.write();
    connection->RollbackTrans();
    EXPECT_EQ(bothDumps(), before) << c.what;
    connection->BeginTrans();
    connection->BeginTrans();
    c.write();
    connection->RollbackTrans();
    connection->CommitTrans();
    EXPECT_EQ(bothDumps(), before) << c.what << " in an inner one";
    connection->BeginTrans();
    c.write();
    connection->CommitTrans();
    EXPECT_EQ(stored(), c.kept) << c.what;
  }
}

TEST_F(UserDatabase, AnAdditionBelongsToTheTransactionInWhichItIsStored) {
  vesk_->OpenConnection(reg_.path());
  const auto rs = vesk_->GetRecordset("Select * From Users Order By ID");
  rs->AddNew();
  rs->Fields("UserName")->Value("Cleo");
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  rs->Update();
  EXPECT_EQ(rs->RecordCount(), 3);
  connection->RollbackTrans();
  EXPECT_EQ(outside("Select UserName From Users Order By ID"), (Texts{"Anna", "Bert"}));
  EXPECT_EQ(rs->RecordCount(), 2);
}

TEST_F(UserDatabase, RowsWhoseDeletionThereWasRolledBackComeBack) {
  vesk_->OpenConnection(reg_.path());
  const auto rs = vesk_->GetRecordset("Select * From Users Order By ID");
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  rs->Delete();
  EXPECT_EQ(rs->RecordCount(), 1);
  connection->RollbackTrans();
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(test::shown(rs->Fields("UserName")->Value()), "Anna");
}

TEST_F(UserDatabase, ASavedQueryIsSavedWholeOrNotAtAll) {
  logIn("Anna");
  const auto query = vesk_->User()->NewQuery();
  const auto before = bothDumps();
  query->SetQueryValue("UserName", "first");
  query->SetQueryValue("Alias", "second");
  query->SetQueryValue("Title", std::string(300, 'x'));
  EXPECT_RAISES(3421, vesk_->User()->SaveQuery(query));
  EXPECT_EQ(bothDumps(), before);
  query->SetQueryValue("Title", "third");
  vesk_->User()->SaveQuery(query);
  EXPECT_EQ(outside("Select UserName, Alias, Title From UserQuerys"), Texts{"first|second|third"});
}

TEST_F(UserDatabase, EachHasAConfigurationOfItsOwn) {
  inUsers("Update VeskConfig Set Version = '1.003.009'");
  vesk_->OpenConnection(reg_.path());
  EXPECT_EQ(test::shown(vesk_->DataServer()->Config()->Value("Version")), "1.003.006");
  EXPECT_EQ(test::shown(vesk_->MainUser()->DataServer()->Config()->Value("Version")), "1.003.009");
  EXPECT_EQ(rows(vesk_->GetRecordset("Select DBID From VeskConfig")), Texts{"DB1"});
}

TEST_F(UserDatabase, StatementsThatNameTablesOfBothAreRefused) {
  vesk_->OpenConnection(reg_.path());
  const std::string text =
      "Users and actions are kept in a database of their own, and a statement cannot name tables "
      "of both. (";
  struct Case {
    const char* statement;
    const char* register_;  // as the register's connection lists the tables: its own first
    const char* users;      // as the users' connection does
  };
  const Case cases[] = {
      {"Select * From Personals Inner Join Users On Personals.UserID = Users.UserID",
       "Personals; Users)", "Users; Personals)"},
      {"Select * From Users, Actions, Documents", "Documents; Users, Actions)",
       "Users, Actions; Documents)"},
      {"Insert Into Owners (UserID) Select UserID From Users", "Owners; Users)", "Users; Owners)"},
      {"Insert Into Users (UserName) Select UserName From VeskProfiles", "VeskProfiles; Users)",
       "Users; VeskProfiles)"},
      {"Delete Users.* From Users Inner Join Owners On Users.UserID = Owners.UserID",
       "Owners; Users)", "Users; Owners)"},
  };
  const auto before = bothDumps();
  for (const auto& c : cases)
    for (const bool own : {false, true}) {
      const auto& server = own ? vesk_->MainUser()->DataServer() : vesk_->DataServer();
      const auto error =
          test::errorOf([&] { (void)server->Connection()->OpenRecordset(c.statement); });
      ASSERT_TRUE(error) << c.statement;
      EXPECT_EQ(error->number(), kSyntax);
      EXPECT_EQ(error->description(), text + (own ? c.users : c.register_));
    }
  EXPECT_EQ(bothDumps(), before);
}

TEST_F(UserDatabase, BadStatementsGetTheirOwnErrors) {
  vesk_->OpenConnection(reg_.path());
  EXPECT_RAISES(kUnknownTable, vesk_->Execute("Delete * From Nowhere"));
  EXPECT_RAISES(kUnknownName, vesk_->Execute("Delete * From Users Where Nothing = 1"));
  EXPECT_RAISES(kSyntax, vesk_->Execute("Delete From From Users"));
  const auto own = vesk_->MainUser()->DataServer()->Connection();
  std::int32_t affected = 0;
  EXPECT_RAISES(kUnknownTable, own->Execute("Delete * From Nowhere", affected));
}

TEST_F(UserDatabase, ObserversAndTheLogSeeEveryText) {
  logIn("Anna");
  const std::string sql = "Select UserName From Users Where UserID = 'User2'";
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(rows(vesk_->GetRecordset(sql)), Texts{"Bert"}); }),
            Texts{sql});
}

// ---- users ----

TEST_F(UserDatabase, ItsUsersLogInWithTheRightsOfTheRegister) {
  reg_.execute("Update VeskProfiles Set Rights = '1', UserName = Null Where UserID = 'User2'");
  logIn("Bert");
  EXPECT_EQ(vesk_->DataServer()->Profile()->UserID(), "User2");
  EXPECT_TRUE(vesk_->UserAccess(1));
  EXPECT_FALSE(vesk_->UserAccess(2));
  EXPECT_EQ(reg_.value("Select UserName From VeskProfiles Where UserID = 'User2'"), "Bert");
  EXPECT_EQ(vesk_->MainUser()->DataServer()->Connection(), vesk_->DataServer()->Connection())
      << "one profile for all";
  EXPECT_EQ(rows(vesk_->GetRecordset("Select UserName From Users Order By ID")),
            (Texts{"Anna", "Bert"}));
}

TEST_F(UserDatabase, TheRegistersOwnUsersDoNotLogIn) {
  EXPECT_RAISES(kErrorBase + 2506, logIn("Inner Bert"));
}

TEST_F(UserDatabase, APasswordInClearTextIsReplacedThere) {
  inUsers("Update Users Set [Password] = 'secret' Where UserID = 'User2'");
  logIn("Bert");
  EXPECT_TRUE(Passwords::isHash(outside("Select [Password] From Users Where ID = 2").at(0)));
}

TEST_F(UserDatabase, NewUsersHaveTheirRecordThereAndTheirProfileHere) {
  logIn("Anna");
  const auto rs = vesk_->User()->Records(-1);
  const std::string id = vesk_->User()->NewUser(rs, "Cleo", "", "pw", "", "", "0");
  EXPECT_EQ(id, "User3");
  EXPECT_EQ(outside("Select UserName From Users Where UserID = 'User3'"), Texts{"Cleo"});
  EXPECT_EQ(reg_.value("Select Count(*) From VeskProfiles Where UserID = 'User3'"), "1");
  EXPECT_EQ(reg_.value("Select Count(*) From Users"), "2");
  EXPECT_TRUE(vesk_->User()->DeleteUser("User3"));
  EXPECT_EQ(outside("Select UserName From Users Where UserID = 'User3'"), Texts{});
  EXPECT_EQ(reg_.value("Select Count(*) From VeskProfiles Where UserID = 'User3'"), "0");
}

TEST_F(UserDatabase, ListsOfIdsAreReadInTheRegister) {
  reg_.execute("Insert Into Owners (DocumentID, UserID) Values ('D1', 'User2')");
  reg_.execute("Insert Into Owners (DocumentID, UserID) Values ('D1', 'User1')");
  vesk_->OpenConnection(reg_.path());
  for (const bool loggedIn : {false, true}) {
    if (loggedIn) logIn("Anna");
    const auto records =
        vesk_->MainUser()->UserRecords("Select UserID From Owners Where DocumentID = 'D1'");
    Texts names;
    for (; !records->Eof(); records->MoveNext())
      names.push_back(test::shown(records->Fields("UserName")->Value()));
    EXPECT_EQ(names, (Texts{"Bert", "Anna"})) << loggedIn;
  }
}

TEST_F(UserDatabase, HoldersAndOwnersAreRecordsFromThere) {
  reg_.execute("Insert Into Owners (DocumentID, UserID) Values ('D1', 'User2')");
  for (const char* hard : {"True", "False"})
    reg_.execute(std::string("Insert Into Personals (UserID, DocumentID, ManualID, HardCopy) "
                             "Values ('User2', 'D1', 'M1', ") +
                 hard + ")");
  reg_.execute("Insert Into Routing (DocumentID, UserID) Values ('D1', 'User2')");
  inUsers("Insert Into UserFilters (FilterName, FilterFor) Values ('everybody', 1)");
  logIn("Anna");
  auto& document = *vesk_->Document();
  for (const auto& users :
       {document.Copies("D1", true), document.Owners("D1", true), document.Approvers("D1", true),
        document.Users("D1", true), vesk_->Manual()->Copies("M1", true)}) {
    ASSERT_EQ(users->RecordCount(), 1);
    EXPECT_EQ(users->Fields("UserName")->Value(), Variant("Bert"));
  }
  EXPECT_EQ(rows(vesk_->User()->ActionUserQueries("User2", "0")), Texts{"1|everybody"});
}

TEST_F(UserDatabase, QueriesForUsersAreKeptThere) {
  for (const bool loggedIn : {false, true}) {
    if (loggedIn)
      logIn("Anna");
    else
      vesk_->OpenConnection(reg_.path());
    (void)vesk_->User()->NewQuery();
  }
  EXPECT_EQ(outside("Select QueryName From UserQuerys"), (Texts{"<<New Query>>", "<<New Query>>"}));
  EXPECT_EQ(reg_.value("Select Count(*) From UserQuerys"), "0");
}

// ---- actions ----

TEST_F(UserDatabase, ActionsAreSentListedAndClosedThere) {
  logIn("Anna");
  const auto actions = vesk_->ActionRecord();
  actions->AddNew();
  actions->Fields("Subject")->Value("Look");
  actions->Fields("ReferenceID")->Value("DB1");
  vesk_->SendActions(actions, vesk_->GetRecordset("Select * From Users Order By ID"));
  EXPECT_EQ(outside("Select AssigneeID, Assignee, Subject From Actions Order By ActionID"),
            (Texts{"User1|Anna|Look", "User2|Bert|Look"}));
  EXPECT_EQ(reg_.value("Select Count(*) From Actions"), "0");
  EXPECT_TRUE(vesk_->HasActions("User2"));
  EXPECT_EQ(vesk_->GetActions()->RecordCount(), 1);
  vesk_->CompleteCloseAction("2", test::at(2001, 3, 1), test::at(2001, 3, 1));
  EXPECT_FALSE(vesk_->HasActions("User2"));
}

// A revision that is routed writes to both.
class RoutedUserDatabase : public UserDatabase {
 protected:
  RoutedUserDatabase() {
    reg_.execute(
        "Insert Into Documents (DocumentID, DocumentTitle, Controlled) Values ('D1', 'Pumps', "
        "True)");
    reg_.execute(
        "Insert Into Revisions (DocumentID, RevisionLevel, ResponsibleID, RoutingStatus, "
        "RevisionStatus) Values ('D1', 'B', 'User1', 0, 2)");
    reg_.execute("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('D1', 'User2', 10)");
    // Approvers are told, in order.
    reg_.execute("Update VeskConfig Set ProgramOptions = '00000011010'");
    logIn("Anna");
  }
  void route() {
    const auto rs = vesk_->GetRecordset("Select * From Revisions Where RevisionID = 1");
    vesk_->Revision()->RouteForApproval(rs, true);
    rs->Update();
  }
  [[nodiscard]] std::string state() const {
    return reg_.value("Select RoutingStatus, RevisionStatus From Revisions");
  }
};

TEST_F(RoutedUserDatabase, ApproversAreToldThere) {
  route();
  EXPECT_EQ(state(), "1|3");
  EXPECT_EQ(outside("Select AssigneeID, Assignee From Actions"), Texts{"User2|Bert"});
}

TEST_F(RoutedUserDatabase, WhatFailsThereIsUndoneHere) {
  const test::RawRegister raw(location_);
  raw.refuse("INSERT", "Actions");
  const auto before = bothDumps();
  EXPECT_THROW(route(), Error);
  EXPECT_EQ(bothDumps(), before);
  raw.allowAgain("Actions");
  route();
  EXPECT_EQ(state(), "1|3");
}

TEST_F(RoutedUserDatabase, ATransactionOfTheClientsHoldsBoth) {
  const auto connection = vesk_->DataServer()->Connection();
  const auto before = bothDumps();
  connection->BeginTrans();
  route();
  EXPECT_EQ(vesk_->GetRecordset("Select * From Actions")->RecordCount(), 1);
  connection->RollbackTrans();
  EXPECT_EQ(bothDumps(), before);
  connection->BeginTrans();
  route();
  connection->CommitTrans();
  EXPECT_EQ(state(), "1|3");
  EXPECT_EQ(outside("Select AssigneeID From Actions"), Texts{"User2"});
}

TEST_F(RoutedUserDatabase, AFailedOperationIsAMarkInBoth) {
  const auto connection = vesk_->DataServer()->Connection();
  const test::RawRegister raw(location_);
  raw.refuse("UPDATE", "Users");
  std::int32_t affected = 0;
  connection->BeginTrans();
  connection->Execute("Insert Into Actions (Subject) Values ('first')", affected);
  connection->BeginTrans();
  connection->Execute("Insert Into Actions (Subject) Values ('second')", affected);
  connection->Execute("Update Documents Set DocumentTitle = 'no'", affected);
  EXPECT_THROW(connection->Execute("Update Users Set Title = 'no'", affected), Error);
  connection->RollbackTrans();
  route();
  connection->CommitTrans();
  EXPECT_EQ(outside("Select Subject From Actions Order By ActionID"),
            (Texts{"first", "Your approval is required"}));
  EXPECT_EQ(reg_.value("Select DocumentTitle From Documents"), "Pumps");
  EXPECT_EQ(state(), "1|3");
}

TEST_F(UserDatabase, WhatFailsHereIsUndoneThere) {
  logIn("Anna");
  const test::RawRegister raw(reg_.path());
  raw.refuse("INSERT", "VeskProfiles");
  const auto before = outside("Select * From Users Order By ID");
  const auto rs = vesk_->User()->Records(-1);
  EXPECT_THROW((void)vesk_->User()->NewUser(rs, "Cleo", "", "", "", "", "0"), Error);
  EXPECT_EQ(outside("Select * From Users Order By ID"), before);
  EXPECT_EQ(rs->RecordCount(), 2) << "the addition is taken back from the set";
}

TEST_F(UserDatabase, ItsWritersWaitForEachOther) {
  FILES_ONLY();
  logIn("Anna");
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  vesk_->Execute("Update Users Set Title = 'A' Where ID = 1");
  const auto another = kvConnection::open(std::string(kProvider) + location_ + ";Lock Timeout=0.1");
  std::int32_t affected = 0;
  EXPECT_RAISES(kEngineFailure, another->Execute("Update Users Set Title = 'B'", affected));
  connection->CommitTrans();
  another->Execute("Update Users Set Title = 'B' Where ID = 2", affected);
  EXPECT_EQ(outside("Select Title From Users Order By ID"), (Texts{"A", "B"}));
}

TEST_F(UserDatabase, WhatOnlyReadsThereLocksNothingThere) {
  FILES_ONLY();
  logIn("Anna");
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  vesk_->Execute("Update Documents Set DocumentTitle = 'x'");
  EXPECT_EQ(vesk_->GetRecordset("Select * From Users")->RecordCount(), 2);
  const auto another = kvConnection::open(std::string(kProvider) + location_ + ";Lock Timeout=0.1");
  std::int32_t affected = 0;
  EXPECT_NO_THROW(another->Execute("Update Users Set Title = 'B'", affected));
  connection->RollbackTrans();
}

// The register commits first; each is whole whatever happens.
class FaultyUserDatabase : public UserDatabaseSession<test::SessionTest> {
 protected:
  // A session whose register, or whose users' database, can be told to fail.
  void openWith(bool faultyUsers) {
    const auto connection = connected(reg_.path(), faultyUsers ? nullptr : faults_);
    connection->keepUsersIn(connected(location_, faultyUsers ? faults_ : nullptr));
    connection_ = connection;
  }
  static Ref<kvConnection> connected(const std::string& location,
                                     const std::shared_ptr<test::Faults>& faults) {
    auto engine = engine::open({.location = location});
    auto catalog = std::make_shared<const Catalog>(withSecondNames(engine->catalog()));
    if (faults) engine = std::make_unique<test::FaultyEngine>(std::move(engine), faults);
    return makeRef<kvConnection>(location,
                                 std::make_shared<Database>(std::move(engine), std::move(catalog)));
  }
  void writeBoth() {
    std::int32_t affected = 0;
    connection_->BeginTrans();
    connection_->Execute("Insert Into Documents (DocumentTitle) Values ('here')", affected);
    connection_->Execute("Insert Into Actions (Subject) Values ('there')", affected);
    connection_->CommitTrans();
  }
  [[nodiscard]] std::string kept() const {
    return reg_.value("Select Count(*) From Documents") + "|" +
           outside("Select Count(*) From Actions").at(0);
  }
  std::shared_ptr<test::Faults> faults_ = std::make_shared<test::Faults>();
  Ref<kvConnection> connection_;
};

TEST_F(FaultyUserDatabase, ACommitThatFailsHereKeepsNothingThere) {
  openWith(false);
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, writeBoth());
  EXPECT_EQ(kept(), "0|0");
  writeBoth();
  EXPECT_EQ(kept(), "1|1");
}

TEST_F(FaultyUserDatabase, ACommitThatFailsThereIsToldAndWhatIsHereIsKept) {
  openWith(true);
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, writeBoth());
  EXPECT_EQ(kept(), "1|0");
  writeBoth();
  EXPECT_EQ(kept(), "2|1");
}

TEST_F(FaultyUserDatabase, AWriteThatFailsThereCanBeUndoneInBoth) {
  openWith(true);
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, writeBoth());
  connection_->RollbackTrans();
  EXPECT_EQ(kept(), "0|0");
}

// ---- what cannot be opened ----

TEST_F(UserDatabase, IsNotLookedAtWhileSwitchedOff) {
  switchOn(reg_.folder().file("missing.kvv"));
  reg_.execute("Update VeskConfig Set ExternalActionSystem = False");
  vesk_->OpenConnection(reg_.path());
  EXPECT_EQ(vesk_->MainUser()->DataServer()->Profile(), vesk_->DataServer()->Profile());
}

TEST_F(UserDatabase, WithoutItTheRegistersOwnUsersAreTakenAndTheFailureIsTold) {
  const std::string foreign = reg_.folder().file("letter.txt");
  std::ofstream(foreign) << "Dear Sir or Madam, this is no database at all.";
  for (const std::string& location : {reg_.folder().file("missing.kvv"), foreign}) {
    const auto plain = test::errorOf([&] { (void)kvConnection::open(kProvider + location); });
    ASSERT_TRUE(plain);
    switchOn(location);
    const test::TestSession vesk;
    const auto error = test::errorOf([&] { vesk->OpenConnection(reg_.path()); });
    ASSERT_TRUE(error) << location;
    EXPECT_EQ(error->number(), plain->number());
    EXPECT_EQ(error->source(), plain->source());
    EXPECT_EQ(error->description(), kPrefix + plain->description());
    // Everything is open all the same.
    for (const auto& server :
         {vesk->DataServer(), vesk->MainUser()->DataServer(), vesk->Document()->DataServer(),
          vesk->Manual()->DataServer(), vesk->Revision()->DataServer()})
      EXPECT_TRUE(server->Connection());
    EXPECT_EQ(vesk->MainUser()->DataServer()->Profile()->ConnectionString(), reg_.path());
    vesk->Login("Inner Bert", "secret");
    EXPECT_EQ(rows(vesk->GetRecordset("Select UserName From Users Order By ID")),
              (Texts{"Inner Anna", "Inner Bert"}));
  }
}

TEST_F(UserDatabase, ALockedOneCountsAsUnreachable) {
  FILES_ONLY();
  switchOn(location_ + ";Lock Timeout=0.1");
  users_->Close();
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(location_.c_str(), &other), SQLITE_OK);
  const std::unique_ptr<sqlite3, int (*)(sqlite3*)> closer(other, sqlite3_close);
  ASSERT_EQ(sqlite3_exec(other,
                         "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; UPDATE Users SET Title "
                         "= 'x'; COMMIT",
                         nullptr, nullptr, nullptr),
            SQLITE_OK)
      << sqlite3_errmsg(other);
  const auto error = test::errorOf([&] { vesk_->OpenConnection(reg_.path()); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kEngineFailure);
  EXPECT_TRUE(error->description().starts_with(kPrefix)) << error->description();
  EXPECT_NE(error->description().find("locked"), std::string::npos) << error->description();
  EXPECT_NO_THROW(vesk_->Login("Inner Bert", "secret"));
}

TEST_F(UserDatabase, AnOldOneIsRefusedAsSuch) {
  for (const char* version : {"'1.003.005'", "Null"}) {
    inUsers(std::string("Update VeskConfig Set Version = ") + version);
    const test::TestSession vesk;
    const auto error = test::errorOf([&] { vesk->OpenConnection(reg_.path()); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), kErrorBase + 2503);
    EXPECT_EQ(error->source(), "OpenConnection");
    EXPECT_EQ(error->description(), "The user/action datasource needs to be converted.");
    EXPECT_FALSE(vesk->DataServer());
    EXPECT_FALSE(vesk->User());
  }
}

TEST_F(UserDatabase, AnOldVersionInTheRegisterMeansNothingThen) {
  reg_.execute("Update VeskConfig Set Version = '1.000.000'");
  EXPECT_NO_THROW(vesk_->OpenConnection(reg_.path()));
}

TEST_F(UserDatabase, WhereTheOneTakenInItsPlaceIsTooOldThatIsTold) {
  switchOn(reg_.folder().file("missing.kvv"));
  reg_.execute("Update VeskConfig Set Version = '1.000.000'");
  const auto error = test::errorOf([&] { vesk_->OpenConnection(reg_.path()); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kErrorBase + 2503);
  EXPECT_EQ(error->description(), "The user/action datasource needs to be converted.");
}

TEST_F(UserDatabase, ARegisterMayKeepTheUsersOfAnother) {
  const test::TestRegister other;
  other.addUser(7, "Gina", "secret");
  switchOn(other.path());
  vesk_->OpenConnection(reg_.path());
  EXPECT_EQ(rows(vesk_->GetRecordset("Select UserName From Users")), Texts{"Gina"});
  other.execute("Insert Into Documents (DocumentTitle) Values ('of the other')");
  EXPECT_EQ(
      rows(vesk_->MainUser()->DataServer()->Connection()->OpenRecordset("Select * From Documents")),
      Texts{})
      << "all else is this register's";
}

TEST_F(UserDatabase, ARegisterThatNamesItselfHasNoOther) {
  switchOn(reg_.path());
  vesk_->OpenConnection(reg_.path());
  EXPECT_EQ(vesk_->MainUser()->DataServer()->Profile(), vesk_->DataServer()->Profile());
  vesk_->Login("Inner Anna", "secret");
  EXPECT_EQ(vesk_->User()->NewUser(vesk_->User()->Records(-1), "Cleo", "", "", "", "", "0"),
            "User3");
}

TEST_F(UserDatabase, IsNoRegister) {
  const auto error = test::errorOf([&] { vesk_->OpenConnection(location_); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kEngineFailure);
  EXPECT_EQ(error->description(), "This is a database of users and actions, and no register.");
}

TEST_F(UserDatabase, ClosesWithTheRegister) {
  logIn("Anna");
  const auto rs = vesk_->GetRecordset("Select * From Users Order By ID");
  EXPECT_EQ(test::shown(rs->Fields("UserName")->Value()), "Anna");
  vesk_->CloseSession();
  EXPECT_RAISES(3709, rs->Requery());
  EXPECT_RAISES(3709, (void)rs->Fields("UserName")->Value()) << "though it was read before";
  if (test::onServer()) return;
  // Nobody holds the file any more.
  users_->Close();
  EXPECT_FALSE(std::filesystem::exists(location_ + "-wal"));
}

TEST_F(UserDatabase, OpeningAnewAfterALogInOpensItAnew) {
  logIn("Anna");
  vesk_->OpenConnection(reg_.path());
  EXPECT_EQ(rows(vesk_->GetRecordset("Select UserName From Users Order By ID")),
            (Texts{"Anna", "Bert"}));
  EXPECT_EQ(rows(vesk_->GetRecordset("Select Count(*) From VeskProfiles")), Texts{"2"});
  vesk_->Login("Bert", "secret");
  EXPECT_EQ(vesk_->DataServer()->Profile()->UserName(), "Bert");
}

TEST_F(UserDatabase, MayBeAFileWhereTheRegisterIsOnAServer) {
  SERVERS_ONLY();
  const std::string file = reg_.folder().file("users.kvv");
  const auto filed = createUserDatabase(file);
  std::int32_t affected = 0;
  filed->Execute(
      "Insert Into Users (ID, UserID, UserName, [Password]) Values (1, 'User1', "
      "'Filed Anna', '" +
          Passwords(test::kCheapPasswords).hash("secret") + "')",
      affected);
  filed->Close();
  switchOn(file);
  logIn("Filed Anna");
  EXPECT_EQ(vesk_->User()->NewUser(vesk_->User()->Records(-1), "Cleo", "", "", "", "", "0"),
            "User2");
  EXPECT_EQ(rows(vesk_->GetRecordset("Select UserName From Users Order By ID")),
            (Texts{"Filed Anna", "Cleo"}));
}

}  // namespace
}  // namespace kv
