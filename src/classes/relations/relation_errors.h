// SPDX-License-Identifier: Apache-2.0
// What the root object's relations raise: codes, sources and texts in one table. Texts are exactly
// as clients know them: two blanks behind some full stops, one leading blank, one misspelt source.
#pragma once

#include "common/library_error.h"

namespace kv {

// ---- documents in manuals ----

inline constexpr LibraryError kMayNotAddToManual{
    2529, "DocumentManualRelation",
    "Unable to add document to manual due to user access restrictions"};
inline constexpr LibraryError kMayNotRemoveFromManual{
    2528, "DocumentManualRelation",
    "Unable to remove document from manual due to user access restrictions"};
// These two are raised when removing as well.
inline constexpr LibraryError kUncontrolledInManual{
    2513, "DocumentManualRelation",
    "This Document is uncontrolled.  Only Controlled documents may be added to a manual."};
inline constexpr LibraryError kNoRevisionForManual{
    2514, "DocumentManualRelation",
    "Only Documents with a current revision may be added to a manual"};
inline constexpr LibraryError kInManualAlready{2506, "DocumentManualRelation",
                                               "The Document is already in this manual"};
inline constexpr LibraryError kNotInManual{2507, "DocumentManualRelation",
                                           "The Document is not part of the manual"};

// ---- owners ----

inline constexpr LibraryError kMayNotChangeOwners{
    2530, "OwnsRelation",
    "Unable to add user to documents owner list due to user access restrictions"};
inline constexpr LibraryError kOwnerAlready{2508, "OwnsReleation",
                                            "This user is already an owner of this document"};
inline constexpr LibraryError kNoOwner{2509, "OwnsRelation",
                                       "This user is not an owner of this document"};

// ---- approvers ----

inline constexpr LibraryError kMayNotChangeApprovers{
    2532, "ApprovesRelation",
    "You do not have the right to assign or remove approvers for this document"};
inline constexpr LibraryError kNoApprovalList{
    2511, "ApprovesRelation",
    "This document is uncontrolled.  Only controlled documents have approval lists.)"};
inline constexpr LibraryError kApproverAlready{
    2510, "ApprovesRelation", "This user is already in the approval list for this document"};
inline constexpr LibraryError kNoApprover{
    2512, "ApprovesRelation", "This user is not in the approval list for this document"};

// ---- documents released to users ----

inline constexpr LibraryError kUncontrolledToUsers{
    2515, "DocumentUserRelation",
    "This is an uncontrolled document.  Only controlled documents may be released to users"};
inline constexpr LibraryError kNoRevisionForUsers{
    2516, "DocumentUserRelation",
    "Only Documents with a current revision may be released to users."};
inline constexpr LibraryError kReleaseGone{2517, "DocumentUserRelation",
                                           "That release is no longer present in system"};
inline constexpr LibraryError kNoReleaseId{2518, "DocumentUserRelation",
                                           "Unable to return released document without ReleaseID"};
inline constexpr LibraryError kOnPersonalListAlready{
    2519, "DocumentUserRelation", "This document is already in this users personal list"};

// ---- manuals released to users ----

inline constexpr LibraryError kNothingToRelease{
    2520, "ManualUserRelation",
    "This manual has no contents.  Only manuals that have contents may be released to users."};
inline constexpr LibraryError kManualNotHeld{2521, "ManualUserRelation",
                                             "This user does not have this manual"};
inline constexpr LibraryError kManualNotAdded{2522, "ManualUserRelation",
                                              "Unable to add this manual to this user"};
inline constexpr LibraryError kManualHeldAlready{2523, "ManualUserRelation",
                                                 "This user already has this manual"};

}  // namespace kv
