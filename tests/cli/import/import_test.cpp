// SPDX-License-Identifier: Apache-2.0
// Importing: what is refused, and that it then leaves the register as it was.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "cli/program.h"
#include "desk/register/import/importer.h"
#include "support/test_register.h"

namespace kv {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::map<std::string, std::string> kFiles = {
    {"users",
     "user_id,user_name,workgroup,title,kind\r\nuser1,Anna,Quality,\"Lead, "
     "Quality\",person\r\nuser2,\"O'Brien\",,,team\r\n"},
    {"workgroups", "workgroup_id,workgroup,documents,members\r\n3,Quality,1,1\r\n"},
    {"documents",
     "document_key,document_number,title,workgroup,category,source_status,controlled,secured,"
     "current_level,effective_date,current_"
     "revision,location,creation_date,last_updated,recorded,recorded_by,participating_groups,"
     "notes\r\n"
     "D1,P-1,Plan's "
     "end,Quality,procedure,ok,yes,no,B,2001-03-09,R2,p1.pdf,2001-01-01,,2001-02-03T14:05:09Z,"
     "user1,,\"two\nlines\"\r\n"
     "D7,P-1,Other,Quality,,ok,no,yes,Uncontrolled,,,,,,2001-02-03T14:05:09Z,user1,,\r\n"},
    {"revisions",
     "revision_key,document_key,document_number,sequence,level,stage,milestone,effective_date,"
     "recorded,revision_status,routing_status,"
     "responsible_user,reference,source_status,change_description\r\n"
     "R1,D1,P-1,1,A,,,2001-01-01,2001-01-01T00:00:00Z,0,0,user1,,ok,First\r\n"
     "R2,D1,P-1,2,B,,,2001-03-09,2001-03-01T00:00:00Z,1,1,user2,#5,ok,Second\r\n"},
    {"owners", "document_key,document_number,position,user_id\r\nD1,P-1,1,user1\r\n"},
    {"approvers",
     "document_key,document_number,list_order,user_id,note\r\nD1,P-1,1,user2,\r\nD1,P-1,2,TBD,"
     "\r\n"},
    {"approvals",
     "revision_key,document_key,list_order,user_id,approval_status,approved_by,date_approved\r\nR2,"
     "D1,1,user2,1,user1,2001-02-20\r\n"
     "R2,D1,2,TBD,0,,\r\nR2,D1,3,user1,0,,\r\n"},
    {"manuals",
     "manual_key,manual_name,workgroup,owned_documents,participating_documents\r\nM1,Handbook,"
     "Quality,1,0\r\n"},
    {"manual_contents",
     "manual_key,position,document_key,document_number,relation\r\nM1,1.5,D1,P-1,owning\r\n"},
    {"copies",
     "user_id,manual_key,document_key,kind,copy_number\r\nuser2,M1,,hard,0001\r\nuser1,,D7,virtual,"
     "\r\nuser1,M1,,virtual,\r\n"},
    {"keywords", "field,keyword\r\ncategory,procedure\r\nDocUser4,x\r\n"},
};

class Import : public testing::Test {
 protected:
  Import() { setFiles({}); }
  void setFiles(const std::map<std::string, std::string>& changed) {
    for (const auto& [name, bytes] : kFiles) {
      const auto other = changed.find(name);
      test::write(folder_.file(name + ".csv"), other == changed.end() ? bytes : other->second);
    }
  }
  desk::ImportReport import() {
    desk::Importer importer(reg_.connection(), *parseDate("2001-04-01T08:00:00"), "User0", {});
    return importer.run(folder_.path().string());
  }
  // The first reason for which the changed files are refused.
  std::string refusal(const std::map<std::string, std::string>& changed) {
    setFiles(changed);
    const auto report = import();
    EXPECT_TRUE(report.written.empty());
    EXPECT_EQ(reg_.value("Select Count(*) From Users"), "0") << "nothing is written";
    EXPECT_EQ(reg_.value("Select Count(*) From Groups"), "0");
    EXPECT_EQ(reg_.value("Select User00 From UserConfig"), "~");
    if (report.problems.empty()) return "accepted";
    const auto& p = report.problems[0];
    return shown(p);
  }
  // Every reason for which the changed files are refused.
  std::vector<std::string> refusals(const std::map<std::string, std::string>& changed) {
    setFiles(changed);
    const auto report = import();
    EXPECT_TRUE(report.written.empty());
    EXPECT_EQ(reg_.value("Select Count(*) From Users"), "0") << "nothing is written";
    std::vector<std::string> out;
    for (const auto& problem : report.problems) out.push_back(shown(problem));
    return out;
  }
  static std::string shown(const desk::Problem& p) {
    return p.file + " " + std::to_string(p.record) + ": " + p.reason;
  }
  static std::string with(const std::string& file, const std::string& from, const std::string& to) {
    std::string bytes = kFiles.at(file);
    const auto at = bytes.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return bytes.replace(at, from.size(), to);
  }
  test::TestRegister reg_;
  test::TempFolder folder_;
};

TEST_F(Import, WritesEverythingWhereItBelongs) {
  const auto report = import();
  ASSERT_TRUE(report.problems.empty()) << report.problems[0].file << report.problems[0].reason;
  EXPECT_EQ(reg_.rows("Select ID, UserID, UserName, Title, User00, User01, User02, User03, "
                      "[Password] From Users"),
            (std::vector<std::string>{"1|User1|Anna|Lead, Quality|Quality|1|1/1/2001|person|~",
                                      "2|User2|O'Brien|~|~|0|3/1/2001|team|~"}));
  EXPECT_EQ(
      reg_.rows("Select UserID, UserName, GroupID, WorkGroupID, UserOptions, Administrator From "
                "VeskProfiles"),
      (std::vector<std::string>{"User1|Anna|3|3|0000110|True", "User2|O'Brien|0|0|0000110|False"}));
  EXPECT_EQ(reg_.value("Select Rights From VeskProfiles Where UserID = 'User1'"),
            std::string(255, '1'));
  EXPECT_EQ(reg_.rows("Select ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, "
                      "EffectiveDate, DocumentNotes, SecurityLevel, "
                      "Controlled, CurrentRevID From Documents"),
            (std::vector<std::string>{
                "1|User1020301140509|Plan's end|P-1|B|3/9/2001|two\nlines|False|True|2",
                "7|User1020301140510|Other|P-1|Uncontrolled|~|~|True|False|0"}))
      << "of two documents of one second the second takes the next";
  EXPECT_EQ(reg_.rows("Select RevisionID, RevisionLevel, RevUser1, RevUser2, ChangeDescription, "
                      "Location, ResponsibleID, RoutingStatus, "
                      "RevisionStatus From Revisions"),
            (std::vector<std::string>{"1|A|~|ok|First|p1.pdf|User1|0|0",
                                      "2|B|#5|ok|Second|p1.pdf|User2|1|1"}));
  EXPECT_EQ(reg_.rows("Select UserID, ListOrder From Routing"),
            (std::vector<std::string>{"User2|1", "TBD|2"}));
  EXPECT_EQ(reg_.rows("Select RevID, UserID, ListOrder, ApprovalStatus, ApprovedBy, DateApproved "
                      "From ApprovalRouting"),
            (std::vector<std::string>{"2|User2|1|1|User1|2/20/2001", "2|TBD|2|0|~|~",
                                      "2|User1|3|0|~|~"}));
  EXPECT_EQ(
      reg_.value("Select ID, ManualID, ManualName, ManUser1, ManUser2, ManUser3 From Manuals"),
      "1|User2040101080000|Handbook|Quality|1|0");
  EXPECT_EQ(reg_.value("Select Position From ManualContents"), "1.5");
  EXPECT_EQ(reg_.rows("Select ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber, "
                      "RevisionID From Personals"),
            (std::vector<std::string>{"1|User2|User1020301140509|User2040101080000|True|0001|2",
                                      "2|User1|User1020301140510|0|False|~|0",
                                      "3|User1|User1020301140509|User2040101080000|False|-1|2"}));
  EXPECT_EQ(reg_.rows("Select * From Keywords"),
            (std::vector<std::string>{"DocUser2|procedure", "DocUser4|x"}));
  EXPECT_EQ(reg_.rows("Select ActionID, AssigneeID, Assignee, Description, OriginatorID, "
                      "DateOpened, DateDue, DateClosed From Actions"),
            (std::vector<std::string>{"1|User2|O'Brien|Revision B of the Plan's end Document "
                                      "requires your approval.|User2|2/20/2001|2/25/2001|2/20/2001",
                                      "2|TBD|~|Revision B of the Plan's end Document requires your "
                                      "approval.|User2|3/1/2001|3/6/2001|~"}));
  EXPECT_EQ(reg_.rows("Select * From Groups").size(), 1U);
  EXPECT_EQ(reg_.rows("Select * From VeskGroups"), reg_.rows("Select * From Groups"));
}

TEST_F(Import, GivesTheFieldsTheirMeaning) {
  ASSERT_TRUE(import().problems.empty());
  EXPECT_EQ(reg_.value("Select User00, TypeUser00, User01, TypeUser01, User02, TypeUser02, User03, "
                       "User04 From UserConfig"),
            "Workgroup|0|Documents owned|1|First revision|2|Kind|~");
  EXPECT_EQ(reg_.value("Select DocUser1, DocUser2 From DocumentConfig"), "Workgroup|Category");
  EXPECT_EQ(reg_.rows("Select UserID From Users Where User01 > 0 and User02 < #2/1/2001#"),
            (std::vector<std::string>{"User1"}));
}

TEST_F(Import, KeepsLabelsAndTypesThatSomebodySet) {
  reg_.execute("Update DocumentConfig Set DocUser1 = 'Plant'");
  reg_.execute("Update UserConfig Set User01 = 'Phone'");
  ASSERT_TRUE(import().problems.empty());
  EXPECT_EQ(reg_.value("Select DocUser1, DocUser2 From DocumentConfig"), "Plant|Category");
  EXPECT_EQ(reg_.value("Select User01, TypeUser01 From UserConfig"), "Phone|0");
  EXPECT_EQ(reg_.open("Select User01 From Users")->Fields(0)->Type(), kTypeVarWChar);
}

TEST_F(Import, CountersGoOnAboveTheHighest) {
  ASSERT_TRUE(import().problems.empty());
  const auto next = [&](const char* table) {
    const auto rs = reg_.open(std::string("Select * From ") + table);
    rs->AddNew();
    const auto out = test::shown(rs->Fields(0)->Value());
    rs->CancelUpdate();
    return out;
  };
  EXPECT_EQ(next("Documents"), "8");
  EXPECT_EQ(next("Revisions"), "3");
  EXPECT_EQ(next("Users"), "3");
  EXPECT_EQ(next("Personals"), "4");
}

TEST_F(Import, RefusesWhatIsWrong) {
  EXPECT_EQ(refusal({{"users", with("users", "title", "tittle")}}),
            "users 1: the column 'title' is missing");
  EXPECT_EQ(refusal({{"users", with("users", "kind\r\n", "kind,kind\r\n")}}),
            "users 1: the column 'kind' occurs twice");
  EXPECT_EQ(refusal({{"users", ""}}), "users 0: the file has no heading");
  EXPECT_EQ(refusal({{"users", with("users", "user2,", "user1,")}}),
            "users 3: the key 'user1' occurs twice");
  EXPECT_EQ(refusal({{"users", with("users", "user2,", "userX,")}}),
            "users 3: 'userX' in user_id is not letters and a number");
  EXPECT_EQ(refusal({{"users", with("users", "Quality,\"", "Nowhere,\"")}}),
            "users 2: there is no workgroup 'Nowhere'");
  EXPECT_EQ(refusal({{"users", with("users", "team", "team,more")}}),
            "users 3: it has 6 fields where the heading has 5");
  EXPECT_EQ(refusal({{"users", with("users", "\"Lead, Quality\"", "\"Lead\" Quality")}}),
            "users 2: a quotation mark is out of place");
  EXPECT_EQ(refusal({{"users", with("users", "team", "\"team")}}),
            "users 3: a quotation mark is out of place");
  EXPECT_EQ(refusal({{"users", with("users", "Anna", "Ann\xE9")}}),
            "users 2: the field 'user_name' is not well-formed UTF-8");
  EXPECT_EQ(refusal({{"workgroups", with("workgroups", "3,", "0,")}}),
            "workgroups 2: the number of a workgroup is 1 or more");
  EXPECT_EQ(refusal({{"documents", with("documents", "D7", "D1")}}),
            "documents 3: the key 'D1' occurs twice");
  EXPECT_EQ(refusal({{"documents", with("documents", "yes,no", "maybe,no")}}),
            "documents 2: controlled is neither yes nor no");
  EXPECT_EQ(refusal({{"documents", with("documents", "2001-03-09", "2001-02-30")}}),
            "documents 2: '2001-02-30' in effective_date is not a day such as 2024-03-09");
  EXPECT_EQ(refusal({{"documents", with("documents", "2001-02-03T14:05:09Z", "recently")}}),
            "documents 2: recorded is not a date and time");
  EXPECT_EQ(refusal({{"documents", with("documents", "R2", "R9")}}),
            "documents 2: there is no revision 'R9'");
  EXPECT_EQ(refusal({{"revisions", with("revisions", "R1,D1", "R1,D9")}}),
            "revisions 2: there is no document 'D9'");
  EXPECT_EQ(refusal({{"revisions", with("revisions", "Z,0,0", "Z,6,0")}}),
            "revisions 2: '6' in revision_status is not a whole number from 0 to 5");
  EXPECT_EQ(refusal({{"owners", with("owners", "user1", "user9")}}),
            "owners 2: there is no user 'user9' (user_id)");
  EXPECT_EQ(refusal({{"approvals", with("approvals", "R2", "R9")}}),
            "approvals 2: there is no revision 'R9'");
  EXPECT_EQ(refusal({{"manual_contents", with("manual_contents", "M1", "M9")}}),
            "manual_contents 2: there is no manual 'M9'");
  EXPECT_EQ(refusal({{"manual_contents", with("manual_contents", "1.5", "first")}}),
            "manual_contents 2: position is not a number");
  EXPECT_EQ(refusal({{"copies", with("copies", "M1,,hard", "M1,D1,hard")}}),
            "copies 2: a copy is of a manual or of a document");
  EXPECT_EQ(refusal({{"copies", with("copies", "hard", "soft")}}),
            "copies 2: kind is neither hard nor virtual");
  EXPECT_EQ(refusal({{"users", with("users", "Anna", std::string(101, 'x'))}}).substr(0, 66),
            "users 2: The field is too small to accept the amount of data you a");
}

TEST_F(Import, AUserMustBeNamedInEveryList) {
  EXPECT_THAT(refusals({{"owners", with("owners", "1,user1", "1,")}}),
              ElementsAre("owners 2: user_id is empty"));
  EXPECT_THAT(refusals({{"approvers", with("approvers", "user2", "")}}),
              ElementsAre("approvers 2: user_id is empty"));
  EXPECT_THAT(refusals({{"approvals", with("approvals", "1,user2", "1,")}}),
              ElementsAre("approvals 2: user_id is empty"));
  EXPECT_THAT(refusals({{"copies", with("copies", "user2,M1", ",M1")}}),
              ElementsAre("copies 2: user_id is empty"));
  EXPECT_THAT(refusals({{"copies", with("copies", "user1,,D7", ",,D7")}}),
              ElementsAre("copies 3: user_id is empty"));
  EXPECT_THAT(refusals({{"documents", with("documents", ":09Z,user1", ":09Z,")}}),
              ElementsAre("documents 2: recorded_by is empty"));
}

TEST_F(Import, TheFirstUserIsNamedEverywhereAndHasNoRow) {
  std::map<std::string, std::string> files;
  for (const char* file :
       {"documents", "revisions", "owners", "approvers", "approvals", "copies"}) {
    std::string bytes = kFiles.at(file);
    for (const std::string key : {"user1", "user2"})
      for (std::size_t at = 0; (at = bytes.find(key, at)) != std::string::npos;)
        bytes.replace(at, key.size(), "user0");
    files[file] = bytes;
  }
  setFiles(files);
  const auto report = import();
  ASSERT_TRUE(report.problems.empty()) << shown(report.problems[0]);
  EXPECT_EQ(reg_.value("Select Count(*) From Users Where UserID = 'User0'"), "0");
  EXPECT_EQ(reg_.value("Select Count(*) From VeskProfiles Where UserID = 'User0'"), "0");
  using Rows = std::vector<std::string>;
  EXPECT_EQ(reg_.rows("Select DocumentID From Documents Order By ID"),
            (Rows{"User0020301140509", "User0020301140510"}));
  EXPECT_EQ(reg_.rows("Select ResponsibleID From Revisions Where RevisionID < 3"),
            (Rows{"User0", "User0"}));
  EXPECT_EQ(reg_.rows("Select UserID From Owners"), Rows{"User0"});
  EXPECT_EQ(reg_.rows("Select UserID From Routing Order By ListOrder"), (Rows{"User0", "TBD"}));
  EXPECT_EQ(reg_.rows("Select UserID, ApprovedBy From ApprovalRouting Order By ListOrder"),
            (Rows{"User0|User0", "TBD|~", "User0|~"}));
  EXPECT_EQ(reg_.rows("Select Distinct UserID From Personals"), Rows{"User0"});
}

TEST_F(Import, TheFirstUserIsNoneOfThoseInTheFile) {
  EXPECT_EQ(refusal({{"users", with("users", "user2,", "user0,")}}),
            "users 3: 'user0' in user_id is not letters and a number");
  EXPECT_EQ(refusal({{"owners", with("owners", "user1", "user00")}}),
            "owners 2: there is no user 'user00' (user_id)");
}

// The documents with identifiers of their own.
std::string identified(const std::string& first, const std::string& second) {
  std::string bytes = kFiles.at("documents");
  const auto put = [&](const std::string& behind, const std::string& value) {
    const auto at = bytes.find(behind);
    EXPECT_NE(at, std::string::npos) << behind;
    bytes.insert(at + behind.size(), "," + value);
  };
  put("notes", "document_id");
  put("lines\"", first);
  put("D7,P-1,Other,Quality,,ok,no,yes,Uncontrolled,,,,,,2001-02-03T14:05:09Z,user1,,", second);
  return bytes;
}

TEST_F(Import, AnIdentifierOccursOnce) {
  EXPECT_EQ(refusal({{"documents", identified("Same", "Same")}}),
            "documents 3: the identifier 'Same' occurs twice");
  EXPECT_EQ(refusal({{"documents", identified("Same", "SAME")}}),
            "documents 3: the identifier 'SAME' occurs twice");
  EXPECT_EQ(refusal({{"documents", identified("", "User1020301140509")}}),
            "documents 3: the identifier 'User1020301140509' occurs twice")
      << "it was made for the first";
  setFiles({{"documents", identified("User1020301140509", "")}});
  const auto report = import();
  ASSERT_TRUE(report.problems.empty()) << shown(report.problems[0]);
  EXPECT_EQ(reg_.rows("Select DocumentID From Documents Order By ID"),
            (std::vector<std::string>{"User1020301140509", "User1020301140510"}))
      << "one that is made gives way";
}

TEST_F(Import, AnIdentifierOfTheRegisterIsNotGivenAgain) {
  (void)reg_.execute("Insert Into Documents (ID, DocumentID) Values (901, 'USER1020301140509')");
  EXPECT_EQ(refusal({{"documents", identified("D1", "user1020301140509")}}),
            "documents 3: the identifier 'user1020301140509' is in the register already");
  setFiles({});
  const auto report = import();
  ASSERT_TRUE(report.problems.empty()) << shown(report.problems[0]);
  EXPECT_EQ(reg_.rows("Select DocumentID From Documents Where ID < 901 Order By ID"),
            (std::vector<std::string>{"User1020301140510", "User1020301140511"}));
}

TEST_F(Import, AnUnknownHolderOfAManualIsReportedOnce) {
  EXPECT_THAT(refusals({{"copies", with("copies", "user2,M1", "user9,M1")}}),
              ElementsAre("copies 2: there is no user 'user9' (user_id)"));
}

TEST_F(Import, WorkgroupsMustExistWhereverTheyAreNamed) {
  EXPECT_THAT(refusals({{"documents", with("documents", "Other,Quality", "Other,Nowhere")}}),
              ElementsAre("documents 3: there is no workgroup 'Nowhere'"));
  EXPECT_THAT(refusals({{"manuals", with("manuals", "Quality", "quality")}}),
              ElementsAre("manuals 2: there is no workgroup 'quality'"));
  setFiles({{"documents", with("documents", "Other,Quality", "Other,")},
            {"manuals", with("manuals", "Quality", "")}});
  EXPECT_TRUE(import().problems.empty()) << "none need be named";
  EXPECT_EQ(reg_.value("Select DocUser1 From Documents Where ID = 7"), "~");
}

TEST_F(Import, ACurrentRevisionIsOneOfItsOwnControlledDocument) {
  EXPECT_THAT(refusals({{"documents", with("documents", "R2", "R02")}}),
              ElementsAre("documents 2: there is no revision 'R02'"));
  EXPECT_THAT(refusals({{"revisions", with("revisions", "R2,D1", "R2,D7")},
                        {"approvals",
                         "revision_key,document_key,list_order,user_id,approval_"
                         "status,approved_by,date_approved\r\n"}}),
              ElementsAre("documents 2: revision 'R2' (current_revision) belongs to document "
                          "'D7'"));
  EXPECT_THAT(
      refusals({{"documents", with("documents", "Uncontrolled,,,", "Uncontrolled,,R1,")}}),
      ElementsAre("documents 3: the document is uncontrolled, yet 'R1' is its current_revision"));
  EXPECT_THAT(refusals({{"revisions", with("revisions", "R2,D1", "R2,D9")}}),
              ElementsAre("revisions 3: there is no document 'D9'"))
      << "that its document has another is no second mistake";
}

TEST_F(Import, AnApprovalNamesTheDocumentOfItsRevisionOrNone) {
  EXPECT_THAT(refusals({{"approvals", with("approvals", "D1,1", "D7,1")}}),
              ElementsAre("approvals 2: revision 'R2' belongs to document 'D1', not to 'D7' "
                          "(document_key)"));
  EXPECT_THAT(refusals({{"approvals", with("approvals", "D1,1", "D9,1")}}),
              ElementsAre("approvals 2: there is no document 'D9'"));
  EXPECT_THAT(refusals({{"approvals", with("approvals", "R2,D1,2", ",D1,2")}}),
              ElementsAre("approvals 3: there is no revision ''"));
  setFiles({{"approvals", with("approvals", "D1,1", ",1")}});
  EXPECT_TRUE(import().problems.empty());
}

TEST_F(Import, TheTurnIsOfTheFirstInTheListWhereverItStandsInTheFile) {
  setFiles({{"approvals",
             "revision_key,document_key,list_order,user_id,approval_status,approved_by,date_"
             "approved\r\n"
             "R2,D1,10,user1,0,,\r\nR2,D1,3,user2,0,,\r\nR2,D1,3,TBD,0,,\r\n"
             "R2,D1,1,user1,1,user1,2001-02-20\r\nR1,D1,1,TBD,0,,\r\n"}});
  ASSERT_TRUE(import().problems.empty());
  EXPECT_EQ(reg_.rows("Select AssigneeID, DateOpened, DateClosed From Actions"),
            (std::vector<std::string>{"User2|3/1/2001|~", "User1|2/20/2001|2/20/2001",
                                      "TBD|1/1/2001|~"}));
}

TEST_F(Import, WhatFollowsFromAnUnreadableFileIsSaidOnce) {
  EXPECT_THAT(refusals({{"documents", with("documents", ",title", ",name")}}),
              ElementsAre("documents 1: the column 'title' is missing",
                          "documents 0: it was not read, so what refers to it was not checked"));
  EXPECT_THAT(refusals({{"users", with("users", "team", "\"team")},
                        {"owners", with("owners", "D1", "D9")}}),
              ElementsAre("users 3: a quotation mark is out of place",
                          "users 0: it was not read, so what refers to it was not checked",
                          "owners 2: there is no document 'D9'"))
      << "other mistakes are told as ever";
  EXPECT_THAT(refusals({{"owners", with("owners", "document_key", "document")}}),
              ElementsAre("owners 1: the column 'document_key' is missing"))
      << "nothing refers to owners";
  for (const char* name : {"workgroups", "revisions", "manuals"})
    EXPECT_THAT(refusals({{name, ""}}),
                ElementsAre(std::string(name) + " 0: the file has no heading",
                            std::string(name) +
                                " 0: it was not read, so what refers to it was not checked"));
}

TEST_F(Import, WhatRefersToARefusedRowIsNotRefusedForThat) {
  EXPECT_THAT(refusals({{"documents", with("documents", "2001-02-03T14:05:09Z", "recently")}}),
              ElementsAre("documents 2: recorded is not a date and time"));
  EXPECT_THAT(refusals({{"documents", with("documents", "Plan's", "Plan\xB4s")}}),
              ElementsAre("documents 2: the field 'title' is not well-formed UTF-8"));
  EXPECT_THAT(refusals({{"users", with("users", "Anna", "Anna,A.")},
                        {"owners", with("owners", "user1", "user9")}}),
              ElementsAre("users 2: it has 6 fields where the heading has 5",
                          "owners 2: there is no user 'user9' (user_id)"));
  EXPECT_THAT(refusals({{"workgroups", with("workgroups", "Quality,1,1", "Quality")}}),
              ElementsAre("workgroups 2: it has 2 fields where the heading has 4"));
  EXPECT_THAT(refusals({{"revisions", with("revisions", "R2", "R2,R3")}}),
              ElementsAre("revisions 3: it has 16 fields where the heading has 15"));
}

TEST_F(Import, CountsRefusedRowsNotReasons) {
  setFiles({{"copies", with("copies", "user2,M1,,hard", "user9,M9,,soft")},
            {"users", with("users", "kind\r\n", "kind,kind\r\n")},
            {"revisions", with("revisions", "\r\nR2", "\r\nR\"2")},
            {"documents", with("documents", "title", "name")}});
  const auto report = import();
  EXPECT_EQ(report.refused("copies"), 1U) << "one row, for three reasons";
  EXPECT_EQ(report.refused("users"), 2U) << "the heading is no row";
  EXPECT_EQ(report.refused("documents"), 0U);
  EXPECT_EQ(report.refused("revisions"), 1U);
  EXPECT_EQ(report.refused("owners"), 0U);
  const std::map<std::string, std::size_t> read(report.read.begin(), report.read.end());
  EXPECT_EQ(read.at("revisions"), 2U) << "up to the broken one";
  EXPECT_EQ(read.at("documents"), 0U);
}

TEST_F(Import, EveryFileMustBeThere) {
  for (const auto& [name, bytes] : kFiles) {
    setFiles({});
    std::filesystem::remove(folder_.file(name + ".csv"));
    const auto report = import();
    ASSERT_FALSE(report.problems.empty()) << name;
    EXPECT_EQ(report.problems[0].file, name);
    EXPECT_EQ(report.problems[0].reason, "the file is missing or cannot be read");
  }
  EXPECT_EQ(reg_.value("Select Count(*) From Users"), "0");
}

TEST_F(Import, TwiceIsRefusedBecauseTheNumbersAreTaken) {
  ASSERT_TRUE(import().problems.empty());
  const auto before = reg_.rows("Select * From Users");
  const auto again = import();
  ASSERT_EQ(again.problems.size(), 1U);
  EXPECT_EQ(again.problems[0].file, "users");
  EXPECT_THAT(again.problems[0].reason, HasSubstr("duplicate key"));
  EXPECT_EQ(reg_.rows("Select * From Users"), before);
  EXPECT_EQ(reg_.value("Select Count(*) From Groups"), "1");
}

TEST_F(Import, AByteOrderMarkAndFurtherColumnsAreTaken) {
  setFiles({{"users", "\xEF\xBB\xBF" + kFiles.at("users")},
            {"keywords", "colour,field,keyword\r\nred,category,procedure\r\n"}});
  EXPECT_TRUE(import().problems.empty());
  EXPECT_EQ(reg_.value("Select Keyword From Keywords"), "procedure");
}

TEST_F(Import, TheProgramShowsWhatHappened) {
  const std::string path = folder_.file("r.kvv");
  ASSERT_EQ(test::run({"new", path, "--user", "Anna"}).code, 0);
  const auto good = test::run(
      {"import", folder_.path().string(), path, "-u", "Anna", "--as-of", "2001-04-01T08:00:00"});
  EXPECT_EQ(good.code, 0) << good.err;
  EXPECT_EQ(good.err, "") << "no progress where there is no terminal";
  EXPECT_THAT(good.out, HasSubstr("documents.csv        2          0\n"));
  EXPECT_THAT(good.out, HasSubstr("Personals        3\n"));
  setFiles({{"owners", with("owners", "user1", "user9")},
            {"copies", with("copies", "M1,,hard", "M9,,soft")}});
  const auto bad = test::run({"import", folder_.path().string(), path, "-u", "Anna"});
  EXPECT_EQ(bad.code, 1);
  EXPECT_THAT(bad.out, HasSubstr("owners.csv           1          1\n"));
  EXPECT_EQ(bad.err,
            "owners.csv, record 2: there is no user 'user9' (user_id)\n"
            "copies.csv, record 2: there is no manual 'M9'\n"
            "copies.csv, record 2: kind is neither hard nor virtual\n"
            "nothing was imported: 3 problems\n");
  EXPECT_THAT(bad.out, HasSubstr("copies.csv           3          1\n"));
  EXPECT_EQ(
      test::run({"import", folder_.path().string(), path, "-u", "Anna", "--as-of", "soon"}).code,
      2);
}

}  // namespace
}  // namespace kv
