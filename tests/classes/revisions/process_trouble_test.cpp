// SPDX-License-Identifier: Apache-2.0
// Revisions in the hands of several processes at once, and of processes that are killed.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <optional>
#include <random>
#include <thread>

#include "classes/revisions/approval_session.h"
#include "classes/revisions/life_model.h"
#include "classes/revisions/life_plan.h"
#include "classes/revisions/life_register.h"
#include "support/child_process.h"
#include "support/scale.h"

namespace kv {
namespace {

using test::ChildProcess;
using test::Texts;

const char* const kInOrder = "00000011010";
const char* const kAnyOrder = "00000011000";
constexpr int kManyRounds = 60;
const int kRounds = test::steps(kManyRounds);
constexpr int kApprovers = 3;  // Anna, Bert and Cleo

class Processes : public test::ApprovalSession<test::SessionTest> {
 protected:
  Processes() { logIn("Anna"); }

  [[nodiscard]] std::vector<std::string> words(const std::string& kind, const std::string& user,
                                               std::vector<std::string> more) const {
    std::vector<std::string> out = {KVVESK_REVISION_WORKER, kind, reg_.path(), user};
    out.insert(out.end(), more.begin(), more.end());
    return out;
  }
  // Anna, Bert and Cleo, each in a process of his own, ready to be told revisions.
  void start(const std::string& kind, bool transactions) {
    workers_.clear();
    for (const char* user : {"Anna", "Bert", "Cleo"})
      workers_.emplace_back(words(kind, user, {transactions ? "1" : "0"}));
    for (auto& worker : workers_) ASSERT_EQ(worker.readLine().value_or("ended"), "ready");
  }
  // All at once are told a revision of their own; what each answers.
  Texts tell(const std::vector<int>& ids) {
    for (std::size_t i = 0; i < workers_.size(); ++i) workers_[i].tell(std::to_string(ids[i]));
    Texts out;
    for (auto& worker : workers_) out.push_back(worker.readLine().value_or("ended"));
    for (const auto& answer : out) EXPECT_TRUE(answer[0] >= '0' && answer[0] <= '9') << answer;
    for (const auto& answer : out)
      if (!HasFailure()) conflicts_ += std::stoi(answer);
    return out;
  }
  Texts tell(int id) { return tell(std::vector<int>(workers_.size(), id)); }

  // A revision that awaits approval by Anna, Bert and Cleo.
  std::int32_t awaitingAll() {
    const std::int32_t id =
        addRevision(3, "RevisionLevel = 'B', ResponsibleID = 'User4', RoutingStatus = 1");
    for (int user = 1; user <= kApprovers; ++user)
      addApprover(id, "User" + std::to_string(user), user);
    return id;
  }
  // What the rules say of a revision with its approvers' decisions.
  void expectSettled(std::int32_t id) {
    test::LifeModel model;
    test::load(model, reg_);
    test::LifeRevision row = model.revisions[id];
    const auto stored = row.text();
    model.notify({}, &row, false);
    EXPECT_EQ(stored, row.text());
  }

  // All of them decide in order about one revision after the other, for whoever's turn it is.
  void takeTurns(bool transactions) {
    options(kInOrder);
    start("in-order", transactions);
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
      const std::int32_t id = awaitingAll();
      const Texts answers = tell(id);
      EXPECT_EQ(states(id), "3|4");
      // Who says that he decided for an approver is recorded there, and nobody else says so.
      Texts expected;
      std::size_t decisions = 0;
      for (int approver = 1; approver <= kApprovers; ++approver)
        for (std::size_t worker = 0; worker < answers.size(); ++worker)
          if (answers[worker].find(fmt::format(" User{}", approver)) != std::string::npos) {
            expected.push_back(fmt::format("User{}|1|User{}|2/26/2001|~", approver, worker + 1));
            ++decisions;
          }
      EXPECT_EQ(decisions, static_cast<std::size_t>(kApprovers));
      EXPECT_EQ(approvals(id), expected);
      EXPECT_EQ(reg_.rows(fmt::format(
                    "Select AssigneeID From Actions Where Reference = '{}' Order By ActionID", id)),
                (Texts{"User2", "User3"}))
          << "each is told once";
    }
  }

  // That they have met at all.
  void expectConflicts() const {
    if (kRounds == kManyRounds) {
      EXPECT_GT(conflicts_, 0);
    }
  }

  std::deque<ChildProcess> workers_;
  int conflicts_ = 0;
};

// ---- several at once ----

TEST_F(Processes, LoseNoDecisionInAnyOrder) {
  options(kAnyOrder);
  for (const bool transactions : {false, true}) {
    start("any-order", transactions);
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
      const std::int32_t id = awaitingAll();
      tell(id);
      Texts expected;
      for (int user = 1; user <= kApprovers; ++user)
        expected.push_back(
            fmt::format("User{}|{}|~|~|~", user, (id + '0' + user) % 7 != 0 ? 1 : 2));
      EXPECT_EQ(approvals(id), expected);
      expectSettled(id);
    }
  }
  EXPECT_EQ(conflicts_, 0) << "approvers are not in each other's way";
}

TEST_F(Processes, TakeATurnOnceInTransactions) {
  takeTurns(true);
  // In a file a transaction that writes keeps all others waiting.
  if (test::onServer()) {
    expectConflicts();
  } else {
    EXPECT_EQ(conflicts_, 0);
  }
}

TEST_F(Processes, TakeATurnOnceWithoutTransactions) {
  takeTurns(false);
  expectConflicts();
}

TEST_F(Processes, RouteARevisionOnce) {
  for (int user = 1; user <= kApprovers; ++user) addToList(user, user);
  start("route", false);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::int32_t id = addRevision(2);
    tell(id);
    EXPECT_EQ(approvals(id), (Texts{"User1|0|~|~|~", "User2|0|~|~|~", "User3|0|~|~|~"}));
    EXPECT_EQ(states(id), "1|3");
  }
  expectConflicts();
}

TEST_F(Processes, NeverPutTwoRevisionsInForce) {
  std::vector<int> ids(kApprovers);
  for (int& id : ids) id = addRevision(4);
  Ref<Recordset> documents;
  revision().SetAsCurrentRevision(revision().GetRevRS(ids[0]), documents, false);
  start("current", false);
  std::atomic<bool> done = false;
  int looks = 0;
  std::thread told([&] {
    for (int round = 0; round < test::steps(100) && !HasFailure(); ++round) tell(ids);
    done = true;
  });
  // Meanwhile one, and only one, is in force at any look, and the document points at it.
  for (; !done && !HasFailure(); ++looks)
    EXPECT_EQ(reg_.rows("Select Documents.DocumentID From Documents Inner Join Revisions On "
                        "Documents.CurrentRevID = Revisions.RevisionID Where "
                        "Revisions.RevisionStatus = 1"),
              Texts{"D1"});
  told.join();
  EXPECT_GT(looks, 0);
  EXPECT_EQ(reg_.value("Select Count(*) From Revisions Where RevisionStatus = 1"), "1");
}

// ---- killed ----

// What must have become of a plan after each of its calls.
class Replay {
 public:
  Replay(test::LifeModel model, test::LifePlan plan, bool transactions)
      : model_(std::move(model)), plan_(plan), transactions_(transactions) {}

  void call() {
    if (row_) {
      model_.keep(*row_);
      row_.reset();
      return;
    }
    const test::Deed deed = plan_.next();
    row_ = model_.revisions.at(deed.revision);
    const test::LifeActor anna{"User1", "Anna", true, false};
    const std::string approver = "User" + std::to_string(deed.approver);
    switch (deed.kind) {
      case test::Deed::Route: model_.route(anna, &*row_); break;
      case test::Deed::Approve: model_.decide(anna, &*row_, 1, "User1", approver, deed.send); break;
      case test::Deed::Reject: model_.decide(anna, &*row_, 2, "User1", approver, deed.send); break;
      case test::Deed::SetCurrent: model_.setCurrent(anna, &*row_, true, deed.send); break;
    }
    for (const auto& action : model_.sent) told_.push_back(action.text());
    // A decision is saved with the revision that it is about.
    if (deed.kind == test::Deed::Approve || deed.kind == test::Deed::Reject) model_.keep(*row_);
    if (transactions_) call();
  }

  [[nodiscard]] const test::LifeModel& model() const { return model_; }
  [[nodiscard]] bool saved() const { return !row_; }
  // In no order: which of several holders is told first is not promised.
  [[nodiscard]] test::LifeRows rows() const {
    auto out = test::rowsOf(model_);
    out["Actions"] = told_;
    std::sort(out["Actions"].begin(), out["Actions"].end());
    return out;
  }

 private:
  test::LifeModel model_;
  test::LifePlan plan_;
  bool transactions_;
  std::optional<test::LifeRevision> row_;  // in the caller's hands, not yet saved
  Texts told_;
};

class KilledProcesses : public Processes {
 protected:
  static constexpr int kRevisions = 8;

  KilledProcesses() {
    // Lists of three, none, one and two approvers.
    for (int d = 2; d <= 4; ++d)
      reg_.execute(fmt::format(
          "Insert Into Documents (DocumentID, DocumentTitle) Values ('D{0}', 'Title {0}')", d));
    for (const auto& [document, user] :
         {std::pair("D1", 1), {"D1", 2}, {"D1", 3}, {"D3", 2}, {"D4", 1}, {"D4", 3}})
      addToList(user, user, document);
    for (const auto& [document, user] : {std::pair("D1", 2), {"D1", 3}, {"D1", 4}, {"D4", 4}})
      for (const char* hard : {"True", "False"})
        reg_.execute(
            fmt::format("Insert Into Personals (UserID, DocumentID, ManualID, HardCopy, "
                        "RevisionID) Values ('User{}', '{}', '0', {}, 1)",
                        user, document, hard));
    for (int r = 1; r <= kRevisions; ++r)
      EXPECT_EQ(addRevision(2, fmt::format("DocumentID = 'D{}', RevisionLevel = 'v{}', "
                                           "ResponsibleID = 'User4'",
                                           (r - 1) % 4 + 1, r)),
                r);
    reg_.execute("Update VeskConfig Set Originator = 2");
  }

  [[nodiscard]] test::LifeRows rows() const {
    auto out = test::rowsOf(reg_);
    out["Actions"] = reg_.rows("Select " + test::kActionCells + " From Actions");
    std::sort(out["Actions"].begin(), out["Actions"].end());
    return out;
  }
  // A server goes on with what it was last sent, and then finds that nobody is there.
  [[nodiscard]] int clients() const {
    return test::onServer()
               ? std::stoi(test::TestServer::run(reg_.path(),
                                                 "SELECT count(*) FROM pg_stat_activity WHERE "
                                                 "datname = current_database()"))
               : 0;
  }

  void killAgainAndAgain(bool transactions) {
    int calls = 0;
    int unsaved = 0;
    test::LifeModel model;
    test::load(model, reg_);
    model.today = std::chrono::sys_days(std::chrono::year(2001) / 2 / 26);
    const int kills = test::steps(100);
    for (int kill = 0; kill < kills; ++kill) {
      const auto seed = static_cast<std::uint32_t>(random_());
      SCOPED_TRACE(fmt::format("kill {}, seed {}", kill, seed));
      reg_.execute("Delete * From Actions");
      model.settings.options = fmt::format("000101110{}0", kill % 2);
      options(model.settings.options);
      const int before = clients();
      ChildProcess worker(words("plan", "Anna",
                                {std::to_string(seed), std::to_string(kRevisions),
                                 std::to_string(kApprovers), transactions ? "1" : "0"}));
      ASSERT_EQ(worker.readLine().value_or("ended"), "ready");
      worker.tell("go");
      std::this_thread::sleep_for(std::chrono::microseconds(random_() % 40000));
      worker.kill();
      const Texts said = worker.readAll();
      ASSERT_EQ(worker.wait(), -1) << "it ended by itself: " << (said.empty() ? "" : said.back());
      while (clients() > before) std::this_thread::sleep_for(std::chrono::milliseconds(1));

      Replay replay(model, test::LifePlan(seed, kRevisions, kApprovers), transactions);
      for (const auto& line : said) {
        ASSERT_EQ(line, ".");
        replay.call();
      }
      const auto there = rows();
      const std::string difference = test::difference(replay.rows(), there);
      if (!difference.empty()) {
        // Done, and killed before it could say so.
        replay.call();
        ASSERT_EQ(test::difference(replay.rows(), there), "")
            << "with one more call, and after the " << said.size() << " that it told of\n"
            << difference;
      }
      calls += static_cast<int>(said.size());
      unsaved += replay.saved() ? 0 : 1;
      model = replay.model();
    }
    EXPECT_GT(calls, 0);
    constexpr int kMany = 100;
    if (transactions) {
      EXPECT_EQ(unsaved, 0);
    } else if (kills >= kMany) {
      EXPECT_GT(unsaved, 0) << "some are killed between a call and the saving";
    }
  }

  std::mt19937 random_{std::random_device()()};
};

TEST_F(KilledProcesses, LeaveWholeCalls) { killAgainAndAgain(false); }
TEST_F(KilledProcesses, LeaveWholeTransactions) { killAgainAndAgain(true); }

}  // namespace
}  // namespace kv
