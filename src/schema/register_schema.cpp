// SPDX-License-Identifier: Apache-2.0
#include "schema/register_schema.h"

#include <fmt/format.h>

#include "common/text.h"

namespace kv {

namespace {

using Kind = IndexInfo::Kind;

constexpr int kId = 50;     // identifiers
constexpr int kName = 100;  // names of people, groups and queries
constexpr int kText = 255;  // everything else that is not a memo

ColumnInfo counter(std::string name) {
  return {.name = std::move(name), .type = ColumnType::Int32, .counter = true};
}
ColumnInfo text(std::string name, int size, std::string initial = {}) {
  return {.name = std::move(name),
          .type = ColumnType::Text,
          .size = size,
          .initial = std::move(initial)};
}
ColumnInfo memo(std::string name) { return {.name = std::move(name), .type = ColumnType::Memo}; }
ColumnInfo number(std::string name, std::string initial = {}) {
  return {.name = std::move(name), .type = ColumnType::Int32, .initial = std::move(initial)};
}
ColumnInfo shortNumber(std::string name, std::string initial = {}) {
  return {.name = std::move(name), .type = ColumnType::Int16, .initial = std::move(initial)};
}
ColumnInfo single(std::string name) {
  return {.name = std::move(name), .type = ColumnType::Single};
}
ColumnInfo real(std::string name) { return {.name = std::move(name), .type = ColumnType::Double}; }
ColumnInfo date(std::string name) { return {.name = std::move(name), .type = ColumnType::Date}; }
ColumnInfo yesNo(std::string name) {
  return {.name = std::move(name), .type = ColumnType::Boolean, .initial = "0"};
}

IndexInfo fold(std::vector<std::string> columns) { return {Kind::Fold, std::move(columns)}; }
IndexInfo order(std::string column) { return {Kind::Order, {std::move(column)}}; }
IndexInfo plain(std::string column) { return {Kind::Plain, {std::move(column)}}; }

TableInfo table(std::string name, std::vector<ColumnInfo> columns,
                std::vector<IndexInfo> indexes = {}) {
  TableInfo out{.name = std::move(name),
                .columns = std::move(columns),
                .key = "kv_key",
                .hiddenKey = true,
                .indexes = std::move(indexes)};
  if (const auto* c = out.counterColumn()) {
    out.key = c->name;
    out.hiddenKey = false;
  }
  return out;
}

std::string userField(int n) { return fmt::format("User{:02}", n); }
constexpr int kUserFields = 12;

// A group of columns that occurs with a number behind its name.
std::vector<ColumnInfo> withUserFields(std::vector<ColumnInfo> columns) {
  for (int n = 0; n < kUserFields; ++n) columns.push_back(text(userField(n), kName));
  return columns;
}

std::vector<ColumnInfo> userConfig() {
  std::vector<ColumnInfo> out;
  for (int n = 0; n < kUserFields; ++n) {
    out.push_back(text(userField(n), kId));
    out.push_back(shortNumber("Type" + userField(n)));
  }
  return out;
}

std::vector<ColumnInfo> fieldCriteria(std::vector<ColumnInfo> columns, int fields) {
  for (int n = 1; n <= fields; ++n) {
    columns.push_back(text(fmt::format("Field{}", n), kText));
    columns.push_back(shortNumber(fmt::format("Field{}Key", n)));
  }
  return columns;
}

std::vector<ColumnInfo> documentCriteria() {
  auto out =
      fieldCriteria({counter("QueryID"), text("QueryName", kName), shortNumber("DocType")}, 6);
  out.push_back(text("Field7", kText));
  out.push_back(text("Rev1", kId));
  out.push_back(shortNumber("Rev1Key"));
  out.push_back(date("Rev4"));
  out.push_back(shortNumber("Rev4Key"));
  out.push_back(date("Rev5"));
  return out;
}

std::vector<ColumnInfo> userCriteria() {
  std::vector<ColumnInfo> out = {counter("QueryID"), text("QueryName", kName)};
  std::vector<std::string> fields = {"UserName", "Alias", "Title"};
  for (int n = 0; n < kUserFields; ++n) fields.push_back(userField(n));
  for (const auto& field : fields) {
    out.push_back(text(field, kName));
    out.push_back(shortNumber(field + "Operator"));
    out.push_back(text(field + "Upper", kName));
  }
  return out;
}

std::vector<ColumnInfo> labels(const std::vector<std::string>& names) {
  std::vector<ColumnInfo> out;
  out.reserve(names.size());
  for (const auto& name : names) out.push_back(text(name, kId));
  return out;
}

std::vector<ColumnInfo> groups() {
  return {number("GroupID"), text("GroupTitle", kName), text("Rights", kText)};
}

// Where a statement gives a table's rows by several of its indexes, SQLite, which keeps no
// statistics here, takes the one that was made last. So those that find fewest rows come last: a
// document has few holders, owners and approvers, while users and manuals have many documents, and
// the manual "0" stands for all copies that came without one.
std::vector<TableInfo> makeTables() {
  return {
      table(std::string(kConfigTable),
            {text("DatabaseVersion", 10), text("Version", 20), yesNo("ExternalActionSystem"),
             text("UserDBLocation", kText), text("OwnerRights", kText), text("ProgramOptions", kId),
             text("DBID", kId), number("Originator"), text("OriginatorID", kId),
             text("Document", kId), text("Revision", kId)}),
      table("Documents",
            {counter("ID"), text("DocumentID", kId), text("DocumentTitle", kText),
             text("DocumentNumber", kId), text("RevisionLevel", kId), date("EffectiveDate"),
             text("DocUser1", kText), text("DocUser2", kText), text("DocUser3", kText),
             text("DocUser4", kText), memo("DocumentNotes"), yesNo("SecurityLevel"),
             text("Location", kText), yesNo("Controlled"), number("CurrentRevID")},
            {fold({"DocumentID"}), order("DocumentTitle"), order("DocumentNumber")}),
      table("Revisions",
            {counter("RevisionID"), text("DocumentID", kId), text("RevisionLevel", kId),
             text("RevUser1", kText), text("RevUser2", kText), memo("ChangeDescription"),
             text("Location", kText), date("EffectiveDate"), text("ResponsibleID", kId),
             shortNumber("RoutingStatus"), shortNumber("RevisionStatus")},
            // RevisionLevel: a new revision is found again by the key it is first given there.
            {fold({"DocumentID"}), fold({"RevisionLevel"})}),
      table("Manuals",
            {counter("ID"), text("ManualID", kId), text("ManualName", kText),
             text("ManUser1", kText), text("ManUser2", kText), text("ManUser3", kText),
             text("ManUser4", kText), memo("ManUserMemo")},
            {fold({"ManualID"}), order("ManualName")}),
      table("ManualContents", {text("ManualID", kId), text("DocumentID", kId), real("Position")},
            {fold({"ManualID"}), fold({"DocumentID"})}),
      table(
          "Personals",
          {counter("ReleaseID"), text("UserID", kId), text("DocumentID", kId),
           text("ManualID", kId), yesNo("HardCopy"), text("CopyNumber", kId), number("RevisionID")},
          {fold({"ManualID"}), fold({"UserID"}), fold({"DocumentID"})}),
      table("Owners", {text("DocumentID", kId), text("UserID", kId)},
            {fold({"UserID"}), fold({"DocumentID"})}),
      table("Routing", {text("DocumentID", kId), text("UserID", kId), single("ListOrder")},
            {fold({"UserID"}), fold({"DocumentID"})}),
      table(
          "ApprovalRouting",
          {number("RevID"), text("UserID", kId), single("ListOrder"), shortNumber("ApprovalStatus"),
           text("ApprovedBy", kId), date("DateApproved"), memo("Notes")},
          {fold({"UserID"}), plain("RevID")}),
      table("VeskGroups", groups()),
      table("Groups", groups()),
      table("VeskProfiles",
            {text("UserID", kId),
             text("UserName", kName),
             number("GroupID", "0"),
             {.name = "WorkGroupID", .type = ColumnType::Text, .size = kId, .stands = "GroupID"},
             text("Rights", kText),
             text("UserOptions", kId, "0000000"),
             yesNo("Administrator")},
            {fold({"UserID"}), fold({"UserName"})}),
      // A password column wide enough for a hash with its parameters and salt.
      table("Users",
            withUserFields({counter("ID"), text("UserID", kId), text("UserName", kName),
                            text("Alias", kId), text("Password", kText), text("Title", kText),
                            text("Email", kName)}),
            {fold({"UserID"}), fold({"UserName"}), order("UserName")}),
      table("UserConfig", userConfig()),
      table("Keywords", {text("FieldName", kId), text("Keyword", kText)}, {fold({"FieldName"})}),
      table("VeskKeywords", {text("FieldName", kId), text("Keyword", kText)},
            {fold({"FieldName"})}),
      table("VeskReporting", {text("FieldName", kId), text("Label", kText)}),
      table("UserFilters", {counter("FilterID"), text("FilterName", kName),
                            shortNumber("FilterFor"), text("GroupID", kId)}),
      table("DocumentQuerys", documentCriteria()),
      table("ManualQuerys", fieldCriteria({counter("QueryID"), text("QueryName", kName)}, 5)),
      table("UserQuerys", userCriteria()),
      table("Actions",
            {counter("ActionID"), text("AssigneeID", kId), text("Assignee", kName),
             text("Subject", kText), memo("Description"), text("Originator", kName),
             text("OriginatorID", kId), date("DateOpened"), date("DateDue"), date("DateCompleted"),
             date("DateClosed"), text("ReferenceID", kId), text("Reference", kId),
             shortNumber("ActionType")},
            {fold({"AssigneeID"})}),
      table("DocumentConfig",
            labels({"DocumentTitle", "DocumentNumber", "RevisionLevel", "EffectiveDate", "DocUser1",
                    "DocUser2", "DocUser3", "DocUser4", "DocumentNotes", "Location"})),
      table("ManualConfig",
            labels({"ManualName", "ManUser1", "ManUser2", "ManUser3", "ManUser4", "ManUserMemo"})),
      table("RevisionConfig", labels({"RevisionLevel", "RevUser1", "RevUser2", "ChangeDescription",
                                      "EffectiveDate", "Location"})),
  };
}

}  // namespace

const std::vector<TableInfo>& registerTables() {
  static const std::vector<TableInfo> tables = makeTables();
  return tables;
}

const std::vector<std::string>& userTables() {
  static const std::vector<std::string> names = {"Users", "Actions", "UserQuerys", "UserFilters"};
  return names;
}

const TableInfo& userConfigTable() {
  static const TableInfo config = table(std::string(kConfigTable), {text("Version", 20)});
  return config;
}

std::vector<TableInfo> withSecondNames(std::vector<TableInfo> tables) {
  for (const auto& known : registerTables())
    for (const auto& column : known.columns) {
      if (column.stands.empty()) continue;
      for (auto& actual : tables) {
        if (!equalNoCase(actual.name, known.name) || actual.find(column.name)) continue;
        const auto stored = actual.find(column.stands);
        if (stored)
          actual.columns.insert(actual.columns.begin() + static_cast<std::ptrdiff_t>(*stored) + 1,
                                column);
      }
    }
  return tables;
}

}  // namespace kv
