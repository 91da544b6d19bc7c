// SPDX-License-Identifier: Apache-2.0
#include "desk/register/import/insert.h"

#include <fmt/format.h>

#include "common/text.h"

namespace kv::desk {

Insert& Insert::add(std::string_view column, std::string_view value) {
  if (!columns_.empty()) {
    columns_ += ", ";
    values_ += ", ";
  }
  columns_ += '[';
  columns_ += column;
  columns_ += ']';
  values_ += value;
  return *this;
}

Insert& Insert::text(std::string_view column, std::string_view value) {
  return value.empty() ? null(column) : add(column, "'" + doubledQuotes(value) + "'");
}

Insert& Insert::number(std::string_view column, std::int64_t value) {
  return add(column, std::to_string(value));
}

Insert& Insert::real(std::string_view column, double value) {
  return add(column, fmt::format("{}", value));
}

Insert& Insert::date(std::string_view column, std::string_view isoDay) {
  return isoDay.empty() ? null(column) : add(column, "#" + std::string(isoDay) + "#");
}

Insert& Insert::truth(std::string_view column, bool value) {
  return add(column, value ? "True" : "False");
}

Insert& Insert::null(std::string_view column) { return add(column, "Null"); }

void Insert::run(kvConnection& connection) const {
  std::int32_t affected = 0;
  connection.Execute("Insert Into [" + table_ + "] (" + columns_ + ") Values (" + values_ + ")",
                     affected);
}

}  // namespace kv::desk
