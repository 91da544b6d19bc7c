// SPDX-License-Identifier: Apache-2.0
#include "classes/relations/relation_model.h"

#include <algorithm>
#include <cmath>

namespace kv::test {

namespace {

constexpr std::int32_t kBase = -2147221504;
constexpr std::int32_t kNoCurrentRow = 3021;
constexpr double kPlaceOfNew = 100;

// Rights by number.
constexpr int kActAsOwner = 40;
constexpr int kAddToManual = 100;
constexpr int kRemoveFromManual = 101;
constexpr int kReleaseDocument = 102;
constexpr int kCollectDocument = 103;
constexpr int kReleaseManual = 104;
constexpr int kCollectManual = 105;
constexpr int kAssignOwners = 106;
constexpr int kAssignApprovers = 107;
constexpr int kDocumentToOthers = 108;
constexpr int kManualToOthers = 109;
constexpr int kDocumentFromOthers = 110;
constexpr int kManualFromOthers = 111;
constexpr int kToOwnList = 130;
constexpr int kFromOwnList = 131;

// What owners of a document may do, by number.
constexpr int kOwnersAddToManual = 10;
constexpr int kOwnersRemoveFromManual = 11;
constexpr int kOwnersRelease = 12;
constexpr int kOwnersCollect = 13;
constexpr int kOwnersChangeOwners = 15;
constexpr int kOwnersChangeApprovers = 16;
constexpr int kOwnersAddToList = 20;
constexpr int kOwnersRemoveFromList = 21;

bool isOn(const std::string& settings, int place) {
  const auto before = static_cast<std::size_t>(place) - 1;
  return before < settings.size() && settings[before] == '1';
}

bool isBlank(const std::string& text) { return text.find_first_not_of(' ') == std::string::npos; }

// The digits at the end count one further; their leading zeros go.
std::string oneFurther(const std::string& number) {
  const auto last = number.find_last_not_of("0123456789");
  const std::size_t digits = last == std::string::npos ? 0 : last + 1;
  const std::string tail = number.substr(digits);
  return number.substr(0, digits) + std::to_string(tail.empty() ? 1 : std::stoll(tail) + 1);
}

std::vector<std::pair<std::optional<double>, std::string>> inOrder(const Places& places) {
  std::vector<std::pair<std::optional<double>, std::string>> out;
  for (const auto& [id, place] : places) out.emplace_back(place, id);
  std::sort(out.begin(), out.end());  // those without a place come first
  return out;
}

// 100 divided among them, in whole numbers.
int wholeStep(std::size_t among) {
  const double exact = 100.0 / static_cast<double>(among);
  const double below = std::floor(exact);
  const double rest = exact - below;
  const bool up = rest > 0.5 || (rest == 0.5 && static_cast<int>(below) % 2 == 1);
  return static_cast<int>(below) + (up ? 1 : 0);
}

}  // namespace

bool RelationActor::has(int right) const { return administrator || isOn(rights, right); }

std::string RelationAnswer::text() const {
  return number == 0 ? "done"
                     : "raised " + std::to_string(number) + " by " + source + ": " + description;
}

std::string Holding::text() const {
  return user + "|" + document + "|" + manual + "|" + (hard ? "True" : "False") + "|" + copy + "|" +
         revision;
}

RelationAnswer RelationModel::done(const std::string& what) {
  happened = what;
  return {};
}
RelationAnswer RelationModel::refused(const std::string& what, std::int32_t code,
                                      const std::string& source, const std::string& description) {
  happened = what + ": " + std::to_string(code);
  return {kBase + code, source, description};
}
RelationAnswer RelationModel::noRow(const std::string& what) {
  happened = what + ": no row";
  return {kNoCurrentRow, "", ""};
}

bool RelationModel::userIsOwner(const RelationActor& actor, const std::string& user,
                                const std::string& document) const {
  return owners.contains({document, user}) || actor.has(kActAsOwner);
}
bool RelationModel::ownersMay(const RelationActor& actor, int ownerRight) const {
  return actor.administrator || isOn(ownerRights, ownerRight);
}
bool RelationModel::asOwner(const RelationActor& actor, const std::string& document,
                            int ownerRight) const {
  return userIsOwner(actor, actor.id, document) && ownersMay(actor, ownerRight);
}
bool RelationModel::isControlled(const std::string& document) const {
  const auto found = documents.find(document);
  return found != documents.end() && found->second.controlled;
}
bool RelationModel::hasRevision(const std::string& document) const {
  const auto found = documents.find(document);
  return found != documents.end() && found->second.revision != kNullCell &&
         std::stoi(found->second.revision) > 0;
}

void RelationModel::renumber(Places& places, double first, double step) {
  double place = 0;
  int row = 0;
  std::optional<double> before;
  std::vector<std::string> group;
  const auto close = [&] {
    if (group.size() > 1) ties.push_back(group);
    group.clear();
  };
  for (const auto& [old, id] : inOrder(places)) {
    if (row > 0 && old != before) close();
    group.push_back(id);
    before = old;
    place = first + row * step;
    places[id] = place;
    ++row;
  }
  close();
}

RelationAnswer RelationModel::documentManual(const RelationActor& actor, const std::string& manual,
                                             const std::string& document, bool remove) {
  const std::string what = remove ? "out of a manual" : "into a manual";
  const std::string source = "DocumentManualRelation";
  affected = 0;
  const bool byRight = actor.has(remove ? kRemoveFromManual : kAddToManual);
  if (!byRight && !asOwner(actor, document, remove ? kOwnersRemoveFromManual : kOwnersAddToManual))
    return remove ? refused(what, 2528, source,
                            "Unable to remove document from manual due to user access restrictions")
                  : refused(what, 2529, source,
                            "Unable to add document to manual due to user access restrictions");
  if (!isControlled(document))
    return refused(what, 2513, source,
                   "This Document is uncontrolled.  Only Controlled documents may be added to a "
                   "manual.");
  if (!hasRevision(document))
    return refused(what, 2514, source,
                   "Only Documents with a current revision may be added to a manual");
  Places& places = contents[manual];
  const std::string how = byRight ? " by right" : " as owner";
  if (remove) {
    if (places.erase(document) == 0)
      return refused(what, 2507, source, "The Document is not part of the manual");
    affected = static_cast<int>(std::erase_if(holdings, [&](const auto& row) {
      return row.second.manual == manual && row.second.document == document;
    }));
    return done(what + how);
  }
  if (places.contains(document))
    return refused(what, 2506, source, "The Document is already in this manual");
  places[document] = kPlaceOfNew;
  std::set<std::string> seen;
  for (const auto& [release, held] : holdings) {
    if (held.manual != manual) continue;
    Holding line = held;
    line.document = document;
    line.revision = documents[document].revision;
    if (seen.insert(line.text()).second) added.push_back(line);
  }
  affected = static_cast<int>(added.size());
  return done(what + how + (added.empty() ? ", nobody holds it" : ", held"));
}

RelationAnswer RelationModel::owns(const RelationActor& actor, const std::string& document,
                                   const std::string& user, bool remove) {
  const std::string what = remove ? "owner removed" : "owner added";
  const bool byRight = actor.has(kAssignOwners);
  if (!byRight && !asOwner(actor, document, kOwnersChangeOwners))
    return refused(what, 2530, "OwnsRelation",
                   "Unable to add user to documents owner list due to user access restrictions");
  if (remove) {
    if (owners.erase({document, user}) == 0)
      return refused(what, 2509, "OwnsRelation", "This user is not an owner of this document");
  } else if (!owners.insert({document, user}).second) {
    return refused(what, 2508, "OwnsReleation", "This user is already an owner of this document");
  }
  return done(what + (byRight ? " by right" : " as owner"));
}

RelationAnswer RelationModel::approves(const RelationActor& actor, const std::string& document,
                                       const std::string& user, bool remove) {
  const std::string what = remove ? "approver removed" : "approver added";
  const std::string source = "ApprovesRelation";
  const bool owner = asOwner(actor, document, kOwnersChangeApprovers);
  if (!owner && !actor.has(kAssignApprovers))
    return refused(what, 2532, source,
                   "You do not have the right to assign or remove approvers for this document");
  if (!isControlled(document))
    return refused(
        what, 2511, source,
        "This document is uncontrolled.  Only controlled documents have approval lists.)");
  Places& list = routing[document];
  if (remove) {
    if (list.erase(user) == 0)
      return refused(what, 2512, source, "This user is not in the approval list for this document");
  } else if (!list.emplace(user, std::nullopt).second) {
    return refused(what, 2510, source,
                   "This user is already in the approval list for this document");
  }
  return done(what + (owner ? " as owner" : " by right"));
}

RelationAnswer RelationModel::documentUser(const RelationActor& actor, std::string document,
                                           const std::string& user, bool hard, bool remove,
                                           int release) {
  const std::string source = "DocumentUserRelation";
  const std::string what = std::string("document ") + (remove ? "taken back" : "given") +
                           (hard ? ", hard" : ", virtual");
  const auto row = holdings.find(release);
  if (remove && document.empty() && row != holdings.end()) document = row->second.document;

  int ownerRight = remove ? kOwnersCollect : kOwnersRelease;
  int right = remove ? kCollectDocument : kReleaseDocument;
  if (!hard) {
    ownerRight = remove ? kOwnersRemoveFromList : kOwnersAddToList;
    right = remove ? kDocumentFromOthers : kDocumentToOthers;
  }
  std::string how = " as owner";
  if (!asOwner(actor, document, ownerRight)) {
    how = " by right";
    if (!actor.has(right)) {
      const std::string no = "You do not have the right to ";
      if (hard)
        return refused(
            what, 2531, source,
            no + (remove ? "collect documents from users" : "release documents to users"));
      const std::string verb = remove ? "remove documents from " : "add documents to ";
      if (user != actor.id)
        return refused(what + ", another's", 2531, source,
                       no + verb + "other user's personal lists");
      if (!actor.has(remove ? kFromOwnList : kToOwnList))
        return refused(what + ", own", 2531, source, no + verb + "your personal list");
      how = " on the own list";
    }
  }
  if (!isBlank(document)) {
    if (!isControlled(document))
      return refused(what, 2515, source,
                     "This is an uncontrolled document.  Only controlled documents may be released "
                     "to users");
    if (!hasRevision(document))
      return refused(what, 2516, source,
                     "Only Documents with a current revision may be released to users.");
  }
  if (remove) {
    if (release == 0)
      return refused(what, 2518, source, "Unable to return released document without ReleaseID");
    if (row == holdings.end())
      return refused(what, 2517, source, "That release is no longer present in system");
    holdings.erase(row);
    return done(what + how);
  }
  if (!hard && std::any_of(holdings.begin(), holdings.end(), [&](const auto& other) {
        return other.second.document == document && other.second.user == user &&
               other.second.manual == "0" && !other.second.hard;
      }))
    return refused(what, 2519, source, "This document is already in this users personal list");
  added.push_back({user, document, "0", hard, kNullCell, documents[document].revision});
  return done(what + how);
}

RelationAnswer RelationModel::manualUser(const RelationActor& actor, const std::string& manual,
                                         const std::string& user, bool hard,
                                         const std::string& copy, bool remove) {
  const std::string source = "ManualUserRelation";
  const std::string what =
      std::string("manual ") + (remove ? "taken back" : "given") + (hard ? ", hard" : ", virtual");
  int right = remove ? kCollectManual : kReleaseManual;
  if (!hard) right = remove ? kManualFromOthers : kManualToOthers;
  std::string how = " by right";
  if (!actor.has(right)) {
    const std::string no = "You do not have the right to ";
    if (hard)
      return refused(what, 2531, source,
                     no + (remove ? "collect manuals from users" : "release manuals to users"));
    const std::string verb = remove ? "remove manuals from " : "add manuals to ";
    if (user != actor.id)
      return refused(what + ", another's", 2531, source, no + verb + "other user's personal lists");
    if (!actor.has(remove ? kFromOwnList : kToOwnList))
      return refused(what + ", own", 2531, source, " " + no + verb + "your personal list");
    how = " on the own list";
  }
  const auto found = contents.find(manual);
  if (found == contents.end() || found->second.empty())
    return refused(what, 2520, source,
                   "This manual has no contents.  Only manuals that have contents may be released "
                   "to users.");
  const auto matches = [&](const auto& row) {
    const Holding& held = row.second;
    return held.user == user && held.manual == manual && held.hard == hard &&
           (isBlank(copy) || held.copy == copy);
  };
  if (remove) {
    if (std::erase_if(holdings, matches) == 0)
      return refused(what, 2521, source, "This user does not have this manual");
    return done(what + how + (isBlank(copy) ? ", every copy" : ""));
  }
  const bool holds = std::any_of(holdings.begin(), holdings.end(), matches);
  if (holds && !hard) return refused(what, 2523, source, "This user already has this manual");
  for (const auto& [document, place] : found->second) {
    const auto row = documents.find(document);
    if (row != documents.end())
      added.push_back({user, document, manual, hard, copy, row->second.revision});
  }
  if (added.empty()) return refused(what, 2522, source, "Unable to add this manual to this user");
  return done(what + how + (holds ? ", again" : ""));
}

RelationAnswer RelationModel::changeListOrder(const std::string& document, const std::string& moved,
                                              const std::string& before) {
  const std::string what = "approver moved";
  Places& list = routing[document];
  if (!list.contains(moved) || !list.contains(before)) return noRow(what);
  const auto order = inOrder(list);
  const auto at = std::find_if(order.begin(), order.end(),
                               [&](const auto& row) { return row.second == before; });
  const auto next = static_cast<float>(at->first.value_or(0));
  const float previous =
      at == order.begin() ? 0 : static_cast<float>(std::prev(at)->first.value_or(0));
  const float place = (previous + next) / 2;
  list[moved] = place;
  if (static_cast<double>(next - place) >= 0.00001) return done(what);
  const int step = wholeStep(list.size());
  renumber(list, step, step);
  return done(what + ", all renumbered");
}

RelationAnswer RelationModel::reposition(const std::string& manual, const std::string& document,
                                         int position) {
  const std::string what = "document moved";
  Places& places = contents[manual];
  if (places.empty())
    return refused(what, 2730, "Reposition Contents", "That Manual has no contents");
  if (position < 1 || position > static_cast<int>(places.size())) return noRow(what);
  const auto order = inOrder(places);
  const auto at = static_cast<std::size_t>(position) - 1;
  const double target = order[at].first.value_or(0);
  const double previous = at == 0 ? target / 2 : order[at - 1].first.value_or(0);
  const double place = previous > 0 ? previous / 2 + target : 0;
  const bool there = places.contains(document);  // else nothing is moved, and it is no error
  if (there) places[document] = place;
  const std::string which = what + (there ? "" : ", not in the manual");
  if (place - previous >= 0.00005) return done(which);
  renumber(places, 0, 99.0 / static_cast<double>(places.size()));
  return done(which + ", all renumbered");
}

RelationAnswer RelationModel::changeCopyNumber(const std::string& manual, const std::string& from,
                                               const std::string& to) {
  int changed = 0;
  for (auto& [release, held] : holdings)
    if (held.manual == manual && held.copy == from) {
      held.copy = to;
      ++changed;
    }
  return done(changed > 0 ? "copy number changed" : "copy number: not in use");
}

std::string RelationModel::nextCopyNumber(const std::string& manual,
                                          const std::optional<std::string>& last) const {
  if (!last) return "0001";
  std::string number = oneFurther(*last == kNullCell ? "" : *last);
  while (std::any_of(holdings.begin(), holdings.end(), [&](const auto& row) {
    return row.second.manual == manual && row.second.hard && row.second.copy == number;
  }))
    number = oneFurther(number);
  return number;
}

}  // namespace kv::test
