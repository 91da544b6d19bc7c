// Distribution in a real register of 655 documents and 22 manuals: a seeded random walk through
// contents, copies, owners and approvers, by users of different rights, beside a plain model that
// knows only the rules. KVVESK_WALK_SEED walks another way.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <deque>
#include <random>

#include "cli/import/importer.h"
#include "common/convert.h"
#include "relations/relation_model.h"
#include "rights/rights.h"
#include "support/scale.h"
#include "support/session_test.h"
#include "support/shared_data.h"

namespace kv {
namespace {

using test::Holding;
using test::kNullCell;
using test::Places;
using test::RelationActor;
using test::RelationAnswer;
using test::RelationModel;
using test::Texts;

constexpr int kUsers = 771;  // in the files
constexpr int kFullLength = 24000;
// Unoptimized it is to be borne as well.
#ifdef NDEBUG
constexpr int kSteps = test::steps(kFullLength);
#else
constexpr int kSteps = std::min(test::steps(kFullLength), kFullLength / 4);
#endif

std::uint32_t seed() {
  const char* given = std::getenv("KVVESK_WALK_SEED");
  return given == nullptr ? 20270611U : static_cast<std::uint32_t>(std::stoul(given));
}

std::string rightsText(std::initializer_list<int> rights) {
  std::string out(kRightsLength, '0');
  for (const int right : rights) out[static_cast<std::size_t>(right) - 1] = '1';
  return out;
}

std::string cell(const std::optional<double>& place) {
  return place ? test::shown(Variant(*place)) : kNullCell;
}
// As a single-precision column has it.
std::string singleCell(const std::optional<double>& place) {
  return place ? test::shown(Variant(static_cast<float>(*place))) : kNullCell;
}
std::optional<double> placeIn(const Variant& value) {
  return value.isNull() ? std::nullopt : std::optional(toDouble(value));
}

Texts sorted(Texts rows) {
  std::sort(rows.begin(), rows.end());
  return rows;
}
Texts distinct(Texts rows) {
  rows = sorted(std::move(rows));
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

// Some columns of a set's rows, in the order of the text.
Texts columnsOf(Recordset& rs, const std::vector<std::string>& names) {
  Texts out;
  for (; !rs.Eof(); rs.MoveNext()) {
    std::string& row = out.emplace_back();
    for (const auto& name : names)
      row += (row.empty() ? "" : "|") + test::shown(rs.Fields(name)->Value());
  }
  return sorted(std::move(out));
}

// The first rows that are not the same, of what may be thousands.
std::string difference(const Texts& model, const Texts& library) {
  std::string out;
  int told = 0;
  const auto tell = [&](const char* who, const Texts& some, const Texts& others) {
    Texts only;
    std::set_difference(some.begin(), some.end(), others.begin(), others.end(),
                        std::back_inserter(only));
    for (const auto& row : only)
      if (++told <= 6) out += fmt::format("\n  only in the {}: {}", who, row);
  };
  tell("model", model, library);
  told = 0;
  tell("register", library, model);
  return out;
}

// Somebody who acts, in a session of his own, and in one that shares its connection with everybody,
// for a client's transaction.
struct Acting {
  RelationActor actor;
  test::TestSession alone;
  test::TestSession together;

  void setRights(const std::string& rights) {
    actor.rights = rights;
    alone->DataServer()->Profile()->Rights(rights);
    together->DataServer()->Profile()->Rights(rights);
  }
};

class RelationWalk : public testing::Test {
 protected:
  RelationWalk() : random_(seed()) {}

  void begin(const std::string& folder) {
    cli::Importer importer(reg_.connection(), test::at(2026, 7, 24, 23, 57, 50), "User0", {});
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

  void load() {
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

  static std::string text(const Recordset& rs, const std::string& name) {
    return test::shown(rs.Fields(name)->Value());
  }
  static int number(const Recordset& rs, const std::string& name) {
    return toInt32(rs.Fields(name)->Value());
  }
  static Holding holdingOf(const Recordset& rs) {
    return {text(rs, "UserID"),     text(rs, "DocumentID"),
            text(rs, "ManualID"),   toBoolean(rs.Fields("HardCopy")->Value()),
            text(rs, "CopyNumber"), text(rs, "RevisionID")};
  }

  void openSessions() {
    reg_.addUser(9001, "Anna", "secret", true);
    reg_.addUser(9002, "Berta", "secret", false, rightsText({urActAsDocumentOwner}));
    reg_.addUser(9003, "Carl", "secret");
    reg_.addUser(9004, "Dora", "secret", false, rightsText({100, 101, 102, 103, 104, 105}));
    reg_.addUser(9005, "Emil", "secret", false, rightsText({106, 107}));
    reg_.addUser(9006, "Frida", "secret", false, rightsText({108, 109, 110, 111}));
    reg_.addUser(9007, "Gero", "secret", false, rightsText({130, 131}));
    // And some who own much, with nothing but that.
    const std::string hash = Passwords(test::kCheapPasswords).hash("secret");
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

  [[nodiscard]] const RelationActor& actor() const { return acting_[who_].actor; }
  [[nodiscard]] clsVesk& vesk() const {
    return together_ ? *acting_[who_].together : *acting_[who_].alone;
  }

  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
  bool oneIn(int n) { return upTo(n - 1) == 0; }
  template <class List>
  const auto& anyOf(const List& list) {
    return *std::next(list.begin(), upTo(static_cast<int>(list.size()) - 1));
  }
  void becomeAnybody() {
    // Who may do everything comes more often: else too little would happen.
    who_ = static_cast<std::size_t>(upTo(static_cast<int>(acting_.size()) - 1));
    if (!oneIn(4)) return;
    for (std::size_t i = 0; i < acting_.size(); ++i)
      if (acting_[i].actor.administrator) who_ = i;
  }
  std::string anybody() {
    const int how = upTo(9);
    if (how < 2) return actor().id;
    if (how < 6) return anyOf(acting_).actor.id;
    return "User" + std::to_string(upTo(kUsers - 1) + 1);
  }
  std::string anyDocument() {
    if (oneIn(60)) return "NoDocument";
    if (oneIn(3)) {  // one that the actor owns
      Texts own;
      for (const auto& [document, user] : model_.owners)
        if (user == actor().id) own.push_back(document);
      if (!own.empty()) return anyOf(own);
    }
    return anyOf(documents_);
  }
  std::string anyManual() {
    if (oneIn(10)) return oneIn(2) ? "Ghosts" : "Empty";
    return anyOf(manuals_);
  }
  std::string oneIn(const Places& places) { return anyOf(places).first; }
  int anyRelease() { return anyOf(model_.holdings).first; }
  int releaseOf(bool single, bool hard) {
    std::vector<int> some;
    for (const auto& [release, held] : model_.holdings)
      if ((held.manual == "0") == single && held.hard == hard) some.push_back(release);
    return some.empty() ? anyRelease() : anyOf(some);
  }
  std::string anyNumber() {
    constexpr std::array<const char*, 6> kNumbers = {"-1", "0001", "2", "A-09", "17", "009"};
    return anyOf(kNumbers);
  }

  // ---- comparing ----

  void count(const std::string& what) { ++counts_[what]; }

  // Does it, and compares what was answered.
  void expectAnswer(const RelationAnswer& expected, bool result,
                    const std::function<bool()>& operation) {
    count(model_.happened);
    bool yes = !result;
    const auto error = test::errorOf([&] { yes = operation(); });
    RelationAnswer actual;
    if (error) actual = {error->number(), error->source(), error->description()};
    if (expected.source.empty() && error) {  // of the platform: what it says is its own
      actual.source.clear();
      actual.description.clear();
    }
    EXPECT_EQ(actual.text(), expected.text());
    EXPECT_TRUE(error || yes == result);
  }

  // New rows get the register's numbers; in which order, is not promised. Nothing else is new.
  void takeAdded() {
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

  [[nodiscard]] Places placesOf(const std::string& sql) const {
    Places out;
    for (const auto rs = vesk().GetRecordset(sql); !rs->Eof(); rs->MoveNext())
      out[test::shown(rs->Fields(0)->Value())] = placeIn(rs->Fields(1)->Value());
    return out;
  }
  static Texts shownPlaces(const Places& places, bool single) {
    Texts out;
    for (const auto& [id, place] : places)
      out.push_back(id + "|" + (single ? singleCell(place) : cell(place)));
    return out;
  }
  // Of those that stood at one place before, any may have got any of their new ones.
  void expectPlaces(Places& model, const Places& actual, bool single) {
    for (const auto& group : model_.ties) {
      std::vector<std::optional<double>> given;
      std::vector<std::optional<double>> found;
      for (const auto& id : group) {
        given.push_back(model[id]);
        found.push_back(actual.contains(id) ? actual.at(id) : std::nullopt);
      }
      std::sort(given.begin(), given.end());
      auto inOrder = found;
      std::sort(inOrder.begin(), inOrder.end());
      EXPECT_TRUE(given == inOrder) << "new places of " << group.size() << " at one place";
      for (std::size_t i = 0; i < group.size(); ++i) model[group[i]] = found[i];
      count("renumbered from one place");
    }
    model_.ties.clear();
    EXPECT_EQ(shownPlaces(actual, single), shownPlaces(model, single));
  }
  void compareContents(const std::string& manual) {
    expectPlaces(model_.contents[manual],
                 placesOf("Select DocumentID, [Position] From ManualContents Where ManualID = '" +
                          manual + "'"),
                 false);
  }
  void compareRouting(const std::string& document) {
    expectPlaces(
        model_.routing[document],
        placesOf("Select UserID, ListOrder From Routing Where DocumentID = '" + document + "'"),
        true);
  }

  // Every row of the tables that relations change.
  void compareTables() {
    const auto compareTable = [&](const std::string& name, const std::string& columns,
                                  Texts expected) {
      EXPECT_EQ(
          difference(
              sorted(std::move(expected)),
              sorted(test::rowsOf(*vesk().GetRecordset("Select " + columns + " From " + name)))),
          "")
          << name;
    };
    Texts copies;
    for (const auto& [release, held] : model_.holdings)
      copies.push_back(std::to_string(release) + "|" + held.text());
    compareTable("Personals",
                 "ReleaseID, UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID",
                 std::move(copies));
    Texts contents;
    for (const auto& [manual, places] : model_.contents)
      for (const auto& [document, place] : places)
        contents.push_back(fmt::format("{}|{}|{}", manual, document, cell(place)));
    compareTable("ManualContents", "ManualID, DocumentID, [Position]", std::move(contents));
    Texts owners;
    for (const auto& [document, user] : model_.owners) owners.push_back(document + "|" + user);
    compareTable("Owners", "DocumentID, UserID", std::move(owners));
    Texts routing;
    for (const auto& [document, places] : model_.routing)
      for (const auto& [user, place] : places)
        routing.push_back(fmt::format("{}|{}|{}", document, user, singleCell(place)));
    compareTable("Routing", "DocumentID, UserID, ListOrder", std::move(routing));
  }

  template <class Meets>
  Texts releasesWhere(const Meets& meets) const {
    Texts out;
    for (const auto& [release, held] : model_.holdings)
      if (meets(held)) out.push_back(std::to_string(release));
    return sorted(std::move(out));
  }
  template <class Tell, class Meets>
  Texts holdersWhere(const Meets& meets, const Tell& tell) const {
    Texts out;
    for (const auto& [release, held] : model_.holdings)
      if (meets(held)) out.push_back(tell(held));
    return distinct(std::move(out));
  }

  void compareDocument(const std::string& id) {
    auto& documents = *vesk().Document();
    Texts owners;
    for (const auto& [document, user] : model_.owners)
      if (document == id) owners.push_back(user);
    EXPECT_EQ(columnsOf(*documents.Owners(id), {"UserID"}), sorted(owners)) << id;

    const auto approvers = documents.Approvers(id);
    std::optional<double> before;
    for (; !approvers->Eof(); approvers->MoveNext()) {
      const auto place = placeIn(approvers->Fields("ListOrder")->Value());
      EXPECT_TRUE(before <= place) << "the order of " << id << "'s approvers";
      before = place;
    }
    EXPECT_EQ(columnsOf(*documents.Approvers(id), {"UserID", "ListOrder"}),
              sorted(shownPlaces(model_.routing[id], true)))
        << id;

    Texts manuals;
    for (const auto& [manual, places] : model_.contents)
      if (places.contains(id)) manuals.push_back(manual);
    EXPECT_EQ(columnsOf(*documents.Manuals(id), {"ManualID"}), sorted(manuals)) << id;
    EXPECT_EQ(columnsOf(*documents.Manuals(id, true), {"ManualID"}), sorted(manuals)) << id;
    for (const bool hard : {false, true}) {
      const auto meets = [&](const Holding& held) {
        return held.document == id && held.hard == hard;
      };
      const auto list = hard ? documents.Copies(id) : documents.Users(id);
      EXPECT_EQ(columnsOf(*list, {"ReleaseID"}), releasesWhere(meets)) << id << " hard " << hard;
      EXPECT_EQ(columnsOf(*vesk().Releases("", "", id, 0, 0, 0, hard), {"ReleaseID"}),
                releasesWhere(meets))
          << id << " hard " << hard;
      // Only users there are have records: some holders are not known.
      const auto records = hard ? documents.Copies(id, true) : documents.Users(id, true);
      auto holders = holdersWhere(meets, [](const Holding& held) { return held.user; });
      std::erase_if(holders, [&](const auto& user) { return !users_.contains(user); });
      EXPECT_EQ(records == nullptr ? Texts() : columnsOf(*records, {"UserID"}), holders)
          << id << " hard " << hard;
    }
  }

  void compareManual(const std::string& id) {
    auto& manuals = *vesk().Manual();
    const auto hard = [&](const Holding& held) { return held.manual == id && held.hard; };
    const auto listed = [&](const Holding& held) { return held.manual == id && !held.hard; };
    EXPECT_EQ(sorted(test::rowsOf(*manuals.Copies(id))),
              holdersWhere(hard, [](const Holding& held) { return held.user + "|" + held.copy; }))
        << id;
    EXPECT_EQ(sorted(test::rowsOf(*manuals.Users(id))),
              holdersWhere(listed, [](const Holding& held) { return held.user; }))
        << id;
    Texts contents;
    std::optional<double> before;
    const auto& places = model_.contents[id];
    for (const auto& [document, place] : places)
      if (model_.documents.contains(document)) contents.push_back(document);
    const auto list = manuals.Contents(id);
    for (; !list->Eof(); list->MoveNext()) {
      const auto found = places.find(text(*list, "DocumentID"));
      if (found == places.end()) {
        ADD_FAILURE() << "not in " << id << ": " << text(*list, "DocumentID");
        continue;
      }
      EXPECT_TRUE(before <= found->second) << "the order of " << id;
      before = found->second;
    }
    EXPECT_EQ(columnsOf(*manuals.Contents(id), {"DocumentID"}), sorted(contents)) << id;
    EXPECT_EQ(columnsOf(*vesk().Releases("", id, "", 0, 0, 0, true), {"ReleaseID"}),
              releasesWhere(hard))
        << id;
    EXPECT_EQ(columnsOf(*vesk().Releases("", id), {"ReleaseID"}), releasesWhere(listed)) << id;
    const std::string some = anyNumber();
    EXPECT_EQ(manuals.DuplicateCopyNumber(id, some), !releasesWhere([&](const Holding& held) {
                                                        return hard(held) && held.copy == some;
                                                      }).empty())
        << id << " " << some;
  }

  void compareUser(const std::string& id) {
    auto& users = *vesk().User();
    const auto isThere = [&](const Holding& held) {
      return model_.documents.contains(held.document);
    };
    for (const bool hard : {false, true}) {
      const auto held = [&](const Holding& row) { return row.user == id && row.hard == hard; };
      const auto inList = [&](const Holding& row) { return held(row) && (hard || isThere(row)); };
      EXPECT_EQ(columnsOf(hard ? *users.HardCopies(id) : *users.VirtualCopies(id), {"ReleaseID"}),
                releasesWhere(inList))
          << id << " hard " << hard;
      EXPECT_EQ(columnsOf(*vesk().Releases(id, "", "", 0, 0, 0, hard),
                          {"ReleaseID", "DocumentID", "ManualID", "CopyNumber", "RevisionID",
                           "CurrentRevID"}),
                releaseLines(held))
          << id << " hard " << hard;
      EXPECT_EQ(columnsOf(*vesk().Document()->Personals(id, !hard, hard), {"ReleaseID"}),
                releasesWhere([&](const Holding& row) { return held(row) && isThere(row); }))
          << id << " hard " << hard;
    }
    Texts owned;
    for (const auto& [document, user] : model_.owners)
      if (user == id && model_.documents.contains(document)) owned.push_back(document);
    EXPECT_EQ(columnsOf(*users.Owns(id), {"DocumentID"}), sorted(owned)) << id;
    Texts approved;
    for (const auto& [document, list] : model_.routing)
      if (list.contains(id) && model_.documents.contains(document)) approved.push_back(document);
    EXPECT_EQ(columnsOf(*users.Approves(id), {"DocumentID"}), sorted(approved)) << id;
    const auto document = anyDocument();
    EXPECT_EQ(users.UserIsOwner(id, document), model_.userIsOwner(actor(), id, document));
    EXPECT_EQ(users.UserIsApprover(id, document), model_.routing[document].contains(id));
  }
  template <class Meets>
  Texts releaseLines(const Meets& meets) const {
    Texts out;
    for (const auto& [release, held] : model_.holdings) {
      if (!meets(held)) continue;
      const auto document = model_.documents.find(held.document);
      out.push_back(fmt::format(
          "{}|{}|{}|{}|{}|{}", release, held.document, held.manual, held.copy, held.revision,
          document == model_.documents.end() ? kNullCell : document->second.revision));
    }
    return sorted(std::move(out));
  }

  void compareLists(int some) {
    becomeAnybody();
    what_ = "the lists, for " + actor().id;
    for (int i = 0; i < some && !HasFailure(); ++i) {
      compareDocument(anyDocument());
      compareManual(anyManual());
      compareUser(anybody());
      compareUser(anyOf(model_.holdings).second.user);
      compareDocument(anyOf(model_.holdings).second.document);
    }
  }

  // ---- what happens ----

  void documentInManual() {
    std::string manual = anyManual();
    // These two stay as they are.
    while (manual == "Ghosts" || manual == "Empty") manual = anyOf(manuals_);
    auto& places = model_.contents[manual];
    const bool remove = oneIn(2);
    std::string document = anyDocument();
    if (!places.empty() && (remove ? !oneIn(6) : oneIn(8))) document = oneIn(places);
    what_ =
        fmt::format("{} puts {} {} {}", actor().id, document, remove ? "out of" : "into", manual);
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

  void owner() {
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
        return remove ? users.UnSetOwner(user, document)
                      : toBoolean(users.SetOwner(user, document));
      }
      return vesk().OwnsRelation(document, user, remove);
    });
  }

  void approver() {
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

  void moveApprover(std::string document) {
    for (int more = 0; more < 20 && model_.routing[document].size() < 2; ++more)
      document = anyDocument();
    const auto& list = model_.routing[document];
    const auto somebody = [&] { return list.empty() || oneIn(12) ? anybody() : oneIn(list); };
    const std::string moved = somebody();
    const std::string before = somebody();
    // Often the same again: places come close.
    for (int again = oneIn(8) ? 24 : 1; again > 0 && !HasFailure(); --again) {
      what_ = fmt::format("{} moves {} before {} on the list of {}", actor().id, moved, before,
                          document);
      expectAnswer(model_.changeListOrder(document, moved, before), false,
                   [&] { return vesk().Document()->ChangeListOrder(document, moved, before); });
      compareRouting(document);
    }
  }

  void moveDocument() {
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

  void giveDocument() {
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

  void takeDocument() {
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
    if (!forwarded && oneIn(2))
      document = there && !oneIn(4) ? row->second.document : anyDocument();
    if (!forwarded && !oneIn(4)) user = oneIn(2) ? actor().id : holder;
    what_ = fmt::format("{} takes back {} ('{}', '{}'), hard {}", actor().id, release, document,
                        user, hard);
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

  void giveManual() {
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

  // The next number, as it follows from the last row of the list.
  std::string nextNumber(const std::string& manual) {
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

  void giveNextManual() {
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

  void takeManual() {
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

  void changeNumber() {
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

  // By a statement, as other programs do.
  void changePlaces() {
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

  void changeDocument() {
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
                                   document.revision == kNullCell ? "Null" : document.revision,
                                   id));
      }
    }
    count("a document changes");
  }

  void changeRights() {
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

  // ---- the walk ----

  void step() {
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

  void walk() {
    constexpr int kBetween = 500;  // steps from one whole comparison to the next
    int done = 0;
    while (done < kSteps && !HasFailure()) {
      // A client's transaction now and then fails: nothing of it has happened then.
      together_ = !oneIn(4);
      const bool undone = together_ && oneIn(10);
      const auto before = undone ? std::optional(model_) : std::nullopt;
      const auto goneBefore = gone_;
      const int lastBefore = last_;
      if (together_) shared_->BeginTrans();
      for (int more = together_ ? 60 : 12; more > 0 && done < kSteps; --more) {
        EXPECT_NO_THROW(step());
        ++done;
        if (!HasFailure() && done % kBetween == 0) {
          compareTables();
          compareLists(3);
        }
        if (HasFailure()) {
          ADD_FAILURE() << "seed " << seed() << ", step " << done << ": " << what_;
          return;
        }
      }
      if (together_ && !undone) shared_->CommitTrans();
      if (!undone) continue;
      shared_->RollbackTrans();
      model_ = *before;
      gone_ = goneBefore;
      last_ = lastBefore;
      count("a client's transaction undone");
    }
    together_ = false;
  }

  test::TestRegister reg_;
  std::mt19937 random_;
  RelationModel model_;
  Ref<kvConnection> shared_;
  std::deque<Acting> acting_;
  std::size_t who_ = 0;
  bool together_ = false;
  Texts documents_;
  Texts manuals_;
  std::set<std::string> users_;
  int last_ = 0;           // the newest release
  std::vector<int> gone_;  // releases taken back
  std::map<std::string, int> counts_;
  std::string what_;
};

// How often each case comes at least in a walk of full length, so that none is left out unnoticed.
constexpr std::pair<const char*, int> kAtLeast[] = {
    {"a client's transaction undone", 22},
    {"a document changes", 200},
    {"a user's rights change", 250},
    {"approver added as owner", 250},
    {"approver added by right", 70},
    {"approver added: 2510", 70},
    {"approver added: 2511", 50},
    {"approver added: 2532", 190},
    {"approver moved", 1550},
    {"approver moved, all renumbered", 170},
    {"approver moved: no row", 300},
    {"approver removed as owner", 130},
    {"approver removed by right", 40},
    {"approver removed: 2511", 35},
    {"approver removed: 2512", 40},
    {"approver removed: 2532", 80},
    {"copy number changed", 350},
    {"copy number: not in use", 80},
    {"document given, hard as owner", 300},
    {"document given, hard by right", 80},
    {"document given, hard: 2515", 60},
    {"document given, hard: 2516", 80},
    {"document given, hard: 2531", 180},
    {"document given, virtual as owner", 200},
    {"document given, virtual by right", 90},
    {"document given, virtual on the own list", 10},
    {"document given, virtual, another's: 2531", 120},
    {"document given, virtual, own: 2531", 38},
    {"document given, virtual: 2515", 60},
    {"document given, virtual: 2516", 80},
    {"document given, virtual: 2519", 90},
    {"document moved", 450},
    {"document moved, all renumbered", 190},
    {"document moved, not in the manual", 30},
    {"document moved, not in the manual, all renumbered", 10},
    {"document moved: 2730", 100},
    {"document moved: no row", 180},
    {"document taken back, hard as owner", 200},
    {"document taken back, hard by right", 140},
    {"document taken back, hard: 2515", 10},
    {"document taken back, hard: 2516", 14},
    {"document taken back, hard: 2517", 15},
    {"document taken back, hard: 2518", 21},
    {"document taken back, hard: 2531", 250},
    {"document taken back, virtual as owner", 200},
    {"document taken back, virtual by right", 150},
    {"document taken back, virtual on the own list", 6},
    {"document taken back, virtual, another's: 2531", 180},
    {"document taken back, virtual, own: 2531", 50},
    {"document taken back, virtual: 2515", 35},
    {"document taken back, virtual: 2516", 60},
    {"document taken back, virtual: 2517", 21},
    {"document taken back, virtual: 2518", 12},
    {"into a manual as owner, held", 40},
    {"into a manual as owner, nobody holds it", 2},
    {"into a manual by right, held", 300},
    {"into a manual by right, nobody holds it", 36},
    {"into a manual: 2506", 100},
    {"into a manual: 2513", 70},
    {"into a manual: 2514", 80},
    {"into a manual: 2529", 250},
    {"manual given, hard by right", 300},
    {"manual given, hard by right, again", 70},
    {"manual given, hard: 2520", 40},
    {"manual given, hard: 2522", 31},
    {"manual given, hard: 2531", 300},
    {"manual given, virtual by right", 200},
    {"manual given, virtual on the own list", 15},
    {"manual given, virtual, another's: 2531", 190},
    {"manual given, virtual, own: 2531", 60},
    {"manual given, virtual: 2520", 33},
    {"manual given, virtual: 2522", 30},
    {"manual given, virtual: 2523", 70},
    {"manual taken back, hard by right", 170},
    {"manual taken back, hard by right, every copy", 50},
    {"manual taken back, hard: 2520", 3},
    {"manual taken back, hard: 2521", 40},
    {"manual taken back, hard: 2531", 190},
    {"manual taken back, virtual by right", 110},
    {"manual taken back, virtual by right, every copy", 80},
    {"manual taken back, virtual on the own list", 5},
    {"manual taken back, virtual on the own list, every copy", 3},
    {"manual taken back, virtual, another's: 2531", 140},
    {"manual taken back, virtual, own: 2531", 40},
    {"manual taken back, virtual: 2520", 4},
    {"manual taken back, virtual: 2521", 70},
    {"next number: another", 300},
    {"next number: the first", 120},
    {"out of a manual as owner", 35},
    {"out of a manual by right", 450},
    {"out of a manual: 2507", 80},
    {"out of a manual: 2513", 28},
    {"out of a manual: 2514", 40},
    {"out of a manual: 2528", 300},
    {"owner added as owner", 26},
    {"owner added by right", 200},
    {"owner added: 2508", 70},
    {"owner added: 2530", 160},
    {"owner removed as owner", 28},
    {"owner removed by right", 200},
    {"owner removed: 2509", 60},
    {"owner removed: 2530", 140},
    {"owners' rights change", 200},
    {"places in a manual change", 90},
    {"places of approvers are cleared", 110},
    {"renumbered from one place", 300},
};

TEST_F(RelationWalk, GoesAsTheRulesSay) {
  REQUIRE_SHARED_DATA(folder, "proposals-register");
  ASSERT_NO_FATAL_FAILURE(begin(folder));
  compareTables();
  ASSERT_FALSE(HasFailure()) << "before the walk";

  walk();
  if (HasFailure()) return;
  compareTables();
  compareLists(40);
  for (const auto& manual : manuals_) compareManual(manual);
  if (HasFailure()) ADD_FAILURE() << "seed " << seed() << ", at the end";
  // In a shorter walk chance has more to say about what is rare.
  constexpr int kChance = kSteps < kFullLength ? 3 : 1;
  for (const auto& [what, times] : kAtLeast)
    EXPECT_GE(counts_[what], times * kSteps / kFullLength / kChance) << what << ", seed " << seed();
}

}  // namespace
}  // namespace kv
