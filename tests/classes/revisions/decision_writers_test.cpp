// SPDX-License-Identifier: Apache-2.0
// Eight processes that decide about the same revisions at once, none of them in a transaction of
// its own: each decision is taken once, and where a revision stands follows from the decisions,
// whoever saves last.
#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <random>
#include <sstream>
#include <thread>

#include "classes/revisions/approval_session.h"
#include "common/convert.h"
#include "support/other_user.h"
#include "support/scale.h"

namespace kv {
namespace {

using test::Texts;

const char* const kInOrder = "00000011010";
const char* const kAnyOrder = "00000011000";
constexpr int kProcesses = 8;
constexpr int kApprovers = kProcesses;  // one for each

// A session of Anna's in another process.
class OtherSession {
 public:
  explicit OtherSession(const std::string& path) {
    vesk_->Login("Anna", "secret", "Lock Timeout=60;Data Source=" + path);
  }
  [[nodiscard]] clsVeskRevision& revisions() const { return *vesk_->Revision(); }

 private:
  test::TestSession vesk_;
};

std::string user(int number) { return "User" + std::to_string(number); }

// What a client may meet that is not alone; then he looks again. False when he has.
bool unlessChanged(const std::function<void()>& operation) {
  const auto error = test::errorOf(operation);
  if (error && error->number() != kRowChanged) throw *error;
  return !error;
}

// A moment in which somebody else may come first.
void think() {
  static std::mt19937 random{std::random_device()()};
  constexpr unsigned kLongest = 1500;
  std::this_thread::sleep_for(std::chrono::microseconds(random() % kLongest));
}

// Saves a row as clients do after a decision, and goes on when somebody else has changed it.
void save(const Ref<Recordset>& rs) {
  think();
  if (!unlessChanged([&] { rs->Update(); })) rs->CancelUpdate();
}

class DecisionWriters : public test::ApprovalSession<test::SessionTest> {
 protected:
  // Revisions that await approval by eight.
  void addRevisions(int count) {
    for (int i = 0; i < count; ++i) {
      ids_.push_back(
          addRevision(3, "RevisionLevel = 'B', ResponsibleID = 'User1', RoutingStatus = 1"));
      for (int a = 1; a <= kApprovers; ++a) addApprover(ids_.back(), user(a), a);
    }
  }
  // Runs the processes and counts the words that they answer with.
  std::map<std::string, int> inAll(
      const std::function<std::string(const OtherSession&, int)>& body) {
    const auto answers = test::inProcesses(kProcesses, [&](int p) {
      const OtherSession session(reg_.path());
      return body(session, p);
    });
    std::map<std::string, int> words;
    for (const auto& answer : answers) {
      EXPECT_EQ(answer.find("error"), std::string::npos) << answer;
      std::istringstream in(answer);
      for (std::string word; in >> word;) ++words[word];
    }
    return words;
  }
  void expectAllApproved() const {
    for (const int id : ids_) {
      EXPECT_EQ(states(id).substr(states(id).find('|')), "|4") << id;
      EXPECT_EQ(
          reg_.value("Select Count(*) From ApprovalRouting Where ApprovalStatus = 1 and RevID = " +
                     std::to_string(id)),
          std::to_string(kApprovers));
    }
  }

  std::vector<int> ids_;
};

TEST_F(DecisionWriters, InOrderATurnIsTakenOnce) {
  options(kInOrder);
  addRevisions(test::steps(26));
  const auto taken = inAll([&](const OtherSession& session, int) {
    std::string decided;
    for (const int id : ids_)
      for (int looks = 0; looks < 1000; ++looks) {
        const auto rs = session.revisions().GetRevRS(id);
        if (joinText(rs->Fields("RevisionStatus")->Value()) != "3") break;
        const auto list = session.revisions().GetRevApprovalList(id);
        list->Move(toInt16(rs->Fields("RoutingStatus")->Value()) - 1);
        const std::string approver = joinText(list->Fields("UserID")->Value());
        bool done = false;
        if (!unlessChanged([&] {
              done = session.revisions().ApproveRevision(rs, "User1", approver, list, false);
            }))
          continue;
        save(rs);
        if (done) decided += fmt::format("{}:{} ", id, approver);
      }
    return decided;
  });
  EXPECT_EQ(taken.size(), ids_.size() * kApprovers);
  int twice = 0;
  for (const auto& [decision, times] : taken) twice += times - 1;
  EXPECT_EQ(twice, 0) << "of " << taken.size() << " decisions";
  expectAllApproved();
}

TEST_F(DecisionWriters, InAnyOrderTheLastApprovalSettlesIt) {
  options(kAnyOrder);
  addRevisions(test::steps(60));
  const auto conflicts = inAll([&](const OtherSession& session, int p) {
    for (const int id : ids_) {
      const auto rs = session.revisions().GetRevRS(id);
      const auto list = session.revisions().GetRevApprovalList(id);
      if (!session.revisions().ApproveRevision(rs, "User1", user(p + 1), list, false))
        return std::string("refused");
      save(rs);
    }
    return std::string();
  });
  EXPECT_TRUE(conflicts.empty());
  const auto waiting = reg_.value(
      "Select Count(*) From Revisions Where RevisionStatus <> 4 or RoutingStatus Is Null");
  EXPECT_EQ(waiting, "0") << "of " << ids_.size() << " revisions still wait";
  expectAllApproved();
}

TEST_F(DecisionWriters, OneRejectionSettlesItWhateverTheOthersSave) {
  options(kAnyOrder);
  addRevisions(test::steps(30));
  inAll([&](const OtherSession& session, int p) {
    for (const int id : ids_) {
      const auto rs = session.revisions().GetRevRS(id);
      const auto list = session.revisions().GetRevApprovalList(id);
      if (id % kProcesses == p)
        session.revisions().RejectRevision(rs, "User1", user(p + 1), list, false);
      else
        session.revisions().ApproveRevision(rs, "User1", user(p + 1), list, false);
      save(rs);
    }
    return std::string();
  });
  for (const int id : ids_)
    EXPECT_EQ(
        reg_.value("Select RevisionStatus From Revisions Where RevisionID = " + std::to_string(id)),
        "5");
}

// Half of them only look where the revisions stand, and save what they have seen.
TEST_F(DecisionWriters, WhoOnlyLooksSpoilsNothing) {
  options(kAnyOrder);
  addRevisions(test::steps(30));
  inAll([&](const OtherSession& session, int p) {
    for (const int id : ids_) {
      const auto rs = session.revisions().GetRevRS(id);
      const auto list = session.revisions().GetRevApprovalList(id);
      if (p % 2 == 0) {
        for (int a = p + 1; a <= p + 2; ++a) {
          list->MoveFirst();
          session.revisions().ApproveRevision(rs, "User1", user(a), list, false);
          save(rs);
        }
      } else {
        for (int looks = 0; looks < 4; ++looks) {
          session.revisions().NotifyNextapprover(rs, list, false);
          save(rs);
        }
      }
    }
    return std::string();
  });
  expectAllApproved();
}

}  // namespace
}  // namespace kv
