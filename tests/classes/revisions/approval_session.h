// SPDX-License-Identifier: Apache-2.0
// A session with a document on its way through approval: Anna (User1, administrator), Bert, Cleo
// and Dora, the document D1 with its list of approvers, and what was sent to whom.
#pragma once

#include <string>

#include "classes/revisions/revision_session.h"
#include "common/clock.h"

namespace kv::test {

template <class Session>
class ApprovalSession : public RevisionSession<Session> {
 protected:
  ApprovalSession() : clock_(at(2001, 2, 26, 14, 5, 9)) {
    this->reg_.addUser(3, "Cleo", "secret");
    this->reg_.addUser(4, "Dora", "");
    this->reg_.execute(
        "Insert Into Documents (DocumentID, DocumentTitle) Values ('D1', 'Pump manual')");
    this->reg_.execute(
        "Update VeskConfig Set DBID = 'DB1', [Revision] = 'Issue', [Document] = 'Drawing'");
    options("00000000000");
  }
  void options(const std::string& text) {
    this->reg_.execute("Update VeskConfig Set ProgramOptions = '" + text + "'");
  }
  // Puts a user on a document's list of approvers.
  void addToList(int user, int place, const std::string& document = "D1") {
    this->reg_.execute(
        fmt::format("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('{}', 'User{}', "
                    "{})",
                    document, user, place));
  }
  // A revision that awaits approval by Bert, Cleo and Dora, who have decided so.
  std::int32_t awaiting(const std::string& decisions, int turn = 1) {
    const std::int32_t id = this->addRevision(
        3, fmt::format("RevisionLevel = 'B', ResponsibleID = 'User4', RoutingStatus = {}", turn));
    for (std::size_t i = 0; i < decisions.size(); ++i) {
      const int user = static_cast<int>(i) + 2;
      this->addApprover(id, "User" + std::to_string(user), user * 10);
      this->reg_.execute(fmt::format(
          "Update ApprovalRouting Set ApprovalStatus = {} Where RevID = {} and UserID = 'User{}'",
          decisions[i], id, user));
    }
    return id;
  }
  [[nodiscard]] Ref<Recordset> listOf(std::int32_t id) {
    return this->revision().GetRevApprovalList(id);
  }
  // Routing status and status, as the current row of a set has them.
  static std::string statesIn(const Ref<Recordset>& rs) {
    return shown(rs->Fields("RoutingStatus")->Value()) + "|" +
           shown(rs->Fields("RevisionStatus")->Value());
  }
  [[nodiscard]] std::string states(std::int32_t id) const {
    return this->reg_.value(
        "Select RoutingStatus, RevisionStatus From Revisions Where RevisionID "
        "= " +
        std::to_string(id));
  }
  [[nodiscard]] Texts approvals(std::int32_t id) const {
    return this->reg_.rows(
        "Select UserID, ApprovalStatus, ApprovedBy, DateApproved, Notes From ApprovalRouting Where "
        "RevID = " +
        std::to_string(id) + " Order By ListOrder");
  }
  [[nodiscard]] Texts actions() const {
    return this->reg_.rows(
        "Select Subject, AssigneeID, Assignee, Originator, OriginatorID, DateOpened, DateDue, "
        "DateCompleted, DateClosed, Description, ReferenceID, Reference, ActionType From Actions "
        "Order By ActionID");
  }
  // Only to whom, and what for.
  [[nodiscard]] Texts tasks() const {
    return this->reg_.rows("Select AssigneeID, Subject From Actions Order By ActionID");
  }
  // Who signs, for each setting of Originator, the actions that an operation sends: name and
  // number.
  Texts signatures(const std::function<void()>& operation) {
    Texts out;
    for (const char* originator : {"0", "1", "2", "3", "-1", "Null"}) {
      this->reg_.execute("Delete * From Actions");
      this->reg_.execute(
          std::string("Update VeskConfig Set OriginatorID = 'User4', Originator = ") + originator);
      operation();
      out.push_back(this->reg_.value("Select Originator, OriginatorID From Actions"));
    }
    return out;
  }

  StoppedClock clock_;
};

// An operation in every state of failure: each of its writes and then its commit fails in turn, and
// nothing is left of it. Returns how many writes it makes.
template <class Session>
int failEachWrite(Faults& faults, const Session& everything,
                  const std::function<void()>& operation) {
  const auto before = everything();
  int writes = 0;
  for (bool failed = true; failed && writes < 100; writes += failed ? 1 : 0) {
    faults.failCommitAfter = 0;
    faults.failWriteAfter = writes;
    EXPECT_RAISES(kEngineFailure, operation()) << writes;
    failed = faults.failCommitAfter == 0;
    EXPECT_EQ(everything(), before) << "after " << writes << " writes";
    if (testing::Test::HasFailure()) break;
  }
  faults.failCommitAfter = -1;
  faults.failWriteAfter = -1;
  return writes;
}

}  // namespace kv::test
