// SPDX-License-Identifier: Apache-2.0
// Many clients that write at once, each with a connection of its own.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "support/error_check.h"
#include "support/test_register.h"
#include "support/test_server.h"

namespace kv {
namespace {

constexpr int kDocuments = 5;  // that each client adds

// A client adds documents, counts up a number that all of them share, and turns a right of its own
// on.
void writeAsClient(const std::string& location, int client) {
  const test::TestSession vesk;
  vesk->Login("Anna", "secret", location);
  for (int i = 0; i < kDocuments; ++i) {
    (void)vesk->Document()->Add(fmt::format("C{}x", client), fmt::format("{}-{}", client, i), "1",
                                "", "", "", "", "", 0, "", "A", "", true, true);
    vesk->Execute("Update Routing Set ListOrder = ListOrder + 1 Where DocumentID = 'all'");
  }
  constexpr int kOwnerRights = 21;
  vesk->SetOwnerAccess(static_cast<std::int16_t>(client % kOwnerRights + 1), true);
}

void loseNothing(int clients) {
  const test::TestRegister reg;
  reg.addUser(1, "Anna", "secret", true);
  reg.execute("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('all', 'U', 0)");
  std::atomic<int> failures = 0;
  std::vector<std::thread> threads;
  threads.reserve(static_cast<std::size_t>(clients));
  for (int client = 0; client < clients; ++client)
    threads.emplace_back([&reg, &failures, client] {
      const auto error = test::errorOf(
          [&] { writeAsClient("Lock Timeout=60;Data Source=" + reg.path(), client); });
      if (!error) return;
      ++failures;
      ADD_FAILURE() << "client " << client << ": " << error->description();
    });
  for (auto& thread : threads) thread.join();
  ASSERT_EQ(failures, 0);
  const int all = clients * kDocuments;
  EXPECT_EQ(reg.value("Select Count(*) From Documents"), std::to_string(all));
  EXPECT_EQ(reg.value("Select Count(*) From Revisions Where RevisionStatus = 1"),
            std::to_string(all));
  EXPECT_EQ(reg.value("Select Count(*) From Documents Inner Join Revisions On "
                      "Documents.CurrentRevID = Revisions.RevisionID And "
                      "Documents.DocumentID = Revisions.DocumentID"),
            std::to_string(all))
      << "each document has its own revision";
  EXPECT_EQ(reg.value("Select ListOrder From Routing"), std::to_string(all));
  const std::string rights = reg.value("Select OwnerRights From VeskConfig");
  for (int client = 0; client < clients; ++client)
    EXPECT_EQ(rights[static_cast<std::size_t>(client % 21)], '1') << client;
}

TEST(ManyWriters, EightLoseNothing) { loseNothing(8); }

TEST(ManyWriters, SixtyFourOnAServerLoseNothing) {
  SERVERS_ONLY();
  loseNothing(64);
}

}  // namespace
}  // namespace kv
