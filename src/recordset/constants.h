// SPDX-License-Identifier: Apache-2.0
// Numbers that clients of record sets pass and read, with the values that they know them by.
#pragma once

#include <cstdint>

namespace kv {

// State
inline constexpr std::int32_t kStateClosed = 0;
inline constexpr std::int32_t kStateOpen = 1;

// EditMode
inline constexpr std::int32_t kEditNone = 0;
inline constexpr std::int32_t kEditInProgress = 1;
inline constexpr std::int32_t kEditAdd = 2;

// CursorType. Every set is a keyset, whatever was asked for, except those whose rows have no keys:
// these are static.
inline constexpr std::int32_t kForwardOnly = 0;
inline constexpr std::int32_t kKeyset = 1;
inline constexpr std::int32_t kDynamic = 2;
inline constexpr std::int32_t kStatic = 3;

// LockType. Pessimistic and batch sets behave as optimistic ones: no row stays locked while a set
// is open.
inline constexpr std::int32_t kReadOnly = 1;
inline constexpr std::int32_t kPessimistic = 2;
inline constexpr std::int32_t kOptimistic = 3;
inline constexpr std::int32_t kBatchOptimistic = 4;

// Find: direction
inline constexpr std::int32_t kForward = 1;
inline constexpr std::int32_t kBackward = -1;

// AbsolutePosition when there is no row
inline constexpr std::int32_t kPositionUnknown = -1;
inline constexpr std::int32_t kPositionBof = -2;
inline constexpr std::int32_t kPositionEof = -3;

// Where a Move, Find or GetRows starts, in place of a bookmark
inline constexpr std::int32_t kFromCurrent = 0;
inline constexpr std::int32_t kFromFirst = 1;
inline constexpr std::int32_t kFromLast = 2;

// Filter: none, also as text
inline constexpr std::int32_t kFilterNone = 0;

// GetRows: all rows that are left
inline constexpr std::int32_t kRestOfRows = -1;

// Supports
inline constexpr std::int32_t kSupportsHoldRecords = 0x100;
inline constexpr std::int32_t kSupportsMovePrevious = 0x200;
inline constexpr std::int32_t kSupportsBookmark = 0x2000;
inline constexpr std::int32_t kSupportsApproxPosition = 0x4000;
inline constexpr std::int32_t kSupportsUpdateBatch = 0x10000;
inline constexpr std::int32_t kSupportsResync = 0x20000;
inline constexpr std::int32_t kSupportsNotify = 0x40000;
inline constexpr std::int32_t kSupportsFind = 0x80000;
inline constexpr std::int32_t kSupportsAddNew = 0x1000400;
inline constexpr std::int32_t kSupportsDelete = 0x1000800;
inline constexpr std::int32_t kSupportsUpdate = 0x1008000;

// Field.Type
inline constexpr std::int32_t kTypeSmallInt = 2;
inline constexpr std::int32_t kTypeInteger = 3;
inline constexpr std::int32_t kTypeSingle = 4;
inline constexpr std::int32_t kTypeDouble = 5;
inline constexpr std::int32_t kTypeDate = 7;
inline constexpr std::int32_t kTypeBoolean = 11;
inline constexpr std::int32_t kTypeVarWChar = 202;
inline constexpr std::int32_t kTypeLongVarWChar = 203;

// Field.Attributes
inline constexpr std::int32_t kFieldUpdatable = 0x4;
inline constexpr std::int32_t kFieldFixed = 0x10;
inline constexpr std::int32_t kFieldIsNullable = 0x20;
inline constexpr std::int32_t kFieldMayBeNull = 0x40;
inline constexpr std::int32_t kFieldLong = 0x80;

}  // namespace kv
