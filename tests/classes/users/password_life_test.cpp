// SPDX-License-Identifier: Apache-2.0
// Passwords as they go through the records of users: in clear text until their users log in, as
// hashes from then on.
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "support/other_user.h"
#include "support/session_test.h"

namespace kv {
namespace {

class PasswordLife : public test::SessionTest {
 protected:
  PasswordLife() { logIn("Anna"); }

  [[nodiscard]] clsVeskUser& user() { return *vesk_->User(); }
  // Whether somebody comes in, in a session of his own.
  [[nodiscard]] bool comesIn(const std::string& name, const std::string& password) const {
    test::TestSession session;
    const auto number = test::numberOf([&] { session->Login(name, password, reg_.path()); });
    EXPECT_TRUE(number == 0 || number == kErrorBase + 2506) << number;
    return number == 0;
  }
  [[nodiscard]] std::string stored(const std::string& id) const {
    return reg_.value("Select [Password] From Users Where UserID = '" + id + "'");
  }
  // Writes a user's record back as it was read, but for the password where one is given.
  void saveAsLoaded(const std::string& id, const std::string* password = nullptr) {
    const auto rs = user().Record(id);
    std::string name, alias, kept, title, email, group;
    ASSERT_TRUE(user().LoadUser(rs, id, name, alias, kept, title, email, group));
    EXPECT_TRUE(user().SaveUser(rs, id, name, alias, password ? *password : kept, title, email));
  }
};

TEST_F(PasswordLife, ANewUsersClearTextLetsHimInAndIsReplaced) {
  const std::string id = user().NewUser(user().Records(-1), "Dora", "", "clear", "", "", "");
  EXPECT_EQ(stored(id), "clear");
  EXPECT_FALSE(comesIn("Dora", "Clear"));
  EXPECT_FALSE(comesIn("Dora", ""));
  EXPECT_EQ(stored(id), "clear") << "nobody came in";
  EXPECT_TRUE(comesIn("Dora", "clear"));
  const std::string hash = stored(id);
  EXPECT_TRUE(Passwords::isHash(hash)) << hash;
  EXPECT_TRUE(comesIn("Dora", "clear"));
  EXPECT_EQ(stored(id), hash) << "once is enough";
  EXPECT_FALSE(comesIn("Dora", hash)) << "the hash itself is no password";
}

TEST_F(PasswordLife, ASavedClearTextTakesTheHashesPlaceUntilTheLogIn) {
  const std::string clear = "O'Hara's \\ key";
  saveAsLoaded("User2", &clear);
  EXPECT_EQ(stored("User2"), clear);
  EXPECT_FALSE(comesIn("Bert", "secret"));
  EXPECT_TRUE(comesIn("Bert", clear));
  EXPECT_TRUE(Passwords::isHash(stored("User2")));
  EXPECT_TRUE(comesIn("Bert", clear));
  EXPECT_FALSE(comesIn("Bert", "secret"));
}

TEST_F(PasswordLife, AHashThatIsReadAndWrittenBackStaysValid) {
  const std::string hash = stored("User2");
  saveAsLoaded("User2");
  EXPECT_EQ(stored("User2"), hash);
  EXPECT_TRUE(comesIn("Bert", "secret"));
  saveAsLoaded("User2");
  EXPECT_EQ(stored("User2"), hash);
}

TEST_F(PasswordLife, AHashMayMoveToAnotherUser) {
  const std::string hash = stored("User2");
  const std::string id = user().NewUser(user().Records(-1), "Dora", "", hash, "", "", "");
  EXPECT_TRUE(comesIn("Dora", "secret"));
  EXPECT_EQ(stored(id), hash);
}

TEST_F(PasswordLife, AnEmptyPasswordLetsNobodyIn) {
  const std::string empty;
  saveAsLoaded("User2", &empty);
  EXPECT_EQ(stored("User2"), "~");
  EXPECT_FALSE(comesIn("Bert", ""));
  EXPECT_FALSE(comesIn("Bert", "secret"));
  (void)user().NewUser(user().Records(-1), "Dora", "", "", "", "", "");
  EXPECT_FALSE(comesIn("Dora", ""));
}

TEST_F(PasswordLife, ARecordReadBeforeTheLogInIsNotWrittenOverItsHash) {
  const std::string clear = "clear";
  saveAsLoaded("User2", &clear);
  const auto rs = user().Record("User2");
  std::string name, alias, kept, title, email, group;
  ASSERT_TRUE(user().LoadUser(rs, "User2", name, alias, kept, title, email, group));
  ASSERT_TRUE(comesIn("Bert", "clear"));
  EXPECT_RAISES(kRowChanged, user().SaveUser(rs, "User2", name, "B", kept, title, email));
  rs->CancelUpdate();
  EXPECT_TRUE(Passwords::isHash(stored("User2")));
}

// Whoever knows the password comes in, also when somebody else replaces it by its hash meanwhile.
TEST_F(PasswordLife, ManyMayLogInWithAClearTextAtOnce) {
  const std::string clear = "clear";
  for (int round = 0; round < 3; ++round) {
    saveAsLoaded("User2", &clear);
    constexpr int kMany = 4;
    std::vector<std::int32_t> raised(kMany, -1);
    std::vector<std::thread> threads;
    for (int i = 0; i < kMany; ++i)
      threads.emplace_back([&, i] {
        // At the real cost, so that they all read the clear text before one of them replaces it.
        const auto vesk = clsVesk::create();
        raised[static_cast<std::size_t>(i)] =
            test::numberOf([&] { vesk->Login("Bert", clear, reg_.path()); });
        vesk->CloseSession();
      });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(raised, std::vector<std::int32_t>(kMany, 0));
    EXPECT_TRUE(Passwords::isHash(stored("User2")));
    EXPECT_TRUE(comesIn("Bert", clear));
  }
}

TEST_F(PasswordLife, WhereNothingCanBeWrittenTheClearTextStays) {
  FILES_ONLY();
  const std::string clear = "clear";
  saveAsLoaded("User2", &clear);
  vesk_->CloseSession();
  reg_.connection()->Close();
  std::filesystem::permissions(reg_.folder().path(), std::filesystem::perms(0555));
  std::filesystem::permissions(reg_.path(), std::filesystem::perms(0444));
  const std::string answer = test::asOrdinaryUser([&]() -> std::string {
    test::TestSession session;
    session->Login("Bert", clear, reg_.path());
    return session->DataServer()->Profile()->UserID();
  });
  std::filesystem::permissions(reg_.folder().path(), std::filesystem::perms(0700));
  std::filesystem::permissions(reg_.path(), std::filesystem::perms(0600));
  EXPECT_EQ(answer, "User2");
  const auto rows =
      test::RawRegister(reg_.path()).rows("SELECT \"Password\" FROM \"Users\" WHERE ID = 2");
  EXPECT_EQ(rows, test::Texts{"|3:clear"});
}

}  // namespace
}  // namespace kv
