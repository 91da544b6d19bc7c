// SPDX-License-Identifier: Apache-2.0
#include "classes/rights/rights.h"

#include <algorithm>
#include <array>

#include "common/text.h"

namespace kv {

namespace {

struct Text {
  std::int16_t number;
  std::string_view text;
};

constexpr auto kUserRights = std::to_array<Text>({
    {urViewDocumentList, "View the document list"},
    {urCreateNewDocument, "Create a new document"},
    {urdeletedocument, "Delete a document"},
    {urCreateNewdocumentquery, "Create a new document query"},
    {urAssignDocumentQuery, "Share Document Queries with others"},
    {urViewManualList, "View the manual list"},
    {urCreateNewManual, "Create a new manual"},
    {urDeleteManual, "Delete a manual"},
    {urCreateNewManualQuery, "Create a new manual query"},
    {urassignManualQuery, "Share manual queries with others"},
    {urVIEWUSERLIST, "View the user list"},
    {urCreateNewUser, "Create a new user"},
    {urDeleteUser, "Delete a user"},
    {urCreateNewUserQuery, "Create a new user query"},
    {urassignUserQuery, "Share User Queries with others"},
    {urviewdocumentdetail, "View a document's detail form"},
    {urEditUserFields, "Edit the Customizable User Fields"},
    {urEditDocumentTitles, "Edit the document title field"},
    {ureditdocumentnumbers, "Edit the document number field"},
    {urEditDocumentSecurityLevels, "Change the secured state of a document"},
    {urEditdocumentuser1, "Edit the document's first data field"},
    {urEditdocumentuser2, "Edit the document's second data field"},
    {urEditdocumentuser3, "Edit the document's third data field"},
    {urEditdocumentuser4, "Edit the document's fourth data field"},
    {urEditDocumentNotes, "Edit the document notes field"},
    {urActAsDocumentOwner, "Owner rights for all documents"},
    {urEditDocumentLocation, "Edit the document location field"},
    {urchangecontrolledsetting, "Change the Controlled Setting for a document"},
    {urViewManualdetail, "View the manual's detail form"},
    {urEditManualName, "Edit the manual name field"},
    {urEditManualUser2, "Edit the manual's second data field"},
    {urEditManualUser3, "Edit the manual's third data field"},
    {urEditManualUser4, "Edit the manual's fourth data field"},
    {urEditManualNotes, "Edit the manual notes field"},
    {urviewuserdetail, "View the user's detail form"},
    {urEditUserName, "Edit the User Name Field"},
    {urEditUserAlais, "Edit the User Alias field"},
    {urEditUserPassword, "Edit the User Password Field"},
    {urEditUserTitle, "Edit the User Title Field"},
    {uredituseremail, "Edit the User E-mail field"},
    {urEditCustomizableFields, "Edit the Customized User Fields"},
    {urChangeUsersWorkGroup, "Change which workgroup a user is in"},
    {urViewRevisionDetail, "View the revision's detail form"},
    {urSetCurrentRevision, "Set a revision as the current revision of a document"},
    {urApprovalOverride, "Approve new revisions in place of the assigned approvers"},
    {urEditChangeDescription, "Edit the Revision Change Description Field"},
    {urEditEffectiveDate, "Edit the Revision Effective Date Field"},
    {urEditRevUser1, "Edit the Revision's first Data Field"},
    {urEditRevUser2, "Edit the revision's second data field"},
    {General, "Other"},
    {urAddDocumentsToManualContents, "Add documents to manual contents"},
    {urRemoveDocumentsFromManualContents, "Remove documents from the contents of a manual"},
    {urReleaseDocumentsToUsers, "Release hard copies of documents to users"},
    {urCollectDocumentsFromUsrs, "Collect released document copies from users"},
    {urReleaseManualsToUsers, "Release hard copies of manuals to users"},
    {urCollectManualsFromUsers, "Collect released manual copies from users"},
    {urAssigndocumentowners, "(Add / Remove) users to a document's Owners List"},
    {urassigndocumentapprovers, "(Add / Remove) users to a document's Approval List"},
    {urAddDocumentsToOthersPersonalLists, "Add documents to other user's personal lists"},
    {urAddManualsToOthersPersonalLists, "Add manuals to other user's personal lists"},
    {urRemoveDocumentsFromOthersPersonalLists, "Remove documents from other users' personal lists"},
    {urRemoveManualsFromOthersPersonalLists, "Remove manuals from other users' personal lists"},
    {urChangeRevisionLevelsOfOthersReleasedDocuments,
     "Change the revision level of others released document copies"},
    {urEditManualCopyNumbersOfReleasedManuals, "Edit the copy numbers of released manual copies"},
    {urAddKeywordsToValidatedFields, "Add keywords to the validated text fields"},
    {Personal, "Personal"},
    {urADDTOPERSONAL, "Add documents & manuals to their own personal list"},
    {urRemoveFromPersonal, "Remove documents and manuals from their personal list"},
    {urChangeRevisionLevelOfOwnReleasedDocumentCopies,
     "Change the revision level of their own released document copies"},
    {urEditOwnUserPassword, "Change their own password"},
});

constexpr auto kOwnerRights = std::to_array<Text>({
    {orEditDocumentTitle, "Edit the document title field"},
    {orEditDocumentNumber, "Edit the document number field"},
    {orChangeSecurityLevel, "Change Secured Status"},
    {orEditDocumentLocation, "Edit the document location field"},
    {orEditDepartment, "Edit the document department field"},
    {orEditCategory, "Edit the document category field"},
    {orEditReference, "Edit the document reference field"},
    {orEditKeywords, "Edit the document keyword field"},
    {orEditDocumentNotes, "Edit the document notes field"},
    {orAddToManuals, "Add document to a manual"},
    {orRemoveFromManuals, "Remove document from a manual"},
    {orReleaseToUsers, "Release document copies to users"},
    {orCollectFromUsers, "Collect document copies from users"},
    {orChangeReleaseRevisionLevel, "Edit the revision level of a released document copy"},
    {orAddRemoveOwners, "(Add to / Remove from) the document's owners list"},
    {oraddremoveapprovers, "(Add to / Remove from) the document's approval routing list"},
    {orChangeRoutingListOrder, "Change the order of the document's approval routing list"},
    {oroverrideapproval,
     "Approve / Reject new revisions in place of the users in the approval routing list"},
    {orchangecontrolledsetting, "Change the controlled/uncontrolled setting for the document"},
    {orAddToUsersPersonal, "Add the document to users' personal lists"},
    {orRemoveFromUserPersonal, "Remove the document from users' personal lists"},
});

template <class Table>
std::string_view textIn(const Table& table, std::int16_t number) noexcept {
  const auto* found = std::find_if(table.begin(), table.end(),
                                   [&](const Text& row) { return row.number == number; });
  return found == table.end() ? std::string_view() : found->text;
}

}  // namespace

bool settingIsOn(std::string_view settings, std::int16_t place) noexcept {
  if (place < 1) return false;
  const auto at = byteOffset(settings, static_cast<std::size_t>(place) - 1);
  return at < settings.size() && settings[at] == '1';
}

std::string_view userRightText(std::int16_t right) noexcept {
  return right > kLastUserRight ? "End" : textIn(kUserRights, right);
}

std::string_view ownerRightText(std::int16_t right) noexcept { return textIn(kOwnerRights, right); }

}  // namespace kv
