// SPDX-License-Identifier: Apache-2.0
#include "desk/queries/query_columns.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/text.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

std::vector<QueryColumn> columnsOfDocuments() {
  return {{"title", "DocumentTitle", "Field1", "Field1Key", {}},
          {"number", "DocumentNumber", "Field2", "Field2Key", {}},
          {"field1", "DocUser1", "Field3", "Field3Key", {}},
          {"field2", "DocUser2", "Field4", "Field4Key", {}},
          {"field3", "DocUser3", "Field5", "Field5Key", {}},
          {"field4", "DocUser4", "Field6", "Field6Key", {}},
          {"level", "RevisionLevel", "Rev1", "Rev1Key", {}},
          {"effective", "EffectiveDate", "Rev4", "Rev4Key", "Rev5"}};
}

std::vector<QueryColumn> columnsOfManuals() {
  return {{"name", "ManualName", "Field1", "Field1Key", {}},
          {"field1", "ManUser1", "Field2", "Field2Key", {}},
          {"field2", "ManUser2", "Field3", "Field3Key", {}},
          {"field3", "ManUser3", "Field4", "Field4Key", {}},
          {"field4", "ManUser4", "Field5", "Field5Key", {}}};
}

std::vector<QueryColumn> columnsOfUsers() {
  constexpr int kOwnFields = 12;
  std::vector<QueryColumn> columns;
  const auto add = [&](const std::string& option, const std::string& name) {
    columns.push_back({option, name, name, name + "Operator", name + "Upper"});
  };
  add("name", "UserName");
  add("alias", "Alias");
  add("title", "Title");
  for (int n = 0; n < kOwnFields; ++n)
    add(fmt::format("user{:02}", n), fmt::format("User{:02}", n));
  return columns;
}

std::string listed(Queried of) {
  switch (of) {
    case Queried::Documents: return "title, number, field1 to field4, level, effective";
    case Queried::Manuals: return "name, field1 to field4";
    case Queried::Users: return "name, alias, title, user00 to user11";
  }
  return {};
}

}  // namespace

const std::vector<QueryColumn>& queryColumns(Queried of) {
  static const std::vector<QueryColumn> documents = columnsOfDocuments();
  static const std::vector<QueryColumn> manuals = columnsOfManuals();
  static const std::vector<QueryColumn> users = columnsOfUsers();
  return of == Queried::Documents ? documents : of == Queried::Manuals ? manuals : users;
}

const QueryColumn& queryColumn(Queried of, const std::string& name) {
  const auto& columns = queryColumns(of);
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const QueryColumn& column) {
    return equalNoCase(column.option, name) || equalNoCase(column.name, name);
  });
  if (found == columns.end())
    throw WrongInput("there is no column '" + name + "' to search by: " + listed(of));
  return *found;
}

}  // namespace kv::desk
