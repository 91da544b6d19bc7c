// What the command line says, common to all verbs.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "cli/program/errors.h"
#include "common/ref.h"
#include "session/vesk.h"

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

// Raises 70 with the reason.
[[noreturn]] void deny(std::string_view why);

// An open, logged-in session that is closed at the end of its scope.
class Session {
 public:
  // Opens and logs in as options.user; the password comes from KVVESK_PASSWORD or the terminal.
  explicit Session(const Options& options);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  Session(Session&&) = delete;
  Session& operator=(Session&&) = delete;

  clsVesk* operator->() const { return vesk_.get(); }
  [[nodiscard]] const Ref<kvProfile>& profile() const { return vesk_->DataServer()->Profile(); }
  [[nodiscard]] bool isAdministrator() const { return profile()->Administrator() == -1; }
  // For the program's own reads, which no observer sees.
  [[nodiscard]] const std::shared_ptr<Database>& database() const {
    return vesk_->DataServer()->Connection()->database();
  }
  // Raises 70 with the reason when the user is no administrator.
  void requireAdministrator(std::string_view why) const;
  // Raises 70 with the right's text when the user does not hold it; numbers as in rights/rights.h.
  void requireRight(std::int16_t right) const;

 private:
  void close() noexcept;

  Ref<clsVesk> vesk_;
};

}  // namespace kv::cli
