// SPDX-License-Identifier: Apache-2.0
// Actions: filling, sending, listing and closing them.
#include <gtest/gtest.h>

#include "support/session_test.h"

namespace kv {
namespace {

using test::at;
using test::Texts;

template <class Session>
class ActionSession : public Session {
 protected:
  ActionSession() { this->reg_.execute("Update VeskConfig Set DBID = 'DB1'"); }

  void fill(const Ref<Recordset>& actions, const std::string& subject,
            const std::string& assignee = {}) {
    actions->AddNew();
    actions->Fields("Subject")->Value(subject);
    if (!assignee.empty()) actions->Fields("AssigneeID")->Value(assignee);
    actions->Fields("ReferenceID")->Value("DB1");
  }
  // An action in the table; `closed` is a literal.
  void addAction(const std::string& assignee, const std::string& subject,
                 const std::string& sender = "DB1", const std::string& closed = "Null") {
    this->reg_.execute(
        "Insert Into Actions (AssigneeID, Subject, ReferenceID, DateClosed) Values ('" + assignee +
        "', '" + subject + "', '" + sender + "', " + closed + ")");
  }
  [[nodiscard]] Texts sent() const {
    return this->reg_.rows("Select Subject, AssigneeID, Assignee From Actions Order By ActionID");
  }
  [[nodiscard]] Ref<Recordset> users(const std::string& more = {}) const {
    return this->reg_.open("Select * From Users" + more + " Order By ID");
  }
  static Texts subjects(const Ref<Recordset>& actions) {
    Texts out;
    if (actions->RecordCount() > 0) actions->MoveFirst();
    for (; !actions->Eof(); actions->MoveNext())
      out.push_back(test::shown(actions->Fields("Subject")->Value()));
    return out;
  }
};

class Actions : public ActionSession<test::SessionTest> {
 protected:
  Actions() { logIn("Bert"); }
};

// ---- filling ----

TEST_F(Actions, ARecordIsAnEmptySetWithTheColumnsOfTheTable) {
  Ref<Recordset> record;
  EXPECT_EQ(statementsOf([&] { record = vesk_->ActionRecord(); }),
            Texts{"Select * From Actions Where ActionID = -1"});
  EXPECT_EQ(record->State(), 1);
  EXPECT_EQ(record->RecordCount(), 0);
  const auto table = reg_.open("Select * From Actions");
  ASSERT_EQ(record->Fields().Count(), table->Fields().Count());
  ASSERT_EQ(record->Fields().Count(), 14);
  for (std::int32_t i = 0; i < table->Fields().Count(); ++i) {
    const auto expected = table->Fields(i);
    const auto field = record->Fields(i);
    EXPECT_EQ(field->Name(), expected->Name());
    EXPECT_EQ(field->Type(), expected->Type()) << field->Name();
    EXPECT_EQ(field->DefinedSize(), expected->DefinedSize()) << field->Name();
    if (i > 0) {  // a copied counter takes values
      EXPECT_EQ(field->Attributes(), expected->Attributes()) << field->Name();
    }
  }
}

TEST_F(Actions, ARecordCanBeFilledAndIsNobodysTable) {
  const auto record = vesk_->ActionRecord();
  fill(record, "one");
  record->Fields("ActionID")->Value(Null);
  fill(record, "two");
  record->Update();
  EXPECT_EQ(subjects(record), (Texts{"one", "two"}));
  EXPECT_EQ(sent(), Texts{});
  EXPECT_EQ(vesk_->ActionRecord()->RecordCount(), 0) << "the next one is another";
}

// ---- sending ----

TEST_F(Actions, WithoutUsersEveryActionGoesToItsAssignee) {
  const auto record = vesk_->ActionRecord();
  fill(record, "one", "User1");
  fill(record, "two", "User2");  // still pending
  const auto statements =
      statementsOf([&] { EXPECT_EQ(vesk_->SendActions(record), Variant(std::int32_t{2})); });
  EXPECT_EQ(statements, Texts{});
  EXPECT_EQ(sent(), (Texts{"one|User1|~", "two|User2|~"}));
  EXPECT_EQ(record->RecordCount(), 2) << "the set stays the caller's";
}

TEST_F(Actions, EveryColumnIsSentButTheNumber) {
  const auto record = vesk_->ActionRecord();
  record->AddNew();
  record->Fields("ActionID")->Value(std::int32_t{77});
  for (const char* column : {"AssigneeID", "Assignee", "Subject", "Description", "Originator",
                             "OriginatorID", "ReferenceID", "Reference"})
    record->Fields(column)->Value(std::string(column) + "'s");
  record->Fields("DateOpened")->Value(at(2001, 1, 2));
  record->Fields("DateDue")->Value(at(2001, 1, 7));
  record->Fields("DateCompleted")->Value(at(2001, 1, 3));
  record->Fields("DateClosed")->Value(at(2001, 1, 4));
  record->Fields("ActionType")->Value(std::int16_t{1});
  vesk_->SendActions(record);
  EXPECT_EQ(reg_.value("Select * From Actions"),
            "1|AssigneeID's|Assignee's|Subject's|Description's|Originator's|OriginatorID's|"
            "1/2/2001|1/7/2001|1/3/2001|1/4/2001|ReferenceID's|Reference's|1");
}

TEST_F(Actions, WithUsersEveryActionIsSentToEachOfThem) {
  const auto record = vesk_->ActionRecord();
  fill(record, "one");
  const auto all = users();
  all->MoveLast();
  EXPECT_EQ(vesk_->SendActions(record, all), Variant(std::int32_t{1}));
  EXPECT_EQ(sent(), (Texts{"one|User1|Anna", "one|User2|Bert"})) << "from the first user on";
  EXPECT_TRUE(all->Eof());
}

TEST_F(Actions, UsersAreWrittenIntoTheCurrentActionOnly) {
  const auto record = vesk_->ActionRecord();
  fill(record, "one", "User7");
  fill(record, "two", "User8");
  record->MoveFirst();
  EXPECT_EQ(vesk_->SendActions(record, users()), Variant(std::int32_t{2}));
  EXPECT_EQ(sent(), (Texts{"one|User1|Anna", "two|User8|~", "one|User2|Bert", "two|User8|~"}));
}

TEST_F(Actions, OneSetCanBeSentAgain) {
  const auto record = vesk_->ActionRecord();
  fill(record, "one");
  vesk_->SendActions(record, users(" Where UserID = 'User1'"));
  vesk_->SendActions(record, users(" Where UserID = 'User2'"));
  EXPECT_EQ(sent(), (Texts{"one|User1|Anna", "one|User2|Bert"}));
}

TEST_F(Actions, AnAssigneeWhoIsOnlyHalfKnownIsNotLeftInTheAction) {
  const auto record = vesk_->ActionRecord();
  fill(record, "one");  // still pending
  EXPECT_RAISES(kNoSuchItem, vesk_->SendActions(record, reg_.open("Select UserID From Users")));
  EXPECT_EQ(record->EditMode(), kEditNone) << "the caller's action is saved in his set";
  EXPECT_EQ(record->RecordCount(), 1);
  EXPECT_EQ(record->Fields("Subject")->Value(), Variant("one"));
  EXPECT_EQ(record->Fields("AssigneeID")->Value(), Variant(Null));
  EXPECT_EQ(sent(), Texts{});
}

TEST_F(Actions, ACompletionThatCannotBeStoredIsNotHalfStored) {
  addAction("User2", "one");
  const auto before = everything();
  EXPECT_RAISES(kTypeMismatch,
                vesk_->CompleteCloseAction("1", at(2001, 2, 3), Variant("some day")));
  EXPECT_EQ(everything(), before);
}

TEST_F(Actions, NothingIsSentToNobody) {
  const auto record = vesk_->ActionRecord();
  fill(record, "one", "User1");
  EXPECT_TRUE(vesk_->SendActions(record, users(" Where UserID = 'nobody'")).isEmpty());
  EXPECT_EQ(sent(), Texts{});
}

TEST_F(Actions, ASetWithoutActionsSendsNothing) {
  EXPECT_EQ(vesk_->SendActions(vesk_->ActionRecord()), Variant(std::int32_t{0}));
  EXPECT_RAISES(kNoCurrentRow, vesk_->SendActions(vesk_->ActionRecord(), users()));
  EXPECT_EQ(sent(), Texts{});
}

TEST_F(Actions, SendingPassesErrorsOn) {
  EXPECT_RAISES(kObjectNotSet, vesk_->SendActions(nullptr));
  const auto record = vesk_->ActionRecord();
  fill(record, "one", "User1");
  EXPECT_RAISES(kNoSuchItem,
                vesk_->SendActions(record, reg_.open("Select UserID From Users Order By ID")));
  EXPECT_EQ(sent(), Texts{});
}

// ---- listing ----

TEST_F(Actions, OpenActionsOfTheLoggedInUserAreListed) {
  addAction("User2", "open");
  addAction("User2", "closed", "DB1", "#1/2/2001#");
  addAction("User2", "of another register", "DB2");
  addAction("User1", "of another user");
  Ref<Recordset> rs;
  EXPECT_EQ(statementsOf([&] { rs = vesk_->GetActions(); }),
            Texts{"Select * From Actions where Assigneeid = 'User2' and ReferenceID = 'DB1' and "
                  "dateclosed is null"});
  EXPECT_EQ(subjects(rs), Texts{"open"});
  EXPECT_EQ(statementsOf([&] { rs = vesk_->GetActions("", true); }),
            Texts{"Select * From Actions where Assigneeid = 'User2' and ReferenceID = 'DB1'"});
  EXPECT_EQ(subjects(rs), (Texts{"open", "closed"}));
  EXPECT_EQ(subjects(vesk_->GetActions("User1")), Texts{"of another user"});
  EXPECT_EQ(subjects(vesk_->GetActions("nobody", true)), Texts{});
}

TEST_F(Actions, ARegisterWithoutANumberListsNothing) {
  addAction("User2", "open");
  reg_.execute("Update VeskConfig Set DBID = Null");
  EXPECT_EQ(vesk_->GetActions()->RecordCount(), 0);
  EXPECT_FALSE(vesk_->HasActions("User2"));
}

TEST_F(Actions, WhetherAUserHasOpenActions) {
  addAction("User2", "closed", "DB1", "#1/2/2001#");
  addAction("User2", "of another register", "DB2");
  EXPECT_EQ(statementsOf([&] { EXPECT_FALSE(vesk_->HasActions("User2")); }),
            Texts{"Select * From Actions where Assigneeid = 'User2' and ReferenceID = 'DB1' and "
                  "isnull(dateclosed)"});
  addAction("User2", "open");
  EXPECT_TRUE(vesk_->HasActions("User2"));
  EXPECT_TRUE(vesk_->HasActions("user2"));
  EXPECT_FALSE(vesk_->HasActions("User1"));
  EXPECT_FALSE(vesk_->HasActions("")) << "which is not the logged-in user here";
}

TEST_F(Actions, OwnOnesAreListedWhateverUserAndRegisterAreCalled) {
  reg_.addUser(3, "Pat", "secret");
  for (const char* table : {"Users", "VeskProfiles"})
    reg_.execute(std::string("Update ") + table +
                 " Set UserID = 'O''Brien' Where UserID = 'User3'");
  reg_.execute("Update VeskConfig Set DBID = 'Pat''s'");
  addAction("O''Brien", "open", "Pat''s");
  addAction("O''Brien", "closed", "Pat''s", "#1/2/2001#");
  addAction("User2", "of another user", "Pat''s");
  logIn("Pat");
  EXPECT_EQ(statementsOf([&] { EXPECT_EQ(subjects(vesk_->GetActions()), Texts{"open"}); }),
            Texts{"Select * From Actions where Assigneeid = 'O''Brien' and ReferenceID = 'Pat''s' "
                  "and dateclosed is null"});
  EXPECT_EQ(subjects(vesk_->GetActions("", true)), (Texts{"open", "closed"}));
  EXPECT_EQ(subjects(vesk_->GetActions("O''Brien")), Texts{"open"});
  EXPECT_TRUE(vesk_->HasActions("O''Brien"));
  EXPECT_RAISES(kSyntax, (void)vesk_->GetActions("O'Brien"));
}

TEST_F(Actions, IdentifiersThatWouldChangeTheStatementAreRefused) {
  const std::string bad = "x' or 'a'='a";
  EXPECT_EQ(statementsOf([&] {
              EXPECT_RAISES(kSyntax, (void)vesk_->GetActions(bad));
              EXPECT_RAISES(kSyntax, (void)vesk_->HasActions(bad));
              EXPECT_RAISES(kSyntax, vesk_->CompleteCloseAction("1 or 1=1", at(2001, 1, 2)));
              EXPECT_RAISES(kSyntax, vesk_->CompleteCloseAction("", at(2001, 1, 2)));
            }),
            Texts{});
}

// ---- closing ----

TEST_F(Actions, AnActionIsCompletedAndClosed) {
  addAction("User2", "one");
  addAction("User2", "two");
  const auto dates = [&] {
    return reg_.rows("Select DateCompleted, DateClosed From Actions Order By ActionID");
  };
  EXPECT_TRUE(vesk_->CompleteCloseAction("1", at(2001, 1, 2)).isEmpty());
  EXPECT_EQ(dates(), (Texts{"1/2/2001|~", "~|~"}));
  EXPECT_TRUE(vesk_->HasActions("User2"));
  vesk_->CompleteCloseAction("1", at(2001, 1, 3), at(2001, 1, 4));
  EXPECT_EQ(dates(), (Texts{"1/3/2001|1/4/2001", "~|~"}));
  vesk_->CompleteCloseAction("1", at(2001, 1, 5), Null);
  EXPECT_EQ(dates(), (Texts{"1/5/2001|1/4/2001", "~|~"})) << "no date leaves the one there is";
  EXPECT_RAISES(kTypeMismatch, vesk_->CompleteCloseAction("2", at(2001, 1, 2), "soon"));
  EXPECT_EQ(dates(), (Texts{"1/5/2001|1/4/2001", "~|~"}));
  vesk_->CompleteCloseAction("2", at(2001, 1, 2), at(2001, 1, 2));
  EXPECT_FALSE(vesk_->HasActions("User2"));
}

TEST_F(Actions, ClosingAnActionThatDoesNotExistDoesNothing) {
  addAction("User2", "one");
  const auto before = everything();
  for (const char* id : {"0", "-1", "99"}) vesk_->CompleteCloseAction(id, at(2001, 1, 2));
  EXPECT_EQ(everything(), before);
}

// ---- out of reach ----

TEST(ActionsWithoutAConnection, EachOperationHasItsOwnNumber) {
  const test::TestSession vesk;
  const auto record = Recordset::create();
  const struct {
    std::int32_t code;
    const char* source;
    std::function<void()> operation;
  } cases[] = {
      {2524, "Vesk.SendActions", [&] { vesk->SendActions(record); }},
      {2525, "GetActions", [&] { (void)vesk->GetActions("User1"); }},
      {2526, "Vesk.HasActions", [&] { (void)vesk->HasActions("User1"); }},
      {2527, "CompleteCloseAction", [&] { vesk->CompleteCloseAction("1", at(2001, 1, 2)); }},
  };
  const auto check = [&](const char* when) {
    for (const auto& c : cases) {
      const auto error = test::errorOf(c.operation);
      ASSERT_TRUE(error) << c.source << when;
      EXPECT_EQ(error->number(), kErrorBase + c.code) << c.source << when;
      EXPECT_EQ(error->source(), c.source) << when;
      EXPECT_EQ(error->description(), "Unable to connect to Action System") << c.source << when;
    }
  };
  check(" before opening");
  const test::TestRegister reg;
  vesk->OpenConnection(reg.path());
  EXPECT_EQ(vesk->GetActions("User1")->RecordCount(), 0);
  vesk->CloseSession();
  check(" after closing");
}

// ---- failures ----

class ActionFaults : public ActionSession<test::FaultySessionTest> {};

TEST_F(ActionFaults, AllActionsAreSentOrNone) {
  const auto before = everything();
  const auto record = vesk_->ActionRecord();
  fill(record, "one");
  fill(record, "two");
  record->Update();
  const auto all = users();
  int writes = 0;
  for (bool failed = true; failed && writes < 20; writes += failed ? 1 : 0) {
    faults_->failCommitAfter = 0;
    faults_->failWriteAfter = writes;
    EXPECT_RAISES(kEngineFailure, vesk_->SendActions(record, all)) << writes;
    failed = faults_->failCommitAfter == 0;
    EXPECT_EQ(everything(), before) << "after " << writes << " writes";
  }
  EXPECT_EQ(writes, 1) << "two actions to two users";
  faults_->failCommitAfter = -1;
  faults_->failWriteAfter = -1;
  vesk_->SendActions(record, all);
  EXPECT_EQ(sent().size(), 4U);
}

TEST_F(ActionFaults, InAClientsTransactionRollbackUndoesEveryOperation) {
  addAction("User1", "old");
  const auto before = everything();
  const auto record = vesk_->ActionRecord();
  fill(record, "one", "User1");
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  vesk_->SendActions(record);
  vesk_->SendActions(record, users());
  vesk_->CompleteCloseAction("1", at(2001, 1, 2), at(2001, 1, 2));
  EXPECT_EQ(vesk_->GetActions("User1")->RecordCount(), 2);
  EXPECT_EQ(everything(), before) << "others see nothing of it yet";
  connection->RollbackTrans();
  EXPECT_EQ(everything(), before);
}

}  // namespace
}  // namespace kv
