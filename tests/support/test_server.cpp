// SPDX-License-Identifier: Apache-2.0
#include "support/test_server.h"

#include <fmt/format.h>
#include <libpq-fe.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "schema/create_register.h"

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

// How a database is made what it was: its rows are deleted and those that every register begins
// with put back, its counters set back. What it says first tells whether its tables are still the
// ones that it was made with.
constexpr const char* kShape =
    "SELECT md5(string_agg(line, ',' ORDER BY line)) FROM ("
    "SELECT attrelid::regclass::text || attname || atttypid || atttypmod AS line FROM pg_attribute "
    "WHERE attrelid IN (SELECT oid FROM pg_class WHERE relnamespace = 'public'::regnamespace) "
    "UNION "
    "ALL SELECT tgname FROM pg_trigger UNION ALL SELECT proname FROM pg_proc WHERE pronamespace = "
    "'public'::regnamespace UNION ALL SELECT schemaname || '.' || indexname FROM pg_indexes WHERE "
    "schemaname = 'public' UNION ALL SELECT conname || pg_get_constraintdef(oid) FROM "
    "pg_constraint "
    "UNION ALL SELECT adrelid::regclass || pg_get_expr(adbin, adrelid) FROM pg_attrdef UNION ALL "
    "SELECT unnest(setconfig) FROM pg_db_role_setting JOIN pg_database AS d ON d.oid = setdatabase "
    "WHERE d.datname = current_database()) AS lines";
constexpr const char* kKeep =
    "CREATE SCHEMA kept; DO $$ DECLARE t record; BEGIN FOR t IN SELECT relname FROM pg_class WHERE "
    "relnamespace = 'public'::regnamespace AND relkind = 'r' LOOP EXECUTE format('CREATE TABLE "
    "kept.%1$I AS TABLE public.%1$I', t.relname); END LOOP; END $$";
constexpr const char* kReset =
    "DO $$ DECLARE t record; BEGIN FOR t IN SELECT relname FROM pg_class WHERE relnamespace = "
    "'public'::regnamespace AND relkind = 'r' LOOP EXECUTE format('DELETE FROM public.%I', "
    "t.relname); EXECUTE format('INSERT INTO public.%1$I OVERRIDING SYSTEM VALUE TABLE kept.%1$I', "
    "t.relname); END LOOP; FOR t IN SELECT s.relname, k.last_value, k.is_called FROM pg_class s "
    "JOIN kept.kv_counters k ON k.name = s.relname WHERE s.relkind = 'S' LOOP PERFORM "
    "setval(format('public.%I', t.relname)::regclass, t.last_value, t.is_called); END LOOP; END $$";
constexpr const char* kKeepCounters =
    "CREATE TABLE kept.kv_counters (name text, last_value bigint, is_called boolean); DO $$ "
    "DECLARE "
    "t record; BEGIN FOR t IN SELECT relname FROM pg_class WHERE relnamespace = "
    "'public'::regnamespace AND relkind = 'S' LOOP EXECUTE format('INSERT INTO kept.kv_counters "
    "SELECT %1$L, last_value, is_called FROM public.%1$I', t.relname); END LOOP; END $$";

// A database to copy, once per process; it goes with the server.
struct Template {
  std::string name;
  std::string shape;
};
const Template& templateDatabase() {
  static const Template made = [] {
    const std::string location = TestServer::newDatabase();
    createRegister("Data Source=" + location)->Close();
    TestServer::run(location, kKeep);
    TestServer::run(location, kKeepCounters);
    return Template{databaseOf(location), TestServer::run(location, kShape)};
  }();
  return made;
}

// Registers that tests are done with. To make a database takes the server much longer than to set
// one back.
std::vector<std::string>& usedRegisters() {
  static std::vector<std::string> used;
  return used;
}

// Whether a register is now what a new one is.
bool setBack(const std::string& location) {
  try {
    TestServer::run(serverLocation(),
                    "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = '" +
                        databaseOf(location) + "'");
    if (TestServer::run(location, kShape) != templateDatabase().shape) return false;
    TestServer::run(location, kReset);
    return true;
  } catch (const std::exception&) {
    return false;
  }
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
  auto& used = usedRegisters();
  while (!used.empty()) {
    const std::string location = std::move(used.back());
    used.pop_back();
    if (setBack(location)) return location;
    drop(location);
  }
  const std::string name = newName();
  run(serverLocation(), "CREATE DATABASE " + name + " TEMPLATE " + templateDatabase().name);
  return inDatabase(name);
}

void TestServer::release(const std::string& location) { usedRegisters().push_back(location); }

void TestServer::drop(const std::string& location) noexcept {
  try {
    run(serverLocation(), "DROP DATABASE " + databaseOf(location) + " WITH (FORCE)");
  } catch (const std::exception&) {  // it goes with the server
  }
}

void TestServer::crash() { control("-m immediate stop"); }
void TestServer::start() { control("start"); }

}  // namespace kv::test
