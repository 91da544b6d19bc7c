#include "support/test_server.h"

#include <fmt/format.h>
#include <libpq-fe.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "kvdata/schema/create_register.h"

namespace kv::test {

namespace {

std::string serverLocation() {
  const char* location = std::getenv("KVVESK_TEST_SERVER");
  return location == nullptr ? std::string() : location;
}

// The server's location with another database in the place of the one it names.
std::string inDatabase(const std::string& name) {
  std::string location = serverLocation();
  const std::string named = "/postgres?";
  return location.replace(location.find(named), named.size(), "/" + name + "?");
}

std::string newName() {
  static int count = 0;
  return fmt::format("kv_test_{}_{}", getpid(), ++count);
}

std::string databaseOf(const std::string& location) {
  const auto query = location.find('?');
  const auto slash = location.rfind('/', query);
  return location.substr(slash + 1, query - slash - 1);
}

// A database to copy, once per process; it goes with the server.
const std::string& templateDatabase() {
  static const std::string name = [] {
    const std::string location = TestServer::newDatabase();
    createRegister("Data Source=" + location)->Close();
    return databaseOf(location);
  }();
  return name;
}

void control(const std::string& what) {
  const char* command = std::getenv("KVVESK_TEST_SERVER_CONTROL");
  if (command == nullptr) throw std::runtime_error("the server cannot be controlled");
  if (std::system((std::string(command) + " " + what + " >/dev/null 2>&1").c_str()) != 0)
    throw std::runtime_error("the server did not " + what);
}

}  // namespace

bool TestServer::isGiven() { return !serverLocation().empty(); }

bool onServer() { return TestServer::isGiven(); }

std::string TestServer::run(const std::string& location, const std::string& sql) {
  const std::unique_ptr<PGconn, decltype(&PQfinish)> connection(PQconnectdb(location.c_str()),
                                                                &PQfinish);
  const std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(connection.get(), sql.c_str()),
                                                             &PQclear);
  const auto status = PQresultStatus(result.get());
  if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
    throw std::runtime_error(sql + ": " + PQerrorMessage(connection.get()));
  std::string out;
  for (int row = 0; row < PQntuples(result.get()); ++row)
    out += (row > 0 ? "\n" : "") + std::string(PQgetvalue(result.get(), row, 0));
  return out;
}

std::string TestServer::newDatabase() {
  const std::string name = newName();
  run(serverLocation(), "CREATE DATABASE " + name);
  return inDatabase(name);
}

std::string TestServer::newRegister() {
  const std::string& from = templateDatabase();
  const std::string name = newName();
  run(serverLocation(), "CREATE DATABASE " + name + " TEMPLATE " + from);
  return inDatabase(name);
}

void TestServer::drop(const std::string& location) noexcept {
  try {
    run(serverLocation(), "DROP DATABASE " + databaseOf(location) + " WITH (FORCE)");
  } catch (const std::exception&) {  // it goes with the server
  }
}

void TestServer::crash() { control("-m immediate stop"); }
void TestServer::start() { control("start"); }

}  // namespace kv::test
