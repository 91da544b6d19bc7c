// SPDX-License-Identifier: Apache-2.0
// What the command line says, common to all verbs.
#pragma once

#include <string>

#include "cli/program/errors.h"
#include "desk/session.h"

namespace kv::cli {

enum class Format { Table, Csv, Json, JsonLines };

struct Options {
  std::string registerPath;
  std::string user;
  std::string trace;
  Format format = Format::Table;
  // Whether the verb may go on with the register's own users where those outside cannot be reached.
  bool ownUsersDo = false;
};

// An open, logged-in session that is closed at the end of its scope.
class Session : public desk::Session {
 public:
  // Opens and logs in as options.user; the password comes from KVVESK_PASSWORD or the terminal.
  explicit Session(const Options& options);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  Session(Session&&) = delete;
  Session& operator=(Session&&) = delete;

 private:
  void close() noexcept;
};

}  // namespace kv::cli
