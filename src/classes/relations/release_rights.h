// SPDX-License-Identifier: Apache-2.0
// Who may release what, and what is told to those who may not.
#pragma once

#include <array>

#include "classes/rights/rights.h"
#include "common/library_error.h"

namespace kv {

// The rights to one of the four things that are done with copies.
struct ReleaseRights {
  std::int16_t asOwner;   // of the document
  std::int16_t asAnyone;  // and for any user
  LibraryError refusal;
  // For personal lists: the right to one's own list, and its refusal. 0 for hard copies.
  std::int16_t ownList = 0;
  LibraryError ownListRefusal = {};
};

inline constexpr std::int16_t kReleaseRefused = 2531;
inline constexpr std::int16_t kNobodyOwnsManuals = 0;

// By whether copies are taken back.
inline constexpr std::array<ReleaseRights, 2> kDocumentHardCopies = {
    {{orReleaseToUsers,
      urReleaseDocumentsToUsers,
      {kReleaseRefused, "DocumentUserRelation",
       "You do not have the right to release documents to users"}},
     {orCollectFromUsers,
      urCollectDocumentsFromUsrs,
      {kReleaseRefused, "DocumentUserRelation",
       "You do not have the right to collect documents from users"}}}};
inline constexpr std::array<ReleaseRights, 2> kDocumentLists = {
    {{orAddToUsersPersonal,
      urAddDocumentsToOthersPersonalLists,
      {kReleaseRefused, "DocumentUserRelation",
       "You do not have the right to add documents to other user's personal lists"},
      urADDTOPERSONAL,
      {kReleaseRefused, "DocumentUserRelation",
       "You do not have the right to add documents to your personal list"}},
     {orRemoveFromUserPersonal,
      urRemoveDocumentsFromOthersPersonalLists,
      {kReleaseRefused, "DocumentUserRelation",
       "You do not have the right to remove documents from other user's personal lists"},
      urRemoveFromPersonal,
      {kReleaseRefused, "DocumentUserRelation",
       "You do not have the right to remove documents from your personal list"}}}};
inline constexpr std::array<ReleaseRights, 2> kManualHardCopies = {
    {{kNobodyOwnsManuals,
      urReleaseManualsToUsers,
      {kReleaseRefused, "ManualUserRelation",
       "You do not have the right to release manuals to users"}},
     {kNobodyOwnsManuals,
      urCollectManualsFromUsers,
      {kReleaseRefused, "ManualUserRelation",
       "You do not have the right to collect manuals from users"}}}};
inline constexpr std::array<ReleaseRights, 2> kManualLists = {
    {{kNobodyOwnsManuals,
      urAddManualsToOthersPersonalLists,
      {kReleaseRefused, "ManualUserRelation",
       "You do not have the right to add manuals to other user's personal lists"},
      urADDTOPERSONAL,
      {kReleaseRefused, "ManualUserRelation",
       " You do not have the right to add manuals to your personal list"}},
     {kNobodyOwnsManuals,
      urRemoveManualsFromOthersPersonalLists,
      {kReleaseRefused, "ManualUserRelation",
       "You do not have the right to remove manuals from other user's personal lists"},
      urRemoveFromPersonal,
      {kReleaseRefused, "ManualUserRelation",
       " You do not have the right to remove manuals from your personal list"}}}};

}  // namespace kv
