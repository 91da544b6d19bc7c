// SPDX-License-Identifier: Apache-2.0
#include "classes/relations/relation_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "classes/rights/rights.h"
#include "common/convert.h"

namespace kv::test {

std::string rightsText(std::initializer_list<int> rights) {
  std::string out(kRightsLength, '0');
  for (const int right : rights) out[static_cast<std::size_t>(right) - 1] = '1';
  return out;
}

std::string cell(const std::optional<double>& place) {
  return place ? shown(Variant(*place)) : kNullCell;
}
std::string singleCell(const std::optional<double>& place) {
  return place ? shown(Variant(static_cast<float>(*place))) : kNullCell;
}
std::optional<double> placeIn(const Variant& value) {
  return value.isNull() ? std::nullopt : std::optional(toDouble(value));
}

Texts sorted(Texts rows) {
  std::sort(rows.begin(), rows.end());
  return rows;
}
Texts distinct(Texts rows) {
  rows = sorted(std::move(rows));
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

Texts columnsOf(Recordset& rs, const std::vector<std::string>& names) {
  Texts out;
  for (; !rs.Eof(); rs.MoveNext()) {
    std::string& row = out.emplace_back();
    for (const auto& name : names)
      row += (row.empty() ? "" : "|") + shown(rs.Fields(name)->Value());
  }
  return sorted(std::move(out));
}

std::string difference(const Texts& model, const Texts& library) {
  std::string out;
  int told = 0;
  const auto tell = [&](const char* who, const Texts& some, const Texts& others) {
    Texts only;
    std::set_difference(some.begin(), some.end(), others.begin(), others.end(),
                        std::back_inserter(only));
    for (const auto& row : only)
      if (++told <= 6) out += fmt::format("\n  only in the {}: {}", who, row);
  };
  tell("model", model, library);
  told = 0;
  tell("register", library, model);
  return out;
}

}  // namespace kv::test
