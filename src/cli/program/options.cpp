// SPDX-License-Identifier: Apache-2.0
#include "cli/program/options.h"

#include <iostream>

#include "classes/session/vesk_errors.h"
#include "cli/program/terminal.h"
#include "common/error.h"
#include "desk/register/data_source.h"

namespace kv::cli {

Session::Session(const Options& options) : desk::Session(clsVesk::create()) {
  const auto& vesk = *this;
  try {
    const std::string password =
        passwordFor("KVVESK_PASSWORD", "Password of " + options.user + ": ");
    try {
      vesk->OpenConnection(desk::dataSource(options.registerPath));
    } catch (const UserDatabaseError& e) {
      if (!options.ownUsersDo) throw;
      std::cerr << "kvvesk: " << e.description()
                << "\nkvvesk: the register's own users are taken\n";
    }
    const auto connection = vesk->DataServer()->Connection();
    if (!options.trace.empty()) vesk->DataServer()->StatementLog(options.trace);
    interruptOnSignal(connection);
    vesk->Login(options.user, password);
  } catch (...) {
    close();
    throw;
  }
}

Session::~Session() { close(); }

void Session::close() noexcept {
  try {
    interruptOnSignal(nullptr);
    (*this)->CloseSession();
  } catch (const std::exception&) {
    // Nothing more can be done about it here; after a refused opening there is no connection left
    // to close, and CloseSession has let the objects go before it said so.
  }
}

}  // namespace kv::cli
