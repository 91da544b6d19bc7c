// SPDX-License-Identifier: Apache-2.0
// What users may do, what owners may do, and the options of users and of the whole register. Each
// family is kept as a text of "0" and "1"; the number of a setting is its place in that text,
// from 1. Names and numbers are those that clients know, irregular spellings included.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/export.h"

namespace kv {

// What a user may do. General and Personal are headings for lists of rights, not rights.
enum eUserRight : std::int16_t {
  urViewDocumentList = 1,
  urCreateNewDocument = 2,
  urdeletedocument = 3,
  urCreateNewdocumentquery = 4,
  urAssignDocumentQuery = 5,
  urViewManualList = 10,
  urCreateNewManual = 11,
  urDeleteManual = 12,
  urCreateNewManualQuery = 13,
  urassignManualQuery = 14,
  urVIEWUSERLIST = 20,
  urCreateNewUser = 21,
  urDeleteUser = 22,
  urCreateNewUserQuery = 23,
  urassignUserQuery = 24,
  urviewdocumentdetail = 30,
  urEditUserFields = 31,
  urEditDocumentTitles = 32,
  ureditdocumentnumbers = 33,
  urEditDocumentSecurityLevels = 34,
  urEditdocumentuser1 = 35,
  urEditdocumentuser2 = 36,
  urEditdocumentuser3 = 37,
  urEditdocumentuser4 = 38,
  urEditDocumentNotes = 39,
  urActAsDocumentOwner = 40,
  urEditDocumentLocation = 41,
  urchangecontrolledsetting = 42,
  urViewManualdetail = 50,
  urEditManualName = 51,
  urEditManualUser1 = 52,
  urEditManualUser2 = 53,
  urEditManualUser3 = 54,
  urEditManualUser4 = 55,
  urEditManualNotes = 56,
  urviewuserdetail = 70,
  urEditUserName = 71,
  urEditUserAlais = 72,
  urEditUserPassword = 73,
  urEditUserTitle = 74,
  uredituseremail = 75,
  urEditCustomizableFields = 77,
  // One number, two rights: who is granted the one holds the other.
  urChangeUsersWorkGroup = 52,
  urViewRevisionDetail = 90,
  urSetCurrentRevision = 91,
  urApprovalOverride = 92,
  urEditChangeDescription = 93,
  urEditEffectiveDate = 94,
  urEditRevUser1 = 95,
  urEditRevUser2 = 96,
  General = 99,
  urAddDocumentsToManualContents = 100,
  urRemoveDocumentsFromManualContents = 101,
  urReleaseDocumentsToUsers = 102,
  urCollectDocumentsFromUsrs = 103,
  urReleaseManualsToUsers = 104,
  urCollectManualsFromUsers = 105,
  urAssigndocumentowners = 106,
  urassigndocumentapprovers = 107,
  urAddDocumentsToOthersPersonalLists = 108,
  urAddManualsToOthersPersonalLists = 109,
  urRemoveDocumentsFromOthersPersonalLists = 110,
  urRemoveManualsFromOthersPersonalLists = 111,
  urChangeRevisionLevelsOfOthersReleasedDocuments = 112,
  urEditManualCopyNumbersOfReleasedManuals = 113,
  urAddKeywordsToValidatedFields = 114,
  Personal = 129,
  urADDTOPERSONAL = 130,
  urRemoveFromPersonal = 131,
  urChangeRevisionLevelOfOwnReleasedDocumentCopies = 132,
  urEditOwnUserPassword = 133,
};

// What any owner of a document may do with it.
enum eOwnerRight : std::int16_t {
  orEditDocumentTitle = 1,
  orEditDocumentNumber = 2,
  orChangeSecurityLevel = 3,
  orEditDocumentLocation = 4,
  orEditDepartment = 5,
  orEditCategory = 6,
  orEditReference = 7,
  orEditKeywords = 8,
  orEditDocumentNotes = 9,
  orAddToManuals = 10,
  orRemoveFromManuals = 11,
  orReleaseToUsers = 12,
  orCollectFromUsers = 13,
  orChangeReleaseRevisionLevel = 14,
  orAddRemoveOwners = 15,
  oraddremoveapprovers = 16,
  orChangeRoutingListOrder = 17,
  oroverrideapproval = 18,
  orchangecontrolledsetting = 19,
  orAddToUsersPersonal = 20,
  orRemoveFromUserPersonal = 21,
};

// What a user has chosen for himself.
enum eUserOption : std::int16_t {
  uoUseNewDocumentWizard = 1,
  uoUseNewManualWizard = 2,
  uoUseNewUserWizard = 3,
  uoUseNewRevisionWizard = 4,
  uoVerifyDelete = 5,
  uoPromptToAddNewKeyword = 6,
  uoAutoAddNewKeyword = 7,
};

// What the administrator has chosen for everybody.
enum eApplicationOption : std::int16_t {
  aoShowVirtual = 1,
  aoShowBoth = 2,
  aoAllowNewKeywords = 3,
  aoNotifyVirtualUsers = 4,
  aoAllowUncontolledDocuments = 5,
  aoNotifyHCUsers = 6,
  aoNotifyApprovalReq = 7,
  aoSendActions = 8,
  aoUserDecision = 9,
  aoApproveInOrder = 10,
  aoDocSortByNum = 11,
};

inline constexpr std::int16_t kApplicationOptions = 11;
// Beyond the last right; clients list the rights by counting up until they get "End".
inline constexpr std::int16_t kLastUserRight = urEditOwnUserPassword;
// The number that makes OwnerAccess pass over the owner override.
inline constexpr std::int16_t kWithoutOverride = 2000;

// Whether the character at a place of a settings text, counted from 1, is "1". A place beyond the
// text is off.
[[nodiscard]] KVVESK_API bool settingIsOn(std::string_view settings, std::int16_t place) noexcept;

// The text for a right; "End" beyond the last one, "" for numbers between that are no right. 52 is
// always told as the workgroup right.
[[nodiscard]] KVVESK_API std::string_view userRightText(std::int16_t right) noexcept;
// The text for an owner right, "" for any other number.
[[nodiscard]] KVVESK_API std::string_view ownerRightText(std::int16_t right) noexcept;

}  // namespace kv
