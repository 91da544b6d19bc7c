// SPDX-License-Identifier: Apache-2.0
// A client of its own for tests with several processes. It is told revisions on its input, one on
// each line, and answers each with a line; or goes through a plan and writes a line after each
// call, until somebody kills it.
//   revision_worker plan LOCATION USER SEED REVISIONS APPROVERS TRANSACTIONS
//   revision_worker any-order|in-order|route|current LOCATION USER TRANSACTIONS
#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <thread>

#include "classes/revisions/life_plan.h"
#include "common/clock.h"
#include "common/convert.h"
#include "common/error.h"
#include "support/test_register.h"

namespace kv::test {
namespace {

void say(const std::string& line) {
  std::fputs((line + "\n").c_str(), stdout);
  std::fflush(stdout);
}

class Worker {
 public:
  Worker(const std::string& location, const std::string& user, bool transactions)
      : transactions_(transactions) {
    vesk_->Login(user, "secret", "Lock Timeout=60;Data Source=" + location);
    user_ = vesk_->DataServer()->Profile()->UserID();
  }

  [[noreturn]] void follow(LifePlan plan) {
    for (;;) {
      const Deed deed = plan.next();
      if (transactions_) connection().BeginTrans();
      const auto rs = revisions().GetRevRS(deed.revision);
      try {
        carryOut(deed, rs);
      } catch (const Error& error) {
        if (error.number() != kNoCurrentRow) throw;
      }
      if (!transactions_) {
        say(".");
        std::this_thread::sleep_for(std::chrono::microseconds(300));
      }
      rs->Update();
      if (transactions_) connection().CommitTrans();
      say(".");
    }
  }

  // Approves for himself, whatever the others do meanwhile.
  std::string decideInAnyOrder(int id) {
    int conflicts = 0;
    attempt(conflicts, [&] {
      const auto rs = revisions().GetRevRS(id);
      const auto list = revisions().GetRevApprovalList(id);
      const bool approves = (id + user_.back()) % 7 != 0;
      think();
      if (approves)
        revisions().ApproveRevision(rs, user_, user_, list);
      else
        revisions().RejectRevision(rs, user_, user_, list);
      save(rs, id, conflicts);
    });
    return std::to_string(conflicts);
  }

  // Approves for everybody whose turn comes, until nobody's does; says for whom he did.
  std::string decideInOrder(int id) {
    std::string decided;
    int conflicts = 0;
    for (bool waits = true; waits;)
      attempt(conflicts, [&] {
        const auto rs = revisions().GetRevRS(id);
        const auto list = revisions().GetRevApprovalList(id);
        waits = joinText(rs->Fields("RevisionStatus")->Value()) == "3";
        if (!waits) return;
        list->Move(toInt16(rs->Fields("RoutingStatus")->Value()) - 1);
        const std::string approver = joinText(list->Fields("UserID")->Value());
        think();
        if (!revisions().ApproveRevision(rs, user_, approver, list)) return;
        save(rs, id, conflicts);
        decided += " " + approver;
      });
    return std::to_string(conflicts) + decided;
  }

  std::string route(int id) {
    int conflicts = 0;
    try {
      const auto rs = revisions().GetRevRS(id);
      think();
      revisions().RouteForApproval(rs, true);
      think();
      rs->Update();
    } catch (const Error& error) {
      if (error.number() != kRowChanged) throw;
      ++conflicts;  // somebody else has routed it
    }
    return std::to_string(conflicts);
  }

  std::string putInForce(int id) {
    int conflicts = 0;
    attempt(conflicts, [&] {
      Ref<Recordset> documents;
      revisions().SetAsCurrentRevision(revisions().GetRevRS(id), documents, false);
    });
    return std::to_string(conflicts);
  }

 private:
  // A moment in which somebody else may come first.
  void think() { std::this_thread::sleep_for(std::chrono::microseconds(random_() % 3000)); }

  [[nodiscard]] clsVeskRevision& revisions() const { return *vesk_->Revision(); }
  [[nodiscard]] kvConnection& connection() const { return *vesk_->DataServer()->Connection(); }

  void carryOut(const Deed& deed, const Ref<Recordset>& rs) {
    const std::string approver = "User" + std::to_string(deed.approver);
    Ref<Recordset> documents;
    switch (deed.kind) {
      case Deed::Route: revisions().RouteForApproval(rs, deed.send); break;
      case Deed::Approve:
        revisions().ApproveRevision(rs, user_, approver,
                                    revisions().GetRevApprovalList(deed.revision), deed.send);
        break;
      case Deed::Reject:
        revisions().RejectRevision(rs, user_, approver,
                                   revisions().GetRevApprovalList(deed.revision), deed.send);
        break;
      case Deed::SetCurrent: revisions().SetAsCurrentRevision(rs, documents, deed.send); break;
    }
  }

  // Again and again, until nobody has changed what it had read.
  void attempt(int& conflicts, const std::function<void()>& operation) {
    for (;;) {
      if (transactions_) connection().BeginTrans();
      try {
        operation();
        if (transactions_) connection().CommitTrans();
        return;
      } catch (const Error& error) {
        if (transactions_) connection().RollbackTrans();
        if (error.number() != kRowChanged) throw;
        ++conflicts;
      }
    }
  }

  // The decision is recorded; what is left is where the revision stands, which somebody else may
  // have changed meanwhile. In a transaction everything is tried again instead.
  void save(Ref<Recordset> rs, int id, int& conflicts) {
    if (transactions_) {
      rs->Update();
      return;
    }
    think();
    for (;;) try {
        rs->Update();
        return;
      } catch (const Error& error) {
        if (error.number() != kRowChanged) throw;
        ++conflicts;
        rs->CancelUpdate();
        rs = revisions().GetRevRS(id);
        revisions().NotifyNextapprover(rs, revisions().GetRevApprovalList(id), true);
      }
  }

  StoppedClock clock_{Date(CalendarTime{2001, 2, 26, 14, 5, 9, 0})};
  TestSession vesk_;
  std::string user_;
  bool transactions_;
  std::mt19937 random_{std::random_device()()};
};

int run(const std::vector<std::string>& words) {
  const auto& what = words.at(1);
  Worker worker(words.at(2), words.at(3), words.back() == "1");
  say("ready");
  std::string line;
  if (what == "plan") {
    std::getline(std::cin, line);
    worker.follow(LifePlan(static_cast<std::uint32_t>(std::stoul(words.at(4))),
                           std::stoi(words.at(5)), std::stoi(words.at(6))));
  }
  const std::map<std::string, std::string (Worker::*)(int)> kinds = {
      {"any-order", &Worker::decideInAnyOrder},
      {"in-order", &Worker::decideInOrder},
      {"route", &Worker::route},
      {"current", &Worker::putInForce}};
  while (std::getline(std::cin, line)) say((worker.*kinds.at(what))(std::stoi(line)));
  return 0;
}

}  // namespace
}  // namespace kv::test

int main(int argc, char** argv) {
  try {
    return kv::test::run(std::vector<std::string>(argv, argv + argc));
  } catch (const std::exception& problem) {
    fmt::print("error: {}\n", problem.what());
    std::fflush(stdout);
    return 1;
  }
}
