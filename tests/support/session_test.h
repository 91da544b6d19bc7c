// SPDX-License-Identifier: Apache-2.0
// A register with an administrator, Anna (User1), and an ordinary user, Bert (User2), and a session
// on it; for tests of the classes that live in a session.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/date.h"
#include "engine/open.h"
#include "schema/register_schema.h"
#include "support/error_check.h"
#include "support/faulty_engine.h"
#include "support/register_dump.h"
#include "support/test_register.h"

namespace kv::test {

using Texts = std::vector<std::string>;

[[nodiscard]] inline Date at(int year, int month, int day, int hour = 0, int minute = 0,
                             int second = 0) {
  return Date(CalendarTime{year, month, day, hour, minute, second, 0});
}

class SessionTest : public testing::Test {
 protected:
  SessionTest() {
    reg_.addUser(1, "Anna", "secret", true);
    reg_.addUser(2, "Bert", "secret");
  }

  void logIn(const std::string& name) { vesk_->Login(name, "secret", reg_.path()); }

  // The statements that the session's connection is given while something runs.
  [[nodiscard]] Texts statementsOf(const std::function<void()>& operation) {
    const auto seen = std::make_shared<Texts>();
    const auto watching = std::make_shared<bool>(true);
    vesk_->DataServer()->Connection()->Observe([seen, watching](std::string_view text) {
      if (*watching) seen->emplace_back(text);
    });
    operation();
    *watching = false;
    return *seen;
  }

  // What the register's file holds; also what a failed operation must leave as it was.
  [[nodiscard]] Texts everything() const { return RawRegister(reg_.path()).dump(); }

  TestRegister reg_;
  TestSession vesk_;
};

// The same, with Anna logged in on a connection that can be told to fail.
class FaultySessionTest : public SessionTest {
 protected:
  FaultySessionTest() : faults_(std::make_shared<Faults>()) {
    const auto profile = makeRef<kvProfile>();
    profile->attach(makeRef<kvConnection>(
        reg_.path(),
        std::make_shared<Database>(
            std::make_unique<FaultyEngine>(engine::open({.location = reg_.path()}), faults_),
            std::make_shared<const Catalog>(registerTables()))));
    vesk_->Login("Anna", "secret", "", profile);
  }

  // How many statements that write something runs.
  [[nodiscard]] int writesOf(const std::function<void()>& operation) const {
    constexpr int kEnough = 1000000;
    faults_->failWriteAfter = kEnough;
    operation();
    const int writes = kEnough - faults_->failWriteAfter;
    faults_->failWriteAfter = -1;
    return writes;
  }

  // Lets each of the operation's writes fail in turn, and then its commit; nothing may be left of
  // it. Returns after how many writes it came through.
  int leavesNothingBehind(const std::function<void()>& operation) {
    const auto before = everything();
    int writes = 0;
    for (bool failed = true; failed && writes < 100; writes += failed ? 1 : 0) {
      faults_->failCommitAfter = 0;
      faults_->failWriteAfter = writes;
      EXPECT_RAISES(kEngineFailure, operation()) << writes;
      failed = faults_->failCommitAfter == 0;  // it did not even come to the commit
      EXPECT_EQ(everything(), before) << "after " << writes << " writes";
      if (testing::Test::HasFailure()) break;
    }
    faults_->failCommitAfter = -1;
    faults_->failWriteAfter = -1;
    operation();
    EXPECT_NE(everything(), before) << "and without a fault it does something";
    return writes;
  }

  std::shared_ptr<Faults> faults_;
};

}  // namespace kv::test
