// SPDX-License-Identifier: Apache-2.0
#include "desk/register/export/comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "common/convert.h"
#include "common/plain_text.h"
#include "data/table_value.h"
#include "desk/register/export/places.h"
#include "desk/register/import/importer.h"
#include "recordset/recordset.h"

namespace kv::desk {

namespace {

using Columns = std::vector<std::string>;

struct Carried {
  const char* table;
  Columns key;   // tells its rows apart
  Columns also;  // carried besides
};

// What the format is there to carry. A row of another table that has many is known by all it holds.
const std::vector<Carried>& carriedTables() {
  static const std::vector<Carried> tables = {
      {"Users", {"ID"}, {"UserID", "UserName", "Title"}},
      {"VeskProfiles", {"UserID"}, {}},
      {"Groups", {"GroupID"}, {"GroupTitle"}},
      {"VeskGroups", {"GroupID"}, {"GroupTitle"}},
      {"Documents",
       {"ID"},
       {"DocumentID", "DocumentTitle", "DocumentNumber", "RevisionLevel", "EffectiveDate",
        "DocUser1", "DocUser2", "DocUser3", "DocUser4", "DocumentNotes", "SecurityLevel",
        "Location", "Controlled", "CurrentRevID"}},
      {"Revisions",
       {"RevisionID"},
       {"DocumentID", "RevisionLevel", "RevUser1", "RevUser2", "ChangeDescription", "EffectiveDate",
        "ResponsibleID", "RoutingStatus", "RevisionStatus"}},
      {"Manuals", {"ID"}, {"ManualName", "ManUser1", "ManUser2", "ManUser3"}},
      {"ManualContents", {"ManualID", "DocumentID", "Position"}, {}},
      {"Personals", {"UserID", "DocumentID", "ManualID", "HardCopy", "CopyNumber"}, {}},
      {"Owners", {"DocumentID", "UserID"}, {}},
      {"Routing", {"DocumentID", "UserID"}, {}},
      {"ApprovalRouting",
       {"RevID", "UserID", "ListOrder", "ApprovalStatus", "ApprovedBy", "DateApproved"},
       {}},
      {"Keywords", {"FieldName", "Keyword"}, {}},
  };
  return tables;
}

bool has(const Columns& columns, const std::string& name) {
  return std::find(columns.begin(), columns.end(), name) != columns.end();
}

// Whole tables in memory; manuals by their numbers, for an import gives them other identifiers.
class Register {
 public:
  using Row = std::map<std::string, std::string>;

  explicit Register(std::shared_ptr<Database> database)
      : database_(std::move(database)),
        name_(joinText(tableValue(database_, "VeskConfig", "DBID"))) {
    for (auto& row : read("Manuals", true))
      manuals_.emplace(row.at("ManualID"), "manual " + row.at("ID"));
  }

  [[nodiscard]] std::vector<Row> rows(const std::string& table) const {
    auto all = read(table, false);
    std::erase_if(all, [](const Row& row) {
      const auto user = row.find("UserID");
      return user != row.end() && user->second == kFirstUserId && row.contains("UserName");
    });
    for (auto& row : all) {
      const auto manual = row.find("ManualID");
      if (manual == row.end()) continue;
      const auto number = manuals_.find(manual->second);
      if (number != manuals_.end()) manual->second = number->second;
    }
    return all;
  }

 private:
  // Values as text, by column; nothing for none, which an empty text and no revision are as well.
  [[nodiscard]] std::vector<Row> read(const std::string& table, bool keepIdentifiers) const {
    std::vector<Row> out;
    const bool placed = table == "ManualContents";
    const auto rs =
        openOwn(database_,
                "Select * From [" + table + "]" + (placed ? " Order By ManualID, [Position]" : ""),
                kReadOnly);
    std::vector<Ref<Field>> fields;
    fields.reserve(static_cast<std::size_t>(rs->Fields().Count()));
    for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) fields.push_back(rs->Fields(i));
    for (; !rs->Eof(); rs->MoveNext()) {
      Row row;
      for (const auto& field : fields) row[field->Name()] = plainText(field->Value());
      // Each register has a name of its own, by which its actions are known.
      for (const char* column : {"DBID", "ReferenceID"})
        if (const auto own = row.find(column); own != row.end() && own->second == name_)
          own->second.clear();
      const auto current = row.find("CurrentRevID");
      if (current != row.end() && current->second == "0") current->second.clear();
      if (table == "Manuals" && !keepIdentifiers) row.erase("ManualID");
      out.push_back(std::move(row));
    }
    if (placed) even(out);
    return out;
  }

  // Places as the files have them.
  static void even(std::vector<Row>& contents) {
    std::vector<std::string> manuals;
    std::vector<std::string> places;
    for (const auto& row : contents) {
      manuals.push_back(row.at("ManualID"));
      places.push_back(row.at("Position"));
    }
    evenPlaces(manuals, places);
    for (std::size_t row = 0; row < contents.size(); ++row) contents[row]["Position"] = places[row];
  }

  std::shared_ptr<Database> database_;
  std::string name_;
  std::map<std::string, std::string> manuals_;
};

Columns valuesOf(const Register::Row& row, const Columns& columns) {
  Columns values;
  values.reserve(columns.size());
  for (const auto& column : columns) values.push_back(row.at(column));
  return values;
}

// Takes one away of those there are.
bool take(std::map<Columns, int>& counts, const Columns& values) {
  const auto found = counts.find(values);
  if (found == counts.end() || found->second == 0) return false;
  --found->second;
  return true;
}

std::string counted(std::size_t count, const char* what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? " is" : "s are");
}

class TableComparison {
 public:
  TableComparison(const TableInfo& table, std::vector<Register::Row> from,
                  std::vector<Register::Row> to)
      : table_(table), from_(std::move(from)), to_(std::move(to)) {
    const auto& known = carriedTables();
    const auto carried = std::find_if(known.begin(), known.end(), [&](const Carried& entry) {
      return table.name == entry.table;
    });
    if (carried != known.end()) {
      carried_ = &*carried;
      key_ = carried->key;
      return;
    }
    if (from_.size() == 1 && to_.size() == 1) return;  // settings: value by value
    for (const auto& column : table.columns)
      if (!column.counter && column.stands.empty()) key_.push_back(column.name);
  }

  [[nodiscard]] std::vector<Difference> run() {
    std::map<Columns, int> there;
    for (const auto& row : to_) ++there[valuesOf(row, key_)];
    std::vector<const Register::Row*> both;
    for (const auto& row : from_)
      if (take(there, valuesOf(row, key_))) both.push_back(&row);
    const bool essential = carried_ != nullptr;
    // These go with the rows of another table, and an import makes them where they were missing.
    const bool accompanies = table_.name == "VeskProfiles" || table_.name == "VeskGroups";
    std::vector<Difference> out;
    if (both.size() < from_.size())
      out.push_back(
          {table_.name, counted(from_.size() - both.size(), "row") + " not carried", essential});
    // Other tables have first values of their own, which are no loss.
    if (both.size() < to_.size() && (essential || table_.name == "Actions"))
      out.push_back({table_.name,
                     counted(to_.size() - both.size(), "row") + " made that the register has not",
                     essential && !accompanies});
    for (const auto& column : table_.columns) {
      if (column.counter || !column.stands.empty() || has(key_, column.name) ||
          (table_.name == "Manuals" && column.name == "ManualID"))
        continue;
      if (const auto lost = lostIn(column.name, both); lost > 0)
        out.push_back({table_.name + "." + column.name, counted(lost, "value") + " not carried",
                       essential && has(carried_->also, column.name)});
    }
    return out;
  }

 private:
  [[nodiscard]] std::size_t lostIn(const std::string& column,
                                   const std::vector<const Register::Row*>& rows) const {
    Columns all = key_;
    all.push_back(column);
    std::map<Columns, int> there;
    for (const auto& row : to_) ++there[valuesOf(row, all)];
    return static_cast<std::size_t>(
        std::count_if(rows.begin(), rows.end(), [&](const Register::Row* row) {
          return !row->at(column).empty() && !take(there, valuesOf(*row, all));
        }));
  }

  const TableInfo& table_;
  std::vector<Register::Row> from_;
  std::vector<Register::Row> to_;
  const Carried* carried_ = nullptr;
  Columns key_;
};

}  // namespace

std::vector<Difference> differences(const std::shared_ptr<Database>& from,
                                    const std::shared_ptr<Database>& to) {
  const Register before(from);
  const Register after(to);
  std::vector<Difference> out;
  for (const auto& table : to->catalog()->tables()) {
    TableComparison comparison(table, before.rows(table.name), after.rows(table.name));
    const auto found = comparison.run();
    out.insert(out.end(), found.begin(), found.end());
  }
  return out;
}

}  // namespace kv::desk
