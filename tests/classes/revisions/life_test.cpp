// SPDX-License-Identifier: Apache-2.0
// Long random lives of revisions, compared step by step with a model that knows only the rules.
#include <gtest/gtest.h>

#include <random>

#include "classes/revisions/approval_session.h"
#include "support/scale.h"

namespace kv {
namespace {

using test::Texts;

constexpr int kDocuments = 4;
constexpr int kUsers = 4;

struct Approver {
  int user;
  int status = 0;
  bool signedOff = false;  // by Anna, on the day of the test
};

// A revision, and what is expected of it.
struct Life {
  std::int32_t id = 0;
  int document = 0;
  int turn = 0;
  int status = 2;
  std::vector<Approver> approvers;

  // Looks for a rejection, then for who has not decided; returns whom to tell, 0 for nobody.
  int advance() {
    for (const auto& a : approvers)
      if (a.status == 2) {
        status = 5;
        return kUsers;  // who is responsible
      }
    for (std::size_t i = 0; i < approvers.size(); ++i)
      if (approvers[i].status == 0) {
        turn = static_cast<int>(i) + 1;
        return approvers[i].user;
      }
    status = 4;
    return 0;
  }
};

class RevisionLives : public test::ApprovalSession<test::SessionTest> {
 protected:
  RevisionLives() {
    logIn("Anna");
    lists_.resize(kDocuments);
    for (int d = 0; d < kDocuments; ++d) {
      reg_.execute(fmt::format(
          "Insert Into Documents (DocumentID, DocumentTitle) Values ('R{}', 'Title {}')", d, d));
      std::vector<int> users = {1, 2, 3, 4};
      std::shuffle(users.begin(), users.end(), random_);
      users.resize(static_cast<std::size_t>(d));  // the first document has no approvers
      for (std::size_t i = 0; i < users.size(); ++i)
        addToList(users[i], static_cast<int>(i) * 10, fmt::format("R{}", d));
      lists_[static_cast<std::size_t>(d)] = users;
    }
  }

  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }

  void begin() {
    Life life;
    life.document = upTo(kDocuments - 1);
    life.id = addRevision(2, fmt::format("DocumentID = 'R{}', RevisionLevel = 'L', ResponsibleID = "
                                         "'User4'",
                                         life.document));
    lives_.push_back(life);
  }

  void tell(int user, const std::string& subject) {
    tasks_.push_back(fmt::format("User{}|{}", user, subject));
  }

  void route(Life& life) {
    const auto rs = revision().GetRevRS(life.id);
    revision().RouteForApproval(rs, upTo(1) == 1);
    rs->Update();
    if (life.approvers.empty())
      for (const int user : lists_[static_cast<std::size_t>(life.document)])
        life.approvers.push_back({user});
    for (auto& a : life.approvers) a.status = 0;
    life.turn = 1;
    life.status = life.approvers.empty() ? 4 : 3;
    if (!life.approvers.empty()) tell(life.approvers[0].user, "Your approval is required");
  }

  void decide(Life& life, bool approved) {
    const bool inOrder = upTo(1) == 1;
    const bool notify = upTo(1) == 1;
    const bool send = upTo(1) == 1;
    options(fmt::format("000000{}{}0{}0", notify ? 1 : 0, send ? 1 : 0, inOrder ? 1 : 0));
    const bool asked = upTo(3) > 0;
    // Mostly somebody who is on the list, mostly the one whose turn it is.
    int user = upTo(kUsers - 1) + 1;
    if (!life.approvers.empty() && life.turn > 0 && upTo(2) > 0)
      user = life.approvers[static_cast<std::size_t>(life.turn) - 1].user;
    const std::string approver = fmt::format("User{}", user);

    int answer = -1;  // it raised
    const auto rs = revision().GetRevRS(life.id);
    const auto list = listOf(life.id);
    const auto raised = test::numberOf([&] {
      answer = (approved ? revision().ApproveRevision(rs, "User1", approver, list, asked)
                         : revision().RejectRevision(rs, "User1", approver, list, asked))
                   ? 1
                   : 0;
    });
    rs->Update();

    Approver* found = nullptr;
    int expected = -1;
    if (inOrder) {
      if (!life.approvers.empty() && life.turn > 0) {
        auto& turn = life.approvers[static_cast<std::size_t>(life.turn) - 1];
        expected = turn.user == user ? 1 : 0;
        if (expected == 1) found = &turn;
      }
    } else {
      for (auto& a : life.approvers)
        if (a.user == user) found = &a;
      if (found != nullptr) expected = 1;
    }
    EXPECT_EQ(answer, expected);
    EXPECT_EQ(raised, expected == -1 ? kNoCurrentRow : 0);
    if (found == nullptr) return;
    found->status = approved ? 1 : 2;
    if (inOrder) found->signedOff = true;
    const int told = life.advance();
    if (told == 0 || !asked || !notify) return;
    if (life.status == 5 && rejected(life))
      tell(told, "A revision has been rejected.");
    else if (send)
      tell(told, "Your Approval is required.");
  }

  static bool rejected(const Life& life) {
    for (const auto& a : life.approvers)
      if (a.status == 2) return true;
    return false;
  }

  // The register and the model say the same about a revision, and about what was told.
  void compare(const Life& life) {
    EXPECT_EQ(states(life.id), fmt::format("{}|{}", life.turn, life.status));
    Texts expected;
    for (const auto& a : life.approvers)
      expected.push_back(
          fmt::format("User{}|{}|{}|~", a.user, a.status, a.signedOff ? "User1|2/26/2001" : "~|~"));
    EXPECT_EQ(approvals(life.id), expected);
    EXPECT_EQ(tasks(), tasks_);
    reg_.execute("Delete * From Actions");
    tasks_.clear();
  }

  std::mt19937 random_{20010226};
  std::vector<std::vector<int>> lists_;
  std::vector<Life> lives_;
  Texts tasks_;
};

TEST_F(RevisionLives, GoAsTheRulesSay) {
#ifdef NDEBUG
  const int steps = test::steps(5000);
#else
  const int steps = test::steps(1000);
#endif
  int settled = 0;
  for (int step = 0; step < steps; ++step) {
    SCOPED_TRACE(step);
    if (lives_.empty() || (lives_.size() < 30 && upTo(9) == 0)) begin();
    auto& life = lives_[static_cast<std::size_t>(upTo(static_cast<int>(lives_.size()) - 1))];
    const int what = upTo(9);
    if (what < 2 || life.status == 2)
      route(life);
    else
      decide(life, what > 2);
    compare(life);
    if (life.status >= 4) ++settled;
    if (HasFailure()) break;
  }
  for (const auto& life : lives_) compare(life);
  EXPECT_GT(settled, steps / 20) << "lives come to their ends";
}

}  // namespace
}  // namespace kv
