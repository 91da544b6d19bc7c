// SPDX-License-Identifier: Apache-2.0
// The tables of a register, at layout 02.01.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/catalog.h"

namespace kv {

// The layout that this library makes and needs. A register of an older one must be converted; one
// whose first two characters are greater is too new.
inline constexpr std::string_view kLayoutVersion = "02.01";
// The version of the tables of users and actions, which the user component asks for.
inline constexpr std::string_view kUserDataVersion = "1.003.006";

// The table of configuration values, one row.
inline constexpr std::string_view kConfigTable = "VeskConfig";

// Every table with its columns, first values and indexes, in the order in which they are made.
[[nodiscard]] const std::vector<TableInfo>& registerTables();

// The tables that may be kept in a database of their own, which several registers can share: users,
// their actions and their saved queries.
[[nodiscard]] const std::vector<std::string>& userTables();
// The configuration that such a database has for itself; it holds the version.
[[nodiscard]] const TableInfo& userConfigTable();

// A database's tables with the second names of stored columns put in: VeskProfiles keeps one
// workgroup number that clients know as GroupID (a number) and as WorkGroupID (a text).
[[nodiscard]] std::vector<TableInfo> withSecondNames(std::vector<TableInfo> tables);

}  // namespace kv
