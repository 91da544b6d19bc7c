// SPDX-License-Identifier: Apache-2.0
// A revision put in force: what it runs, changes and tells, and what a failure leaves.
#include <gtest/gtest.h>

#include "classes/revisions/approval_session.h"

namespace kv {
namespace {

using test::Texts;

constexpr std::int32_t kDocumentNotThere = kErrorBase + 40;

const char* const kUpdate =
    "Update Revisions Set RevisionStatus = 0 Where RevisionStatus = 1 and DocumentID = 'D1'";

template <class Session>
class ReleaseSession : public test::ApprovalSession<Session> {
 protected:
  ReleaseSession() {
    this->reg_.execute("Update Documents Set RevisionLevel = 'A', CurrentRevID = 77");
  }
  void hold(int user, bool hard, const std::string& document = "D1") {
    this->reg_.execute(
        fmt::format("Insert Into Personals (UserID, DocumentID, ManualID, HardCopy) Values "
                    "('User{}', '{}', '0', {})",
                    user, document, hard ? "True" : "False"));
  }
  void release(std::int32_t id, bool send = false) {
    Ref<Recordset> documents;
    this->revision().SetAsCurrentRevision(this->revision().GetRevRS(id), documents, send);
  }
  [[nodiscard]] std::string document(const std::string& id = "D1") const {
    return this->reg_.value(
        "Select RevisionLevel, EffectiveDate, CurrentRevID From Documents Where DocumentID = '" +
        id + "'");
  }
  // Status and effective date of every revision.
  [[nodiscard]] Texts revisions() const {
    return this->reg_.rows(
        "Select RevisionStatus, EffectiveDate From Revisions Order By RevisionID");
  }
};

class Release : public ReleaseSession<test::SessionTest> {
 protected:
  Release() { logIn("Bert"); }  // no right is tested
};

// ---- what changes ----

TEST_F(Release, TheRevisionIsInForceAndTheOneBeforeOutOfDate) {
  const struct {
    const char* more;
    const char* after;
  } cases[] = {{"RevisionStatus = 1, EffectiveDate = #1/2/2000#", "0|1/2/2000"},
               {"RevisionStatus = 1", "0|~"},
               {"RevisionStatus = 0", "0|~"},
               {"RevisionStatus = 2", "2|~"},
               {"RevisionStatus = 3", "3|~"},
               {"RevisionStatus = 4", "4|~"},
               {"RevisionStatus = 5", "5|~"},
               {"RevisionStatus = 1, DocumentID = 'D2'", "1|~"}};
  Texts expected;
  for (const auto& c : cases) {
    addRevision(2, c.more);
    expected.emplace_back(c.after);
  }
  const std::int32_t id = addRevision(4, "RevisionLevel = 'C', EffectiveDate = #3/9/2001#");
  release(id);
  expected.emplace_back("1|2/26/2001");
  EXPECT_EQ(revisions(), expected) << "a date that was entered is replaced";
  EXPECT_EQ(document(), "C|2/26/2001|" + std::to_string(id));
}

TEST_F(Release, EveryStatusCanBePutInForce) {
  for (const int status : {0, 1, 2, 3, 4, 5}) {
    const std::int32_t id = addRevision(status);
    release(id);
    EXPECT_EQ(reg_.rows("Select RevisionID From Revisions Where RevisionStatus = 1"),
              Texts{std::to_string(id)});
    EXPECT_EQ(document(), "B|2/26/2001|" + std::to_string(id));
  }
}

TEST_F(Release, ALevelThatIsNullIsTakenOver) {
  const std::int32_t id = addRevision(4, "RevisionLevel = Null");
  release(id);
  EXPECT_EQ(document(), "~|2/26/2001|" + std::to_string(id));
}

TEST_F(Release, WhatIsRunWithoutASetOfDocuments) {
  const auto rs = revision().GetRevRS(addRevision(4));
  Ref<Recordset> documents;
  EXPECT_EQ(statementsOf([&] { revision().SetAsCurrentRevision(rs, documents, false); }),
            (Texts{"Select * From Documents Where documentid = 'D1'", kUpdate}));
  ASSERT_TRUE(documents) << "which the caller then has";
  EXPECT_EQ(documents->RecordCount(), 1);
  EXPECT_EQ(documents->Fields("RevisionLevel")->Value(), Variant("B"));
  EXPECT_EQ(rs->Fields("RevisionStatus")->Value(), Variant(std::int16_t{1}));
  EXPECT_EQ(rs->EditMode(), 0) << "saved";
  EXPECT_EQ(documents->EditMode(), 0);
}

TEST_F(Release, ASetOfDocumentsKeepsItsPosition) {
  for (const char* id : {"D0", "D2", "D3"})
    reg_.execute(std::string("Insert Into Documents (DocumentID, RevisionLevel) Values ('") + id +
                 "', 'old')");
  const auto rs = revision().GetRevRS(addRevision(4));
  auto documents = vesk_->GetRecordset("Select * From Documents Order By DocumentID");
  const auto given = documents;
  for (const int place : {1, 2, 3, 4}) {
    documents->AbsolutePosition(place);
    EXPECT_EQ(statementsOf([&] { revision().SetAsCurrentRevision(rs, documents, false); }),
              Texts{kUpdate});
    EXPECT_EQ(documents->AbsolutePosition(), place);
    EXPECT_EQ(documents, given);
  }
  documents->MoveLast();
  documents->MoveNext();
  revision().SetAsCurrentRevision(rs, documents, false);
  EXPECT_EQ(documents->Fields("DocumentID")->Value(), Variant("D1")) << "there was none to keep";
  documents->MoveFirst();
  documents->MovePrevious();
  revision().SetAsCurrentRevision(rs, documents, false);
  EXPECT_EQ(documents->Fields("DocumentID")->Value(), Variant("D1"));
  EXPECT_EQ(reg_.rows("Select RevisionLevel From Documents Order By DocumentID"),
            (Texts{"old", "B", "old", "old"}));
}

TEST_F(Release, WhatTheCallerHasPendingInTheRevisionIsSavedWithIt) {
  const std::int32_t id = addRevision(4);
  const auto rs = revision().GetRevRS(id);
  rs->Fields("RevisionLevel")->Value("C");
  Ref<Recordset> documents;
  revision().SetAsCurrentRevision(rs, documents, false);
  EXPECT_EQ(document(), "C|2/26/2001|" + std::to_string(id));
  EXPECT_EQ(reg_.value("Select RevisionLevel From Revisions"), "C");
}

// ---- what is refused ----

TEST_F(Release, ADocumentThatIsNotInTheSet) {
  reg_.execute("Insert Into Documents (DocumentID) Values ('D2')");
  addRevision(1);
  const auto rs = revision().GetRevRS(addRevision(4));
  const auto before = everything();
  for (const char* where : {"DocumentID = 'D2'", "DocumentID = 'nothing'"}) {
    auto documents = vesk_->GetRecordset(std::string("Select * From Documents Where ") + where);
    EXPECT_EQ(statementsOf([&] {
                const auto error =
                    test::errorOf([&] { revision().SetAsCurrentRevision(rs, documents, true); });
                ASSERT_TRUE(error);
                EXPECT_EQ(error->number(), kDocumentNotThere);
                EXPECT_EQ(error->number(), -2147221464);
                EXPECT_EQ(error->source(), "SetAsCurrentRevision");
                EXPECT_EQ(error->description(), "The Document is not present in the current set.");
              }),
              Texts{});
  }
  reg_.execute("Delete * From Documents Where DocumentID = 'D1'");
  Ref<Recordset> documents;
  EXPECT_RAISES(kDocumentNotThere, revision().SetAsCurrentRevision(rs, documents, true));
  EXPECT_EQ(rs->EditMode(), 0) << "nor is anything pending";
  reg_.execute("Insert Into Documents (DocumentID) Values ('D1')");
  EXPECT_EQ(revisions(), (Texts{"1|~", "4|~"}));
  EXPECT_EQ(actions(), Texts{});
}

TEST_F(Release, WithoutARevisionItRaises) {
  const auto before = everything();
  Ref<Recordset> documents;
  EXPECT_RAISES(kNoCurrentRow,
                revision().SetAsCurrentRevision(revision().GetRevRS(99), documents, true));
  EXPECT_RAISES(kObjectNotSet, revision().SetAsCurrentRevision(nullptr, documents, true));
  const auto rs = reg_.open("Select RevisionID From Revisions");
  EXPECT_RAISES(kNoSuchItem, revision().SetAsCurrentRevision(rs, documents, true));
  const auto bad = revision().GetRevRS(addRevision(4, "DocumentID = 'x'' or ''a''=''a'"));
  EXPECT_RAISES(kDocumentNotThere, revision().SetAsCurrentRevision(bad, documents, true))
      << "which no document is called";
  documents.reset();
  reg_.execute("Delete * From Revisions");
  EXPECT_EQ(reg_.value("Select Count(*) From Actions"), "0");
  EXPECT_EQ(document(), "A|~|77");
}

// ---- who is told ----

TEST_F(Release, TheHoldersAreChosenByTheOptions) {
  hold(1, true);
  hold(2, false);
  hold(3, true);
  hold(3, false);
  hold(3, true);
  hold(4, true, "D2");
  hold(9, true);  // who has no record
  const std::string all = "Select distinct UserID from Personals Where DocumentID = 'D1'";
  const std::string hard = "Select UserID From Personals Where DocumentID = 'D1' and HardCopy <> 0";
  const std::string virtually =
      "Select Userid from Personals Where DocumentID = 'D1' and HardCopy = 0";
  const std::string record = "Select * From Actions Where ActionID = -1";
  const struct {
    const char* options;
    Texts statements;
    Texts told;
  } cases[] = {{"00010101000", {all, record}, {"User1", "User2", "User3"}},
               {"00000101000", {hard, record}, {"User1", "User3"}},
               {"00010001000", {virtually, record}, {"User2", "User3"}},
               {"00000001000", {}, {}},
               {"11111110111", {}, {}},
               {"11111111111", {all, record}, {"User1", "User2", "User3"}},
               {"", {}, {}}};
  for (const auto& c : cases) {
    reg_.execute("Delete * From Actions");
    options(c.options);
    const auto rs = revision().GetRevRS(addRevision(4));
    Ref<Recordset> documents;
    auto statements = statementsOf([&] { revision().SetAsCurrentRevision(rs, documents, true); });
    ASSERT_GE(statements.size(), 2U);
    statements.erase(statements.begin(), statements.begin() + 2);
    EXPECT_EQ(statements, c.statements) << c.options;
    EXPECT_EQ(reg_.rows("Select AssigneeID From Actions Order By AssigneeID"), c.told) << c.options;
  }
}

TEST_F(Release, NobodyIsToldUnlessAsked) {
  hold(1, true);
  options("11111111111");
  release(addRevision(4), false);
  EXPECT_EQ(actions(), Texts{});
}

TEST_F(Release, WithoutHoldersNothingIsSent) {
  options("11111111111");
  release(addRevision(4), true);
  hold(9, true);
  release(addRevision(4), true);
  EXPECT_EQ(actions(), Texts{}) << "nor with holders who have no record";
}

TEST_F(Release, WhatHoldersAreTold) {
  hold(4, true);
  options("00000101000");
  release(addRevision(4), true);
  EXPECT_EQ(actions(), Texts{"Pump manual has been updated.|User4|Dora|Bert|User2|2/26/2001|"
                             "3/3/2001|~|~|Issue B of Drawing Pump manual has been released.|DB1|"
                             "D1|1"});
}

TEST_F(Release, ALongTitleIsCut) {
  hold(4, true);
  options("00000101000");
  const std::string umlaut = "\xC3\xBC";
  const auto times = [](const std::string& what, int count) {
    std::string out;
    for (int i = 0; i < count; ++i) out += what;
    return out;
  };
  const struct {
    std::string title;
    std::string subject;
  } cases[] = {
      {std::string(59, 'x'), std::string(59, 'x') + " has been updated."},
      {std::string(60, 'x'), std::string(60, 'x') + " has been updated."},
      {std::string(61, 'x'), std::string(58, 'x') + "... has been updated."},
      {std::string(255, 'x'), std::string(58, 'x') + "... has been updated."},
      {times(umlaut, 60), times(umlaut, 60) + " has been updated."},
      {times(umlaut, 61), times(umlaut, 58) + "... has been updated."},
  };
  for (const auto& c : cases) {
    reg_.execute("Delete * From Actions");
    reg_.execute("Update Documents Set DocumentTitle = '" + c.title + "'");
    release(addRevision(4), true);
    EXPECT_EQ(reg_.value("Select Subject, Description From Actions"),
              c.subject + "|Issue B of Drawing " + c.title + " has been released.");
  }
  reg_.execute("Delete * From Actions");
  reg_.execute("Update Documents Set DocumentTitle = Null");
  release(addRevision(4), true);
  EXPECT_EQ(reg_.value("Select Subject From Actions"), " has been updated.");
}

TEST_F(Release, WhoSignsWhatHoldersAreTold) {
  hold(3, true);
  options("00000101000");
  EXPECT_EQ(signatures([&] { release(addRevision(4), true); }),
            (Texts{"Bert|User2", "Dora|User4", "~|~", "~|~", "~|~", "~|~"}))
      << "0 and 2 mean the opposite of what they mean on the way to approval";
}

// ---- what a failure leaves ----

TEST_F(Release, AFailureKeepsTheStepsBeforeIt) {
  hold(4, true);
  options("00000101000");
  const auto old = addRevision(1);
  const auto id = addRevision(4);
  const auto row = [&](std::int32_t which) {
    return reg_.value("Select RevisionStatus From Revisions Where RevisionID = " +
                      std::to_string(which));
  };
  const test::RawRegister raw(reg_.path());

  raw.refuse("INSERT", "Actions");
  EXPECT_RAISES(kEngineFailure, release(id, true));
  raw.allowAgain("Actions");
  EXPECT_EQ(row(old) + row(id), "04") << "out of date, and nothing in force";
  EXPECT_EQ(document(), "A|~|77");
  EXPECT_EQ(tasks(), Texts{});

  raw.refuse("UPDATE", "Documents");
  EXPECT_RAISES(kEngineFailure, release(id, true));
  raw.allowAgain("Documents");
  EXPECT_EQ(row(old) + row(id), "01") << "in force, and the document does not know";
  EXPECT_EQ(document(), "A|~|77");
  EXPECT_EQ(tasks().size(), 1U);

  release(id, true);
  EXPECT_EQ(row(old) + row(id), "01");
  EXPECT_EQ(document(), "B|2/26/2001|" + std::to_string(id));
}

TEST_F(Release, ARevisionThatSomebodyElseChangedIsNotPutInForce) {
  const auto old = addRevision(1);
  const auto id = addRevision(4);
  const auto rs = revision().GetRevRS(id);
  EXPECT_EQ(rs->Fields("RevisionLevel")->Value(), Variant("B"));
  rs->Fields("Location")->Value("shelf");
  reg_.execute("Update Revisions Set RevisionLevel = 'theirs' Where RevisionID = " +
               std::to_string(id));
  Ref<Recordset> documents;
  EXPECT_RAISES(kRowChanged, revision().SetAsCurrentRevision(rs, documents, false));
  EXPECT_EQ(rs->Fields("Location")->Value(), Variant("shelf")) << "and the edit is still his";
  EXPECT_EQ(revisions(), (Texts{"1|~", "4|~"})) << old << " is still in force";
  EXPECT_EQ(document(), "A|~|77");
}

TEST_F(Release, TheOneInForceCanBePutInForceWithAnEditPending) {
  const auto id = addRevision(1);
  const auto rs = revision().GetRevRS(id);
  rs->Fields("RevisionLevel")->Value("C");
  Ref<Recordset> documents;
  revision().SetAsCurrentRevision(rs, documents, false);
  EXPECT_EQ(revisions(), Texts{"1|2/26/2001"});
  EXPECT_EQ(document(), "C|2/26/2001|" + std::to_string(id));
  EXPECT_EQ(rs->EditMode(), kEditNone);
}

TEST_F(Release, AFailedAssignmentLeavesNothingPending) {
  options("00000101000");
  hold(4, true);
  const auto readOnly = [&](const std::string& sql) {
    return reg_.connection()->OpenRecordset(sql, kKeyset, kReadOnly);
  };
  const std::string documents = "Select * From Documents";
  const auto given = [&](std::int32_t id) {
    return "Select * From Revisions Where RevisionID = " + std::to_string(id);
  };
  const struct {
    const char* what;
    std::int32_t number;
    std::function<Ref<Recordset>(std::int32_t)> revision;
    std::function<Ref<Recordset>()> documents;
  } cases[] = {
      {"a read-only revision", kNotAvailable, [&](auto id) { return readOnly(given(id)); },
       [&] { return vesk_->GetRecordset(documents); }},
      {"read-only documents", kNotAvailable, [&](auto id) { return revision().GetRevRS(id); },
       [&] { return readOnly(documents); }},
      {"documents without the date", kNoSuchItem, [&](auto id) { return revision().GetRevRS(id); },
       [&] { return vesk_->GetRecordset("Select DocumentID, RevisionLevel From Documents"); }},
      {"documents without the number", kNoSuchItem,
       [&](auto id) { return revision().GetRevRS(id); },
       [&] {
         return vesk_->GetRecordset(
             "Select DocumentID, DocumentTitle, RevisionLevel, EffectiveDate From Documents");
       }},
      {"a revision without a level", kNoSuchItem,
       [&](auto id) {
         return vesk_->GetRecordset(
             "Select RevisionID, DocumentID, RevisionStatus, EffectiveDate From Revisions Where "
             "RevisionID = " +
             std::to_string(id));
       },
       [&] { return vesk_->GetRecordset(documents); }},
  };
  for (const auto& c : cases) {
    reg_.execute("Delete * From Revisions");
    addRevision(1);
    const auto id = addRevision(4);
    const auto rs = c.revision(id);
    auto set = c.documents();
    EXPECT_RAISES(c.number, revision().SetAsCurrentRevision(rs, set, true)) << c.what;
    EXPECT_EQ(revisions(), (Texts{"0|~", "4|~"})) << c.what << ": what was done before stays";
    EXPECT_EQ(rs->EditMode(), kEditNone) << c.what;
    EXPECT_EQ(set->EditMode(), kEditNone) << c.what;
    rs->MoveFirst();
    set->MoveFirst();
    EXPECT_EQ(revisions(), (Texts{"0|~", "4|~"})) << c.what << ": and the next move stores nothing";
    EXPECT_EQ(document(), "A|~|77") << c.what;
    EXPECT_EQ(tasks(), Texts{}) << c.what;
  }
}

TEST_F(Release, AFailedNoticeLeavesNothingPending) {
  hold(4, true);
  options("00000101000");
  addRevision(1);
  const auto rs = revision().GetRevRS(addRevision(4));
  auto set = vesk_->GetRecordset("Select * From Documents");
  test::RawRegister(reg_.path()).refuse("INSERT", "Actions");
  EXPECT_RAISES(kEngineFailure, revision().SetAsCurrentRevision(rs, set, true));
  rs->MoveFirst();
  set->MoveFirst();
  EXPECT_EQ(revisions(), (Texts{"0|~", "4|~"}));
  EXPECT_EQ(document(), "A|~|77");
}

TEST_F(Release, InAClientsTransactionAFailureKeepsThemUntilItsEnd) {
  addRevision(1);
  const auto id = addRevision(4);
  const auto before = everything();
  test::RawRegister(reg_.path()).refuse("UPDATE", "Documents");
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  EXPECT_RAISES(kEngineFailure, release(id));
  connection->RollbackTrans();
  EXPECT_EQ(everything(), before);
  connection->BeginTrans();
  EXPECT_RAISES(kEngineFailure, release(id));
  connection->CommitTrans();
  EXPECT_EQ(revisions(), (Texts{"0|~", "1|2/26/2001"}));
  EXPECT_EQ(document(), "A|~|77");
}

class ReleaseFaults : public ReleaseSession<test::FaultySessionTest> {};

TEST_F(ReleaseFaults, AFailedCommitLeavesEverything) {
  hold(4, true);
  options("00000101000");
  addRevision(1);
  const auto id = addRevision(4);
  const auto before = everything();
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, release(id, true));
  EXPECT_EQ(everything(), before);
  release(id, true);
  EXPECT_EQ(revisions(), (Texts{"0|~", "1|2/26/2001"}));
}

TEST_F(ReleaseFaults, TellingManyTakesFewStatements) {
  constexpr int kMany = 600;
  constexpr int kFirst = 1000;
  options("00000101000");
  hold(4, true);
  const auto id = addRevision(4);
  const int few = writesOf([&] { release(id, true); });
  EXPECT_EQ(tasks().size(), 1U);
  reg_.execute("Delete * From Actions");
  const auto connection = reg_.connection();
  connection->BeginTrans();
  for (int user = kFirst; user < kFirst + kMany; ++user) {
    hold(user, true);
    reg_.execute(
        fmt::format("Insert Into Users (UserID, UserName) Values ('User{0}', 'Name {0}')", user));
  }
  connection->CommitTrans();
  const auto& engine = vesk_->DataServer()->Connection()->database()->engine();
  const auto before = engine.roundTrips();
  const int many = writesOf([&] { release(id, true); });
  constexpr int kTogether = 50;
  EXPECT_LE(many, few + kMany / kTogether);
  constexpr std::uint64_t kFewTrips = 60;
  EXPECT_LE(engine.roundTrips() - before, kFewTrips);
  Texts expected = {"User4|Dora"};
  for (int user = kFirst; user < kFirst + kMany; ++user)
    expected.push_back(fmt::format("User{0}|Name {0}", user));
  EXPECT_EQ(reg_.rows("Select AssigneeID, Assignee From Actions Order By ActionID"), expected)
      << "each in the order of the copies, and numbered so";
}

TEST_F(ReleaseFaults, InAClientsTransactionRollbackUndoesEverything) {
  hold(4, true);
  options("00000101000");
  addRevision(1);
  const auto id = addRevision(4);
  const auto before = everything();
  const auto connection = vesk_->DataServer()->Connection();
  connection->BeginTrans();
  release(id, true);
  EXPECT_EQ(vesk_->GetActions("User4")->RecordCount(), 1);
  EXPECT_EQ(everything(), before) << "others see nothing of it yet";
  connection->RollbackTrans();
  EXPECT_EQ(everything(), before);
}

}  // namespace
}  // namespace kv
