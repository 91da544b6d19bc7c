// SPDX-License-Identifier: Apache-2.0
// The numbers, names and texts of rights and options, against tables written out here.
#include "classes/rights/rights.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "classes/session/vesk.h"
#include "support/test_register.h"

namespace kv {
namespace {

struct Row {
  std::int16_t number;
  std::int16_t constant;
  std::string text;
};

// In the order in which the rights are declared; 52 stands there twice.
const std::vector<Row>& userRights() {
  static const std::vector<Row> rows = {
      {1, urViewDocumentList, "View the document list"},
      {2, urCreateNewDocument, "Create a new document"},
      {3, urdeletedocument, "Delete a document"},
      {4, urCreateNewdocumentquery, "Create a new document query"},
      {5, urAssignDocumentQuery, "Share Document Queries with others"},
      {10, urViewManualList, "View the manual list"},
      {11, urCreateNewManual, "Create a new manual"},
      {12, urDeleteManual, "Delete a manual"},
      {13, urCreateNewManualQuery, "Create a new manual query"},
      {14, urassignManualQuery, "Share manual queries with others"},
      {20, urVIEWUSERLIST, "View the user list"},
      {21, urCreateNewUser, "Create a new user"},
      {22, urDeleteUser, "Delete a user"},
      {23, urCreateNewUserQuery, "Create a new user query"},
      {24, urassignUserQuery, "Share User Queries with others"},
      {30, urviewdocumentdetail, "View a document's detail form"},
      {31, urEditUserFields, "Edit the Customizable User Fields"},
      {32, urEditDocumentTitles, "Edit the document title field"},
      {33, ureditdocumentnumbers, "Edit the document number field"},
      {34, urEditDocumentSecurityLevels, "Change the secured state of a document"},
      {35, urEditdocumentuser1, "Edit the document's first data field"},
      {36, urEditdocumentuser2, "Edit the document's second data field"},
      {37, urEditdocumentuser3, "Edit the document's third data field"},
      {38, urEditdocumentuser4, "Edit the document's fourth data field"},
      {39, urEditDocumentNotes, "Edit the document notes field"},
      {40, urActAsDocumentOwner, "Owner rights for all documents"},
      {41, urEditDocumentLocation, "Edit the document location field"},
      {42, urchangecontrolledsetting, "Change the Controlled Setting for a document"},
      {50, urViewManualdetail, "View the manual's detail form"},
      {51, urEditManualName, "Edit the manual name field"},
      {52, urEditManualUser1, "Change which workgroup a user is in"},
      {53, urEditManualUser2, "Edit the manual's second data field"},
      {54, urEditManualUser3, "Edit the manual's third data field"},
      {55, urEditManualUser4, "Edit the manual's fourth data field"},
      {56, urEditManualNotes, "Edit the manual notes field"},
      {70, urviewuserdetail, "View the user's detail form"},
      {71, urEditUserName, "Edit the User Name Field"},
      {72, urEditUserAlais, "Edit the User Alias field"},
      {73, urEditUserPassword, "Edit the User Password Field"},
      {74, urEditUserTitle, "Edit the User Title Field"},
      {75, uredituseremail, "Edit the User E-mail field"},
      {77, urEditCustomizableFields, "Edit the Customized User Fields"},
      {52, urChangeUsersWorkGroup, "Change which workgroup a user is in"},
      {90, urViewRevisionDetail, "View the revision's detail form"},
      {91, urSetCurrentRevision, "Set a revision as the current revision of a document"},
      {92, urApprovalOverride, "Approve new revisions in place of the assigned approvers"},
      {93, urEditChangeDescription, "Edit the Revision Change Description Field"},
      {94, urEditEffectiveDate, "Edit the Revision Effective Date Field"},
      {95, urEditRevUser1, "Edit the Revision's first Data Field"},
      {96, urEditRevUser2, "Edit the revision's second data field"},
      {99, General, "Other"},
      {100, urAddDocumentsToManualContents, "Add documents to manual contents"},
      {101, urRemoveDocumentsFromManualContents, "Remove documents from the contents of a manual"},
      {102, urReleaseDocumentsToUsers, "Release hard copies of documents to users"},
      {103, urCollectDocumentsFromUsrs, "Collect released document copies from users"},
      {104, urReleaseManualsToUsers, "Release hard copies of manuals to users"},
      {105, urCollectManualsFromUsers, "Collect released manual copies from users"},
      {106, urAssigndocumentowners, "(Add / Remove) users to a document's Owners List"},
      {107, urassigndocumentapprovers, "(Add / Remove) users to a document's Approval List"},
      {108, urAddDocumentsToOthersPersonalLists, "Add documents to other user's personal lists"},
      {109, urAddManualsToOthersPersonalLists, "Add manuals to other user's personal lists"},
      {110, urRemoveDocumentsFromOthersPersonalLists,
       "Remove documents from other users' personal lists"},
      {111, urRemoveManualsFromOthersPersonalLists,
       "Remove manuals from other users' personal lists"},
      {112, urChangeRevisionLevelsOfOthersReleasedDocuments,
       "Change the revision level of others released document copies"},
      {113, urEditManualCopyNumbersOfReleasedManuals,
       "Edit the copy numbers of released manual copies"},
      {114, urAddKeywordsToValidatedFields, "Add keywords to the validated text fields"},
      {129, Personal, "Personal"},
      {130, urADDTOPERSONAL, "Add documents & manuals to their own personal list"},
      {131, urRemoveFromPersonal, "Remove documents and manuals from their personal list"},
      {132, urChangeRevisionLevelOfOwnReleasedDocumentCopies,
       "Change the revision level of their own released document copies"},
      {133, urEditOwnUserPassword, "Change their own password"},
  };
  return rows;
}

const std::vector<Row>& ownerRights() {
  static const std::vector<Row> rows = {
      {1, orEditDocumentTitle, "Edit the document title field"},
      {2, orEditDocumentNumber, "Edit the document number field"},
      {3, orChangeSecurityLevel, "Change Secured Status"},
      {4, orEditDocumentLocation, "Edit the document location field"},
      {5, orEditDepartment, "Edit the document department field"},
      {6, orEditCategory, "Edit the document category field"},
      {7, orEditReference, "Edit the document reference field"},
      {8, orEditKeywords, "Edit the document keyword field"},
      {9, orEditDocumentNotes, "Edit the document notes field"},
      {10, orAddToManuals, "Add document to a manual"},
      {11, orRemoveFromManuals, "Remove document from a manual"},
      {12, orReleaseToUsers, "Release document copies to users"},
      {13, orCollectFromUsers, "Collect document copies from users"},
      {14, orChangeReleaseRevisionLevel, "Edit the revision level of a released document copy"},
      {15, orAddRemoveOwners, "(Add to / Remove from) the document's owners list"},
      {16, oraddremoveapprovers, "(Add to / Remove from) the document's approval routing list"},
      {17, orChangeRoutingListOrder, "Change the order of the document's approval routing list"},
      {18, oroverrideapproval,
       "Approve / Reject new revisions in place of the users in the approval routing list"},
      {19, orchangecontrolledsetting,
       "Change the controlled/uncontrolled setting for the document"},
      {20, orAddToUsersPersonal, "Add the document to users' personal lists"},
      {21, orRemoveFromUserPersonal, "Remove the document from users' personal lists"},
  };
  return rows;
}

template <class Check>
void forEveryNumber(Check check) {
  for (int n = std::numeric_limits<std::int16_t>::min();
       n <= std::numeric_limits<std::int16_t>::max(); ++n)
    check(static_cast<std::int16_t>(n));
}

TEST(Descriptions, EveryUserRightHasItsNumberAndText) {
  const test::TestSession vesk;
  ASSERT_EQ(userRights().size(), 71U);
  std::set<std::int16_t> numbers;
  for (const auto& row : userRights()) {
    EXPECT_EQ(row.constant, row.number) << row.text;
    EXPECT_EQ(vesk->urDescription(row.constant), row.text);
    numbers.insert(row.number);
  }
  EXPECT_EQ(numbers.size(), 70U) << "one number is there twice";
}

TEST(Descriptions, OtherNumbersAreNoUserRight) {
  const test::TestSession vesk;
  std::set<std::int16_t> numbers;
  for (const auto& row : userRights()) numbers.insert(row.number);
  forEveryNumber([&](std::int16_t n) {
    if (numbers.contains(n)) return;
    const std::string expected = n > 133 ? "End" : "";
    if (vesk->urDescription(n) != expected) ADD_FAILURE() << n << ": " << vesk->urDescription(n);
  });
  EXPECT_EQ(vesk->urDescription(6), "");
  EXPECT_EQ(vesk->urDescription(0), "");
  EXPECT_EQ(vesk->urDescription(-1), "");
  EXPECT_EQ(vesk->urDescription(134), "End");
}

TEST(Descriptions, FiftyTwoIsAlwaysTheWorkgroupRight) {
  const test::TestSession vesk;
  EXPECT_EQ(urChangeUsersWorkGroup, 52);
  EXPECT_EQ(urEditManualUser1, 52);
  EXPECT_EQ(vesk->urDescription(52), "Change which workgroup a user is in");
  EXPECT_EQ(vesk->urDescription(urChangeUsersWorkGroup), "Change which workgroup a user is in");
  EXPECT_EQ(vesk->urDescription(urEditManualUser1), "Change which workgroup a user is in");
  forEveryNumber([&](std::int16_t n) {
    EXPECT_NE(vesk->urDescription(n), "Edit the manual's first data field");
  });
}

TEST(Descriptions, CountingUpUntilEndListsEveryRightOnce) {
  const test::TestSession vesk;
  std::map<std::int16_t, std::string> expected;
  for (const auto& row : userRights()) expected[row.number] = row.text;
  std::map<std::int16_t, std::string> listed;
  for (std::int16_t n = 1; vesk->urDescription(n) != "End"; ++n)
    if (!vesk->urDescription(n).empty()) listed[n] = vesk->urDescription(n);
  EXPECT_EQ(listed, expected);
}

TEST(Descriptions, EveryOwnerRightHasItsNumberAndText) {
  const test::TestSession vesk;
  ASSERT_EQ(ownerRights().size(), 21U);
  std::map<std::int16_t, std::string> texts;
  for (const auto& row : ownerRights()) {
    EXPECT_EQ(row.constant, row.number) << row.text;
    texts[row.number] = row.text;
  }
  forEveryNumber([&](std::int16_t n) {
    if (vesk->orDescription(n) != texts[n]) ADD_FAILURE() << n << ": " << vesk->orDescription(n);
  });
}

TEST(Descriptions, OptionsHaveNumbersAndNoTexts) {
  const std::vector<std::int16_t> user = {
      uoUseNewDocumentWizard, uoUseNewManualWizard,    uoUseNewUserWizard, uoUseNewRevisionWizard,
      uoVerifyDelete,         uoPromptToAddNewKeyword, uoAutoAddNewKeyword};
  const std::vector<std::int16_t> application = {aoShowVirtual,
                                                 aoShowBoth,
                                                 aoAllowNewKeywords,
                                                 aoNotifyVirtualUsers,
                                                 aoAllowUncontolledDocuments,
                                                 aoNotifyHCUsers,
                                                 aoNotifyApprovalReq,
                                                 aoSendActions,
                                                 aoUserDecision,
                                                 aoApproveInOrder,
                                                 aoDocSortByNum};
  EXPECT_EQ(user, (std::vector<std::int16_t>{1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(application, (std::vector<std::int16_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
  const test::TestSession vesk;
  forEveryNumber([&](std::int16_t n) {
    if (!vesk->uoDescription(n).empty() || !vesk->aoDescription(n).empty()) ADD_FAILURE() << n;
  });
}

}  // namespace
}  // namespace kv
