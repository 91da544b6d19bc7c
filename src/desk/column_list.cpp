// SPDX-License-Identifier: Apache-2.0
#include "desk/column_list.h"

#include <algorithm>
#include <string_view>

#include "common/text.h"
#include "data/table_value.h"

namespace kv::desk {

namespace {

// Calls `column` for each part of a list, without the blanks around it, and joins what it gives.
template <class Column>
std::string joined(std::string_view list, Column column) {
  std::string out;
  for (std::size_t from = 0; from <= list.size();) {
    const std::size_t comma = std::min(list.find(',', from), list.size());
    out += (out.empty() ? "" : ", ") + column(trimmed(list.substr(from, comma - from)));
    from = comma + 1;
  }
  return out;
}

std::string bracketed(const Database& database, const std::string& table, std::string_view name) {
  return "[" + columnOf(database, table, std::string(name)) + "]";
}

}  // namespace

std::string selectList(const Database& database, const std::string& table,
                       const std::string& columns) {
  if (trimmed(columns) == "*") return "*";
  return joined(columns, [&](std::string_view part) { return bracketed(database, table, part); });
}

std::string sortList(const Database& database, const std::string& table,
                     const std::string& columns) {
  return joined(columns, [&](std::string_view part) {
    const std::size_t blank = part.rfind(' ');
    const std::string direction =
        blank == std::string_view::npos ? "" : asciiLowered(part.substr(blank + 1));
    if (direction != "asc" && direction != "desc") return bracketed(database, table, part);
    return bracketed(database, table, trimmed(part.substr(0, blank))) + " " + direction;
  });
}

}  // namespace kv::desk
