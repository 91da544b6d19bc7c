// SPDX-License-Identifier: Apache-2.0
#include "classes/relations/relation_walk_register.h"

#include <fmt/format.h>

#include <array>
#include <cstdlib>

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "desk/register/import/importer.h"

namespace kv::test {

namespace {

constexpr int kUsers = 771;  // in the files

}  // namespace

std::uint32_t walkSeed() {
  const char* given = std::getenv("KVVESK_WALK_SEED");
  return given == nullptr ? 20270611U : static_cast<std::uint32_t>(std::stoul(given));
}

void RelationWalkRegister::begin(const std::string& folder) {
  desk::Importer importer(reg_.connection(), at(2026, 7, 24, 23, 57, 50), "User0", {});
  ASSERT_TRUE(importer.run(folder).problems.empty());
  // A few users are on a list twice: which of their rows is meant is not promised.
  for (const auto& twice : reg_.rows("Select DocumentID, UserID From Routing Group By "
                                     "DocumentID, UserID Having Count(*) > 1")) {
    const auto bar = twice.find('|');
    reg_.execute("Delete * From Routing Where DocumentID = '" + twice.substr(0, bar) +
                 "' and UserID = '" + twice.substr(bar + 1) + "'");
  }
  // A manual whose only document is gone, and one without contents.
  reg_.execute("Insert Into Manuals (ManualID, ManualName) Values ('Ghosts', 'Of the past')");
  reg_.execute(
      "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('Ghosts', 'Gone', "
      "1)");
  reg_.execute("Insert Into Manuals (ManualID, ManualName) Values ('Empty', 'Of the future')");
  reg_.execute("Update VeskConfig Set OwnerRights = '000000000111110000011'");
  load();
  ASSERT_EQ(model_.documents.size(), 655U);
  ASSERT_EQ(manuals_.size(), 24U);
  ASSERT_GT(model_.holdings.size(), 5000U);
  openSessions();
}

void RelationWalkRegister::load() {
  model_.ownerRights = reg_.value("Select OwnerRights From VeskConfig");
  for (const auto rs = reg_.open("Select DocumentID, Controlled, CurrentRevID From Documents");
       !rs->Eof(); rs->MoveNext()) {
    documents_.push_back(text(*rs, "DocumentID"));
    model_.documents[documents_.back()] = {toBoolean(rs->Fields("Controlled")->Value()),
                                           text(*rs, "CurrentRevID")};
  }
  manuals_ = reg_.rows("Select ManualID From Manuals");
  for (const auto rs = reg_.open("Select * From ManualContents"); !rs->Eof(); rs->MoveNext())
    model_.contents[text(*rs, "ManualID")][text(*rs, "DocumentID")] =
        placeIn(rs->Fields("Position")->Value());
  for (const auto rs = reg_.open("Select * From Routing"); !rs->Eof(); rs->MoveNext())
    model_.routing[text(*rs, "DocumentID")][text(*rs, "UserID")] =
        placeIn(rs->Fields("ListOrder")->Value());
  for (const auto rs = reg_.open("Select * From Owners"); !rs->Eof(); rs->MoveNext())
    model_.owners.insert({text(*rs, "DocumentID"), text(*rs, "UserID")});
  for (const auto rs = reg_.open("Select * From Personals"); !rs->Eof(); rs->MoveNext())
    model_.holdings[number(*rs, "ReleaseID")] = holdingOf(*rs);
  last_ = model_.holdings.rbegin()->first;
}

std::string RelationWalkRegister::text(const Recordset& rs, const std::string& name) {
  return shown(rs.Fields(name)->Value());
}

int RelationWalkRegister::number(const Recordset& rs, const std::string& name) {
  return toInt32(rs.Fields(name)->Value());
}

Holding RelationWalkRegister::holdingOf(const Recordset& rs) {
  return {text(rs, "UserID"),     text(rs, "DocumentID"),
          text(rs, "ManualID"),   toBoolean(rs.Fields("HardCopy")->Value()),
          text(rs, "CopyNumber"), text(rs, "RevisionID")};
}

void RelationWalkRegister::openSessions() {
  reg_.addUser(9001, "Anna", "secret", true);
  reg_.addUser(9002, "Berta", "secret", false, rightsText({urActAsDocumentOwner}));
  reg_.addUser(9003, "Carl", "secret");
  reg_.addUser(9004, "Dora", "secret", false, rightsText({100, 101, 102, 103, 104, 105}));
  reg_.addUser(9005, "Emil", "secret", false, rightsText({106, 107}));
  reg_.addUser(9006, "Frida", "secret", false, rightsText({108, 109, 110, 111}));
  reg_.addUser(9007, "Gero", "secret", false, rightsText({130, 131}));
  // And some who own much, with nothing but that.
  const std::string hash = Passwords(kCheapPasswords).hash("secret");
  for (const auto& id : {"User2", "User7", "User19", "User31"}) {
    reg_.execute(fmt::format("Update Users Set [Password] = '{}' Where UserID = '{}'", hash, id));
    reg_.execute(
        fmt::format("Update VeskProfiles Set Administrator = False, GroupID = 0, Rights = '{}' "
                    "Where UserID = '{}'",
                    rightsText({}), id));
  }
  shared_ = kvConnection::open(reg_.path());
  for (const auto& user : reg_.rows("Select Users.UserID, Users.UserName From Users Where UserID "
                                    "In ('User9001', 'User9002', 'User9003', 'User9004', "
                                    "'User9005', 'User9006', 'User9007', 'User2', 'User7', "
                                    "'User19', 'User31') Order By Users.UserID")) {
    const auto bar = user.find('|');
    Acting& one = acting_.emplace_back();
    const std::string name = user.substr(bar + 1);
    one.alone->Login(name, "secret", reg_.path());
    const auto profile = makeRef<kvProfile>();
    profile->attach(shared_);
    one.together->Login(name, "secret", "", profile);
    const auto seen = one.alone->DataServer()->Profile();
    one.actor = {user.substr(0, bar), seen->Administrator() == -1, seen->Rights()};
  }
  ASSERT_EQ(acting_.size(), 11U);
  for (const auto& user : reg_.rows("Select UserID From Users")) users_.insert(user);
}

// ---- who acts, and chance ----

clsVesk& RelationWalkRegister::vesk() const {
  return together_ ? *acting_[who_].together : *acting_[who_].alone;
}

void RelationWalkRegister::becomeAnybody() {
  // Who may do everything comes more often: else too little would happen.
  who_ = static_cast<std::size_t>(upTo(static_cast<int>(acting_.size()) - 1));
  if (!oneIn(4)) return;
  for (std::size_t i = 0; i < acting_.size(); ++i)
    if (acting_[i].actor.administrator) who_ = i;
}

std::string RelationWalkRegister::anybody() {
  const int how = upTo(9);
  if (how < 2) return actor().id;
  if (how < 6) return anyOf(acting_).actor.id;
  return "User" + std::to_string(upTo(kUsers - 1) + 1);
}

std::string RelationWalkRegister::anyDocument() {
  if (oneIn(60)) return "NoDocument";
  if (oneIn(3)) {  // one that the actor owns
    Texts own;
    for (const auto& [document, user] : model_.owners)
      if (user == actor().id) own.push_back(document);
    if (!own.empty()) return anyOf(own);
  }
  return anyOf(documents_);
}

std::string RelationWalkRegister::anyManual() {
  if (oneIn(10)) return oneIn(2) ? "Ghosts" : "Empty";
  return anyOf(manuals_);
}

int RelationWalkRegister::releaseOf(bool single, bool hard) {
  std::vector<int> some;
  for (const auto& [release, held] : model_.holdings)
    if ((held.manual == "0") == single && held.hard == hard) some.push_back(release);
  return some.empty() ? anyRelease() : anyOf(some);
}

std::string RelationWalkRegister::anyNumber() {
  constexpr std::array<const char*, 6> kNumbers = {"-1", "0001", "2", "A-09", "17", "009"};
  return anyOf(kNumbers);
}

// ---- what was answered ----

void RelationWalkRegister::expectAnswer(const RelationAnswer& expected, bool result,
                                        const std::function<bool()>& operation) {
  count(model_.happened);
  bool yes = !result;
  const auto error = errorOf([&] { yes = operation(); });
  RelationAnswer actual;
  if (error) actual = {error->number(), error->source(), error->description()};
  if (expected.source.empty() && error) {  // of the platform: what it says is its own
    actual.source.clear();
    actual.description.clear();
  }
  EXPECT_EQ(actual.text(), expected.text());
  EXPECT_TRUE(error || yes == result);
}

void RelationWalkRegister::takeAdded() {
  const auto fresh = vesk().GetRecordset(
      fmt::format("Select * From Personals Where ReleaseID > {} Order By ReleaseID", last_));
  auto& added = model_.added;
  EXPECT_EQ(fresh->RecordCount(), static_cast<int>(added.size())) << "rows added";
  std::multimap<std::string, const Holding*> open;
  for (const auto& row : added) open.emplace(row.text(), &row);
  for (; !fresh->Eof() && !HasFailure(); fresh->MoveNext()) {
    const auto held = holdingOf(*fresh);
    const auto found = open.find(held.text());
    if (found == open.end()) {
      ADD_FAILURE() << "added " << held.text() << ", expected "
                    << (open.empty() ? "nothing" : open.begin()->first);
      return;
    }
    open.erase(found);
    last_ = number(*fresh, "ReleaseID");
    model_.holdings[last_] = held;
  }
  added.clear();
  EXPECT_EQ(vesk().GetRecordset("Select Count(*) From Personals")->Fields(0)->Value(),
            Variant(static_cast<std::int32_t>(model_.holdings.size())));
}

}  // namespace kv::test
