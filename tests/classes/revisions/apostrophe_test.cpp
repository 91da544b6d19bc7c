// SPDX-License-Identifier: Apache-2.0
// Identifiers with an apostrophe: operations that join what they have read from the register give
// it back to the register as it is. A client gives identifiers as they stand in statements, with
// the apostrophe doubled.
#include <gtest/gtest.h>

#include "classes/revisions/approval_session.h"
#include "desk/register/import/importer.h"
#include "support/distribution_session.h"

namespace kv {
namespace {

using test::at;
using test::Texts;

const std::string kDocument = "Plan''6";
const std::string kManual = "Man''1";
const std::string kPat = "O''Brien";
constexpr const char* kBert = "User2";

// Plan'6 with its first revision in force, taken over from files; the manual Man'1; Anna, Bert and
// Pat, whose identifier is O'Brien.
class Apostrophe : public test::SessionTest {
 protected:
  Apostrophe() : clock_(at(2001, 2, 26, 14, 5, 9)) {
    reg_.addUser(3, "Pat", "secret");
    for (const char* table : {"Users", "VeskProfiles"})
      reg_.execute(std::string("Update ") + table +
                   " Set UserID = 'O''Brien' Where UserID = 'User3'");
    reg_.execute(
        "Update VeskConfig Set DBID = 'Pat''s', [Revision] = 'Issue', [Document] = 'Drawing', "
        "ProgramOptions = '00111111010', OwnerRights = '" +
        std::string(21, '1') + "'");
    reg_.execute("Insert Into Manuals (ManualID, ManualName) Values ('Man''1', 'Handbook')");
    import();
    vesk_->Login("Anna", "secret", reg_.path());
  }
  void import() {
    const std::vector<std::pair<std::string, std::string>> files = {
        {"users", "user_id,user_name,workgroup,title,kind\nuser77,Una,,,\n"},
        {"workgroups", "workgroup_id,workgroup\n"},
        {"documents",
         "document_key,document_id,document_number,title,workgroup,category,controlled,secured,"
         "current_level,effective_date,current_revision,location,creation_date,recorded,"
         "recorded_by,participating_groups,notes\n"
         "D6,Plan'6,P-6,Plan,,,yes,no,A,2001-01-02,R1,,,,,,\n"},
        {"revisions",
         "revision_key,document_key,level,effective_date,recorded,revision_status,"
         "routing_status,responsible_user,reference,source_status,change_description\n"
         "R1,D6,A,2001-01-02,2001-01-01,1,0,user77,,,\n"},
        {"owners", "document_key,user_id\n"},
        {"approvers", "document_key,list_order,user_id\n"},
        {"approvals",
         "revision_key,document_key,list_order,user_id,approval_status,approved_by,date_approved"
         "\n"},
        {"manuals", "manual_key,manual_name,workgroup,owned_documents,participating_documents\n"},
        {"manual_contents", "manual_key,position,document_key\n"},
        {"copies", "user_id,manual_key,document_key,kind,copy_number\n"},
        {"keywords", "field,keyword\n"}};
    const test::TempFolder folder;
    for (const auto& [name, text] : files) test::write(folder.file(name + ".csv"), text);
    desk::Importer importer(reg_.connection(), at(2001, 2, 1), "User1", {});
    const auto report = importer.run(folder.path().string());
    EXPECT_EQ(report.problems.size(), 0U)
        << (report.problems.empty() ? "" : report.problems.front().reason);
  }
  void options(const std::string& text) {
    reg_.execute("Update VeskConfig Set ProgramOptions = '" + text + "'");
  }
  [[nodiscard]] clsVeskDocument& document() { return *vesk_->Document(); }
  [[nodiscard]] clsVeskManual& manual() { return *vesk_->Manual(); }
  [[nodiscard]] clsVeskRevision& revision() { return *vesk_->Revision(); }
  [[nodiscard]] clsVeskUser& user() { return *vesk_->User(); }

  // Routes a new revision to its approvers and lets each of them decide, Pat for himself.
  std::int32_t decided(bool approve) {
    const std::int32_t id = revision().Add(kDocument, "B", "", "", "", "", false, kPat);
    const auto row = revision().GetRevRS(id);
    revision().RouteForApproval(row, true);
    row->Update();
    EXPECT_EQ(states(id), "1|3");
    logIn("Pat");
    EXPECT_EQ(revision().RevStatusDescription(revision().GetRevRS(id)),
              "Awaiting Approval from Pat");
    EXPECT_TRUE(revision().CanApprove(kPat, id, kPat)) << "who owns it, and whose turn it is";
    const auto list = revision().GetRevApprovalList(id);
    EXPECT_TRUE(approve ? revision().ApproveRevision(row, kPat, kPat, list)
                        : revision().RejectRevision(row, kPat, kPat, list));
    row->Update();
    revision().SaveApprovalNotes("it's so", kPat, id);
    EXPECT_EQ(reg_.rows("Select UserID, ApprovalStatus, ApprovedBy, Notes From ApprovalRouting "
                        "Where RevID = " +
                        std::to_string(id) + " Order By ListOrder")
                  .front(),
              approve ? "O'Brien|1|O'Brien|it's so" : "O'Brien|2|O'Brien|it's so");
    logIn("Anna");
    return id;
  }
  [[nodiscard]] std::string states(std::int32_t id) const {
    return reg_.value("Select RoutingStatus, RevisionStatus From Revisions Where RevisionID = " +
                      std::to_string(id));
  }
  [[nodiscard]] std::string count(const std::string& from) const {
    return reg_.value("Select Count(*) From " + from);
  }
  // What was sent: to whom, about what, and what it says.
  [[nodiscard]] Texts tasks() const {
    return reg_.rows(
        "Select AssigneeID, Assignee, Description, Reference, ReferenceID From Actions Order By "
        "ActionID");
  }

  StoppedClock clock_;
};

TEST_F(Apostrophe, ADocumentsRecord) {
  EXPECT_EQ(document().Record(kDocument)->RecordCount(), 1);
  const auto set = document().Records(0, "", "Select * From Documents");
  for (const auto& rs : {Ref<Recordset>(), set}) {
    std::string title, number, level, date, u1, u2, u3, u4, notes, place;
    bool secured = true;
    bool controlled = false;
    std::int32_t current = 0;
    document().LoadData(kDocument, title, number, level, date, u1, u2, u3, u4, notes, secured,
                        place, controlled, current, rs);
    EXPECT_EQ(title + "|" + level + "|" + std::to_string(current), "Plan|A|1");
    document().SaveData(kDocument, "Plan", "P-7", "", "", "", "", "", false, true, "", rs);
  }
  EXPECT_EQ(document().Value(kDocument, "DocumentNumber"), Variant("P-7"));
  document().SetValue(kDocument, "DocUser1", "x");
  EXPECT_EQ(reg_.value("Select DocUser1 From Documents Where DocumentID = 'Plan''6'"), "x");
  EXPECT_TRUE(document().HasCurrentRevision(kDocument));
  EXPECT_EQ(document().DocRevisions(kDocument)->RecordCount(), 1);
}

TEST_F(Apostrophe, OwnersAndApprovers) {
  EXPECT_TRUE(document().AddOwner(kDocument, kPat));
  EXPECT_TRUE(user().UserIsOwner(kPat, kDocument));
  EXPECT_EQ(test::rowsOf(*document().Owners(kDocument)), Texts{"O'Brien"});
  EXPECT_EQ(document().Owners(kDocument, true)->RecordCount(), 1);
  EXPECT_EQ(user().Owns(kPat)->RecordCount(), 1);
  EXPECT_EQ(user().OwnsForView(kPat)->RecordCount(), 1);
  logIn("Pat");
  EXPECT_TRUE(document().AddApprover(kDocument, kPat)) << "as its owner";
  EXPECT_TRUE(user().SetApprover(kBert, kDocument) == Variant(true));
  logIn("Anna");
  EXPECT_TRUE(user().UserIsApprover(kPat, kDocument));
  reg_.execute("Update Routing Set ListOrder = 5 Where UserID = 'O''Brien'");
  reg_.execute("Update Routing Set ListOrder = 7 Where UserID = 'User2'");
  (void)document().ChangeListOrder(kDocument, kBert, kPat);
  EXPECT_EQ(test::rowsOf(*document().Approvers(kDocument)).size(), 2U);
  EXPECT_EQ(document().Approvers(kDocument)->Fields("UserID")->Value(), Variant("User2"));
  EXPECT_EQ(document().Approvers(kDocument, true)->RecordCount(), 2);
  EXPECT_EQ(user().Approves(kPat)->RecordCount(), 1);
  EXPECT_EQ(user().ApprovesForView(kPat)->RecordCount(), 1);
  EXPECT_TRUE(user().UnSetApprover(kPat, kDocument));
  EXPECT_TRUE(document().RemoveApprover(kDocument, kBert));
  EXPECT_TRUE(user().UnSetOwner(kPat, kDocument));
  EXPECT_TRUE(user().SetOwner(kPat, kDocument) == Variant(true));
  EXPECT_TRUE(document().RemoveOwner(kDocument, kPat));
  EXPECT_EQ(count("Owners") + count("Routing"), "00");
}

TEST_F(Apostrophe, AManualsRecordAndContents) {
  std::string name, u1, u2, u3, u4, notes;
  manual().LoadData(kManual, name, u1, u2, u3, u4, notes);
  EXPECT_EQ(name, "Handbook");
  const auto set = manual().Records(-1);
  manual().SaveData(kManual, "Book", "", "", "", "", "", set);
  EXPECT_EQ(manual().Value(kManual, "ManualName"), Variant("Book"));
  EXPECT_EQ(manual().Record(kManual)->RecordCount(), 1);
  EXPECT_FALSE(manual().HasContents(kManual));
  EXPECT_TRUE(document().IntoManual(kDocument, kManual));
  EXPECT_TRUE(manual().HasContents(kManual));
  EXPECT_EQ(manual().Contents(kManual)->RecordCount(), 1);
  EXPECT_EQ(manual().Contents(kManual, true, true)->Fields("ManualID")->Value(), Variant("Man'1"));
  EXPECT_EQ(test::rowsOf(*document().Manuals(kDocument)), Texts{"Man'1|Book"});
  EXPECT_EQ(document().Manuals(kDocument, true)->RecordCount(), 1);
  manual().RepositionContents(kManual, kDocument, 1);
  EXPECT_TRUE(manual().RemoveDocument(kManual, kDocument));
  EXPECT_TRUE(manual().AddDocument(kManual, kDocument));
  EXPECT_TRUE(document().OutofManual(kDocument, kManual));
  manual().Delete(kManual, manual().Records(-1));
  EXPECT_EQ(count("Manuals"), "0");
}

TEST_F(Apostrophe, CopiesOfTheDocument) {
  std::int32_t hard = 0;
  std::int32_t listed = 0;
  EXPECT_TRUE(document().ReleaseCopy(kDocument, kPat, hard));
  EXPECT_TRUE(document().AddUser(kDocument, kPat, listed));
  EXPECT_EQ(vesk_->ReleaseValue(hard, "DocumentID"), Variant("Plan'6"));
  EXPECT_EQ(document().Copies(kDocument)->RecordCount(), 1);
  EXPECT_EQ(document().Copies(kDocument, true)->Fields("UserName")->Value(), Variant("Pat"));
  EXPECT_EQ(document().Users(kDocument)->RecordCount(), 1);
  EXPECT_EQ(document().Users(kDocument, true)->RecordCount(), 1);
  EXPECT_EQ(document().PersonalDocuments(kPat)->RecordCount(), 2);
  EXPECT_EQ(document().Personals(kPat)->RecordCount(), 2);
  EXPECT_EQ(vesk_->Releases(kPat, "", kDocument, 0, 0, 0, true)->RecordCount(), 1);
  for (const auto& held : {user().HardCopies(kPat), user().HardCopiesForViewDoc(kPat),
                           user().VirtualCopies(kPat), user().VirtualCopiesForViewDoc(kPat)})
    EXPECT_EQ(held->RecordCount(), 1);
  logIn("Pat");
  reg_.execute("Insert Into Owners (DocumentID, UserID) Values ('Plan''6', 'O''Brien')");
  EXPECT_TRUE(document().RemoveUser(listed)) << "whose document the release says";
  EXPECT_TRUE(document().CollectCopy(hard));
  const std::int32_t again = user().ReleaseDoc(kPat, kDocument, true);
  EXPECT_TRUE(user().ReturnDoc(std::to_string(again)));
  EXPECT_EQ(count("Personals"), "0");
}

TEST_F(Apostrophe, CopiesOfTheManual) {
  EXPECT_TRUE(manual().AddDocument(kManual, kDocument));
  EXPECT_EQ(user().ReleaseMan(kPat, kManual, true), "0001");
  EXPECT_EQ(manual().NextCopyNumber(kManual), "2");
  EXPECT_TRUE(manual().DuplicateCopyNumber(kManual, "0001"));
  manual().ChangeCopyNumber(kManual, "0001", "Pat''s");
  EXPECT_TRUE(manual().DuplicateCopyNumber(kManual, "Pat''s"));
  EXPECT_TRUE(manual().AddUser(kManual, kPat));
  EXPECT_EQ(manual().Copies(kManual)->RecordCount(), 1);
  EXPECT_EQ(manual().Copies(kManual, true)->RecordCount(), 1);
  EXPECT_EQ(manual().Users(kManual)->RecordCount(), 1);
  EXPECT_EQ(manual().Users(kManual, true)->RecordCount(), 1);
  EXPECT_EQ(manual().PersonalManuals(kPat)->RecordCount(), 2);
  EXPECT_EQ(manual().PersonalManualsForView(kPat)->RecordCount(), 1);
  EXPECT_EQ(user().HardCopiesForViewMan(kPat)->RecordCount(), 1);
  EXPECT_EQ(user().VirtualCopiesForViewMan(kPat)->RecordCount(), 1);
  EXPECT_EQ(vesk_->Releases(kPat, kManual, "", 0, 0, 0, true)->RecordCount(), 1);
  EXPECT_TRUE(manual().CollectCopy(kManual, kPat, "Pat''s"));
  EXPECT_TRUE(manual().RemoveUser(kManual, kPat));
  EXPECT_TRUE(manual().ReleaseCopy(kManual, kPat, "7"));
  EXPECT_TRUE(user().ReturnMan(kPat, kManual, true, "7"));
  EXPECT_EQ(count("Personals"), "0");
}

TEST_F(Apostrophe, ARevisionIsRoutedApprovedAndPutInForce) {
  std::int32_t release = 0;
  document().AddUser(kDocument, kPat, release);
  document().AddOwner(kDocument, kPat);
  document().AddApprover(kDocument, kPat);
  const std::int32_t id = decided(true);
  EXPECT_EQ(states(id), "1|4");
  Ref<Recordset> documents = document().Records(0, "", "Select * From Documents");
  const auto row = revision().GetRevRS(id);
  revision().SetAsCurrentRevision(row, documents, true);
  EXPECT_EQ(reg_.rows("Select RevisionID, DocumentID, RevisionStatus, ResponsibleID From Revisions "
                      "Order By RevisionID"),
            (Texts{"1|Plan'6|0|User77", std::to_string(id) + "|Plan'6|1|O'Brien"}));
  EXPECT_EQ(document().Value(kDocument, "CurrentRevID"), Variant(id));
  EXPECT_EQ(tasks(),
            (Texts{"O'Brien|Pat|Issue B of the Plan Drawing requires your approval.|Plan'6|Pat's",
                   "O'Brien|Pat|Issue B of Drawing Plan has been released.|Plan'6|Pat's"}));
  EXPECT_EQ(vesk_->GetActions(kPat)->RecordCount(), 2);
  EXPECT_TRUE(vesk_->HasActions(kPat));
  revision().SetUsersRevisionTo(std::to_string(release), std::to_string(id));
  // Without a set of the caller's, and the one before in force again.
  Ref<Recordset> none;
  revision().SetAsCurrentRevision(revision().GetRevRS(1), none, true);
  EXPECT_EQ(document().Value(kDocument, "CurrentRevID"), Variant(1));
}

TEST_F(Apostrophe, ARevisionIsRejectedAndItsPreparerTold) {
  document().AddOwner(kDocument, kPat);
  document().AddApprover(kDocument, kPat);
  const std::int32_t id = decided(false);
  EXPECT_EQ(states(id), "1|5");
  const auto sent = tasks();
  ASSERT_EQ(sent.size(), 2U);
  EXPECT_EQ(sent.back(), "O'Brien|Pat|Issue B of Drawing Plan has been rejected.|" +
                             std::to_string(id) + "|Pat's");
}

TEST_F(Apostrophe, ApproversAreAskedInAnyOrder) {
  options("00111111000");
  document().AddApprover(kDocument, kBert);
  document().AddApprover(kDocument, kPat);
  reg_.execute("Update Routing Set ListOrder = 1 Where UserID = 'User2'");
  reg_.execute("Update Routing Set ListOrder = 2 Where UserID = 'O''Brien'");
  const std::int32_t id = revision().Add(kDocument, "B", "", "", "", "", false, kPat);
  const auto row = revision().GetRevRS(id);
  revision().RouteForApproval(row, true);
  row->Update();
  const auto list = revision().GetRevApprovalList(id);
  EXPECT_TRUE(revision().ApproveRevision(row, kPat, kPat, list));
  row->Update();
  EXPECT_EQ(reg_.rows("Select UserID, ApprovalStatus From ApprovalRouting Order By ListOrder"),
            (Texts{"User2|0", "O'Brien|1"}));
  EXPECT_EQ(states(id), "1|3");
  std::string level, u1, u2, date, change, place, status, whose;
  std::int16_t routing = 0;
  std::int16_t state = 0;
  Ref<Recordset> approvals;
  EXPECT_TRUE(revision().LoadRevisionData(id, whose, routing, state, level, u1, u2, date, change,
                                          place, status, approvals));
  EXPECT_EQ(whose + "|" + status, "Plan'6|Awaiting Approval from Bert");
}

TEST_F(Apostrophe, StatusTextsNameUsers) {
  const std::int32_t id = revision().Add(kDocument, "B", "", "", "", "", false, kPat);
  std::string level, u1, u2, date, change, place, status, whose;
  std::int16_t routing = 0;
  std::int16_t state = 0;
  Ref<Recordset> approvals;
  EXPECT_TRUE(revision().LoadRevisionData(id, whose, routing, state, level, u1, u2, date, change,
                                          place, status, approvals));
  EXPECT_EQ(status, "Being Revised by Pat");
  EXPECT_EQ(revision().RevStatusDescription(revision().GetRevRS(id)), "Being Revised by Pat");
  document().AddApprover(kDocument, kPat);
  const auto row = revision().GetRevRS(id);
  revision().RouteForApproval(row, true);
  row->Update();
  EXPECT_TRUE(revision().LoadRevisionData(id, whose, routing, state, level, u1, u2, date, change,
                                          place, status, approvals));
  EXPECT_EQ(status, "Awaiting Approval from Pat");
}

TEST_F(Apostrophe, AUsersRecord) {
  const auto everybody = user().Records(-1);
  std::string name, alias, password, title, email, group;
  EXPECT_TRUE(user().LoadUser(everybody, kPat, name, alias, password, title, email, group));
  EXPECT_EQ(name, "Pat");
  everybody->MoveFirst();
  EXPECT_TRUE(user().SaveUser(everybody, kPat, "Pat", "P", password, "", ""));
  EXPECT_EQ(user().Record(kPat)->Fields("Alias")->Value(), Variant("P"));
  EXPECT_EQ(user().getUserName(kPat), "Pat");
  EXPECT_EQ(user().UserID("Pat"), "O'Brien");
  (void)user().ChangeWorkGroup(kPat, "5");
  EXPECT_EQ(user().GetTheseUsers(reg_.open("Select UserID From Users"))->RecordCount(), 4);
  logIn("Pat");
  EXPECT_EQ(vesk_->DataServer()->Profile()->UserID(), "O'Brien");
  const std::string made = document().Add(kPat, "t", "", "", "", "", "", "", 0, "", "B", "", true);
  EXPECT_EQ(made, "O'Brien022601140509");
  EXPECT_EQ(manual().Add("m", "", "", "", "", ""), "O'Brien022601140509");
  EXPECT_EQ(document().DocRevisions("O''Brien022601140509")->RecordCount(), 1);
  EXPECT_EQ(vesk_->GetActions()->RecordCount(), 0);
  vesk_->SetUserOption(uoVerifyDelete, true);
  EXPECT_TRUE(vesk_->UserOption(uoVerifyDelete));
  logIn("Anna");
  EXPECT_TRUE(user().DeleteUser(kPat));
  EXPECT_EQ(user().Record(kPat)->RecordCount(), 0);
}

TEST_F(Apostrophe, TheDocumentIsTakenOutOfControlAndDeleted) {
  document().AddOwner(kDocument, kPat);
  document().AddApprover(kDocument, kPat);
  document().IntoManual(kDocument, kManual);
  std::int32_t release = 0;
  document().ReleaseCopy(kDocument, kPat, release);
  revision().Add(kDocument, "B", "", "", "", "", false, kPat);
  document().MakeUnControlled(kDocument);
  EXPECT_EQ(count("Revisions") + count("Routing") + count("Personals") + count("ManualContents"),
            "1000");
  document().Delete(kDocument, true);
  EXPECT_EQ(count("Revisions") + count("Owners") + count("Documents"), "000");
}

}  // namespace
}  // namespace kv
