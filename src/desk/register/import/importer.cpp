// SPDX-License-Identifier: Apache-2.0
#include "desk/register/import/importer.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "common/text_key.h"
#include "data/operation.h"
#include "data/profile.h"
#include "data/table_value.h"
#include "desk/register/import/user_fields.h"

namespace kv::desk {

namespace {

// An approver who is still to be named. It has no row among the users.
constexpr std::string_view kToBeDecided = "TBD";
// Users whose title begins with this word become administrators.
constexpr std::string_view kLead = "Lead";
constexpr std::array<std::size_t, 10> kViewerRights = {1, 10, 20, 30, 50, 70, 90, 130, 131, 133};
// Prompt to add a new keyword, verify deletions: what a new user starts with.
constexpr const char* kUserOptions = "0000110";
constexpr std::int32_t kMostStatus = 5;
constexpr std::int32_t kMostSmall = 32767;
constexpr std::int32_t kPending = 0;
constexpr std::int64_t kDaysToApprove = 5;
// The copy number of a manual that is on somebody's personal list.
constexpr const char* kVirtualCopy = "-1";
// The manual of a copy that came with no manual.
constexpr const char* kNoManual = "0";

std::string viewerRights() {
  std::string out(kRightsLength, '0');
  for (const auto right : kViewerRights) out[right - 1] = '1';
  return out;
}

std::string userIdOf(std::int32_t number) { return "User" + std::to_string(number); }

constexpr std::int64_t kSecond = 1000;

Date nextSecond(Date date) { return Date::fromMilliseconds(date.milliseconds() + kSecond); }

}  // namespace

std::string approvalText(const std::string& revisionWord, const std::string& level,
                         const std::string& title, const std::string& documentWord) {
  return fmt::format("{} {} of the {} {} requires your approval.", revisionWord, level, title,
                     documentWord);
}

struct Importer::Files {
  explicit Files(const std::string& folder, std::vector<Problem>& p)
      : users(folder, "users", {"user_id", "user_name", "workgroup", "title", "kind"}, p,
              "user_id"),
        workgroups(folder, "workgroups", {"workgroup_id", "workgroup"}, p, "workgroup"),
        documents(
            folder, "documents",
            {"document_key", "document_number", "title", "workgroup", "category", "controlled",
             "secured", "current_level", "effective_date", "current_revision", "location",
             "creation_date", "recorded", "recorded_by", "participating_groups", "notes"},
            p, "document_key"),
        revisions(folder, "revisions",
                  {"revision_key", "document_key", "level", "effective_date", "recorded",
                   "revision_status", "routing_status", "responsible_user", "reference",
                   "source_status", "change_description"},
                  p, "revision_key"),
        owners(folder, "owners", {"document_key", "user_id"}, p),
        approvers(folder, "approvers", {"document_key", "list_order", "user_id"}, p),
        approvals(folder, "approvals",
                  {"revision_key", "document_key", "list_order", "user_id", "approval_status",
                   "approved_by", "date_approved"},
                  p),
        manuals(folder, "manuals",
                {"manual_key", "manual_name", "workgroup", "owned_documents",
                 "participating_documents"},
                p, "manual_key"),
        contents(folder, "manual_contents", {"manual_key", "position", "document_key"}, p),
        copies(folder, "copies", {"user_id", "manual_key", "document_key", "kind", "copy_number"},
               p),
        keywords(folder, "keywords", {"field", "keyword"}, p) {}

  [[nodiscard]] std::array<const CsvTable*, 11> all() const {
    return {&users,     &workgroups, &documents, &revisions, &owners,  &approvers,
            &approvals, &manuals,    &contents,  &copies,    &keywords};
  }

  CsvTable users, workgroups, documents, revisions, owners, approvers, approvals, manuals, contents,
      copies, keywords;
};

std::size_t ImportReport::refused(const std::string& file) const {
  std::set<std::size_t> records;
  for (const auto& problem : problems)
    if (problem.file == file && problem.record > 1) records.insert(problem.record);
  return records.size();
}

Importer::Importer(Ref<kvConnection> connection, Date asOf, std::string userId,
                   ProgressCall progress)
    : connection_(std::move(connection)),
      asOf_(asOf),
      userId_(std::move(userId)),
      progress_(std::move(progress)) {}

ImportReport Importer::run(const std::string& folder) {
  const Files files(folder, report_.problems);
  files_ = &files;
  for (const auto* file : files.all()) {
    report_.read.emplace_back(file->name(), file->read());
    all_ += file->rows();
  }
  connection_->BeginTrans();
  try {
    // What is free now is so when it is written: others give new identifiers one after the other.
    lockRows(connection_, "VeskConfig");
    check(files);
    if (report_.problems.empty()) write(files);
    if (report_.problems.empty())
      connection_->CommitTrans();
    else
      connection_->RollbackTrans();
  } catch (...) {
    if (connection_->isOpen()) connection_->RollbackTrans();
    throw;
  }
  if (!report_.problems.empty()) report_.written.clear();
  return std::move(report_);
}

// ---- checking ----

void Importer::report(const CsvTable& file, std::size_t row, std::string reason) {
  report_.problems.push_back({file.name(), file.record(row), std::move(reason)});
}

std::int32_t Importer::keyNumber(const CsvTable& file, std::size_t row, std::string_view column) {
  const std::string& key = file.at(row, column);
  const auto digits = key.find_first_of("0123456789");
  const auto number = digits == std::string::npos
                          ? std::nullopt
                          : parseNumber(std::string_view(key).substr(digits));
  const bool plain =
      number &&
      std::all_of(key.begin() + static_cast<std::ptrdiff_t>(digits), key.end(), isDigit) &&
      *number >= 1 && *number <= 2147483647;
  if (plain) return static_cast<std::int32_t>(*number);
  report(file, row, fmt::format("'{}' in {} is not letters and a number", key, column));
  return 0;
}

std::int32_t Importer::smallNumber(const CsvTable& file, std::size_t row, std::string_view column,
                                   std::int32_t most) {
  const std::string& text = file.at(row, column);
  const auto number = parseNumber(text);
  if (number && *number >= 0 && *number <= most && *number == static_cast<std::int32_t>(*number))
    return static_cast<std::int32_t>(*number);
  report(file, row,
         fmt::format("'{}' in {} is not a whole number from 0 to {}", text, column, most));
  return 0;
}

bool Importer::yesNo(const CsvTable& file, std::size_t row, std::string_view column) {
  const std::string& text = file.at(row, column);
  if (text != "yes" && text != "no")
    report(file, row, fmt::format("{} is neither yes nor no", column));
  return text == "yes";
}

void Importer::requireDay(const CsvTable& file, std::size_t row, std::string_view column) {
  const std::string& text = file.at(row, column);
  if (!text.empty() && (text.size() != 10 || !parseIso(text)))
    report(file, row, fmt::format("'{}' in {} is not a day such as 2024-03-09", text, column));
}

std::string Importer::userOf(const CsvTable& file, std::size_t row, std::string_view column) {
  const std::string& key = file.at(row, column);
  if (key.empty() || key == kToBeDecided) return key;
  if (key == kFirstUserKey) return kFirstUserId;
  const auto known = users_.find(key);
  if (known != users_.end()) return userIdOf(known->second);
  if (dangles(files_->users, key))
    report(file, row, fmt::format("there is no user '{}' ({})", key, column));
  return {};
}

std::string Importer::requireUser(const CsvTable& file, std::size_t row, std::string_view column) {
  if (file.at(row, column).empty()) report(file, row, fmt::format("{} is empty", column));
  return userOf(file, row, column);
}

void Importer::requireWorkgroup(const CsvTable& file, std::size_t row) {
  const std::string& name = file.at(row, "workgroup");
  if (!name.empty() && !workgroups_.contains(name) && dangles(files_->workgroups, name))
    report(file, row, "there is no workgroup '" + name + "'");
}

void Importer::requireManual(const CsvTable& file, std::size_t row) {
  const std::string& key = file.at(row, "manual_key");
  if ((key.empty() || !manuals_.contains(key)) && dangles(files_->manuals, key))
    report(file, row, "there is no manual '" + key + "'");
}

const Importer::DocumentFacts* Importer::documentOf(const CsvTable& file, std::size_t row) {
  const std::string& key = file.at(row, "document_key");
  const auto known = documents_.find(key);
  if (known != documents_.end() && !key.empty()) return &known->second;
  if (dangles(files_->documents, key)) report(file, row, "there is no document '" + key + "'");
  return nullptr;
}

const Importer::RevisionFacts* Importer::revisionOf(const CsvTable& file, std::size_t row,
                                                    std::string_view column) {
  const std::string& key = file.at(row, column);
  const auto known = revisions_.find(key);
  if (known != revisions_.end() && !key.empty()) return &known->second;
  if (dangles(files_->revisions, key)) report(file, row, "there is no revision '" + key + "'");
  return nullptr;
}

bool Importer::dangles(const CsvTable& target, const std::string& key) {
  if (key.empty()) return true;
  if (target.readable()) return !target.leftOut(key);
  if (unchecked_.insert(target.name()).second)
    report_.problems.push_back(
        {target.name(), 0, "it was not read, so what refers to it was not checked"});
  return false;
}

void Importer::check(const Files& files) {
  checkUsers(files.users, files.workgroups);
  checkDocuments(files.documents);
  checkRevisions(files.revisions);
  checkCurrentRevisions(files.documents);
  checkManuals(files.manuals, files.copies);
  checkLinks(files);
}

void Importer::checkUsers(const CsvTable& users, const CsvTable& workgroups) {
  std::set<std::int32_t> numbers;
  for (std::size_t r = 0; r < workgroups.rows(); ++r) {
    const auto number = smallNumber(workgroups, r, "workgroup_id", 2147483647);
    if (number < 1) report(workgroups, r, "the number of a workgroup is 1 or more");
    if (!numbers.insert(number).second)
      report(workgroups, r, fmt::format("the number {} occurs twice", number));
    const std::string& name = workgroups.at(r, "workgroup");
    if (name.empty() || !workgroups_.emplace(name, number).second)
      report(workgroups, r, "the name '" + name + "' is empty or occurs twice");
  }
  numbers.clear();
  for (std::size_t r = 0; r < users.rows(); ++r) {
    const auto number = keyNumber(users, r, "user_id");
    const std::string& key = users.at(r, "user_id");
    const bool first = users_.emplace(key, number).second;
    if (number != 0 && (!first || !numbers.insert(number).second))
      report(users, r, "the key '" + key + "' occurs twice");
    userNames_[userIdOf(number)] = users.at(r, "user_name");
    requireWorkgroup(users, r);
  }
}

void Importer::checkDocuments(const CsvTable& documents) {
  // By what compares equal. Everything that refers to a document does so by its identifier.
  std::set<std::string> registered;
  const auto present =
      openOwn(connection_->database(), "Select DocumentID From Documents", kReadOnly);
  for (; !present->Eof(); present->MoveNext())
    registered.insert(foldKey(joinText(present->Fields(0)->Value())));
  std::set<std::string> taken = registered;
  std::set<std::int32_t> numbers;
  for (std::size_t r = 0; r < documents.rows(); ++r) {
    DocumentFacts facts;
    const auto number = keyNumber(documents, r, "document_key");
    if (number != 0 && !numbers.insert(number).second)
      report(documents, r, "the key '" + documents.at(r, "document_key") + "' occurs twice");
    facts.controlled = yesNo(documents, r, "controlled");
    (void)yesNo(documents, r, "secured");
    requireWorkgroup(documents, r);
    requireDay(documents, r, "effective_date");
    facts.title = documents.at(r, "title");
    facts.location = documents.at(r, "location");
    // The identifier is made as for a new document: who brought it in, and when. Two of one second
    // get two seconds.
    // A register that has others than these can say so.
    if (documents.has("document_id")) facts.documentId = documents.at(r, "document_id");
    if (!facts.documentId.empty()) {
      const std::string key = foldKey(facts.documentId);
      if (!taken.insert(key).second)
        report(documents, r,
               "the identifier '" + facts.documentId +
                   (registered.contains(key) ? "' is in the register already" : "' occurs twice"));
      if (!documents.at(r, "recorded_by").empty()) (void)userOf(documents, r, "recorded_by");
      documents_.emplace(documents.at(r, "document_key"), std::move(facts));
      continue;
    }
    const auto recorded = parseDate(documents.at(r, "recorded"));
    const std::string user = requireUser(documents, r, "recorded_by");
    if (!recorded) report(documents, r, "recorded is not a date and time");
    if (recorded && !user.empty()) {
      Date moment = *recorded;
      while (!taken.insert(foldKey(user + stampText(moment))).second) moment = nextSecond(moment);
      facts.documentId = user + stampText(moment);
    }
    // A refused document stays known, so that what refers to it is not refused for that.
    documents_.emplace(documents.at(r, "document_key"), std::move(facts));
  }
}

void Importer::checkRevisions(const CsvTable& revisions) {
  std::set<std::int32_t> numbers;
  for (std::size_t r = 0; r < revisions.rows(); ++r) {
    const auto number = keyNumber(revisions, r, "revision_key");
    if (number != 0 && !numbers.insert(number).second)
      report(revisions, r, "the key '" + revisions.at(r, "revision_key") + "' occurs twice");
    revisions_.emplace(revisions.at(r, "revision_key"), RevisionFacts{r, number});
    (void)documentOf(revisions, r);
    requireDay(revisions, r, "effective_date");
    if (!parseDate(revisions.at(r, "recorded")))
      report(revisions, r, "recorded is not a date and time");
    (void)smallNumber(revisions, r, "revision_status", kMostStatus);
    (void)smallNumber(revisions, r, "routing_status", kMostSmall);
    (void)userOf(revisions, r, "responsible_user");
  }
}

void Importer::checkCurrentRevisions(const CsvTable& documents) {
  for (std::size_t r = 0; r < documents.rows(); ++r) {
    const std::string& key = documents.at(r, "document_key");
    const std::string& current = documents.at(r, "current_revision");
    DocumentFacts& facts = documents_[key];
    if (documents.at(r, "controlled") == "no") {
      facts.currentRevision = 0;
      if (!current.empty())
        report(
            documents, r,
            fmt::format("the document is uncontrolled, yet '{}' is its current_revision", current));
      continue;
    }
    if (current.empty()) continue;
    const RevisionFacts* revision = revisionOf(documents, r, "current_revision");
    if (revision == nullptr) continue;
    facts.currentRevision = revision->number;
    const std::string& owner = files_->revisions.at(revision->row, "document_key");
    if (owner != key && documents_.contains(owner))
      report(
          documents, r,
          fmt::format("revision '{}' (current_revision) belongs to document '{}'", current, owner));
  }
}

void Importer::checkManuals(const CsvTable& manuals, const CsvTable& copies) {
  std::map<std::string, std::string> firstHolder;
  for (std::size_t r = 0; r < copies.rows(); ++r) {
    const std::string& manual = copies.at(r, "manual_key");
    const std::string& user = copies.at(r, "user_id");
    const auto known = users_.find(user);
    // Who does not exist is reported with the copy.
    if (!manual.empty())
      firstHolder.emplace(manual, known == users_.end() ? user : userIdOf(known->second));
  }
  Date moment = asOf_;
  for (std::size_t r = 0; r < manuals.rows(); ++r) {
    const std::string& key = manuals.at(r, "manual_key");
    (void)keyNumber(manuals, r, "manual_key");
    requireWorkgroup(manuals, r);
    const auto holder = firstHolder.find(key);
    const std::string user = holder == firstHolder.end() ? userId_ : holder->second;
    if (!manuals_.emplace(key, user + stampText(moment)).second)
      report(manuals, r, "the key '" + key + "' occurs twice");
    moment = nextSecond(moment);
  }
}

void Importer::checkLinks(const Files& files) {
  for (std::size_t r = 0; r < files.owners.rows(); ++r) {
    (void)documentOf(files.owners, r);
    (void)requireUser(files.owners, r, "user_id");
  }
  for (std::size_t r = 0; r < files.approvers.rows(); ++r) {
    (void)documentOf(files.approvers, r);
    (void)requireUser(files.approvers, r, "user_id");
    (void)smallNumber(files.approvers, r, "list_order", kMostSmall);
  }
  checkApprovals(files.approvals);
  for (std::size_t r = 0; r < files.contents.rows(); ++r) {
    requireManual(files.contents, r);
    (void)documentOf(files.contents, r);
    if (!parseNumber(files.contents.at(r, "position")))
      report(files.contents, r, "position is not a number");
  }
  for (std::size_t r = 0; r < files.copies.rows(); ++r) {
    (void)requireUser(files.copies, r, "user_id");
    const bool ofManual = !files.copies.at(r, "manual_key").empty();
    if (ofManual == !files.copies.at(r, "document_key").empty()) {
      report(files.copies, r, "a copy is of a manual or of a document");
    } else if (ofManual) {
      requireManual(files.copies, r);
    } else {
      (void)documentOf(files.copies, r);
    }
    const std::string& kind = files.copies.at(r, "kind");
    if (kind != "hard" && kind != "virtual")
      report(files.copies, r, "kind is neither hard nor virtual");
  }
}

void Importer::checkApprovals(const CsvTable& approvals) {
  for (std::size_t r = 0; r < approvals.rows(); ++r) {
    const RevisionFacts* revision = revisionOf(approvals, r, "revision_key");
    // The revision says which document it is of; who names one as well must name the same.
    const std::string& document = approvals.at(r, "document_key");
    if (!document.empty() && documentOf(approvals, r) != nullptr && revision != nullptr) {
      const std::string& owner = files_->revisions.at(revision->row, "document_key");
      if (owner != document && documents_.contains(owner))
        report(approvals, r,
               fmt::format("revision '{}' belongs to document '{}', not to '{}' (document_key)",
                           approvals.at(r, "revision_key"), owner, document));
    }
    (void)requireUser(approvals, r, "user_id");
    (void)userOf(approvals, r, "approved_by");
    (void)smallNumber(approvals, r, "list_order", kMostSmall);
    (void)smallNumber(approvals, r, "approval_status", 2);
    requireDay(approvals, r, "date_approved");
  }
}

// ---- writing ----

void Importer::put(const CsvTable& file, std::size_t row, const Insert& insert) {
  putAlso(file, row, insert);
  if (progress_) progress_(++done_, all_, file.name());
}

void Importer::putAlso(const CsvTable& file, std::size_t row, const Insert& insert) {
  if (!report_.problems.empty()) return;
  try {
    insert.run(*connection_);
  } catch (const Error& e) {
    // A full disk is no fault of the row.
    if (e.number() == kEngineFailure && !connection_->database()->engine().inTransaction()) throw;
    report(file, row, e.description());
    return;
  }
  auto& written = report_.written;
  const auto known = std::find_if(written.begin(), written.end(),
                                  [&](const auto& entry) { return entry.first == insert.table(); });
  if (known == written.end())
    written.emplace_back(insert.table(), 1);
  else
    ++known->second;
}

void Importer::write(const Files& files) {
  prepareFields(connection_);
  writeWorkgroups(files.workgroups);
  writeUsers(files.users, files);
  writeDocuments(files.documents);
  writeRevisions(files.revisions);
  writeLists(files);
  writeManuals(files);
  writeCopies(files);
  writeActions(files);
}

void Importer::writeWorkgroups(const CsvTable& workgroups) {
  for (std::size_t r = 0; r < workgroups.rows(); ++r) {
    // Two tables, each with readers of its own.
    for (const char* table : {"VeskGroups", "Groups"}) {
      Insert insert(table);
      insert.number("GroupID", workgroups_[workgroups.at(r, "workgroup")])
          .text("GroupTitle", workgroups.at(r, "workgroup"))
          .text("Rights", viewerRights());
      if (table == std::string_view("Groups"))
        put(workgroups, r, insert);
      else
        putAlso(workgroups, r, insert);
    }
  }
}

void Importer::writeUsers(const CsvTable& users, const Files& files) {
  std::map<std::string, std::int32_t> owned;
  for (std::size_t r = 0; r < files.owners.rows(); ++r) ++owned[files.owners.at(r, "user_id")];
  std::map<std::string, std::string> firstRevision;
  for (std::size_t r = 0; r < files.revisions.rows(); ++r) {
    const std::string day = isoText(parseDate(files.revisions.at(r, "recorded"))->day());
    auto& first = firstRevision[files.revisions.at(r, "responsible_user")];
    if (first.empty() || day < first) first = day;
  }
  for (std::size_t r = 0; r < users.rows(); ++r) {
    const std::string& key = users.at(r, "user_id");
    const std::int32_t number = users_[key];
    const std::string& group = users.at(r, "workgroup");
    const bool lead = users.at(r, "title").starts_with(kLead);
    put(users, r,
        Insert("Users")
            .number("ID", number)
            .text("UserID", userIdOf(number))
            .text("UserName", users.at(r, "user_name"))
            .text("Title", users.at(r, "title"))
            .text("User00", group)
            .number("User01", owned[key])
            .date("User02", firstRevision[key])
            .text("User03", users.at(r, "kind")));
    putAlso(users, r,
            Insert("VeskProfiles")
                .text("UserID", userIdOf(number))
                .text("UserName", users.at(r, "user_name"))
                .number("GroupID", group.empty() ? 0 : workgroups_[group])
                .text("Rights", lead ? std::string(kRightsLength, '1') : viewerRights())
                .text("UserOptions", kUserOptions)
                .truth("Administrator", lead));
  }
}

void Importer::writeDocuments(const CsvTable& documents) {
  for (std::size_t r = 0; r < documents.rows(); ++r) {
    const auto text = [&](std::string_view column) -> const std::string& {
      return documents.at(r, column);
    };
    const DocumentFacts& facts = documents_[text("document_key")];
    Insert insert("Documents");
    insert.number("ID", keyNumber(documents, r, "document_key"))
        .text("DocumentID", facts.documentId)
        .text("DocumentTitle", facts.title)
        .text("DocumentNumber", text("document_number"))
        .text("RevisionLevel", text("current_level"))
        .date("EffectiveDate", text("effective_date"))
        .text("DocUser1", text("workgroup"))
        .text("DocUser2", text("category"))
        .text("DocUser3", text("creation_date"))
        .text("DocUser4", text("participating_groups"))
        .text("DocumentNotes", text("notes"))
        .truth("SecurityLevel", text("secured") == "yes")
        .text("Location", facts.location)
        .truth("Controlled", facts.controlled);
    if (facts.currentRevision)
      insert.number("CurrentRevID", *facts.currentRevision);
    else
      insert.null("CurrentRevID");
    put(documents, r, insert);
  }
}

void Importer::writeRevisions(const CsvTable& revisions) {
  for (std::size_t r = 0; r < revisions.rows(); ++r) {
    const auto text = [&](std::string_view column) -> const std::string& {
      return revisions.at(r, column);
    };
    const DocumentFacts& document = documents_[text("document_key")];
    put(revisions, r,
        Insert("Revisions")
            .number("RevisionID", keyNumber(revisions, r, "revision_key"))
            .text("DocumentID", document.documentId)
            .text("RevisionLevel", text("level"))
            .text("RevUser1", text("reference"))
            .text("RevUser2", text("source_status"))
            .text("ChangeDescription", text("change_description"))
            .text("Location", document.location)
            .date("EffectiveDate", text("effective_date"))
            .text("ResponsibleID", userOf(revisions, r, "responsible_user"))
            .number("RoutingStatus", smallNumber(revisions, r, "routing_status", kMostSmall))
            .number("RevisionStatus", smallNumber(revisions, r, "revision_status", kMostStatus)));
  }
}

void Importer::writeLists(const Files& files) {
  for (std::size_t r = 0; r < files.owners.rows(); ++r)
    put(files.owners, r,
        Insert("Owners")
            .text("DocumentID", documentOf(files.owners, r)->documentId)
            .text("UserID", userOf(files.owners, r, "user_id")));
  for (std::size_t r = 0; r < files.approvers.rows(); ++r)
    put(files.approvers, r,
        Insert("Routing")
            .text("DocumentID", documentOf(files.approvers, r)->documentId)
            .text("UserID", userOf(files.approvers, r, "user_id"))
            .number("ListOrder", smallNumber(files.approvers, r, "list_order", kMostSmall)));
  const auto& approvals = files.approvals;
  for (std::size_t r = 0; r < approvals.rows(); ++r) {
    put(approvals, r,
        Insert("ApprovalRouting")
            .number("RevID", revisions_[approvals.at(r, "revision_key")].number)
            .text("UserID", userOf(approvals, r, "user_id"))
            .number("ListOrder", smallNumber(approvals, r, "list_order", kMostSmall))
            .number("ApprovalStatus", smallNumber(approvals, r, "approval_status", 2))
            .text("ApprovedBy", userOf(approvals, r, "approved_by"))
            .date("DateApproved", approvals.at(r, "date_approved")));
  }
  // The fields of the format that have keywords, by the columns they are kept in.
  const std::map<std::string, std::string> fields = {{"category", "DocUser2"},
                                                     {"source_status", "RevUser2"}};
  for (std::size_t r = 0; r < files.keywords.rows(); ++r) {
    const std::string& field = files.keywords.at(r, "field");
    const auto known = fields.find(field);
    put(files.keywords, r,
        Insert("Keywords")
            .text("FieldName", known == fields.end() ? field : known->second)
            .text("Keyword", files.keywords.at(r, "keyword")));
  }
}

void Importer::writeManuals(const Files& files) {
  const auto& manuals = files.manuals;
  for (std::size_t r = 0; r < manuals.rows(); ++r)
    put(manuals, r,
        Insert("Manuals")
            .number("ID", keyNumber(manuals, r, "manual_key"))
            .text("ManualID", manuals_[manuals.at(r, "manual_key")])
            .text("ManualName", manuals.at(r, "manual_name"))
            .text("ManUser1", manuals.at(r, "workgroup"))
            .text("ManUser2", manuals.at(r, "owned_documents"))
            .text("ManUser3", manuals.at(r, "participating_documents")));
  const auto& contents = files.contents;
  for (std::size_t r = 0; r < contents.rows(); ++r) {
    Insert insert("ManualContents");
    insert.text("ManualID", manuals_[contents.at(r, "manual_key")])
        .text("DocumentID", documentOf(contents, r)->documentId)
        .real("Position", *parseNumber(contents.at(r, "position")));
    put(contents, r, insert);
  }
}

void Importer::writeCopies(const Files& files) {
  // The documents of each manual, in the order of their places.
  std::map<std::string, std::vector<std::pair<double, std::string>>> contents;
  for (std::size_t r = 0; r < files.contents.rows(); ++r)
    contents[files.contents.at(r, "manual_key")].emplace_back(
        *parseNumber(files.contents.at(r, "position")), files.contents.at(r, "document_key"));
  for (auto& [manual, places] : contents)
    std::stable_sort(places.begin(), places.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
  const auto& copies = files.copies;
  for (std::size_t r = 0; r < copies.rows(); ++r) {
    const bool hard = copies.at(r, "kind") == "hard";
    const std::string& manual = copies.at(r, "manual_key");
    const auto row = [&](const DocumentFacts& document, const std::string& number) {
      return Insert("Personals")
          .text("UserID", userOf(copies, r, "user_id"))
          .text("DocumentID", document.documentId)
          .text("ManualID", manual.empty() ? kNoManual : manuals_[manual])
          .truth("HardCopy", hard)
          .text("CopyNumber", number)
          .number("RevisionID", document.currentRevision.value_or(0));
    };
    const std::string& number = copies.at(r, "copy_number");
    if (manual.empty()) {
      put(copies, r, row(*documentOf(copies, r), number));
      continue;
    }
    for (const auto& [position, key] : contents[manual])
      putAlso(copies, r, row(documents_[key], hard || !number.empty() ? number : kVirtualCopy));
    if (progress_) progress_(++done_, all_, copies.name());
  }
}

// What the approvers were told: one action for each decision, closed on its day, and one for
// whoever's turn it is.
void Importer::writeActions(const Files& files) {
  const auto& database = connection_->database();
  const std::string name = joinText(tableValue(database, "VeskConfig", "DBID"));
  const std::string revisionWord = joinText(tableValue(database, "VeskConfig", "Revision"));
  const std::string documentWord = joinText(tableValue(database, "VeskConfig", "Document"));
  const auto& approvals = files.approvals;
  const auto order = [&](std::size_t r) {
    return smallNumber(approvals, r, "list_order", kMostSmall);
  };
  const auto isPending = [&](std::size_t r) {
    return smallNumber(approvals, r, "approval_status", 2) == kPending;
  };
  // The pending row of each revision that comes first in the list; of equals, the first in the
  // file.
  std::map<std::string, std::size_t> turns;
  for (std::size_t r = 0; r < approvals.rows(); ++r) {
    if (!isPending(r)) continue;
    const auto turn = turns.emplace(approvals.at(r, "revision_key"), r).first;
    if (order(r) < order(turn->second)) turn->second = r;
  }
  for (std::size_t r = 0; r < approvals.rows(); ++r) {
    const std::string& key = approvals.at(r, "revision_key");
    if (isPending(r) && turns[key] != r) continue;
    const auto revision = revisions_[key].row;
    const DocumentFacts& document = *documentOf(files.revisions, revision);
    const std::string assignee = userOf(approvals, r, "user_id");
    const std::string originator = userOf(files.revisions, revision, "responsible_user");
    const std::string& decided = approvals.at(r, "date_approved");
    Date opened = parseDate(files.revisions.at(revision, "recorded"))->day();
    if (!decided.empty()) opened = std::min(opened, *parseIso(decided));
    putAlso(
        approvals, r,
        Insert("Actions")
            .text("AssigneeID", assignee)
            .text("Assignee", userNames_[assignee])
            .text("Subject", "Your approval is required")
            .text("Description", approvalText(revisionWord, files.revisions.at(revision, "level"),
                                              document.title, documentWord))
            .text("Originator", userNames_[originator])
            .text("OriginatorID", originator)
            .date("DateOpened", isoText(opened))
            .date("DateDue", isoText(opened.plusDays(kDaysToApprove)))
            .date("DateCompleted", decided)
            .date("DateClosed", decided)
            .text("ReferenceID", name)
            .text("Reference", document.documentId)
            .number("ActionType", 1));
  }
}

}  // namespace kv::desk
