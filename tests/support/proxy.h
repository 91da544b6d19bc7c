// SPDX-License-Identifier: Apache-2.0
// A stretch of wire between a client and the test server that a test can cut.
#pragma once

#include <atomic>
#include <string>
#include <thread>

#include "support/temp_folder.h"

namespace kv::test {

class Proxy {
 public:
  // Passes on what comes, to the server that `location` names by its socket folder.
  explicit Proxy(const std::string& location);
  ~Proxy();
  Proxy(const Proxy&) = delete;
  Proxy& operator=(const Proxy&) = delete;
  Proxy(Proxy&&) = delete;
  Proxy& operator=(Proxy&&) = delete;

  // The same database, by way of this wire.
  [[nodiscard]] const std::string& location() const { return location_; }
  // The next message with this text in it reaches the server; its answer does not come back, and
  // the wire is cut.
  void loseAnswerTo(const std::string& text);

 private:
  void serve();
  void pass(int client);

  TempFolder folder_;
  std::string server_;  // path of its socket
  std::string location_;
  int listener_ = -1;
  std::string lost_;
  std::atomic<bool> losing_ = false;
  std::atomic<bool> stopping_ = false;
  std::thread thread_;
};

}  // namespace kv::test
