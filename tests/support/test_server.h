// SPDX-License-Identifier: Apache-2.0
// The server that tests run on when KVVESK_TEST_SERVER names one: see scripts/with-postgres.
#pragma once

#include <string>

namespace kv::test {

class TestServer {
 public:
  // Whether this run is one on a server.
  [[nodiscard]] static bool isGiven();
  // A new register in a database of its own; returns its location.
  [[nodiscard]] static std::string newRegister();
  // Takes such a register back, whatever has become of it; a later one may be made of it.
  static void release(const std::string& location);
  // A new, empty database; returns its location.
  [[nodiscard]] static std::string newDatabase();
  static void drop(const std::string& location) noexcept;
  // Runs a statement of the server's own SQL in a database, outside the library; returns the first
  // column of the rows, joined by line breaks.
  static std::string run(const std::string& location, const std::string& sql);
  // Stops the server at once, as a crash would, and starts it.
  static void crash();
  static void start();
};

// The name of the engine that the tests run on, for the few answers that differ.
[[nodiscard]] bool onServer();

}  // namespace kv::test

// Ends a test that is about files.
#define FILES_ONLY() \
  if (kv::test::onServer()) GTEST_SKIP() << "about files"
// Ends a test that is about servers.
#define SERVERS_ONLY() \
  if (!kv::test::onServer()) GTEST_SKIP() << "about servers"
