#include "cli/program/options.h"

#include <iostream>

#include "cli/program/terminal.h"
#include "common/error.h"
#include "session/vesk_errors.h"

namespace kv::cli {

namespace {

// The one failure of an opening after which the session is open all the same.
bool isAboutUsers(const Error& e) { return e.description().starts_with(kUserDatabaseFailed); }

}  // namespace

void deny(std::string_view why) {
  throw Error(kPermission, "kvvesk",
              std::string(wellKnownText(kPermission)) + ": " + std::string(why));
}

Session::Session(const Options& options) : vesk_(clsVesk::create()) {
  try {
    const std::string password =
        passwordFor("KVVESK_PASSWORD", "Password of " + options.user + ": ");
    try {
      vesk_->OpenConnection("Data Source=" + quotedValue(options.registerPath));
    } catch (const Error& e) {
      if (!options.ownUsersDo || !isAboutUsers(e)) throw;
      std::cerr << "kvvesk: " << e.description()
                << "\nkvvesk: the register's own users are taken\n";
    }
    const auto connection = vesk_->DataServer()->Connection();
    if (!options.trace.empty()) vesk_->DataServer()->StatementLog(options.trace);
    interruptOnSignal(connection);
    vesk_->Login(options.user, password);
  } catch (...) {
    close();
    throw;
  }
}

Session::~Session() { close(); }

void Session::close() noexcept {
  try {
    interruptOnSignal(nullptr);
    vesk_->CloseSession();
  } catch (const std::exception&) {
    // Nothing more can be done about it here; after a refused opening there is no connection left
    // to close, and CloseSession has let the objects go before it said so.
  }
}

void Session::requireAdministrator(std::string_view why) const {
  if (!isAdministrator()) deny(why);
}

void Session::requireRight(std::int16_t right) const {
  if (!vesk_->UserAccess(right)) deny(vesk_->urDescription(right));
}

}  // namespace kv::cli
