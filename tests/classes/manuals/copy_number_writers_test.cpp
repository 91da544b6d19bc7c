// SPDX-License-Identifier: Apache-2.0
// Eight processes that take copy numbers of one manual at once, each in a transaction.
#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "support/distribution_session.h"
#include "support/other_user.h"
#include "support/scale.h"

namespace kv {
namespace {

constexpr int kProcesses = 8;

// A session of Anna's in another process.
class OtherSession {
 public:
  explicit OtherSession(const std::string& path) {
    vesk_->Login("Anna", "secret", "Lock Timeout=60;Data Source=" + path);
  }
  [[nodiscard]] clsVeskManual& manual() const { return *vesk_->Manual(); }
  [[nodiscard]] kvConnection& connection() const { return *vesk_->DataServer()->Connection(); }

 private:
  test::TestSession vesk_;
};

class CopyNumberWriters : public test::DistributionSession<test::SessionTest> {
 protected:
  CopyNumberWriters() {
    addDocument("D1");
    addManual("M1");
    putInto("M1", "D1", "1");
  }
};

TEST_F(CopyNumberWriters, ANumberIsGivenOnce) {
  const int each = test::steps(24);
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    const OtherSession session(reg_.path());
    std::string numbers;
    for (int i = 0; i < each; ++i) {
      session.connection().BeginTrans();
      const std::string number = session.manual().NextCopyNumber("M1");
      session.manual().ReleaseCopy("M1", fmt::format("User{}x{}", p, i), number);
      session.connection().CommitTrans();
      numbers += number + " ";
    }
    return numbers;
  });
  std::set<std::string> given;
  std::size_t all = 0;
  for (const auto& answer : answers) {
    EXPECT_EQ(answer.find("error"), std::string::npos) << answer;
    std::istringstream in(answer);
    for (std::string number; in >> number; ++all) given.insert(number);
  }
  EXPECT_EQ(all, static_cast<std::size_t>(kProcesses * each));
  EXPECT_EQ(all - given.size(), 0U) << "repeated of " << all;
}

TEST_F(CopyNumberWriters, ANumberThatWasFreeIsTakenByOne) {
  const int rounds = test::steps(20);
  for (int p = 0; p < kProcesses; ++p)
    hold(fmt::format("User{}", p), "D1", "M1", true, fmt::format("'own{}'", p));
  const auto answers = test::inProcesses(kProcesses, [&](int p) {
    const OtherSession session(reg_.path());
    std::string own = fmt::format("own{}", p);
    for (int i = 0; i < rounds; ++i) {
      const std::string wanted = fmt::format("round{}", i);
      session.connection().BeginTrans();
      if (!session.manual().DuplicateCopyNumber("M1", wanted)) {
        session.manual().ChangeCopyNumber("M1", own, wanted);
        own = wanted;
      }
      session.connection().CommitTrans();
    }
    return std::string("done");
  });
  EXPECT_THAT(answers, testing::Each("done"));
  EXPECT_EQ(reg_.rows("Select CopyNumber From Personals Group By CopyNumber Having Count(*) > 1"),
            test::Texts{});
}

}  // namespace
}  // namespace kv
