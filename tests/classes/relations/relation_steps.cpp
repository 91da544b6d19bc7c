// SPDX-License-Identifier: Apache-2.0
#include "classes/relations/relation_steps.h"

#include <fmt/format.h>

#include <array>

#include "classes/rights/rights.h"
#include "common/convert.h"

namespace kv::test {

void RelationSteps::documentInManual() {
  std::string manual = anyManual();
  // These two stay as they are.
  while (manual == "Ghosts" || manual == "Empty") manual = anyOf(manuals_);
  auto& places = model_.contents[manual];
  const bool remove = oneIn(2);
  std::string document = anyDocument();
  if (!places.empty() && (remove ? !oneIn(6) : oneIn(8))) document = oneIn(places);
  what_ = fmt::format("{} puts {} {} {}", actor().id, document, remove ? "out of" : "into", manual);
  const auto answer = model_.documentManual(actor(), manual, document, remove);
  if (oneIn(4)) {
    auto& documents = *vesk().Document();
    expectAnswer(answer, true, [&] {
      return remove ? documents.OutofManual(document, manual)
                    : documents.IntoManual(document, manual);
    });
  } else {
    std::int32_t lines = -1;
    expectAnswer(answer, true,
                 [&] { return vesk().DocumentManualRelation(manual, document, remove, lines); });
    EXPECT_EQ(lines, answer.number == 0 ? model_.affected : -1);
  }
  compareContents(manual);
}

void RelationSteps::owner() {
  const std::string document = anyDocument();
  const bool remove = oneIn(2);
  std::string user = anybody();
  Texts now;
  for (const auto& [of, whose] : model_.owners)
    if (of == document) now.push_back(whose);
  if (!now.empty() && (remove ? !oneIn(6) : oneIn(6))) user = anyOf(now);
  what_ = fmt::format("{} {} {} as owner of {}", actor().id, remove ? "removes" : "adds", user,
                      document);
  expectAnswer(model_.owns(actor(), document, user, remove), true, [&] {
    if (oneIn(3)) {
      auto& users = *vesk().User();
      return remove ? users.UnSetOwner(user, document) : toBoolean(users.SetOwner(user, document));
    }
    return vesk().OwnsRelation(document, user, remove);
  });
}

void RelationSteps::approver() {
  const std::string document = anyDocument();
  const bool remove = oneIn(3);
  std::string user = anybody();
  const auto& list = model_.routing[document];
  if (!list.empty() && (remove ? !oneIn(6) : oneIn(6))) user = oneIn(list);
  what_ = fmt::format("{} {} {} as approver of {}", actor().id, remove ? "removes" : "adds", user,
                      document);
  expectAnswer(model_.approves(actor(), document, user, remove), true, [&] {
    if (oneIn(3)) {
      auto& users = *vesk().User();
      return remove ? users.UnSetApprover(user, document)
                    : toBoolean(users.SetApprover(user, document));
    }
    return vesk().ApprovesRelation(document, user, remove);
  });
  compareRouting(document);
}

void RelationSteps::moveApprover(std::string document) {
  for (int more = 0; more < 20 && model_.routing[document].size() < 2; ++more)
    document = anyDocument();
  const auto& list = model_.routing[document];
  const auto somebody = [&] { return list.empty() || oneIn(12) ? anybody() : oneIn(list); };
  const std::string moved = somebody();
  const std::string before = somebody();
  // Often the same again: places come close.
  for (int again = oneIn(8) ? 24 : 1; again > 0 && !HasFailure(); --again) {
    what_ =
        fmt::format("{} moves {} before {} on the list of {}", actor().id, moved, before, document);
    expectAnswer(model_.changeListOrder(document, moved, before), false,
                 [&] { return vesk().Document()->ChangeListOrder(document, moved, before); });
    compareRouting(document);
  }
}

void RelationSteps::moveDocument() {
  const std::string manual = anyManual();
  const auto& places = model_.contents[manual];
  const int size = static_cast<int>(places.size());
  const int position = oneIn(12) ? upTo(1) * (size + 1) : upTo(oneIn(3) ? 2 : size) + 1;
  const std::string document = size == 0 || oneIn(15) ? anyDocument() : oneIn(places);
  what_ = fmt::format("{} moves {} to place {} of {}", actor().id, document, position, manual);
  expectAnswer(model_.reposition(manual, document, position), true, [&] {
    vesk().Manual()->RepositionContents(manual, document, static_cast<std::int16_t>(position));
    return true;
  });
  compareContents(manual);
}

void RelationSteps::giveDocument() {
  std::string document = anyDocument();
  const bool hard = oneIn(2);
  std::string user = !hard && oneIn(4) ? actor().id : anybody();
  if (!hard && oneIn(6)) {  // what somebody has already
    const auto& held = model_.holdings[releaseOf(true, false)];
    document = held.document;
    user = held.user;
  }
  what_ = fmt::format("{} gives {} to {}, hard {}", actor().id, document, user, hard);
  const auto answer = model_.documentUser(actor(), document, user, hard, false, 0);
  std::int32_t release = -7;
  expectAnswer(answer, true, [&] {
    const int how = upTo(2);
    if (how == 0) {
      auto& documents = *vesk().Document();
      return hard ? documents.ReleaseCopy(document, user, release)
                  : documents.AddUser(document, user, release);
    }
    if (how == 1) {
      release = vesk().User()->ReleaseDoc(user, document, hard);
      return true;
    }
    return vesk().DocumentUserRelation(document, user, hard, false, release);
  });
  takeAdded();
  if (answer.number == 0) {
    EXPECT_EQ(release, last_);
  } else {
    EXPECT_EQ(release, -7) << "it was refused";
  }
}

void RelationSteps::takeDocument() {
  const bool hard = oneIn(2);
  int release = releaseOf(!oneIn(8), oneIn(10) ? !hard : hard);
  const int how = upTo(19);
  if (how == 0) release = 0;
  if (how == 1) release = gone_.empty() ? last_ + 1 : anyOf(gone_);
  const auto row = model_.holdings.find(release);
  const bool there = row != model_.holdings.end();
  const std::string holder = there ? row->second.user : "User5";
  std::string document;
  std::string user;
  const bool forwarded = oneIn(3);
  if (!forwarded && oneIn(2)) document = there && !oneIn(4) ? row->second.document : anyDocument();
  if (!forwarded && !oneIn(4)) user = oneIn(2) ? actor().id : holder;
  what_ = fmt::format("{} takes back {} ('{}', '{}'), hard {}", actor().id, release, document, user,
                      hard);
  const auto answer = model_.documentUser(actor(), document, user, hard, true, release);
  expectAnswer(answer, true, [&] {
    if (forwarded && hard && oneIn(2))
      return vesk().User()->ReturnDoc(std::to_string(release) + "x");
    auto& documents = *vesk().Document();
    if (forwarded) return hard ? documents.CollectCopy(release) : documents.RemoveUser(release);
    std::int32_t given = release;
    return vesk().DocumentUserRelation(document, user, hard, true, given);
  });
  takeAdded();
  if (answer.number != 0) return;
  EXPECT_TRUE(vesk().ReleaseValue(release, "UserID").isEmpty());
  gone_.push_back(release);
}

void RelationSteps::giveManual() {
  std::string manual = anyManual();
  const bool hard = oneIn(2);
  std::string user = !hard && oneIn(4) ? actor().id : anybody();
  std::string copy = oneIn(30) ? " " : anyNumber();
  if (!hard) copy = oneIn(4) ? "" : "-1";
  if (oneIn(4)) {  // what somebody has already
    const auto& held = model_.holdings[releaseOf(false, hard)];
    if (held.manual != "0" && held.copy != kNullCell) {
      manual = held.manual;
      user = held.user;
      copy = held.copy;
    }
  }
  what_ = fmt::format("{} gives manual {} to {}, hard {}, copy '{}'", actor().id, manual, user,
                      hard, copy);
  expectAnswer(model_.manualUser(actor(), manual, user, hard, copy, false), true, [&] {
    auto& manuals = *vesk().Manual();
    if (hard && oneIn(2)) return manuals.ReleaseCopy(manual, user, copy);
    if (!hard && copy == "-1" && oneIn(2)) return manuals.AddUser(manual, user);
    return vesk().ManualUserRelation(manual, user, hard, copy, false);
  });
  takeAdded();
}

std::string RelationSteps::nextNumber(const std::string& manual) {
  const auto copies = vesk().Manual()->Copies(manual);
  std::optional<std::string> last;
  if (copies->RecordCount() > 0) {
    copies->MoveLast();
    last = text(*copies, "CopyNumber");
  }
  const auto next = model_.nextCopyNumber(manual, last);
  EXPECT_EQ(vesk().Manual()->NextCopyNumber(manual), next) << manual;
  count(last ? "next number: another" : "next number: the first");
  return next;
}

void RelationSteps::giveNextManual() {
  const std::string manual = anyManual();
  const std::string user = anybody();
  const bool hard = !oneIn(3);
  what_ =
      fmt::format("{} gives the next copy of {} to {}, hard {}", actor().id, manual, user, hard);
  const std::string copy = nextNumber(manual);
  const auto answer = model_.manualUser(actor(), manual, user, hard, copy, false);
  std::string given;
  expectAnswer(answer, true, [&] {
    given = vesk().User()->ReleaseMan(user, manual, hard);
    return true;
  });
  EXPECT_EQ(given, answer.number == 0 ? copy : "");
  takeAdded();
}

void RelationSteps::takeManual() {
  std::string manual = anyManual();
  std::string user = anybody();
  bool hard = oneIn(2);
  std::string copy = hard ? anyNumber() : "-1";
  if (!oneIn(6)) {
    const auto& held = model_.holdings[releaseOf(false, hard)];
    manual = held.manual;
    user = held.user;
    hard = held.hard;
    copy = held.copy == kNullCell || oneIn(4) ? "" : held.copy;
  }
  if (!hard && oneIn(4)) {
    user = actor().id;
    for (const auto& [release, held] : model_.holdings)
      if (held.user == user && held.manual != "0" && !held.hard) manual = held.manual;
  }
  what_ = fmt::format("{} takes manual {} from {}, hard {}, copy '{}'", actor().id, manual, user,
                      hard, copy);
  expectAnswer(model_.manualUser(actor(), manual, user, hard, copy, true), true, [&] {
    auto& manuals = *vesk().Manual();
    if (hard && oneIn(2)) return manuals.CollectCopy(manual, user, copy);
    if (!hard && copy == "-1" && oneIn(2)) return manuals.RemoveUser(manual, user);
    return oneIn(2) ? vesk().User()->ReturnMan(user, manual, hard, copy)
                    : vesk().ManualUserRelation(manual, user, hard, copy, true);
  });
  takeAdded();
}

void RelationSteps::changeNumber() {
  const auto& held = model_.holdings[releaseOf(false, true)];
  const std::string manual = oneIn(8) ? anyManual() : held.manual;
  const std::string from = held.copy == kNullCell || oneIn(8) ? anyNumber() : held.copy;
  const std::string to = oneIn(3) ? anyNumber() : fmt::format("{:04}", upTo(300));
  what_ = fmt::format("{} changes copy {} of {} to {}", actor().id, from, manual, to);
  expectAnswer(model_.changeCopyNumber(manual, from, to), true, [&] {
    vesk().Manual()->ChangeCopyNumber(manual, from, to);
    return true;
  });
  EXPECT_EQ(
      columnsOf(*vesk().GetRecordset("Select ReleaseID, CopyNumber From Personals Where "
                                     "ManualID = '" +
                                     manual + "' and CopyNumber = '" + to + "'"),
                {"ReleaseID"}),
      releasesWhere([&](const Holding& row) { return row.manual == manual && row.copy == to; }));
}

void RelationSteps::changePlaces() {
  const bool cleared = oneIn(2);
  if (oneIn(2)) {
    const std::string manual = anyManual();
    auto& places = model_.contents[manual];
    if (places.empty()) return;
    for (int some = upTo(3); some >= 0; --some) {
      const std::string document = oneIn(places);
      what_ = fmt::format("{} is now first in {}, Null {}", document, manual, cleared);
      places[document] = cleared ? std::nullopt : std::optional(0.0);
      vesk().Execute(fmt::format(
          "Update ManualContents Set [Position] = {} Where ManualID = '{}' and DocumentID = '{}'",
          cleared ? "Null" : "0", manual, document));
    }
    count("places in a manual change");
  } else {
    const std::string document = anyDocument();
    what_ = "no order among the approvers of " + document;
    for (auto& [user, place] : model_.routing[document]) place = std::nullopt;
    vesk().Execute("Update Routing Set ListOrder = Null Where DocumentID = '" + document + "'");
    count("places of approvers are cleared");
    moveApprover(document);
  }
}

void RelationSteps::changeDocument() {
  const std::string id = anyOf(documents_);
  auto& document = model_.documents[id];
  switch (upTo(3)) {
    case 0:
    case 1:
      document.controlled = oneIn(6) ? !document.controlled : true;
      what_ = fmt::format("{} is now controlled: {}", id, document.controlled);
      vesk().Execute(fmt::format("Update Documents Set Controlled = {} Where DocumentID = '{}'",
                                 document.controlled ? "True" : "False", id));
      break;
    default: {
      const int revision = oneIn(4) ? 0 : upTo(1600) + 1;
      document.revision = revision == 0 && oneIn(2) ? kNullCell : std::to_string(revision);
      what_ = fmt::format("{} is now in revision {}", id, document.revision);
      vesk().Execute(fmt::format("Update Documents Set CurrentRevID = {} Where DocumentID = '{}'",
                                 document.revision == kNullCell ? "Null" : document.revision, id));
    }
  }
  count("a document changes");
}

void RelationSteps::changeRights() {
  if (oneIn(2)) {
    constexpr std::array<std::int16_t, 8> kOwnerRights = {10, 11, 12, 13, 15, 16, 20, 21};
    const std::int16_t right = anyOf(kOwnerRights);
    const bool on = !oneIn(3);
    what_ = fmt::format("owners' right {} is now {}", right, on);
    vesk().SetOwnerAccess(right, on);
    model_.ownerRights[static_cast<std::size_t>(right) - 1] = on ? '1' : '0';
    count("owners' rights change");
    return;
  }
  Acting& one = acting_[who_];
  std::string rights = rightsText({});
  constexpr std::array<int, 15> kRights = {40,  100, 101, 102, 103, 104, 105, 106,
                                           107, 108, 109, 110, 111, 130, 131};
  const int likely = upTo(4);
  for (const int right : kRights)
    if (right == urActAsDocumentOwner ? oneIn(6) : upTo(4) < likely)
      rights[static_cast<std::size_t>(right) - 1] = '1';
  what_ = fmt::format("{} has other rights", one.actor.id);
  one.setRights(rights);
  count("a user's rights change");
}

void RelationSteps::step() {
  becomeAnybody();
  const bool many = model_.holdings.size() > 9000;
  switch (upTo(24)) {
    case 0: oneIn(2) ? changeDocument() : changePlaces(); return;
    case 1: changeRights(); return;
    case 2: moveApprover(anyDocument()); return;
    case 3:
    case 4: moveDocument(); return;
    case 5: changeNumber(); return;
    case 6:
    case 7: owner(); return;
    case 8:
    case 9: approver(); return;
    case 10:
    case 11:
    case 12:
    case 13:
      documentInManual();
      takeAdded();
      return;
    case 14:
    case 15:
    case 16: giveDocument(); return;
    case 17:
    case 18:
    case 19: takeDocument(); return;
    case 20: many ? takeManual() : giveNextManual(); return;
    case 21:
    case 22: many ? takeManual() : giveManual(); return;
    default: takeManual(); return;
  }
}

}  // namespace kv::test
