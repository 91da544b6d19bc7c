// SPDX-License-Identifier: Apache-2.0
// Sessions that end with their scope.
#include "classes/session/session.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "common/error.h"
#include "support/error_check.h"
#include "support/test_register.h"

namespace kv {
namespace {

class ScopedSession : public testing::Test {
 protected:
  // The one connection of the test itself is closed: as long as a file is open twice in a process,
  // SQLite keeps the handle of the one that is closed first.
  ScopedSession() {
    reg_.addUser(1, "Anna", "secret", true);
    reg_.connection()->Close();
  }
  [[nodiscard]] Session open(const std::string& password = "secret") const {
    return {reg_.path(), "Anna", password, test::kCheapPasswords};
  }
  // Files and connections of this process.
  static std::ptrdiff_t handles() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
  }
  test::TestRegister reg_;
};

TEST_F(ScopedSession, IsOpenAndLoggedIn) {
  const Session session = open();
  EXPECT_EQ(session->DataServer()->Profile()->UserName(), "Anna");
  EXPECT_EQ(session->GetRecordset("Select * From Documents")->RecordCount(), 0);
}

TEST_F(ScopedSession, EndsWithItsScope) {
  const auto before = handles();
  Ref<clsVesk> root;
  {
    const Session session = open();
    EXPECT_GT(handles(), before);
    root = session.root();
  }
  EXPECT_EQ(handles(), before);
  EXPECT_RAISES(kObjectNotSet, (void)root->Document()->oVesk()) << "the root object is spent";
}

TEST_F(ScopedSession, AnExceptionLeavesNothingOpen) {
  const auto before = handles();
  try {
    const Session session = open();
    session->Execute("Select nonsense From");
    FAIL() << "that is no statement";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), kSyntax);
  }
  EXPECT_EQ(handles(), before);
}

TEST_F(ScopedSession, RefusedLogInsLeaveNothingOpen) {
  const auto before = handles();
  for (int i = 0; i < 20; ++i) EXPECT_RAISES(kErrorBase + 2506, (void)open("wrong"));
  EXPECT_EQ(handles(), before);
}

TEST_F(ScopedSession, ARegisterThatIsNotThereIsSaid) {
  const auto error = test::errorOf(
      [&] { const Session session(reg_.folder().file("none.kvv"), "Anna", "secret"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kEngineFailure);
  EXPECT_EQ(error->cause(), Cause::NoSuchPlace);
}

TEST_F(ScopedSession, CanReadWithoutALogIn) {
  const auto before = handles();
  {
    const Session session(reg_.path());
    EXPECT_EQ(session->GetRecordset("Select * From Users")->RecordCount(), 1);
    EXPECT_FALSE(session->UserAccess(1));
  }
  EXPECT_EQ(handles(), before);
}

TEST_F(ScopedSession, CanBeClosedEarlyAndTwice) {
  Session session = open();
  session.close();
  session.close();
  EXPECT_RAISES(kObjectNotSet, (void)session->Version(true));
}

TEST_F(ScopedSession, CanBeMovedAndClosedByItsClient) {
  const auto before = handles();
  {
    Session one = open();
    Session other = std::move(one);
    EXPECT_EQ(other->DataServer()->Profile()->UserName(), "Anna");
    one = open();  // NOLINT(bugprone-use-after-move): it may be filled again
    one = std::move(other);
    one->CloseSession();
  }
  EXPECT_EQ(handles(), before);
}

}  // namespace
}  // namespace kv
