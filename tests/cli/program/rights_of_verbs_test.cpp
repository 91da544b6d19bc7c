// SPDX-License-Identifier: Apache-2.0
// docs/rights-of-verbs.md says which right each verb asks for. Every row of its table is carried
// out as it stands there.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>

#include "classes/relations/relation_errors.h"
#include "classes/relations/release_rights.h"
#include "classes/rights/rights.h"
#include "cli/program/program.h"
#include "cli/verb_register.h"
#include "support/test_server.h"

namespace kv {
namespace {

using Words = std::vector<std::string>;

struct NumberedRight {
  int number = 0;
  std::string text;
  bool ofRegister = false;  // which tests it itself and refuses in its own words
};

struct Row {
  std::string what;
  Words command;
  std::vector<NumberedRight> userRights;  // all of them are needed
  std::vector<NumberedRight> instead;     // each does in their place
  std::string forAdministrators;          // what others are told
  bool everyOwner = false;
  std::optional<NumberedRight> ownerRight;
};

Words partedBy(const std::string& text, const std::string& separator) {
  Words out;
  std::size_t from = 0;
  for (std::size_t at = 0; (at = text.find(separator, from)) != std::string::npos;
       from = at + separator.size())
    out.push_back(text.substr(from, at - from));
  out.push_back(text.substr(from));
  return out;
}

NumberedRight numbered(const std::string& text) {
  NumberedRight right;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), right.number);
  EXPECT_EQ(error, std::errc()) << text;
  right.ofRegister = *end == '*';
  right.text = std::string(end + (right.ofRegister ? 2 : 1));
  return right;
}

// What the register says to who does not hold a right that it tests itself.
LibraryError refusalFor(int right, bool ofManual) {
  static const std::map<int, LibraryError> others = {
      {urAddDocumentsToManualContents, kMayNotAddToManual},
      {urRemoveDocumentsFromManualContents, kMayNotRemoveFromManual},
      {urAssigndocumentowners, kMayNotChangeOwners},
      {urassigndocumentapprovers, kMayNotChangeApprovers}};
  for (const auto& kind : {ofManual ? kManualHardCopies : kDocumentHardCopies,
                           ofManual ? kManualLists : kDocumentLists}) {
    for (const auto& release : kind) {
      if (release.asAnyone == right) return release.refusal;
      if (release.ownList == right) return release.ownListRefusal;
    }
  }
  return others.at(right);
}

// What a row's command says to who does not hold its first right.
std::string refusalOf(const Row& row, const std::string& text) {
  if (row.userRights.empty() || !row.userRights.front().ofRegister) return test::denied(text);
  const bool ofManual =
      std::find(row.command.begin(), row.command.end(), "--manual") != row.command.end();
  const auto [code, source, description] = refusalFor(row.userRights.front().number, ofManual);
  return fmt::format("error {} ({}): {}\n", kErrorBase + code, source, description);
}

std::string bare(std::string cell) {
  cell.erase(0, cell.find_first_not_of(' '));
  cell.erase(cell.find_last_not_of(' ') + 1);
  return cell;
}

std::vector<Row> rowsOfTheTable() {
  std::istringstream lines(test::contents(KVVESK_SOURCE "/docs/rights-of-verbs.md"));
  std::vector<Row> rows;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("| ") || line.starts_with("| What |")) continue;
    Words cells = partedBy(line, "|");
    EXPECT_EQ(cells.size(), 6U) << line;
    for (auto& cell : cells) cell = bare(cell);
    Row row;
    row.what = cells[1];
    row.command = partedBy(cells[2].substr(1, cells[2].size() - 2), " ");
    EXPECT_EQ(row.command.front(), "kvvesk") << line;
    row.command.erase(row.command.begin());
    const std::string administrators = "Administrators: ";
    if (cells[3].starts_with(administrators))
      row.forAdministrators = cells[3].substr(administrators.size());
    else if (cells[3] != "Everybody")
      for (const auto& right : partedBy(cells[3], "<br>")) {
        if (right.starts_with("or "))
          row.instead.push_back(numbered(right.substr(3)));
        else
          row.userRights.push_back(numbered(right));
      }
    row.everyOwner = cells[4] == "Every owner";
    if (!row.everyOwner && !cells[4].empty()) row.ownerRight = numbered(cells[4]);
    rows.push_back(std::move(row));
  }
  return rows;
}

// Who carries out a row's command, and what he may do.
struct Attempt {
  std::string user = "Bert";
  std::vector<int> rights = {};
  std::vector<int> ownerRights = {};
  bool owner = false;
};

// What a right is asked for is the program's business and the same on every engine; some four
// hundred commands would take minutes on a server.
class RightsOfVerbs : public testing::Test {
 protected:
  void isDone(const Row& row, const Attempt& attempt) {
    const auto [outcome, changed] = carriedOut(row, attempt);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
  }
  void isRefused(const Row& row, const std::string& text, const Attempt& attempt) {
    const auto [outcome, changed] = carriedOut(row, attempt);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.err, refusalOf(row, text));
    EXPECT_EQ(outcome.out, "");
    EXPECT_FALSE(changed);
  }

 private:
  struct Result {
    test::Outcome outcome;
    bool changed;
  };

  // Bert, then Carla, are to approve the revision 910; each of them has an action.
  static void prepare(const test::VerbRegister& reg) {
    for (const char* sql :
         {"Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, ResponsibleID, "
          "RoutingStatus, RevisionStatus) Values (910, 'D1', 'Z', 'User903', 1, 3)",
          "Insert Into ApprovalRouting (RevID, UserID, ListOrder, ApprovalStatus) Values (910, "
          "'User902', 1, 0)",
          "Insert Into ApprovalRouting (RevID, UserID, ListOrder, ApprovalStatus) Values (910, "
          "'User903', 2, 0)",
          "Update VeskConfig Set DBID = 'DB1'",
          "Insert Into Actions (ActionID, AssigneeID, ReferenceID) Values (901, 'User902', 'DB1')",
          "Insert Into Actions (ActionID, AssigneeID, ReferenceID) Values (902, 'User903', 'DB1')",
          "Insert Into Groups (GroupID, GroupTitle) Values (5, 'Quality')",
          "Insert Into Keywords (FieldName, Keyword) Values ('DocUser2', 'Word')",
          "Insert Into UserQuerys (QueryID, QueryName) Values (1, 'Everybody')",
          "Insert Into ManualQuerys (QueryID, QueryName) Values (1, 'All manuals')",
          // Nobody has D1, which is in the handbook; Bert and Carla have D5, which is in the
          // binder. The leaflet is empty.
          "Insert Into Documents (ID, DocumentID, DocumentTitle, DocumentNumber, Controlled, "
          "CurrentRevID) Values (905, 'D5', 'Held', 'P-5', True, 905)",
          "Insert Into Revisions (RevisionID, DocumentID, RevisionLevel, RoutingStatus, "
          "RevisionStatus) Values (905, 'D5', 'A', 0, 1)",
          "Insert Into Manuals (ID, ManualID, ManualName) Values (901, 'M1', 'Handbook')",
          "Insert Into Manuals (ID, ManualID, ManualName) Values (902, 'M2', 'Binder')",
          "Insert Into Manuals (ID, ManualID, ManualName) Values (903, 'M3', 'Leaflet')",
          "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M1', 'D1', 1)",
          "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M2', 'D5', 1)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy) Values (901, "
          "'User903', 'D5', '0', True)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy) Values (902, "
          "'User902', 'D5', '0', False)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy) Values (903, "
          "'User903', 'D5', '0', False)",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber) "
          "Values (904, 'User903', 'D5', 'M2', True, '0001')",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber) "
          "Values (905, 'User902', 'D5', 'M2', False, '-1')",
          "Insert Into Personals (ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber) "
          "Values (906, 'User903', 'D5', 'M2', False, '-1')",
          "Insert Into Documents (ID, DocumentID, Controlled) Values (904, 'D4', True)",
          "Insert Into Routing (DocumentID, UserID, ListOrder) Values ('D4', 'User903', 1)",
          "Insert Into Routing (DocumentID, UserID, ListOrder) Values ('D4', 'User902', 2)"})
      reg.execute(sql);
  }

  Result carriedOut(const Row& row, const Attempt& attempt) {
    if (!reg_) {
      reg_ = std::make_unique<test::VerbRegister>();
      prepare(*reg_);
    }
    const auto& reg = *reg_;
    reg.setRights("User902", attempt.rights);
    reg.setOwnerRights(attempt.ownerRights);
    reg.execute("Delete * From Owners");
    reg.own("D4", "User903");
    if (attempt.owner)
      for (const char* document : {"D1", "D4", "D5"}) reg.own(document, "User902");
    const std::map<std::string, std::string> stand = {
        {"REGISTER", reg.path()},
        {"DOCUMENT", "D1"},
        {"LISTED", "D4"},
        {"REVISION", "902"},
        {"AWAITING", "910"},
        {"ACTION", "901"},
        {"ANOTHERS", "902"},
        {"QUERY", "Plans"},
        {"USERQUERY", "Everybody"},
        {"TEXT", "Text"},
        {"DATE", "2024-03-09"},
        {"COLUMN", "DocumentNumber"},
        {"FIELD", "Alias"},
        {"FILE", KVVESK_SOURCE "/README.md"},
        {"PLACE", reg.file("copied.kvv")},
        {"USER", "Carla"},
        {"SELF", attempt.user},
        {"GROUP", "Quality"},
        {"NUMBERS", "1-3"},
        {"OTHERS", "4"},
        {"KEY", "Revision"},
        {"WORD", "Word"},
        {"STATEMENT", "Select 1"},
        {"MANUAL", "Handbook"},
        {"EMPTY", "Leaflet"},
        {"HELD", "D5"},
        {"HELDMANUAL", "Binder"},
        {"RELEASE", "901"},
        {"MANUALQUERY", "All manuals"},
        {"MANUALFIELD", "ManUser1"},
        {"FOLDER", KVVESK_SOURCE "/examples/register"}};
    Words words;
    for (const auto& word : row.command) {
      const auto found = stand.find(word);
      words.push_back(found == stand.end() ? word : found->second);
    }
    words.insert(words.end(), {"--user", attempt.user});
    const auto before = reg.everything();
    auto outcome =
        test::run({.arguments = std::move(words), .environment = {{"KVVESK_NEW_PASSWORD", "new"}}});
    const bool changed = reg.everything() != before;
    // What a command has changed is not there for the next one. Making a register takes long on a
    // server, so one that is as it was serves again.
    if (changed || std::filesystem::exists(reg.file("copied.kvv"))) reg_.reset();
    return {std::move(outcome), changed};
  }

  std::unique_ptr<test::VerbRegister> reg_;
};

std::vector<int> allRights() {
  std::vector<int> all;
  for (int n = 1; n <= kLastUserRight; ++n) all.push_back(n);
  return all;
}

TEST_F(RightsOfVerbs, UserRightsAreAskedForAsTheTableSays) {
  for (const auto& row : rowsOfTheTable()) {
    SCOPED_TRACE(row.what);
    if (!row.forAdministrators.empty()) {
      isRefused(row, row.forAdministrators, {.rights = allRights(), .ownerRights = {}});
      isDone(row, {.user = "Anna"});
      continue;
    }
    std::vector<int> all;
    for (const auto& right : row.userRights) {
      EXPECT_EQ(right.text, userRightText(static_cast<std::int16_t>(right.number)));
      all.push_back(right.number);
    }
    isDone(row, {.rights = all});
    for (const auto& right : row.instead) {
      EXPECT_EQ(right.text, userRightText(static_cast<std::int16_t>(right.number)));
      isDone(row, {.rights = {right.number}});
    }
    if (!row.userRights.empty()) isRefused(row, row.userRights.front().text, {});
    if (row.userRights.size() < 2) continue;
    for (const auto& missing : row.userRights) {
      std::vector<int> others = allRights();
      std::erase(others, missing.number);
      isRefused(row, missing.text, {.rights = others});
    }
  }
}

TEST_F(RightsOfVerbs, NoOtherRightDoesInstead) {
  for (const auto& row : rowsOfTheTable()) {
    if (row.userRights.size() != 1) continue;
    SCOPED_TRACE(row.what);
    std::vector<int> others = allRights();
    std::erase(others, row.userRights.front().number);
    for (const auto& right : row.instead) std::erase(others, right.number);
    // Who holds it is an owner, with the rights of owners: none here.
    if (row.ownerRight || !row.everyOwner) std::erase(others, urActAsDocumentOwner);
    isRefused(row, row.userRights.front().text, {.rights = others});
  }
}

TEST_F(RightsOfVerbs, OwnersNeedTheOwnerRight) {
  std::vector<int> all;
  for (int n = 1; n <= orRemoveFromUserPersonal; ++n) all.push_back(n);
  for (const auto& row : rowsOfTheTable()) {
    SCOPED_TRACE(row.what);
    if (row.everyOwner) {
      isDone(row, {.owner = true});
    } else if (row.ownerRight) {
      const int number = row.ownerRight->number;
      const std::string& text = row.ownerRight->text;
      EXPECT_EQ(text, ownerRightText(static_cast<std::int16_t>(number)));
      isDone(row, {.ownerRights = {number}, .owner = true});
      isDone(row, {.rights = {urActAsDocumentOwner}, .ownerRights = {number}});
      std::vector<int> others = all;
      std::erase(others, number);
      isRefused(row, text, {.ownerRights = others, .owner = true});
      isRefused(row, row.userRights.front().text, {.ownerRights = all});
      isDone(row, {.rights = {row.userRights.front().number}, .owner = true});
    } else if (!row.userRights.empty()) {
      isRefused(row, row.userRights.front().text, {.ownerRights = all, .owner = true});
    }
  }
}

using Verbs = std::map<std::string, std::set<std::string>>;  // with their options

void addVerbs(const cli::CommandOutline& verb, Verbs& verbs) {
  for (const auto& part : verb.parts) addVerbs(part, verbs);
  if (!verb.parts.empty()) return;
  auto& options = verbs[verb.path];
  for (const auto& option : verb.options) options.insert(option.names.back());
}

TEST_F(RightsOfVerbs, NoVerbAndNoOptionIsMissing) {
  Verbs verbs;
  addVerbs(cli::programOutline(), verbs);
  verbs.erase("new");         // there is no register to ask yet
  verbs.erase("completion");  // it is about the program, not about a register
  Verbs paired;
  for (const auto& row : rowsOfTheTable()) {
    std::string verb = row.command[0];
    if (!verbs.contains(verb)) verb += " " + row.command[1];
    ASSERT_TRUE(verbs.contains(verb)) << verb;
    for (const auto& word : row.command)
      if (word.starts_with("--")) paired[verb].insert(word);
    paired[verb];
  }
  // Those that say who asks and how the answer looks.
  const std::set<std::string> common = {"--help", "--user", "--trace",
                                        "--csv",  "--json", "--jsonl"};
  EXPECT_GT(verbs.size(), 50U);
  for (const auto& [verb, options] : verbs) {
    ASSERT_TRUE(paired.contains(verb)) << verb;
    for (const auto& option : options)
      EXPECT_TRUE(common.contains(option) || paired[verb].contains(option))
          << verb << ' ' << option;
  }
}

}  // namespace
}  // namespace kv
