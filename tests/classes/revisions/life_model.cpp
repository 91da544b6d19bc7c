// SPDX-License-Identifier: Apache-2.0
#include "classes/revisions/life_model.h"

#include <fmt/format.h>

#include <algorithm>

namespace kv::test {

namespace {

enum Status { kOutOfDate, kCurrent, kBeingRevised, kAwaiting, kApproved, kRejected };
constexpr int kPending = 0;
constexpr int kNo = 2;

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// As it is joined into a text, and as it is stored again.
std::string joined(const Cell& cell) { return cell == kNothing ? "" : cell; }
Cell stored(const std::string& text) { return text.empty() ? kNothing : text; }

bool on(const std::string& settings, std::size_t n) {
  return n <= settings.size() && settings[n - 1] == '1';
}

// How many bytes the first `count` characters of a text take, and whether it has more.
std::pair<std::size_t, bool> firstCharacters(const std::string& text, int count) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool begins = (static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U;
    if (begins && count-- == 0) return {i, true};
  }
  return {text.size(), false};
}

}  // namespace

bool sameIdentifier(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

std::string LifeRevision::text() const {
  return fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}", id, document, level, user1, user2, change,
                     location, effective, responsible, turn, status);
}
std::string LifeApproval::text() const {
  return fmt::format("{}|{}|{}|{}|{}|{}", user, order, status, by, day, notes);
}
std::string LifeAction::text() const {
  return fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}", assigneeId, assignee, subject,
                     description, originator, originatorId, opened, due, completed, closed,
                     database, reference, type);
}
std::string LifeDocument::text() const {
  return fmt::format("{}|{}|{}|{}", title, level, effective, current);
}
std::string LifeCopy::text() const {
  return fmt::format("{}|{}|{}|{}", user, document, hard ? "True" : "False", revision);
}

bool LifeSettings::option(std::size_t n) const { return on(options, n); }
bool LifeSettings::ownersOverride() const {
  constexpr std::size_t kOverrideApproval = 18;
  return on(ownerRights, kOverrideApproval);
}

Cell LifeModel::day(int after) const {
  const std::chrono::year_month_day d(today + std::chrono::days(after));
  return fmt::format("{}/{}/{}", static_cast<unsigned>(d.month()), static_cast<unsigned>(d.day()),
                     static_cast<int>(d.year()));
}

Cell LifeModel::userName(const Cell& id) const {
  for (const auto& [key, user] : users)
    if (sameIdentifier(key, id)) return user.name;
  return kNothing;
}

const LifeApproval* LifeModel::turn(const LifeRevision& row) const {
  const auto found = approvals.find(row.id);
  if (found == approvals.end() || row.turn < 1 || row.turn > static_cast<int>(found->second.size()))
    return nullptr;
  return &found->second[static_cast<std::size_t>(row.turn) - 1];
}

// ---- actions ----

LifeModel::Signer LifeModel::signerOfApprovals() const {
  if (settings.originator == 1) return Signer::Originator;
  return settings.originator == 2 ? Signer::Actor : Signer::Nobody;
}

// The numbers mean the contrary here; a setting that is not given is nobody in both.
LifeModel::Signer LifeModel::signerOfReleases() const {
  if (settings.originator == 1) return Signer::Originator;
  return settings.originator == 0 ? Signer::Actor : Signer::Nobody;
}

LifeAction LifeModel::action(const LifeActor& actor, Signer signer) const {
  constexpr int kDaysToDoIt = 5;
  LifeAction out;
  out.originator = kNothing;
  out.originatorId = kNothing;
  if (signer == Signer::Originator) {
    out.originatorId = settings.originatorId;
    out.originator = userName(settings.originatorId);
  } else if (signer == Signer::Actor) {
    out.originatorId = actor.id;
    out.originator = actor.name;
  }
  out.opened = day();
  out.due = day(kDaysToDoIt);
  out.database = settings.database;
  return out;
}

void LifeModel::tell(const LifeActor& actor, const Cell& user, const std::string& subject,
                     const std::string& description, const Cell& reference) {
  LifeAction out = action(actor, signerOfApprovals());
  out.assigneeId = user;
  out.assignee = userName(user);
  out.subject = subject;
  out.description = description;
  out.reference = reference;
  sent.push_back(out);
}

std::vector<int> LifeModel::actionsOf(const std::string& user, bool closedToo) const {
  std::vector<int> out;
  for (const auto& [id, action] : actions)
    if (sameIdentifier(action.assigneeId, user) && settings.database != kNothing &&
        sameIdentifier(action.database, settings.database) &&
        (closedToo || action.closed == kNothing))
      out.push_back(id);
  return out;
}

// ---- routing ----

LifeAnswer LifeModel::route(const LifeActor& actor, LifeRevision* row) {
  sent.clear();
  happened = "route: revision gone";
  if (row == nullptr) return {kNoRow};
  auto& list = approvals[row->id];
  happened = list.empty() ? "route: first time" : "route: again";
  if (list.empty()) {
    list = lists[row->document];
  } else {
    for (auto& approval : list) approval.status = kPending;
  }
  row->turn = 1;
  row->status = kAwaiting;
  if (list.empty()) {
    row->status = kApproved;
    happened = "route: nobody to ask";
    return {};
  }
  tell(actor, list.front().user, "Your approval is required",
       joined(settings.revisionWord) + " " + joined(row->level) + " of the " +
           joined(documents[row->document].title) + " " + joined(settings.documentWord) +
           " requires your approval.",
       row->document);
  return {};
}

LifeAnswer LifeModel::notify(const LifeActor& actor, LifeRevision* row, bool send) {
  constexpr std::size_t kNotifyApproval = 7;
  constexpr std::size_t kSendActions = 8;
  sent.clear();
  happened = "notify: revision gone";
  if (row == nullptr) return {kNoRow};
  const auto& list = approvals[row->id];
  const std::string title = joined(documents[row->document].title);
  const std::string revision = joined(settings.revisionWord) + " " + joined(row->level);
  const std::string document = joined(settings.documentWord);
  const bool rejected =
      std::any_of(list.begin(), list.end(), [](const LifeApproval& a) { return a.status == kNo; });
  if (rejected) {
    row->status = kRejected;
    happened = "notify: rejected, nobody told";
    if (send && settings.option(kNotifyApproval)) {
      happened = "notify: rejected, told";
      tell(actor, row->responsible, "A revision has been rejected.",
           revision + " of " + document + " " + title + " has been rejected.",
           std::to_string(row->id));
    }
    return {};
  }
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (list[i].status != kPending) continue;
    row->turn = static_cast<int>(i) + 1;
    happened = "notify: next one, not told";
    if (send && settings.option(kNotifyApproval) && settings.option(kSendActions)) {
      happened = "notify: next one, told";
      tell(actor, list[i].user, "Your Approval is required.",
           "Your Approval is required for " + revision + " of the " + title + " " + document,
           std::to_string(row->id));
    }
    return {};
  }
  row->status = kApproved;
  happened = "notify: approved by all";
  return {};
}

// ---- deciding ----

LifeAnswer LifeModel::decide(const LifeActor& actor, LifeRevision* row, int decision,
                             const std::string& by, const std::string& approver, bool send) {
  constexpr std::size_t kInOrder = 10;
  sent.clear();
  happened = "decide: revision gone";
  if (row == nullptr) return {kNoRow};
  auto& list = approvals[row->id];
  LifeApproval* decided = nullptr;
  if (settings.option(kInOrder)) {
    happened = "decide: in order, nobody's turn";
    if (turn(*row) == nullptr) return {kNoRow};
    decided = &list[static_cast<std::size_t>(row->turn) - 1];
    happened = "decide: in order, another's turn";
    if (decided->user != approver) return {0, false};
    decided->by = stored(by);
    decided->day = day();
  } else {
    for (auto& approval : list)
      if (decided == nullptr && sameIdentifier(approval.user, approver)) decided = &approval;
    happened = "decide: any order, not on the list";
    if (decided == nullptr) return {kNoRow};
  }
  decided->status = decision;
  return notify(actor, row, send);
}

LifeAnswer LifeModel::canApprove(const LifeActor& actor, const std::string& user, int id,
                                 const std::string& approvingFor) {
  happened = "can: administrator";
  if (actor.administrator) return {};
  const auto found = revisions.find(id);
  happened = "can: revision gone";
  if (found == revisions.end()) return {0, false};
  happened = "can: not awaiting approval";
  const LifeRevision& row = found->second;
  if (row.status != kAwaiting) return {0, false};
  const bool owner = actor.ownsAll || owners.count({row.document, user}) > 0;
  happened = actor.ownsAll ? "can: acts as owner" : "can: owner";
  if (owner && settings.ownersOverride()) return {};
  happened = owner ? "can: owner without the override, for another" : "can: for another";
  if (approvingFor != user) return {0, false};
  const LifeApproval* waiting = turn(row);
  happened = "can: nobody's turn";
  if (waiting == nullptr) return {kNoRow};
  happened = waiting->user == user ? "can: own turn" : "can: another's turn";
  return {0, waiting->user == user};
}

void LifeModel::saveNotes(const std::string& notes, const std::string& user, int id) {
  happened = "notes: not on the list";
  for (auto& approval : approvals[id]) {
    if (!sameIdentifier(approval.user, user)) continue;
    approval.notes = stored(notes);
    happened = "notes: saved";
    return;
  }
}

// ---- in force ----

LifeAnswer LifeModel::setCurrent(const LifeActor& actor, LifeRevision* row, bool documentInSet,
                                 bool send) {
  constexpr std::size_t kNotifyVirtual = 4;
  constexpr std::size_t kNotifyHard = 6;
  constexpr std::size_t kSendActions = 8;
  constexpr int kLongestTitle = 60;
  constexpr int kKeptOfTitle = 58;
  sent.clear();
  happened = "current: revision gone";
  if (row == nullptr) return {kNoRow};
  happened = "current: document not in the set";
  if (!documentInSet) return {kDocumentNotThere};
  for (auto& [id, other] : revisions)
    if (other.status == kCurrent && sameIdentifier(other.document, row->document))
      other.status = kOutOfDate;
  LifeDocument& document = documents[row->document];
  row->status = kCurrent;
  row->effective = day();
  document.level = row->level;
  document.effective = day();
  document.current = std::to_string(row->id);
  keep(*row);

  happened = "current: nobody told";
  if (!send || !settings.option(kSendActions)) return {};
  std::set<std::string> holders;
  for (const auto& [release, copy] : copies)
    if (sameIdentifier(copy.document, row->document) &&
        settings.option(copy.hard ? kNotifyHard : kNotifyVirtual))
      for (const auto& [id, user] : users)
        if (sameIdentifier(id, copy.user)) holders.insert(id);
  const std::string title = joined(document.title);
  LifeAction out = action(actor, signerOfReleases());
  out.subject = title + " has been updated.";
  if (firstCharacters(title, kLongestTitle).second)
    out.subject =
        title.substr(0, firstCharacters(title, kKeptOfTitle).first) + "... has been updated.";
  out.description = joined(settings.revisionWord) + " " + joined(row->level) + " of " +
                    joined(settings.documentWord) + " " + title + " has been released.";
  out.reference = row->document;
  for (const auto& id : holders) {
    out.assigneeId = id;
    out.assignee = users[id].name;
    sent.push_back(out);
    happened = firstCharacters(title, kLongestTitle).second ? "current: holders told, long title"
                                                            : "current: holders told";
  }
  return {};
}

void LifeModel::keep(const LifeRevision& row) { revisions[row.id] = row; }

// ---- texts ----

std::string LifeModel::statusWith(const LifeRevision& row, const Cell& name) const {
  switch (row.status) {
    case kBeingRevised: return "Being Revised by " + joined(name);
    case kAwaiting: return "Awaiting Approval from " + joined(name);
    case kApproved: return "Approved";
    case kRejected: return "Rejected";
    default: return {};
  }
}

std::optional<std::string> LifeModel::loadedStatus(const LifeRevision& row) const {
  if (row.status == kOutOfDate) return "Out of date revision";
  if (row.status == kCurrent) return "Current Revision";
  Cell user = row.responsible;
  if (row.status == kAwaiting) {
    const auto list = approvals.find(row.id);
    if (list == approvals.end() || list->second.empty()) return "Awaiting Approval";
    if (turn(row) == nullptr) return std::nullopt;
    user = turn(row)->user;
  }
  const auto known = users.find(user);
  return statusWith(row, known == users.end() ? kNothing : known->second.profileName);
}

std::optional<std::string> LifeModel::listedStatus(const LifeRevision& row) const {
  if (row.status == kOutOfDate) return "Out of date " + joined(settings.revisionWord);
  if (row.status == kCurrent) return "Current " + joined(settings.revisionWord);
  Cell user = row.responsible;
  if (row.status == kAwaiting) {
    const auto list = approvals.find(row.id);
    if (list == approvals.end() || list->second.empty()) return "Awaiting Approval";
    if (turn(row) == nullptr) return std::nullopt;
    user = turn(row)->user;
  }
  return statusWith(row, userName(user));
}

}  // namespace kv::test
