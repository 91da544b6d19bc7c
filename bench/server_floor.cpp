// SPDX-License-Identifier: Apache-2.0
#include "server_floor.h"

#include <fmt/format.h>

#include <array>
#include <cstdlib>
#include <map>
#include <stdexcept>

#include "bench_session.h"
#include "common/clock.h"
#include "common/text_key.h"
#include "sample_register.h"
#include "schema/create_register.h"

namespace kv::bench {

const std::string& serverDocumentColumns() {
  static const std::string columns =
      R"("ID", "DocumentID", "DocumentTitle", "DocumentNumber", "RevisionLevel", "EffectiveDate", )"
      R"("DocUser1", "DocUser2", "DocUser3", "DocUser4", "DocumentNotes", "SecurityLevel", )"
      R"("Location", "Controlled", "CurrentRevID")";
  return columns;
}

std::string serverFoldOf(const std::string& quoted) {
  return fmt::format(R"((replace(lower(({}) COLLATE "und-x-icu"), 'ς', 'σ') COLLATE "C"))", quoted);
}

std::string serverFold(const std::string& column) {
  return serverFoldOf(fmt::format(R"("{}")", column));
}

std::string serverOrderOf(const std::string& quoted) {
  const std::string key = serverFoldOf(quoted);
  return fmt::format(
      R"((regexp_replace(normalize({0}, NFD), '[\u0300-\u036F]', '', 'g') COLLATE "C") NULLS FIRST, )"
      R"({0} NULLS FIRST)",
      key);
}

std::string serverOrder(const std::string& column) {
  return serverOrderOf(fmt::format(R"("{}")", column)) + R"(, "ID")";
}

ServerFloor::ServerFloor(const std::string& location) : connection_(PQconnectdb(location.c_str())) {
  if (PQstatus(connection_) != CONNECTION_OK) {
    const std::string message = PQerrorMessage(connection_);
    PQfinish(connection_);
    throw std::runtime_error(message);
  }
}

ServerFloor::~ServerFloor() { PQfinish(connection_); }

Answer ServerFloor::checked(PGresult* answer) {
  ++roundTrips_;
  Answer out(answer);
  const auto status = PQresultStatus(answer);
  if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
    throw std::runtime_error(PQerrorMessage(connection_));
  return out;
}

Answer ServerFloor::run(const std::string& sql) {
  return checked(PQexec(connection_, sql.c_str()));
}

void ServerFloor::prepare(const char* name, const std::string& sql) {
  (void)checked(PQprepare(connection_, name, sql.c_str(), 0, nullptr));
}

Answer ServerFloor::run(const char* name, std::initializer_list<std::string> values) {
  constexpr std::size_t kMost = 16;
  std::array<const char*, kMost> pointers{};
  std::size_t count = 0;
  for (const auto& value : values) pointers.at(count++) = value.c_str();
  return checked(PQexecPrepared(connection_, name, static_cast<int>(count), pointers.data(),
                                nullptr, nullptr, 0));
}

std::int64_t ServerFloor::number(const std::string& sql) {
  return std::atoll(PQgetvalue(run(sql).get(), 0, 0));
}

std::string textOf(const Answer& answer, int row, int column) {
  return {PQgetvalue(answer.get(), row, column),
          static_cast<std::size_t>(PQgetlength(answer.get(), row, column))};
}

int numberOf(const Answer& answer, int row, int column) {
  return std::atoi(PQgetvalue(answer.get(), row, column));
}

std::size_t readRow(const Answer& answer, int row) {
  constexpr unsigned kInteger = 23;
  constexpr unsigned kSmallInteger = 21;
  std::size_t sum = 0;
  for (int i = 0; i < PQnfields(answer.get()); ++i) {
    if (PQgetisnull(answer.get(), row, i) != 0) continue;
    const auto type = PQftype(answer.get(), i);
    sum += type == kInteger || type == kSmallInteger
               ? static_cast<std::size_t>(numberOf(answer, row, i))
               : static_cast<std::size_t>(PQgetlength(answer.get(), row, i));
  }
  return sum;
}

std::size_t readRows(const Answer& answer) {
  std::size_t sum = 0;
  for (int row = 0; row < PQntuples(answer.get()); ++row) sum += readRow(answer, row);
  return sum;
}

FloorAddition::FloorAddition(ServerFloor& db) : db_(db) {
  db.prepare("begin", "BEGIN");
  db.prepare("commit", "COMMIT");
  db.prepare("document_number", R"(SELECT nextval(pg_get_serial_sequence('"Documents"', 'ID')))");
  db.prepare("revision_number",
             R"(SELECT nextval(pg_get_serial_sequence('"Revisions"', 'RevisionID')))");
  db.prepare("revision",
             R"(INSERT INTO "Revisions" ("RevisionID", "RevisionLevel") VALUES ($1::int, $2))");
  db.prepare(
      "find",
      R"(SELECT "RevisionID", "DocumentID", "RevisionLevel", "RevUser1", "RevUser2", )"
      R"("ChangeDescription", "Location", "EffectiveDate", "ResponsibleID", "RoutingStatus", )"
      R"("RevisionStatus" FROM "Revisions" WHERE )" +
          serverFold("RevisionLevel") + R"( = $1 ORDER BY "RevisionID")");
  db.prepare("change",
             R"(UPDATE "Revisions" SET "RevisionLevel" = 'A', "Location" = $2, "DocumentID" = $3, )"
             R"("ResponsibleID" = $4, "EffectiveDate" = '2024-03-09', "RoutingStatus" = 0, )"
             R"("RevisionStatus" = 1 WHERE "RevisionID" = $1::int)");
  db.prepare("document",
             R"(INSERT INTO "Documents" ("ID", "DocumentID", "DocumentTitle", "DocumentNumber", )"
             R"("RevisionLevel", "EffectiveDate", "DocUser1", "DocUser2", "DocumentNotes", )"
             R"("SecurityLevel", "Location", "Controlled", "CurrentRevID") VALUES ($1::int, $2, )"
             R"($3, $4, 'A', '2024-03-09', 'Department 7', 'Procedure', 'Added while measuring.', )"
             R"(0, $5, -1, $6::int))");
}

void FloorAddition::add(const std::string& user, int n) {
  db_.run("begin", {});
  const std::string id = textOf(db_.run("document_number", {}), 0, 0);
  const std::string stamp = user + stampText(now());
  const std::string revision = textOf(db_.run("revision_number", {}), 0, 0);
  const std::string location = fmt::format("added/{}.pdf", n);
  db_.run("revision", {revision, stamp});
  if (readRows(db_.run("find", {foldKey(stamp)})) == 0) throw std::runtime_error("not found again");
  db_.run("change", {revision, location, stamp, user});
  db_.run("document", {id, stamp, fmt::format("Added instruction {:07}", n),
                       fmt::format("AI-{:07}", n), location, revision});
  db_.run("commit", {});
}

FloorValue::FloorValue(ServerFloor& db) : db_(db) {
  db.prepare("value_begin", "BEGIN");
  db.prepare("value_commit", "COMMIT");
  db.prepare("value_row", "SELECT " + serverDocumentColumns() + R"( FROM "Documents" WHERE )" +
                              serverFold("DocumentID") + R"( = $1 ORDER BY "ID" FOR UPDATE)");
  db.prepare("value_set", R"(UPDATE "Documents" SET "DocUser4" = $2 WHERE "ID" = $1::int)");
}

void FloorValue::set(const std::string& id, const std::string& value) {
  db_.run("value_begin", {});
  const auto row = db_.run("value_row", {foldKey(id)});
  db_.run("value_set", {textOf(row, 0, 0), value});
  db_.run("value_commit", {});
}

namespace {

std::string serverLocation() {
  const char* given = std::getenv("KVVESK_TEST_SERVER");
  if (given == nullptr) throw std::runtime_error("KVVESK_TEST_SERVER names no server");
  return given;
}

// The server's location with another database in the place of the one it names.
std::string inDatabase(const std::string& name) {
  std::string location = serverLocation();
  const std::string named = "/postgres?";
  return location.replace(location.find(named), named.size(), "/" + name + "?");
}

void fill(const std::string& location, int documents) {
  const auto connection = createRegister("Data Source=" + location);
  addAdministrator(*connection);
  connection->Close();
  ServerFloor db(location);
  db.prepare("document",
             R"(INSERT INTO "Documents" ("DocumentID", "DocumentTitle", "DocumentNumber", )"
             R"("RevisionLevel", "EffectiveDate", "DocUser1", "DocUser2", "DocumentNotes", )"
             R"("SecurityLevel", "Location", "Controlled", "CurrentRevID") VALUES ($1, $2, $3, )"
             R"('B', '2024-03-09', $4, 'Procedure', 'Replaces the instruction of the same number. )"
             R"(See also the plan.', 0, $5, -1, $6::int))");
  db.prepare("revision",
             R"(INSERT INTO "Revisions" ("DocumentID", "RevisionLevel", "ChangeDescription", )"
             R"("EffectiveDate", "ResponsibleID", "RoutingStatus", "RevisionStatus") VALUES ($1, )"
             R"('B', 'First issue', '2024-03-09', 'User1', 0, 1))");
  db.run("BEGIN");
  for (int n = 0; n < documents; ++n) {
    db.run("document", {documentId(n), documentTitle(n, documents), fmt::format("WI-{:07}", n),
                        fmt::format("Department {}", n % 25),
                        fmt::format("instructions/{}/{}.pdf", n % 100, n), std::to_string(n + 1)});
    db.run("revision", {documentId(n)});
  }
  db.run("COMMIT");
  db.run("ANALYZE");
}

}  // namespace

std::string serverRegister(int documents) {
  static std::map<int, std::string> filled;
  auto& from = filled[documents];
  if (from.empty()) {
    const std::string name = fmt::format("kv_bench_{}", documents);
    ServerFloor(serverLocation()).run("CREATE DATABASE " + name);
    fill(inDatabase(name), documents);
    from = name;
  }
  static int count = 0;
  const std::string name = fmt::format("kv_bench_copy_{}", ++count);
  ServerFloor(serverLocation()).run(fmt::format("CREATE DATABASE {} TEMPLATE {}", name, from));
  return inDatabase(name);
}

}  // namespace kv::bench
