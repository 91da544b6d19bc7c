// SPDX-License-Identifier: Apache-2.0
#include "user/password.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/test_register.h"

namespace kv {
namespace {

TEST(Passwords, AreKeptAsArgon2idOfTheStatedCost) {
  const Passwords passwords;
  const std::string hash = passwords.hash("secret");
  EXPECT_THAT(hash, testing::StartsWith("$argon2id$v=19$m=19456,t=2,p=1$"));
  EXPECT_LT(hash.size(), 128U);
  EXPECT_TRUE(passwords.verify(hash, "secret"));
  EXPECT_FALSE(passwords.verify(hash, "Secret"));
  EXPECT_FALSE(passwords.verify(hash, ""));
}

TEST(Passwords, TheSameOneIsHashedDifferentlyEachTime) {
  const Passwords passwords(test::kCheapPasswords);
  EXPECT_NE(passwords.hash("x"), passwords.hash("x"));
}

TEST(Passwords, ATextThatIsNoHashLetsNobodyIn) {
  const Passwords passwords(test::kCheapPasswords);
  for (const char* text :
       {"", "secret", "$argon2id$", "$argon2id$v=19$m=8,t=1,p=1$abc$def", "$1$abc$def"})
    EXPECT_FALSE(passwords.verify(text, "secret")) << text;
  EXPECT_FALSE(Passwords::isHash("secret"));
  EXPECT_TRUE(Passwords::isHash(passwords.hash("secret")));
}

TEST(Passwords, AnyBytesMayBeAPassword) {
  const Passwords passwords(test::kCheapPasswords);
  const std::string odd = std::string("pä\0ss'\"", 8) + std::string(300, 'x');
  EXPECT_TRUE(passwords.verify(passwords.hash(odd), odd));
  EXPECT_FALSE(passwords.verify(passwords.hash(odd), odd + "x"));
}

TEST(Passwords, VerificationsAreCounted) {
  const Passwords passwords(test::kCheapPasswords);
  const std::string hash = passwords.hash("x");
  EXPECT_EQ(passwords.verifications(), 0U);
  (void)passwords.verify(hash, "y");
  EXPECT_FALSE(passwords.verifyNobody("y"));
  EXPECT_FALSE(passwords.verifyNobody("nobody"));
  EXPECT_EQ(passwords.verifications(), 3U);
}

}  // namespace
}  // namespace kv
