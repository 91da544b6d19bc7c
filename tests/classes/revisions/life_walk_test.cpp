// SPDX-License-Identifier: Apache-2.0
// The life of revisions in a real register of 655 documents: a seeded random walk through adding,
// routing, deciding, putting in force and the actions that are sent, by users of different rights,
// beside a plain model that knows only the rules. KVVESK_WALK_SEED walks another way.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <deque>
#include <random>

#include "classes/revisions/approval_session.h"
#include "classes/revisions/life_model.h"
#include "classes/revisions/life_register.h"
#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/register/import/importer.h"
#include "support/scale.h"
#include "support/shared_data.h"

namespace kv {
namespace {

using test::Cell;
using test::kNothing;
using test::LifeActor;
using test::LifeAnswer;
using test::LifeModel;
using test::LifeRevision;
using test::Texts;

constexpr int kApproved = 1;
constexpr int kRejected = 2;
// An administrator, one who acts as owner of every document, one without any right, and some whom
// the register names often, as approvers and as owners.
constexpr std::array<const char*, 9> kActing = {
    "User9001", "User9002", "User9003", "User85", "User84", "User31", "User19", "User7", "User2"};

std::string textOf(const LifeAnswer& answer) {
  if (answer.error != 0) return "raised " + std::to_string(answer.error);
  return answer.yes ? "True" : "False";
}

// What an operation really answered.
LifeAnswer answerOf(const std::function<bool()>& operation) {
  LifeAnswer out;
  out.error = test::numberOf([&] { out.yes = operation(); });
  return out;
}

std::string given(const Cell& cell) { return cell == kNothing ? "" : cell; }
// As a value in a statement.
std::string literal(const Cell& cell) {
  return cell == kNothing ? "Null" : "'" + doubledQuotes(cell) + "'";
}

std::uint32_t seed() {
  const char* given = std::getenv("KVVESK_WALK_SEED");
  return given == nullptr ? 20270601U : static_cast<std::uint32_t>(std::stoul(given));
}

// Somebody who acts, in a session of his own, and in one that shares its connection with everybody,
// for a client's transaction.
struct Acting {
  LifeActor actor;
  test::TestSession alone;
  test::TestSession together;
};

class LifeWalk : public testing::Test {
 protected:
  LifeWalk() : clock_(test::at(2027, 6, 1)), random_(seed()) {}

  void begin(const std::string& folder) {
    desk::Importer importer(reg_.connection(), test::at(2026, 7, 24, 23, 57, 50), "User0", {});
    ASSERT_TRUE(importer.run(folder).problems.empty());
    makeLists();
    makeUsers();
    reg_.execute(
        "Update VeskConfig Set ProgramOptions = '00010111010', OwnerRights = "
        "'000000000000000001000', DBID = 'PROPOSALS', [Revision] = 'Issue', [Document] = "
        "'Drawing', Originator = 2, OriginatorID = 'User43'");
    test::load(model_, reg_);
    model_.today = std::chrono::sys_days(std::chrono::year(2027) / 6 / 1);
    ASSERT_EQ(model_.documents.size(), 655U);
    ASSERT_EQ(model_.revisions.size(), 1613U);
    documents_ = reg_.rows("Select DocumentID From Documents Order By ID");
    // All of them in a full walk, and fewer in a short one, so that each has a life.
    for (std::size_t d = 0; d < documents_.size(); d += static_cast<std::size_t>(kSteps / steps()))
      walked_.push_back(documents_[d]);
    openSessions();
  }

  // Most documents have lists of one to three approvers; some get none, and some long ones.
  void makeLists() const {
    const Texts ids = reg_.rows("Select DocumentID From Documents Order By ID");
    constexpr std::array<int, 8> kLengths = {0, 1, 5, 0, 2, 7, 1, 12};
    constexpr std::size_t kEvery = 4;
    for (std::size_t d = 0; d < ids.size(); d += kEvery) {
      reg_.execute("Delete * From Routing Where DocumentID = '" + ids[d] + "'");
      // The last in the order comes first.
      for (int place = kLengths.at(d / kEvery % kLengths.size()); place > 0; --place)
        reg_.execute(fmt::format(
            "Insert Into Routing (DocumentID, UserID, ListOrder) Values ('{}', '{}', {})", ids[d],
            place % 3 == 2 ? fmt::format("User{}", d + static_cast<std::size_t>(place))
                           : kActing.at((d + static_cast<std::size_t>(place) * 5) % kActing.size()),
            place * 10));
    }
  }

  void makeUsers() const {
    std::string ownsAll(kRightsLength, '0');
    ownsAll[urActAsDocumentOwner - 1] = '1';
    reg_.addUser(9001, "Anna", "secret", true);
    reg_.addUser(9002, "Berta", "secret", false, ownsAll);
    reg_.addUser(9003, "Carl", "secret");
    // The others have no rights of their own.
    const std::string hash = Passwords(test::kCheapPasswords).hash("secret");
    for (const std::string id : kActing) {
      if (id.starts_with("User900")) continue;
      reg_.execute("Update Users Set [Password] = '" + hash + "' Where UserID = '" + id + "'");
      reg_.execute("Update VeskProfiles Set Administrator = False, GroupID = 0, Rights = '" +
                   std::string(kRightsLength, '0') + "' Where UserID = '" + id + "'");
    }
    reg_.execute("Update VeskProfiles Set UserName = 'In profiles only' Where UserID = 'User46'");
    reg_.execute("Update Users Set UserName = Null Where UserID = 'User100'");
  }

  void openSessions() {
    shared_ = kvConnection::open(reg_.path());
    for (const std::string id : kActing) {
      Acting& one = acting_.emplace_back();
      one.actor = {id, model_.users[id].name, id == "User9001", id == "User9002"};
      one.alone->Login(one.actor.name, "secret", reg_.path());
      const auto profile = makeRef<kvProfile>();
      profile->attach(shared_);
      one.together->Login(one.actor.name, "secret", "", profile);
    }
    everyDocument_ = acting_[0].alone->Document()->AddQuery()->id();
  }

  // ---- who acts, and chance ----

  [[nodiscard]] const LifeActor& actor() const { return acting_[who_].actor; }
  [[nodiscard]] clsVesk& vesk() const {
    return together_ ? *acting_[who_].together : *acting_[who_].alone;
  }
  [[nodiscard]] clsVeskRevision& revision() const { return *vesk().Revision(); }
  [[nodiscard]] Texts rows(const std::string& sql) const {
    return test::rowsOf(*vesk().GetRecordset(sql));
  }

  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
  bool oneIn(int n) { return upTo(n - 1) == 0; }
  template <class List>
  const auto& anyOf(const List& list) {
    return *std::next(list.begin(), upTo(static_cast<int>(list.size()) - 1));
  }
  void becomeAnybody() {
    who_ = static_cast<std::size_t>(upTo(static_cast<int>(acting_.size()) - 1));
  }
  // False when nobody of this identifier has a session.
  bool become(const std::string& id) {
    for (std::size_t i = 0; i < acting_.size(); ++i)
      if (acting_[i].actor.id == id) {
        who_ = i;
        return true;
      }
    return false;
  }
  std::string anybody() {
    if (oneIn(10)) return "TBD";  // has no row among the users
    if (oneIn(2)) return anyOf(acting_).actor.id;
    return "User" + std::to_string(upTo(kUsers - 1) + 1);
  }

  void setClock() {
    const std::chrono::year_month_day d(model_.today);
    clock_.set(test::at(static_cast<int>(d.year()), static_cast<int>(unsigned(d.month())),
                        static_cast<int>(unsigned(d.day())), 9));
  }

  // ---- comparing ----

  [[nodiscard]] std::optional<LifeRevision> modelRow(int id) const {
    const auto found = model_.revisions.find(id);
    return found == model_.revisions.end() ? std::nullopt : std::optional(found->second);
  }

  void count(const std::string& what) { ++counts_[what]; }
  void expectAnswer(const LifeAnswer& actual, const LifeAnswer& expected) {
    count(model_.happened);
    EXPECT_EQ(textOf(actual), textOf(expected)) << model_.happened;
  }

  // An operation on the row in a caller's hands, who then saves it or, now and then, does not; a
  // decision is `saved` by itself.
  void expectRow(const Ref<Recordset>& rs, const std::optional<LifeRevision>& row,
                 const LifeAnswer& answer, bool saved = false) {
    if (!row || HasFailure()) return;
    EXPECT_EQ(test::shown(rs->Fields("RoutingStatus")->Value()), std::to_string(row->turn));
    EXPECT_EQ(test::shown(rs->Fields("RevisionStatus")->Value()), std::to_string(row->status));
    if (answer != LifeAnswer()) {
      EXPECT_EQ(rs->EditMode(), 0) << "nothing changed";
    } else if (saved) {
      EXPECT_EQ(rs->EditMode(), 0) << "nothing left to save";
      model_.keep(*row);
    } else if (oneIn(12)) {
      rs->CancelUpdate();
      count("the caller does not save");
    } else {
      rs->Update();
      model_.keep(*row);
    }
  }

  // Actions that were sent get the register's numbers; which holder is told first is not promised.
  void takeActions() {
    const int last = model_.actions.empty() ? 0 : model_.actions.rbegin()->first;
    const auto fresh = test::cellsOf(*vesk().GetRecordset(
        fmt::format("Select ActionID, {} From Actions Where ActionID > {} Order By ActionID",
                    test::kActionCells, last)));
    auto& sent = model_.sent;
    EXPECT_EQ(fresh.size(), sent.size()) << "actions sent";
    for (const auto& cells : fresh) {
      const auto action = test::actionOf(cells, 1);
      const auto found = std::find_if(sent.begin(), sent.end(), [&](const auto& expected) {
        return expected.text() == action.text();
      });
      if (found == sent.end()) {
        ADD_FAILURE() << "sent\n  " << action.text() << "\nand expected\n  "
                      << (sent.empty() ? "nothing" : sent.front().text());
        return;
      }
      model_.actions[std::stoi(cells[0])] = action;
      sent.erase(found);
    }
    sent.clear();
  }

  // The register and the model say the same of a revision, its document, and what was sent.
  void compare(int id) {
    takeActions();
    const auto row = modelRow(id);
    EXPECT_EQ(rows(fmt::format("Select {} From Revisions Where RevisionID = {}",
                               test::kRevisionCells, id)),
              row ? Texts{row->text()} : Texts{});
    Texts list;
    if (const auto found = model_.approvals.find(id); found != model_.approvals.end())
      for (const auto& approval : found->second) list.push_back(approval.text());
    EXPECT_EQ(rows(fmt::format("Select {} From ApprovalRouting Where RevID = {} Order By ListOrder",
                               test::kApprovalCells, id)),
              list);
    if (!row) return;
    EXPECT_EQ(rows(fmt::format("Select {} From Documents Where DocumentID = '{}'",
                               test::kDocumentCells, row->document)),
              Texts{model_.documents[row->document].text()});
    if (oneIn(3)) compareTexts(*row);
  }

  void compareTexts(const LifeRevision& row) {
    const auto listed = model_.listedStatus(row);
    std::string text;
    EXPECT_EQ(test::numberOf(
                  [&] { text = revision().RevStatusDescription(revision().GetRevRS(row.id)); }),
              listed ? 0 : LifeModel::kNoRow);
    EXPECT_EQ(text, listed.value_or(""));
    const auto told = model_.loadedStatus(row);
    test::LoadedRevision loaded;
    EXPECT_EQ(test::numberOf([&] { EXPECT_TRUE(loaded.from(revision(), row.id)); }),
              told ? 0 : LifeModel::kNoRow);
    EXPECT_EQ(loaded.status, told.value_or("?"));
    count(told ? "texts: told" : "texts: nobody's turn");
  }

  // ---- what happens to a revision ----

  void add(const std::string& document) {
    becomeAnybody();
    LifeRevision row;
    row.document = document;
    row.level = oneIn(20) ? kNothing : fmt::format("v{}.{}", upTo(3), upTo(99));
    row.user1 = oneIn(2) ? kNothing : "#" + std::to_string(upTo(9999));
    row.user2 = oneIn(2) ? kNothing : "provisional";
    row.change = oneIn(3) ? kNothing : "What's new \xC3\xA9 " + std::to_string(upTo(9999));
    row.location = oneIn(2) ? kNothing : "keps/a.md";
    row.effective = oneIn(4) ? "3/9/2027" : kNothing;
    row.responsible = oneIn(15) ? kNothing : anybody();
    const bool current = oneIn(8);
    row.status = current ? 1 : 2;
    what_ = fmt::format("{} adds a revision of {}", actor().name, document);
    row.id = revision().Add(row.document, given(row.level), given(row.user1), given(row.user2),
                            given(row.change), given(row.location), current, given(row.responsible),
                            given(row.effective));
    EXPECT_GT(row.id, model_.revisions.rbegin()->first);
    model_.keep(row);
    added_[document].push_back(row.id);
    count(current ? "add: current" : "add: being revised");
    compare(row.id);
  }

  void route(int id) {
    becomeAnybody();
    const bool send = oneIn(2);
    what_ = fmt::format("{} routes {}, send {}", actor().name, id, send);
    const auto rs = revision().GetRevRS(id);
    auto row = modelRow(id);
    const auto answer = model_.route(actor(), row ? &*row : nullptr);
    expectAnswer(answerOf([&] { return revision().RouteForApproval(rs, send).isEmpty(); }), answer);
    expectRow(rs, row, answer);
    compare(id);
  }

  // For whom is decided: mostly who is asked, mostly by himself.
  std::string approverFor(int id) {
    const auto row = modelRow(id);
    const auto list = model_.approvals.find(id);
    const bool some = list != model_.approvals.end() && !list->second.empty();
    const int how = upTo(19);
    if (row && how < 12 && model_.turn(*row) != nullptr) return model_.turn(*row)->user;
    if (some && how < 17) return anyOf(list->second).user;
    if (some && how == 17) {
      std::string user = anyOf(list->second).user;
      if (user[0] == 'U') user[0] = 'u';
      return user;
    }
    return how == 18 ? "" : anybody();
  }

  void decide(int id, int decision) {
    const std::string approver = approverFor(id);
    if (oneIn(3) || !become(approver)) becomeAnybody();
    const std::string user = oneIn(6) ? anybody() : actor().id;
    const bool send = !oneIn(3);
    what_ = fmt::format("{}, as {}, decides {} about {} for {}, send {}, options {}, owners {}",
                        actor().name, user, decision, id, approver, send, model_.settings.options,
                        model_.settings.ownerRights);
    const auto may = model_.canApprove(actor(), user, id, approver);
    expectAnswer(answerOf([&] { return revision().CanApprove(user, id, approver); }), may);
    if (may != LifeAnswer() && oneIn(2)) {
      count("the client keeps to the answer");
      return;
    }
    const auto rs = revision().GetRevRS(id);
    const auto list = revision().GetRevApprovalList(id);
    auto row = modelRow(id);
    const auto answer =
        model_.decide(actor(), row ? &*row : nullptr, decision, user, approver, send);
    if (answer == LifeAnswer()) {
      count(decision == kApproved ? "approve: True" : "reject: True");
      if (approver != user) count("decided for another");
    }
    const auto actual = answerOf([&] {
      return decision == kApproved ? revision().ApproveRevision(rs, user, approver, list, send)
                                   : revision().RejectRevision(rs, user, approver, list, send);
    });
    expectAnswer(actual, answer);
    expectRow(rs, row, answer, true);
    compare(id);
  }

  void notify(int id) {
    becomeAnybody();
    const bool send = oneIn(2);
    what_ = fmt::format("{} notifies about {}, send {}, options {}", actor().name, id, send,
                        model_.settings.options);
    const auto rs = revision().GetRevRS(id);
    const auto list = revision().approvals(id);
    auto row = modelRow(id);
    const auto answer = model_.notify(actor(), row ? &*row : nullptr, send);
    expectAnswer(answerOf([&] {
                   revision().NotifyNextapprover(rs, list, send);
                   return true;
                 }),
                 answer);
    expectRow(rs, row, answer);
    compare(id);
  }

  void saveNotes(int id) {
    becomeAnybody();
    const std::string user = approverFor(id);
    // Which row is meant where a user is on a list twice is not promised.
    const auto& list = model_.approvals[id];
    if (std::count_if(list.begin(), list.end(),
                      [&](const auto& a) { return test::sameIdentifier(a.user, user); }) > 1)
      return;
    const std::string notes = oneIn(4) ? "" : "It's \"fine\" " + std::to_string(upTo(99));
    what_ = fmt::format("{} notes '{}' for {} about {}", actor().name, notes, user, id);
    model_.saveNotes(notes, user, id);
    count(model_.happened);
    revision().SaveApprovalNotes(notes, user, id);
    compare(id);
  }

  // A caller's set of documents: some with the one that is wanted or without it, or the list that
  // clients show, in which secured documents are for administrators alone.
  struct Documents {
    Ref<Recordset> set;
    bool hasIt = true;
    std::int32_t position = 0;
  };
  Documents documentsWith(const std::string& document) {
    Documents out;
    const bool secured = model_.documents[document].secured;
    const int how = secured && oneIn(2) ? 8 : upTo(9);
    if (how < 4) return out;
    const auto found = std::find(documents_.begin(), documents_.end(), document);
    const int number = static_cast<int>(found - documents_.begin()) + 1;
    const auto some = [&](int first, int last) {
      return vesk().GetRecordset(
          fmt::format("Select * From Documents Where ID Between {} And {} Order By DocumentTitle",
                      first, last));
    };
    if (how < 7) {
      out.set = some(number - upTo(9), number + upTo(9));
    } else if (how < 9) {
      out.set = vesk().Document()->Records(everyDocument_);
      out.hasIt = actor().administrator || !secured;
      count(out.hasIt ? "current: from the list" : "current: secured");
    } else {
      out.set = oneIn(2) ? some(number + 1, number + 9) : some(0, 0);
      out.hasIt = false;
    }
    if (out.set->RecordCount() > 0) {
      out.position = upTo(out.set->RecordCount() - 1) + 1;
      out.set->AbsolutePosition(out.position);
    }
    return out;
  }

  void setCurrent(int id) {
    becomeAnybody();
    const bool send = !oneIn(3);
    what_ = fmt::format("{} puts {} in force, send {}, options {}", actor().name, id, send,
                        model_.settings.options);
    auto row = modelRow(id);
    auto documents = row ? documentsWith(row->document) : Documents();
    const bool own = !documents.set;
    const auto rs = revision().GetRevRS(id);
    const auto answer = model_.setCurrent(actor(), row ? &*row : nullptr, documents.hasIt, send);
    expectAnswer(answerOf([&] {
                   revision().SetAsCurrentRevision(rs, documents.set, send);
                   return true;
                 }),
                 answer);
    if (answer == LifeAnswer() && !HasFailure()) {
      EXPECT_EQ(rs->EditMode(), 0) << "saved";
      if (own) {
        EXPECT_EQ(test::shown(documents.set->Fields("CurrentRevID")->Value()), std::to_string(id));
        count("current: without a set");
      } else {
        EXPECT_EQ(documents.set->AbsolutePosition(), documents.position);
      }
      EXPECT_EQ(rows(fmt::format("Select RevisionID From Revisions Where DocumentID = '{}' And "
                                 "RevisionStatus = 1",
                                 row->document)),
                Texts{std::to_string(id)});
    }
    compare(id);
  }

  void deleteRevision(int id) {
    becomeAnybody();
    what_ = fmt::format("{} deletes {}", actor().name, id);
    EXPECT_TRUE(revision().DeleteRevision(id));
    count(model_.revisions.erase(id) > 0 ? "delete" : "delete: revision gone");
    gone_.push_back(id);
    compare(id);
  }

  // Somebody's statement, past the operations: a turn that may be nobody's.
  void setTurn(int id) {
    becomeAnybody();
    const auto list = model_.approvals.find(id);
    const int most = list == model_.approvals.end() ? 0 : static_cast<int>(list->second.size());
    const int turn = oneIn(3) ? upTo(most) : oneIn(2) ? most + 1 : -1;
    what_ = fmt::format("a statement sets the turn of {} to {}", id, turn);
    vesk().Execute(
        fmt::format("Update Revisions Set RoutingStatus = {} Where RevisionID = {}", turn, id));
    if (auto row = modelRow(id)) {
      row->turn = turn;
      model_.keep(*row);
    }
    count("a turn set by a statement");
    compare(id);
  }

  // ---- what happens around it ----

  void changeList(const std::string& document) {
    auto& list = model_.lists[document];
    const std::string user = list.empty() || oneIn(2) ? anybody() : anyOf(list).user;
    what_ = fmt::format("the list of {} changes: {}", document, user);
    count("the document's list changes");
    if (oneIn(2)) {
      vesk().Execute(fmt::format("Delete * From Routing Where DocumentID = '{}' And UserID = '{}'",
                                 document, user));
      std::erase_if(list, [&](const auto& place) { return place.user == user; });
      return;
    }
    // Before everybody or behind them.
    const bool first = oneIn(2);
    const int edge = list.empty() ? 0
                     : first      ? std::stoi(list.front().order)
                                  : std::stoi(list.back().order);
    const int order = first ? edge - 1 : edge + 1;
    vesk().Execute(
        fmt::format("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('{}', '{}', {})",
                    document, user, order));
    list.insert(first ? list.begin() : list.end(), {.user = user, .order = std::to_string(order)});
  }

  void changeOwners(const std::string& document) {
    const std::string user = anyOf(acting_).actor.id;
    what_ = fmt::format("the owners of {} change: {}", document, user);
    count("owners change");
    if (model_.owners.erase({document, user}) > 0) {
      vesk().Execute(fmt::format("Delete * From Owners Where DocumentID = '{}' And UserID = '{}'",
                                 document, user));
      return;
    }
    model_.owners.insert({document, user});
    vesk().Execute(
        fmt::format("Insert Into Owners (DocumentID, UserID) Values ('{}', '{}')", document, user));
  }

  void changeSettings() {
    becomeAnybody();
    auto& settings = model_.settings;
    const auto store = [&](const std::string& column, const Cell& value) {
      vesk().Execute("Update VeskConfig Set [" + column + "] = " + literal(value));
    };
    what_ = "settings";
    count("settings change");
    switch (upTo(9)) {
      case 0:
        settings.originator = upTo(4) - 1;
        vesk().Execute("Update VeskConfig Set Originator = " +
                       std::to_string(*settings.originator));
        break;
      case 1:
        settings.originator.reset();
        vesk().Execute("Update VeskConfig Set Originator = Null");
        break;
      case 2: store("OriginatorID", settings.originatorId = oneIn(4) ? kNothing : anybody()); break;
      case 3:
        settings.database = oneIn(4) ? kNothing : oneIn(2) ? "PROPOSALS" : "OTHER";
        store("DBID", settings.database);
        break;
      case 4: store("Revision", settings.revisionWord = oneIn(3) ? kNothing : "Issue"); break;
      case 5: store("Document", settings.documentWord = oneIn(3) ? kNothing : "Drawing"); break;
      case 6:
        if (oneIn(4)) {  // shorter than it is asked for
          store("ProgramOptions", settings.options = "0001");
          break;
        }
        [[fallthrough]];
      default: {
        const std::array<std::int16_t, 8> options = {aoNotifyVirtualUsers,
                                                     aoNotifyHCUsers,
                                                     aoNotifyApprovalReq,
                                                     aoSendActions,
                                                     aoApproveInOrder,
                                                     aoApproveInOrder,
                                                     0,
                                                     0};
        const std::int16_t option = anyOf(options);
        // Mostly people are told.
        const bool on = option == aoApproveInOrder || option == 0 ? oneIn(2) : !oneIn(4);
        if (option == 0) {
          vesk().SetOwnerAccess(oroverrideapproval, on);
          settings.ownerRights[oroverrideapproval - 1] = on ? '1' : '0';
          break;
        }
        vesk().SetAppOption(option, on);
        if (settings.options.size() < kApplicationOptions)
          settings.options.resize(kApplicationOptions, '0');
        settings.options[static_cast<std::size_t>(option) - 1] = on ? '1' : '0';
      }
    }
  }

  // Who was told looks at what there is to do, and does some of it.
  void actOnActions() {
    becomeAnybody();
    std::string user = actor().id;
    bool closedToo = oneIn(2);
    if (oneIn(2)) user = std::next(model_.actions.rbegin(), upTo(20))->second.assigneeId;
    if (user == kNothing) return;
    what_ = fmt::format("{} looks at the actions of {}", actor().name, user);
    EXPECT_EQ(vesk().HasActions(user), !model_.actionsOf(user, false).empty());
    const auto ids = model_.actionsOf(user, closedToo);
    Texts expected;
    for (const int id : ids)
      expected.push_back(std::to_string(id) + "|" + model_.actions[id].text());
    Texts actual;
    for (const auto& cells :
         test::cellsOf(*vesk().GetActions(user == actor().id && oneIn(2) ? "" : user, closedToo)))
      actual.push_back(cells[0] + "|" + test::actionOf(cells, 1).text());
    EXPECT_EQ(actual, expected);
    count(ids.empty() ? "actions: none" : "actions: some");
    if (ids.empty()) return;
    const int id = anyOf(ids);
    const bool close = oneIn(2);
    const Date day = today();
    vesk().CompleteCloseAction(std::to_string(id), day, close ? Variant(day) : Variant());
    model_.actions[id].completed = model_.day();
    if (close) model_.actions[id].closed = model_.day();
    count(close ? "actions: closed" : "actions: completed");
  }

  void moveCopy() {
    becomeAnybody();
    const auto& copy = anyOf(model_.copies);
    const int to = anyOf(model_.revisions).first;
    what_ = fmt::format("copy {} is now of {}", copy.first, to);
    EXPECT_FALSE(revision().SetUsersRevisionTo(std::to_string(copy.first), std::to_string(to)));
    model_.copies[copy.first].revision = std::to_string(to);
    count("a copy of another revision");
  }

  // ---- the walk ----

  // A revision of the document: mostly the newest of the walk's, else any of its own.
  int revisionOf(const std::string& document) {
    if (!gone_.empty() && oneIn(40)) return anyOf(gone_);
    auto& own = added_[document];
    if (oneIn(12)) {
      std::vector<int> all;
      for (const auto& [id, row] : model_.revisions)
        if (row.document == document) all.push_back(id);
      if (!all.empty()) return anyOf(all);
    }
    if (oneIn(5)) return anyOf(own);
    return own.back();
  }

  void step(const std::string& document) {
    switch (upTo(30)) {
      case 0: changeList(document); return;
      case 1: changeOwners(document); return;
      case 2:
      case 3: changeSettings(); return;
      case 4: actOnActions(); return;
      case 5: moveCopy(); return;
      case 6:
        model_.today += std::chrono::days(upTo(2));
        setClock();
        break;
      default: break;
    }
    auto& own = added_[document];
    if (own.empty()) {
      add(document);
      return;
    }
    const int id = revisionOf(document);
    const auto row = modelRow(id);
    const int status = row ? row->status : 0;
    const int what = upTo(99);
    if (what < 4) {
      notify(id);
    } else if (what < 8) {
      saveNotes(id);
    } else if (what < 11) {
      setTurn(id);
    } else if (what < 12) {
      deleteRevision(id);
    } else if (what < 17) {
      setCurrent(id);
    } else if (what < 23 || (status == 2 && what < 90)) {
      route(id);
    } else if (status == 3 || what < 40) {
      decide(id, what % 5 == 0 ? kRejected : kApproved);
    } else if (status == 4 && what < 90) {
      setCurrent(id);
    } else if (status == 5 && what < 80) {
      route(id);
    } else {
      add(document);
    }
  }

  static constexpr int kSteps = 12000;
  [[nodiscard]] static int steps() { return test::steps(kSteps); }

  void walk() {
    int done = 0;
    for (std::size_t visit = 0; done < steps() && !HasFailure();) {
      // A client's transaction now and then fails: nothing of it has happened then.
      together_ = !oneIn(4);
      const bool undone = together_ && oneIn(10);
      const auto before = model_;
      const auto addedBefore = added_;
      const auto goneBefore = gone_;
      if (together_) shared_->BeginTrans();
      const int visits = together_ ? 25 : 5;
      for (int v = 0; v < visits && done < steps(); ++v, ++visit) {
        // Every document once, then any of them.
        const auto& document = visit < walked_.size() ? walked_[visit] : anyOf(walked_);
        for (int more = upTo(5); more >= 0 && done < steps(); --more) {
          EXPECT_NO_THROW(step(document));
          if (HasFailure()) {
            ADD_FAILURE() << "seed " << seed() << ", step " << done << ": " << what_;
            return;
          }
          ++done;
        }
      }
      if (!together_) continue;
      if (!undone) {
        shared_->CommitTrans();
        continue;
      }
      shared_->RollbackTrans();
      model_ = before;
      added_ = addedBefore;
      gone_ = goneBefore;
      setClock();
      count("a client's transaction undone");
    }
  }

  static constexpr int kUsers = 771;  // in the files

  test::TestRegister reg_;
  StoppedClock clock_;
  std::mt19937 random_;
  LifeModel model_;
  Ref<kvConnection> shared_;
  std::deque<Acting> acting_;
  std::size_t who_ = 0;
  bool together_ = false;
  std::int32_t everyDocument_ = 0;
  Texts documents_;                                // by number
  Texts walked_;                                   // those that have revisions added
  std::map<std::string, std::vector<int>> added_;  // revisions of each, by the walk
  std::vector<int> gone_;
  std::map<std::string, int> counts_;
  std::string what_;
};

// How often each case comes at least in a full walk, so that none is left out unnoticed.
constexpr std::pair<const char*, int> kAtLeast[] = {
    {"a client's transaction undone", 5},
    {"a copy of another revision", 100},
    {"a turn set by a statement", 100},
    {"actions: closed", 50},
    {"actions: completed", 50},
    {"actions: none", 50},
    {"actions: some", 100},
    {"add: being revised", 1000},
    {"add: current", 100},
    {"approve: True", 500},
    {"can: acts as owner", 100},
    {"can: administrator", 100},
    {"can: another's turn", 30},
    {"can: for another", 500},
    {"can: nobody's turn", 5},
    {"can: not awaiting approval", 200},
    {"can: own turn", 100},
    {"can: owner", 20},
    {"can: owner without the override, for another", 20},
    {"can: revision gone", 20},
    {"current: document not in the set", 40},
    {"current: from the list", 50},
    {"current: holders told", 50},
    {"current: holders told, long title", 4},
    {"current: nobody told", 200},
    {"current: revision gone", 5},
    {"current: secured", 10},
    {"current: without a set", 100},
    {"decide: any order, not on the list", 50},
    {"decide: in order, another's turn", 50},
    {"decide: in order, nobody's turn", 20},
    {"decide: revision gone", 10},
    {"decided for another", 500},
    {"delete", 40},
    {"notes: not on the list", 50},
    {"notes: saved", 50},
    {"notify: approved by all", 200},
    {"notify: next one, not told", 200},
    {"notify: next one, told", 50},
    {"notify: rejected, nobody told", 50},
    {"notify: rejected, told", 30},
    {"notify: revision gone", 4},
    {"owners change", 100},
    {"reject: True", 100},
    {"route: again", 200},
    {"route: first time", 500},
    {"route: nobody to ask", 50},
    {"route: revision gone", 5},
    {"settings change", 200},
    {"texts: nobody's turn", 10},
    {"texts: told", 1000},
    {"the caller does not save", 100},
    {"the client keeps to the answer", 300},
    {"the document's list changes", 100},
};

TEST_F(LifeWalk, GoesAsTheRulesSay) {
  REQUIRE_SHARED_DATA(folder, "proposals-register");
  begin(folder);
  const auto others = test::untouched(reg_);
  ASSERT_EQ(test::difference(test::rowsOf(model_), test::rowsOf(reg_)), "") << "before the walk";

  walk();
  if (HasFailure()) return;
  EXPECT_EQ(test::difference(test::rowsOf(model_), test::rowsOf(reg_)), "") << "seed " << seed();
  EXPECT_TRUE(test::untouched(reg_) == others) << "seed " << seed();

  for (const auto& [what, times] : kAtLeast)
    // Rare cases are rarer still in a short walk.
    EXPECT_GE(counts_[what], steps() == kSteps ? times : times * steps() / kSteps / 4)
        << what << ", seed " << seed();
}

}  // namespace
}  // namespace kv
