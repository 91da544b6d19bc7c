// SPDX-License-Identifier: Apache-2.0
// What is left behind when an operation on documents fails, is undone, or meets another one.
#include <gtest/gtest.h>

#include "classes/documents/document_session.h"
#include "common/clock.h"
#include "common/convert.h"
#include "support/engine_answers.h"
#include "support/other_user.h"
#include "support/scale.h"

namespace kv {
namespace {

using test::at;
using test::LoadedDocument;
using test::Texts;

std::string add(clsVeskDocument& document, const Ref<Recordset>& rs = {}) {
  return document.Add("User7", "new", "", "", "", "", "", "", 0, "", "B", "3/9/2001", true, true,
                      false, rs);
}

// ---- failures of the database ----

class DocumentFaults : public test::DocumentSession<test::FaultySessionTest> {
 protected:
  DocumentFaults() {
    addDocument("D1", "one", "Controlled = True, CurrentRevID = 4");
    addDocument("D2", "two");
    addEverythingOf("D1");
    addEverythingOf("D2");
  }
  Ref<Recordset> all() { return document().Records(0, "", "Select * From Documents Order By ID"); }
};

TEST_F(DocumentFaults, AddLeavesNothingBehind) {
  EXPECT_GE(leavesNothingBehind([&] { add(document()); }), 3) << "two rows, one of them twice";
}

TEST_F(DocumentFaults, AddTakesItsAdditionBackFromACallersSet) {
  const auto rs = all();
  rs->MoveLast();
  for (int writes = 0; writes < 3; ++writes) {
    faults_->failWriteAfter = writes;
    EXPECT_RAISES(kEngineFailure, add(document(), rs));
    faults_->failWriteAfter = -1;
    EXPECT_EQ(rs->State(), kStateOpen);
    EXPECT_EQ(rs->EditMode(), kEditNone) << "after " << writes << " writes";
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_EQ(rs->AbsolutePosition(), 2) << "it stands where it stood";
    EXPECT_EQ(rs->Fields("DocumentID")->Value(), Variant("D2"));
  }
  add(document(), rs);
  EXPECT_EQ(rs->RecordCount(), 3);
  if (!test::countersGoBack()) return;
  EXPECT_EQ(rs->Fields("ID")->Value(), Variant(3)) << "no number was used up";
  EXPECT_EQ(reg_.value("Select Max(RevisionID) From Revisions"), "13");
}

TEST_F(DocumentFaults, AnAdditionWhoseCommitFailedIsARowThatIsGone) {
  const auto rs = all();
  const auto before = everything();
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, add(document(), rs));
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_RAISES(kRowDeleted, (void)rs->Fields("DocumentID")->Value());
  rs->MoveFirst();
  EXPECT_EQ(rs->Fields("DocumentID")->Value(), Variant("D1"));
}

TEST_F(DocumentFaults, AddWithASetThatLacksAColumnTakesItsAdditionBack) {
  const auto before = everything();
  const auto rs = document().Records(0, "", "Select ID, DocumentID From Documents Order By ID");
  EXPECT_RAISES(kNoSuchItem, add(document(), rs));
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->AbsolutePosition(), 1);
  EXPECT_EQ(everything(), before);
}

TEST_F(DocumentFaults, AddWithASetThatCannotBeWrittenChangesNothing) {
  const auto before = everything();
  const auto rs = document().Records(0, "", "Select Distinct DocumentID From Documents");
  EXPECT_RAISES(kNotAvailable, add(document(), rs));
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(everything(), before);
}

TEST_F(DocumentFaults, WhenTheDocumentsRowIsRefusedItsRevisionGoesToo) {
  test::RawRegister(reg_.path()).refuse("INSERT", "Documents");
  const auto before = everything();
  EXPECT_THROW(add(document()), Error);
  EXPECT_EQ(everything(), before);
}

TEST_F(DocumentFaults, SaveDataLeavesNothingBehind) {
  EXPECT_EQ(leavesNothingBehind([&] { save("D1", "new"); }), 1);
}

TEST_F(DocumentFaults, SetValueLeavesNothingBehind) {
  EXPECT_EQ(leavesNothingBehind([&] { document().SetValue("D1", "DocumentTitle", "new"); }), 1);
}

TEST_F(DocumentFaults, MakeUnControlledLeavesNothingBehind) {
  EXPECT_EQ(leavesNothingBehind([&] { document().MakeUnControlled("D1"); }), 4);
}

TEST_F(DocumentFaults, AddQueryLeavesNothingBehind) {
  EXPECT_EQ(leavesNothingBehind([&] { (void)document().AddQuery(); }), 1);
}

TEST_F(DocumentFaults, SaveDataIntoACallersSetLeavesTheEditToTheCaller) {
  const auto rs = all();
  const auto before = everything();
  faults_->failWriteAfter = 0;
  EXPECT_RAISES(kEngineFailure, save("D2", "new", rs));
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(rs->State(), kStateOpen);
  EXPECT_EQ(rs->EditMode(), kEditInProgress);
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  EXPECT_EQ(rs->Fields("DocumentTitle")->Value(), Variant("new title")) << "nothing is lost";
  rs->Update();
  EXPECT_EQ(reg_.value("Select DocumentTitle From Documents Where DocumentID = 'D2'"), "new title");
}

TEST_F(DocumentFaults, AnEditThatFailsHalfWayIsTakenBack) {
  const auto before = everything();
  const std::string tooLong(300, 'x');
  const auto saveInto = [&](const Ref<Recordset>& rs, const std::string& location) {
    document().SaveData("D1", "half", "", "", "", "", "", "", false, true, location, rs);
  };
  const auto rs = all();
  EXPECT_RAISES(kWrongType, saveInto(rs, tooLong));
  EXPECT_EQ(rs->EditMode(), kEditNone);
  rs->MoveNext();
  const auto narrow =
      document().Records(0, "", "Select ID, DocumentID, DocumentTitle From Documents");
  EXPECT_RAISES(kNoSuchItem, saveInto(narrow, ""));
  EXPECT_EQ(narrow->EditMode(), kEditNone);
  narrow->MoveNext();
  EXPECT_RAISES(kWrongType, saveInto({}, tooLong));
  EXPECT_RAISES(kWrongType, document().SetValue("D1", "DocumentTitle", tooLong));
  EXPECT_EQ(everything(), before) << "no later move stores a part of it";
}

TEST_F(DocumentFaults, WhatTheCallerHadPendingIsNoPartOfAnEditThatFails) {
  const auto rs = all();
  rs->Fields("DocumentTitle")->Value("pending");
  EXPECT_RAISES(kWrongType, document().SaveData("D1", "half", "", "", "", "", "", "", false, true,
                                                std::string(300, 'x'), rs));
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->Fields("DocumentTitle")->Value(), Variant("pending"));
  EXPECT_EQ(reg_.value("Select DocumentTitle From Documents Where DocumentID = 'D1'"), "pending");
}

TEST_F(DocumentFaults, ASetWhoseSavingWasUndoneReadsItsRowAgain) {
  const auto rs = all();
  const auto before = everything();
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, save("D1", "new", rs));
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(rs->EditMode(), kEditNone);
  EXPECT_EQ(rs->Fields("DocumentTitle")->Value(), Variant("one"));
}

TEST_F(DocumentFaults, DeleteKeepsTheStepsBeforeTheOneThatFails) {
  const char* expected[] = {"2 6 1 2 2", "0 6 1 2 2", "0 0 1 2 2",
                            "0 0 0 2 2", "0 0 0 0 2", "0 0 0 0 0"};
  for (int steps = 0; steps < 6; ++steps) {
    document().Delete("D1", true);
    addDocument("D1");
    addEverythingOf("D1");
    faults_->failWriteAfter = steps;
    EXPECT_RAISES(kEngineFailure, document().Delete("D1", true));
    faults_->failWriteAfter = -1;
    EXPECT_EQ(linksOf("D1"), expected[steps]) << steps;
    EXPECT_EQ(reg_.value("Select Count(*) From Documents Where DocumentID = 'D1'"), "1");
  }
  EXPECT_EQ(linksOf("D2"), "2 6 1 2 2");
  document().Delete("D1", true);
  EXPECT_EQ(linksOf("D1"), "0 0 0 0 0");
  EXPECT_EQ(reg_.value("Select DocumentID From Documents"), "D2");
}

TEST_F(DocumentFaults, DeleteStopsAtTheStepThatFails) {
  test::RawRegister(reg_.path()).refuse("DELETE", "Owners");
  Texts seen = statementsOf([&] { EXPECT_THROW(document().Delete("D1", true), Error); });
  EXPECT_EQ(seen.size(), 3U);
  EXPECT_EQ(seen.back(), "Delete * from Owners Where DocumentID = 'D1'");
  EXPECT_EQ(linksOf("D1"), "0 0 1 2 2");
  EXPECT_EQ(linksOf("D2"), "2 6 1 2 2");
}

TEST_F(DocumentFaults, DeleteWhoseCommitFailsKeepsNothing) {
  const auto before = everything();
  faults_->failCommitAfter = 0;
  EXPECT_RAISES(kEngineFailure, document().Delete("D1", true));
  EXPECT_EQ(everything(), before);
}

TEST_F(DocumentFaults, WhatTheCallerHadPendingIsSavedAlthoughTheOperationFails) {
  const auto titles = [&] { return reg_.rows("Select DocumentTitle From Documents Order By ID"); };
  const auto rs = all();
  rs->Fields("DocumentTitle")->Value("pending");
  EXPECT_RAISES(kErrorBase + 2604, save("D9", "new", rs));
  EXPECT_EQ(titles(), (Texts{"pending", "two"})) << "every move saves it";
  rs->MoveLast();
  rs->Fields("DocumentTitle")->Value("pending too");
  faults_->failWriteAfter = 2;
  EXPECT_RAISES(kEngineFailure, add(document(), rs));
  faults_->failWriteAfter = -1;
  EXPECT_EQ(titles(), (Texts{"pending", "pending too"}));
  LoadedDocument loaded;
  rs->Fields("DocumentTitle")->Value("once more");
  EXPECT_RAISES(kErrorBase + 2601, loaded.from(document(), "D9", rs));
  EXPECT_EQ(titles(), (Texts{"pending", "once more"}));
}

TEST_F(DocumentFaults, WhatTheCallerHadPendingAndCannotBeSavedStaysPending) {
  const auto rs = all();
  rs->Fields("DocumentTitle")->Value("pending");
  reg_.execute("Update Documents Set DocumentTitle = 'somebody else' Where DocumentID = 'D1'");
  LoadedDocument loaded;
  for (const auto& operation : std::initializer_list<std::function<void()>>{
           [&] { save("D2", "new", rs); }, [&] { add(document(), rs); },
           [&] { loaded.from(document(), "D2", rs); }}) {
    const auto before = everything();
    EXPECT_RAISES(kRowChanged, operation());
    EXPECT_EQ(rs->EditMode(), kEditInProgress);
    EXPECT_EQ(rs->Fields("DocumentTitle")->Value(), Variant("pending"));
    EXPECT_EQ(everything(), before);
  }
}

// ---- inside a transaction of the client's ----

class ClientsTransaction : public test::DocumentSession<test::SessionTest> {
 protected:
  ClientsTransaction() {
    logIn("Anna");
    addDocument("D1", "one", "Controlled = True, CurrentRevID = 4");
    addDocument("D2", "two");
    addEverythingOf("D1");
    addEverythingOf("D2");
  }
  kvConnection& connection() { return *vesk_->DataServer()->Connection(); }
};

TEST_F(ClientsTransaction, RollbackUndoesEveryOperation) {
  const auto before = everything();
  const auto rs = document().Records(0, "", "Select * From Documents Order By ID");
  connection().BeginTrans();
  const std::string id = add(document());
  EXPECT_EQ(document().Value(id, "DocumentTitle"), Variant("new"));
  save("D1", "saved", rs);
  document().SetValue("D2", "DocumentTitle", "set");
  document().MakeUnControlled("D1");
  document().Delete("D2", true);
  const auto query = document().AddQuery();
  query->SetQueryValue("Field1", "x");
  document().SaveQuery(query);
  EXPECT_FALSE(document().Value("D1", "DocumentTitle") == Variant("one"));
  EXPECT_EQ(everything(), before) << "others see nothing of it yet";
  connection().RollbackTrans();
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(document().Value("D1", "DocumentTitle"), Variant("one"));
  rs->MoveFirst();
  EXPECT_EQ(rs->Fields("DocumentTitle")->Value(), Variant("one"));
}

TEST_F(ClientsTransaction, CommitKeepsThemAll) {
  connection().BeginTrans();
  add(document());
  document().Delete("D2", true);
  connection().CommitTrans();
  EXPECT_EQ(reg_.rows("Select DocumentTitle From Documents Order By ID"), (Texts{"one", "new"}));
  EXPECT_EQ(linksOf("D2"), "0 0 0 0 0");
}

TEST_F(ClientsTransaction, AFailedOperationIsUndoneByItselfAndTheTransactionGoesOn) {
  test::RawRegister(reg_.path()).refuse("DELETE", "Routing");
  connection().BeginTrans();
  document().SetValue("D1", "DocumentTitle", "changed");
  EXPECT_THROW(document().MakeUnControlled("D1"), Error);
  EXPECT_THROW(document().Delete("D2", true), Error);
  document().SetValue("D1", "DocumentNumber", "7");
  connection().CommitTrans();
  EXPECT_EQ(row("D1").substr(0, 9), "changed|7");
  EXPECT_EQ(linksOf("D1"), "2 6 1 2 2") << "all of it taken back";
  EXPECT_EQ(linksOf("D2"), "0 0 0 2 2") << "the steps before the failing one stay";
}

// ---- two at once ----

class TwoSessions : public test::DocumentSession<test::SessionTest> {
 protected:
  TwoSessions() {
    logIn("Anna");
    other_->Login("Bert", "secret", reg_.path());
    addDocument("D1", "one");
    addDocument("D2", "two");
  }
  Ref<Recordset> all(clsVeskDocument& of) {
    return of.Records(0, "", "Select * From Documents Order By ID");
  }
  static void saveNotes(clsVeskDocument& of, const std::string& id, const std::string& notes,
                        const Ref<Recordset>& rs) {
    of.SaveData(id, "t", "", "", "", "", "", notes, false, false, "", rs);
  }
  test::TestSession other_;
};

TEST_F(TwoSessions, TheSlowerOneIsToldAndLosesNothing) {
  const auto mine = all(document());
  const auto theirs = all(*other_->Document());
  LoadedDocument loaded;
  loaded.from(document(), "D1", mine);
  loaded.from(*other_->Document(), "D1", theirs);
  saveNotes(*other_->Document(), "D1", "theirs", theirs);
  EXPECT_RAISES(kRowChanged, saveNotes(document(), "D1", "mine", mine));
  EXPECT_EQ(document().Value("D1", "DocumentNotes"), Variant("theirs")) << "nothing is overwritten";
  EXPECT_EQ(mine->EditMode(), kEditInProgress);
  EXPECT_EQ(mine->Fields("DocumentNotes")->Value(), Variant("mine")) << "and nothing is lost";
  EXPECT_RAISES(kRowChanged, mine->Update()) << "trying again does not help";
  mine->CancelUpdate();
  loaded.from(document(), "D1", mine);
  EXPECT_EQ(loaded.notes, "theirs") << "the row is read again";
  saveNotes(document(), "D1", "theirs and mine", mine);
  EXPECT_EQ(other_->Document()->Value("D1", "DocumentNotes"), Variant("theirs and mine"));
}

TEST_F(TwoSessions, DifferentDocumentsDoNotMeet) {
  const auto mine = all(document());
  const auto theirs = all(*other_->Document());
  LoadedDocument loaded;
  loaded.from(document(), "D1", mine);
  loaded.from(*other_->Document(), "D2", theirs);
  saveNotes(*other_->Document(), "D2", "theirs", theirs);
  saveNotes(document(), "D1", "mine", mine);
  EXPECT_EQ(reg_.rows("Select DocumentNotes From Documents Order By ID"),
            (Texts{"mine", "theirs"}));
}

TEST_F(TwoSessions, ADocumentThatTheOtherDeleted) {
  const auto mine = all(document());
  LoadedDocument loaded;
  loaded.from(document(), "D1", mine);
  other_->Document()->Delete("D1", true);
  EXPECT_RAISES(kRowDeleted, saveNotes(document(), "D1", "mine", mine));
  EXPECT_EQ(mine->State(), kStateOpen);
  mine->CancelUpdate();
  EXPECT_RAISES(kErrorBase + 2606, saveNotes(document(), "D1", "mine", nullptr));
  EXPECT_EQ(reg_.value("Select DocumentID From Documents"), "D2");
}

TEST_F(TwoSessions, ByIdentifierTheLaterOneWins) {
  LoadedDocument loaded;
  loaded.from(document(), "D1");
  saveNotes(*other_->Document(), "D1", "theirs", nullptr);
  saveNotes(document(), "D1", "mine", nullptr);
  EXPECT_EQ(document().Value("D1", "DocumentNotes"), Variant("mine"));
}

TEST_F(TwoSessions, AnotherProcessEditingTheSameDocument) {
  const auto mine = all(document());
  LoadedDocument loaded;
  loaded.from(document(), "D1", mine);
  EXPECT_EQ(test::inOtherProcess([&] {
              const auto vesk = clsVesk::create(test::kCheapPasswords);
              vesk->Login("Bert", "secret", reg_.path());
              vesk->Document()->SetValue("D1", "DocumentNotes", "theirs");
              vesk->CloseSession();
              return std::string("saved");
            }),
            "saved");
  EXPECT_RAISES(kRowChanged, saveNotes(document(), "D1", "mine", mine));
  EXPECT_EQ(reg_.value("Select DocumentNotes From Documents Where DocumentID = 'D1'"), "theirs");
  mine->CancelUpdate();
  saveNotes(document(), "D1", "mine", mine);
  EXPECT_EQ(reg_.value("Select DocumentNotes From Documents Where DocumentID = 'D1'"), "mine");
}

TEST_F(TwoSessions, ProcessesThatTakeTheToldOnesTurnAgainLoseNothing) {
  constexpr int kProcesses = 3;
  const int each = test::steps(50);
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    const auto vesk = clsVesk::create(test::kCheapPasswords);
    vesk->Login("Bert", "secret", reg_.path());
    auto& document = *vesk->Document();
    const auto rs = document.Records(0, "", "Select * From Documents Order By ID");
    for (int i = 0; i < each;) {
      rs->Requery();
      LoadedDocument loaded;
      loaded.from(document, "D1", rs);
      try {
        saveNotes(document, "D1", loaded.notes + fmt::format(" {}:{}", p, i), rs);
        ++i;
      } catch (const Error& error) {
        if (error.number() != kRowChanged) throw;
        rs->CancelUpdate();
      }
    }
    vesk->CloseSession();
    return std::string("done");
  });
  EXPECT_THAT(answers, testing::Each("done"));
  const std::string notes =
      reg_.value("Select DocumentNotes From Documents Where DocumentID = 'D1'");
  for (int p = 0; p < kProcesses; ++p) {
    std::size_t from = 0;
    for (int i = 0; i < each; ++i) {
      const std::string mark = fmt::format(" {}:{}", p, i);
      const auto found = (notes + " ").find(mark + " ", from);
      ASSERT_NE(found, std::string::npos) << mark << " is lost";
      from = found + mark.size();
    }
  }
  EXPECT_EQ(std::count(notes.begin(), notes.end(), ':'), kProcesses * each);
}

TEST_F(TwoSessions, ProcessesAddingAtOnceGetARevisionEach) {
  constexpr int kProcesses = 3;
  const int each = test::steps(40);
  const auto answers = test::inProcesses(kProcesses, [&](int) {
    const auto vesk = clsVesk::create(test::kCheapPasswords);
    vesk->Login("Bert", "secret", reg_.path());
    // All for one user, so that many get one identifier and one temporary key.
    for (int i = 0; i < each; ++i) add(*vesk->Document());
    vesk->CloseSession();
    return std::string("done");
  });
  EXPECT_THAT(answers, testing::Each("done"));
  const std::string total = std::to_string(kProcesses * each);
  EXPECT_EQ(reg_.value("Select Count(*) From Documents Where DocumentTitle = 'new'"), total);
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions Where RevisionLevel = 'B'"), total);
  EXPECT_EQ(reg_.value("Select Count(*) From Documents Inner Join Revisions On "
                       "Documents.CurrentRevID = Revisions.RevisionID and Documents.DocumentID = "
                       "Revisions.DocumentID"),
            total)
      << "each its own";
}

}  // namespace
}  // namespace kv
