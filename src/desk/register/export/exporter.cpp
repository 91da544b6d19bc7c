// SPDX-License-Identifier: Apache-2.0
#include "desk/register/export/exporter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "common/convert.h"
#include "common/date.h"
#include "common/plain_text.h"
#include "common/text.h"
#include "common/whole_number.h"
#include "data/table_value.h"
#include "desk/register/export/places.h"
#include "desk/register/import/importer.h"

namespace kv::desk {

namespace {

constexpr std::string_view kUserWord = "User";
// Month, day, year, hour, minute and second at the end of an identifier, two digits each.
constexpr std::size_t kStamp = 12;
constexpr const char* kPlainCopy = "-1";
constexpr const char* kNoManual = "0";

std::string yesNo(const std::string& truth) { return truth == "true" ? "yes" : "no"; }

// The number of a place in a list; nothing where there is none.
std::string numbered(const char* form, const std::string& number) {
  const auto whole = wholeNumber(number);
  return whole ? fmt::format(fmt::runtime(form), *whole) : number;
}

// A number that is whole, as the import takes it.
bool isPlace(const std::string& order) {
  const auto number = wholeNumber(order);
  return number && *number >= 0 && *number <= 32767;
}

}  // namespace

// The rows of a statement, each value as text and by its column's name.
class Exporter::Rows {
 public:
  explicit Rows(Ref<Recordset> rs) : rs_(std::move(rs)) {}
  [[nodiscard]] bool next() {
    if (started_) rs_->MoveNext();
    started_ = true;
    return !rs_->Eof();
  }
  [[nodiscard]] std::string at(const char* column) const {
    return plainText(rs_->Fields(column)->Value());
  }

 private:
  Ref<Recordset> rs_;
  bool started_ = false;
};

Exporter::Rows Exporter::rows(const std::string& sql) const {
  return Rows(openOwn(database_, sql, kReadOnly));
}

void Exporter::write(const std::string& name, const Record& heading,
                     const std::vector<Record>& records) {
  CsvWriter file(folder_, name, heading);
  for (const auto& record : records) file.add(record);
  file.close();
  written_.emplace_back(name, records.size());
}

namespace {

// The key of an identifier; what leads nowhere stays as it is, and the import says so.
std::string keyOf(const std::map<std::string, std::string>& keys, const std::string& id) {
  const auto found = keys.find(id);
  return found == keys.end() ? id : found->second;
}

}  // namespace

std::string Exporter::userKey(const std::string& userId) const { return keyOf(users_, userId); }

std::string Exporter::documentKey(const std::string& documentId) const {
  return keyOf(documents_, documentId);
}

std::string Exporter::manualKey(const std::string& manualId) const {
  return keyOf(manuals_, manualId);
}

std::optional<Exporter::Recorded> Exporter::recorded(const std::string& documentId) const {
  if (documentId.size() <= kUserWord.size() + kStamp || !documentId.starts_with(kUserWord) ||
      !std::all_of(documentId.begin() + kUserWord.size(), documentId.end(), isDigit))
    return std::nullopt;
  const auto at = documentId.size() - kStamp;
  const auto by = users_.find(documentId.substr(0, at));
  if (by == users_.end()) return std::nullopt;
  const auto two = [&](std::size_t place) { return documentId.substr(at + 2 * place, 2); };
  // The century is not in the identifier, and whichever is taken makes the same one again.
  const auto moment =
      fmt::format("20{}-{}-{}T{}:{}:{}", two(2), two(0), two(1), two(3), two(4), two(5));
  if (!parseDate(moment)) return std::nullopt;
  return Recorded{by->second, moment};
}

Exporter::Written Exporter::run() {
  // Keys first: every file refers to the others.
  for (auto user = rows("Select ID, UserID From Users"); user.next();)
    users_.emplace(user.at("UserID"), numbered("user{:03}", user.at("ID")));
  users_[kFirstUserId] = kFirstUserKey;
  for (auto document = rows("Select ID, DocumentID, DocumentTitle From Documents");
       document.next();) {
    documents_.emplace(document.at("DocumentID"), numbered("D{:04}", document.at("ID")));
    titles_.emplace(document.at("DocumentID"), document.at("DocumentTitle"));
  }
  for (auto manual = rows("Select ID, ManualID From Manuals"); manual.next();)
    manuals_.emplace(manual.at("ManualID"), numbered("M{:04}", manual.at("ID")));
  writeWorkgroups();
  writeUsers();
  writeDocuments();
  writeRevisions();
  writeLists();
  writeApprovals();
  writeManuals();
  writeCopies();
  return written_;
}

void Exporter::writeWorkgroups() {
  std::vector<Record> records;
  for (auto group = rows("Select GroupID, GroupTitle From Groups Order By GroupID");
       group.next();) {
    workgroups_.emplace(group.at("GroupID"), group.at("GroupTitle"));
    records.push_back({group.at("GroupID"), group.at("GroupTitle")});
  }
  write("workgroups", {"workgroup_id", "workgroup"}, records);
}

void Exporter::writeUsers() {
  std::map<std::string, std::string> groups;
  for (auto profile = rows("Select UserID, GroupID From VeskProfiles"); profile.next();) {
    const auto title = workgroups_.find(profile.at("GroupID"));
    if (title != workgroups_.end()) groups.emplace(profile.at("UserID"), title->second);
  }
  std::vector<Record> records;
  for (auto user = rows("Select ID, UserID, UserName, Title, User02, User03 From Users Order By "
                        "ID");
       user.next();) {
    const std::string id = user.at("UserID");
    const auto day = parseDate(user.at("User02"));
    if (day) firstDays_[id] = isoText(*day);
    // Every register has its own.
    if (id == kFirstUserId) continue;
    const auto group = groups.find(id);
    records.push_back({userKey(id), user.at("UserName"),
                       group == groups.end() ? std::string() : group->second, user.at("Title"),
                       user.at("User03")});
  }
  write("users", {"user_id", "user_name", "workgroup", "title", "kind"}, records);
}

void Exporter::writeDocuments() {
  std::vector<Record> records;
  for (auto row = rows("Select * From Documents Order By ID"); row.next();) {
    const auto made = recorded(row.at("DocumentID"));
    const std::string current = row.at("CurrentRevID");
    records.push_back(
        {documentKey(row.at("DocumentID")), row.at("DocumentNumber"), row.at("DocumentTitle"),
         row.at("DocUser1"), row.at("DocUser2"), yesNo(row.at("Controlled")),
         yesNo(row.at("SecurityLevel")), row.at("RevisionLevel"), row.at("EffectiveDate"),
         current.empty() || current == "0" ? "" : numbered("R{:05}", current), row.at("Location"),
         row.at("DocUser3"), made ? made->moment : "", made ? made->by : "", row.at("DocUser4"),
         row.at("DocumentNotes"), made ? "" : row.at("DocumentID")});
  }
  write(
      "documents",
      {"document_key", "document_number", "title", "workgroup", "category", "controlled", "secured",
       "current_level", "effective_date", "current_revision", "location", "creation_date",
       "recorded", "recorded_by", "participating_groups", "notes", "document_id"},
      records);
}

// When a revision was recorded is not kept, only what was made of it: the day on which its
// approvers were told, and the first of all days for the user responsible for it.
void Exporter::writeRevisions() {
  const auto word = [&](const char* key) {
    return joinText(tableValue(database_, "VeskConfig", key));
  };
  const std::string revisionWord = word("Revision");
  const std::string documentWord = word("Document");
  std::map<std::pair<std::string, std::string>, std::string> told;  // the last of them
  for (auto action = rows("Select Reference, Description, DateOpened From Actions Where "
                          "ActionType = 1");
       action.next();) {
    auto& day = told[{action.at("Reference"), action.at("Description")}];
    day = std::max(day, action.at("DateOpened"));
  }
  std::vector<Record> records;
  for (auto row = rows("Select * From Revisions Order By RevisionID"); row.next();) {
    const std::string document = row.at("DocumentID");
    const std::string level = row.at("RevisionLevel");
    const auto title = titles_.find(document);
    const auto action =
        told.find({document, title == titles_.end()
                                 ? std::string()
                                 : approvalText(revisionWord, level, title->second, documentWord)});
    const auto first = firstDays_.find(row.at("ResponsibleID"));
    const auto made = recorded(document);
    // Any day does where nothing was made of it.
    std::string moment = made ? made->moment : "2000-01-01";
    const bool asked = action != told.end() && !action->second.empty();
    // Who decided before it was recorded was told on the day of the decision: no day that is later
    // than all of them changes what was made of it.
    if (asked && first != firstDays_.end())
      moment = std::max(action->second, first->second);
    else if (asked)
      moment = action->second;
    else if (first != firstDays_.end())
      moment = first->second;
    else if (const std::string effective = row.at("EffectiveDate"); !effective.empty())
      moment = effective;
    records.push_back({numbered("R{:05}", row.at("RevisionID")), documentKey(document), level,
                       row.at("EffectiveDate"), moment, row.at("RevisionStatus"),
                       row.at("RoutingStatus"), userKey(row.at("ResponsibleID")),
                       row.at("RevUser1"), row.at("RevUser2"), row.at("ChangeDescription")});
  }
  write("revisions",
        {"revision_key", "document_key", "level", "effective_date", "recorded", "revision_status",
         "routing_status", "responsible_user", "reference", "source_status", "change_description"},
        records);
}

void Exporter::writeLists() {
  std::vector<Record> records;
  for (auto row = rows("Select DocumentID, UserID From Owners"); row.next();)
    records.push_back({documentKey(row.at("DocumentID")), userKey(row.at("UserID"))});
  write("owners", {"document_key", "user_id"}, records);

  // An approver may stand at a fraction, or nowhere yet; where one does, the list is counted anew.
  records.clear();
  std::set<std::string> uneven;
  for (auto row = rows("Select DocumentID, ListOrder From Routing"); row.next();)
    if (!isPlace(row.at("ListOrder"))) uneven.insert(row.at("DocumentID"));
  std::map<std::string, int> places;
  for (auto row = rows("Select DocumentID, UserID, ListOrder From Routing Order By DocumentID, "
                       "ListOrder");
       row.next();) {
    const std::string document = row.at("DocumentID");
    records.push_back(
        {documentKey(document),
         uneven.contains(document) ? std::to_string(++places[document]) : row.at("ListOrder"),
         userKey(row.at("UserID"))});
  }
  std::stable_sort(records.begin(), records.end(),
                   [](const auto& a, const auto& b) { return a[0] < b[0]; });
  write("approvers", {"document_key", "list_order", "user_id"}, records);

  records.clear();
  for (auto row = rows("Select FieldName, Keyword From Keywords"); row.next();) {
    const std::string field = row.at("FieldName");
    records.push_back({field == "DocUser2"   ? "category"
                       : field == "RevUser2" ? "source_status"
                                             : field,
                       row.at("Keyword")});
  }
  write("keywords", {"field", "keyword"}, records);
}

void Exporter::writeApprovals() {
  std::map<std::string, std::string> documents;
  for (auto row = rows("Select RevisionID, DocumentID From Revisions"); row.next();)
    documents.emplace(row.at("RevisionID"), documentKey(row.at("DocumentID")));
  std::vector<Record> records;
  for (auto row = rows("Select * From ApprovalRouting"); row.next();) {
    const auto document = documents.find(row.at("RevID"));
    records.push_back({numbered("R{:05}", row.at("RevID")),
                       document == documents.end() ? std::string() : document->second,
                       row.at("ListOrder"), userKey(row.at("UserID")), row.at("ApprovalStatus"),
                       userKey(row.at("ApprovedBy")), row.at("DateApproved")});
  }
  write("approvals",
        {"revision_key", "document_key", "list_order", "user_id", "approval_status", "approved_by",
         "date_approved"},
        records);
}

void Exporter::writeManuals() {
  std::vector<Record> records;
  for (auto row = rows("Select * From Manuals Order By ID"); row.next();)
    records.push_back({manualKey(row.at("ManualID")), row.at("ManualName"), row.at("ManUser1"),
                       row.at("ManUser2"), row.at("ManUser3")});
  write("manuals",
        {"manual_key", "manual_name", "workgroup", "owned_documents", "participating_documents"},
        records);
  records.clear();
  std::vector<std::string> manuals;
  std::vector<std::string> places;
  for (auto row = rows("Select ManualID, DocumentID, [Position] From ManualContents Order By "
                       "ManualID, [Position]");
       row.next();) {
    manuals.push_back(row.at("ManualID"));
    places.push_back(row.at("Position"));
    records.push_back({manualKey(manuals.back()), "", documentKey(row.at("DocumentID"))});
  }
  evenPlaces(manuals, places);
  for (std::size_t row = 0; row < records.size(); ++row) records[row][1] = places[row];
  write("manual_contents", {"manual_key", "position", "document_key"}, records);
}

// A copy of a manual has a row for each of its documents: as many copies as one document has rows.
void Exporter::writeCopies() {
  std::vector<Record> records;
  std::map<Record, std::map<std::string, int>> seen;  // rows of each document in a copy like this
  std::map<Record, int> written;
  for (auto row = rows("Select * From Personals Order By ReleaseID"); row.next();) {
    const std::string kind = row.at("HardCopy") == "true" ? "hard" : "virtual";
    const std::string number = row.at("CopyNumber");
    const std::string manual = row.at("ManualID");
    if (manual == kNoManual) {
      records.push_back(
          {userKey(row.at("UserID")), "", documentKey(row.at("DocumentID")), kind, number});
      continue;
    }
    const bool plain = kind == "virtual" && number == kPlainCopy;
    const Record copy = {userKey(row.at("UserID")), manualKey(manual), "", kind,
                         plain ? std::string() : number};
    if (++seen[copy][row.at("DocumentID")] <= written[copy]) continue;
    ++written[copy];
    records.push_back(copy);
  }
  write("copies", {"user_id", "manual_key", "document_key", "kind", "copy_number"}, records);
}

}  // namespace kv::desk
