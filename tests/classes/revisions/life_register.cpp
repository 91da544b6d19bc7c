// SPDX-License-Identifier: Apache-2.0
#include "classes/revisions/life_register.h"

#include <fmt/format.h>

#include <algorithm>

namespace kv::test {

std::vector<std::vector<Cell>> cellsOf(Recordset& rs) {
  std::vector<std::vector<Cell>> out;
  for (; !rs.Eof(); rs.MoveNext()) {
    auto& row = out.emplace_back();
    for (std::int32_t i = 0; i < rs.Fields().Count(); ++i)
      row.push_back(shown(rs.Fields(i)->Value()));
  }
  return out;
}

LifeAction actionOf(const std::vector<Cell>& cells, std::size_t from) {
  LifeAction out;
  Cell* const fields[] = {&out.assigneeId, &out.assignee,     &out.subject,  &out.description,
                          &out.originator, &out.originatorId, &out.opened,   &out.due,
                          &out.completed,  &out.closed,       &out.database, &out.reference,
                          &out.type};
  for (Cell* const field : fields) *field = cells.at(from++);
  return out;
}

void load(LifeModel& m, const TestRegister& reg) {
  const auto all = [&](const std::string& sql) { return cellsOf(*reg.open("Select " + sql)); };
  const auto config = all(
      "ProgramOptions, OwnerRights, DBID, [Revision], [Document], OriginatorID, Originator From "
      "VeskConfig")[0];
  m.settings.options = config[0];
  m.settings.ownerRights = config[1];
  m.settings.database = config[2];
  m.settings.revisionWord = config[3];
  m.settings.documentWord = config[4];
  m.settings.originatorId = config[5];
  if (config[6] != kNothing) m.settings.originator = std::stoi(config[6]);
  for (const auto& c : all("UserID, UserName From Users")) m.users[c[0]] = {c[1], kNothing};
  for (const auto& c : all("UserID, UserName From VeskProfiles")) m.users[c[0]].profileName = c[1];
  for (const auto& c : all("DocumentID, " + kDocumentCells + ", SecurityLevel From Documents"))
    m.documents[c[0]] = {c[1], c[2], c[3], c[4], c[5] == "True"};
  for (const auto& c : all("DocumentID, UserID From Owners")) m.owners.insert({c[0], c[1]});
  for (const auto& c :
       all("DocumentID, UserID, ListOrder From Routing Order By DocumentID, ListOrder"))
    m.lists[c[0]].push_back({.user = c[1], .order = c[2]});
  for (const auto& c : all(kRevisionCells + " From Revisions"))
    m.keep({std::stoi(c[0]), c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8], std::stoi(c[9]),
            std::stoi(c[10])});
  for (const auto& c :
       all("RevID, " + kApprovalCells + " From ApprovalRouting Order By RevID, ListOrder"))
    m.approvals[std::stoi(c[0])].push_back({c[1], c[2], std::stoi(c[3]), c[4], c[5], c[6]});
  for (const auto& c : all("ActionID, " + kActionCells + " From Actions"))
    m.actions[std::stoi(c[0])] = actionOf(c, 1);
  for (const auto& c : all("ReleaseID, " + kCopyCells + " From Personals"))
    m.copies[std::stoi(c[0])] = {c[1], c[2], c[3] == "True", c[4]};
}

LifeRows rowsOf(const LifeModel& model) {
  LifeRows out;
  const auto of = [&](const char* table, int id) -> std::string& {
    return out[table].emplace_back(std::to_string(id) + "|");
  };
  for (const auto& [id, row] : model.revisions) out["Revisions"].push_back(row.text());
  for (const auto& [id, list] : model.approvals)
    for (const auto& row : list) of("ApprovalRouting", id) += row.text();
  for (const auto& [id, row] : model.actions) of("Actions", id) += row.text();
  for (const auto& [id, row] : model.documents) out["Documents"].push_back(id + "|" + row.text());
  for (const auto& [id, row] : model.copies) of("Personals", id) += row.text();
  return out;
}

LifeRows rowsOf(const TestRegister& reg) {
  LifeRows out;
  const auto add = [&](const char* table, const std::string& columns, const char* order) {
    out[table] = reg.rows(fmt::format("Select {} From {} Order By {}", columns, table, order));
  };
  add("Revisions", kRevisionCells, "RevisionID");
  add("ApprovalRouting", "RevID, " + kApprovalCells, "RevID, ListOrder");
  add("Actions", "ActionID, " + kActionCells, "ActionID");
  add("Documents", "DocumentID, " + kDocumentCells, "ID");
  add("Personals", "ReleaseID, " + kCopyCells, "ReleaseID");
  std::sort(out["Documents"].begin(), out["Documents"].end());
  return out;
}

std::string difference(const LifeRows& model, const LifeRows& reg) {
  constexpr int kShown = 5;
  std::string out;
  for (const auto& [table, there] : reg) {
    const auto found = model.find(table);
    const auto expected = found == model.end() ? std::vector<std::string>() : found->second;
    if (expected.size() != there.size())
      out += fmt::format("{}: {} rows in the model and {} in the register\n", table,
                         expected.size(), there.size());
    int shown = 0;
    for (std::size_t i = 0; i < std::min(expected.size(), there.size()) && shown < kShown; ++i)
      if (expected[i] != there[i]) {
        out += fmt::format("{}: the model\n  {}\nand the register\n  {}\n", table, expected[i],
                           there[i]);
        ++shown;
      }
  }
  return out;
}

std::vector<std::string> untouched(const TestRegister& reg) {
  std::vector<std::string> out;
  const auto add = [&](const std::string& sql) {
    const auto rows = reg.rows("Select " + sql);
    out.insert(out.end(), rows.begin(), rows.end());
  };
  add("ID, DocumentID, DocumentTitle, DocumentNumber, DocUser1, DocUser2, DocUser3, DocUser4, "
      "DocumentNotes, SecurityLevel, Location, Controlled From Documents Order By ID");
  add("ReleaseID, ManualID, CopyNumber From Personals Order By ReleaseID");
  for (const char* table : {"Users", "VeskProfiles", "VeskGroups", "Groups", "Manuals",
                            "ManualContents", "Keywords", "DocumentQuerys", "UserConfig"})
    add(std::string("* From ") + table);
  return out;
}

}  // namespace kv::test
