// SPDX-License-Identifier: Apache-2.0
#include "classes/session/session.h"

#include <exception>
#include <utility>

namespace kv {

Session::Session(const std::string& ConnectionString, const std::string& UserName,
                 const std::string& Password, PasswordCost cost)
    : vesk_(clsVesk::create(cost)) {
  try {
    vesk_->OpenConnection(ConnectionString);
    vesk_->Login(UserName, Password);
  } catch (...) {
    close();
    throw;
  }
}

Session::Session(const std::string& ConnectionString, PasswordCost cost)
    : vesk_(clsVesk::create(cost)) {
  try {
    vesk_->OpenConnection(ConnectionString);
  } catch (...) {
    close();
    throw;
  }
}

Session::~Session() { close(); }

Session::Session(Session&& other) noexcept : vesk_(std::exchange(other.vesk_, {})) {}

Session& Session::operator=(Session&& other) noexcept {
  if (this != &other) {
    close();
    vesk_ = std::exchange(other.vesk_, {});
  }
  return *this;
}

void Session::close() noexcept {
  const auto vesk = std::exchange(vesk_, {});
  if (!vesk) return;
  try {
    vesk->CloseSession();
  } catch (const std::exception&) {  // spent already: there is nothing to close
  }
}

}  // namespace kv
