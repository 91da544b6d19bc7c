// SPDX-License-Identifier: Apache-2.0
// Session: a root object whose register is open, and whose user is logged in, as long as it lives.
#pragma once

#include <string>

#include "classes/session/vesk.h"
#include "common/export.h"

namespace kv {

class KVVESK_API Session {
 public:
  // Opens the register that the connection string names and logs in. What OpenConnection and Login
  // raise is raised here, and nothing stays open then.
  Session(const std::string& ConnectionString, const std::string& UserName,
          const std::string& Password, PasswordCost cost = {});
  // Opens it and logs nobody in, for programs that only read. Operations that ask for rights
  // refuse.
  explicit Session(const std::string& ConnectionString, PasswordCost cost = {});
  // Closes the session; record sets and objects of it that are still held are spent then.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  Session(Session&& other) noexcept;
  Session& operator=(Session&& other) noexcept;

  // The root object. Raises 91 once closed.
  [[nodiscard]] clsVesk* operator->() const { return vesk_.operator->(); }
  [[nodiscard]] clsVesk& operator*() const { return *vesk_; }
  [[nodiscard]] const Ref<clsVesk>& root() const noexcept { return vesk_; }

  // Closes before the end of the scope; does nothing the second time.
  void close() noexcept;

 private:
  Ref<clsVesk> vesk_;
};

}  // namespace kv
