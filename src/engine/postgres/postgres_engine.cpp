// SPDX-License-Identifier: Apache-2.0
#include "engine/postgres/postgres_engine.h"

#include <fmt/format.h>

#include <array>
#include <map>
#include <utility>

#include "common/error.h"
#include "common/text.h"
#include "engine/postgres/postgres_connection.h"
#include "engine/postgres/postgres_error.h"
#include "engine/postgres/postgres_statement.h"

namespace kv::engine {

namespace {

// A table of this name says that the schema holds a register.
constexpr const char* kMark = "kv_register";

// Every column of every table of the schema, with what the constraints we made say about it.
constexpr const char* kColumns = R"(
SELECT c.relname, a.attname, format_type(a.atttypid, NULL),
       pg_get_expr(d.adbin, d.adrelid), CASE WHEN a.attidentity <> '' THEN -1 ELSE 0 END,
       coalesce((SELECT min(k.conname || ' ' || pg_get_constraintdef(k.oid)) FROM pg_constraint k
                 WHERE k.conrelid = c.oid AND k.contype = 'c'
                   AND k.conname IN ('kv_bool_' || a.attname, 'kv_size_' || a.attname)), ''),
       c.relnatts
FROM pg_class c
JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped
LEFT JOIN pg_attrdef d ON d.adrelid = c.oid AND d.adnum = a.attnum
WHERE c.relnamespace = current_schema()::regnamespace AND c.relkind IN ('r', 'p')
  AND left(c.relname, 3) <> 'kv_'
ORDER BY c.oid, a.attnum)";

ColumnType typeOf(std::string_view declared, std::string_view constraint) {
  if (declared == "smallint")
    return constraint.starts_with("kv_bool_") ? ColumnType::Boolean : ColumnType::Int16;
  if (declared == "integer" || declared == "bigint") return ColumnType::Int32;
  if (declared == "real") return ColumnType::Single;
  if (declared == "double precision") return ColumnType::Double;
  if (declared.starts_with("timestamp")) return ColumnType::Date;
  return declared == "character varying" ? ColumnType::Text : ColumnType::Memo;
}

// The last number of the constraint's text.
int sizeOf(std::string_view constraint) {
  int size = 0;
  bool in = false;
  for (const char c : constraint) {
    if (isDigit(c)) size = (in ? size * 10 : 0) + (c - '0');
    in = isDigit(c);
  }
  return size;
}

// 'text'::character varying, 0, '-1'::integer: the plain value.
std::string initialOf(std::string_view text) {
  if (text.empty() || text.front() != '\'') return std::string(text);
  std::string out;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '\'' && (i + 1 >= text.size() || text[++i] != '\'')) break;
    out += text[i];
  }
  return out;
}

class PostgresEngine final : public Engine {
 public:
  explicit PostgresEngine(const OpenOptions& options)
      : connection_(std::make_shared<PostgresConnection>(options)) {
    const Result found = connection_->run(
        fmt::format("SELECT to_regclass(quote_ident(current_schema()) || '.{}') IS NOT NULL, "
                    "current_schema() IS NOT NULL",
                    kMark),
        {}, {}, false);
    const bool register_ = PQgetvalue(found.get(), 0, 0)[0] == 't';
    if (PQgetvalue(found.get(), 0, 1)[0] != 't')
      raiseServer(Cause::NoSuchPlace, "The database has no schema to keep a register in.", "");
    if (options.create && register_)
      raiseServer(Cause::SomethingThere, "There is a register in this database already.", "");
    if (!options.create && !register_)
      raiseServer(Cause::NotARegister, "The database is not a register.", "");
  }

  std::string_view dialect() const override { return "postgres"; }

  std::unique_ptr<Statement> prepare(const std::string& sql) override {
    return std::make_unique<PostgresStatement>(connection_, sql);
  }
  void execute(const std::string& sql) override { connection_->execute(sql); }

  std::vector<TableInfo> catalog() override {
    PostgresStatement ask(connection_, kColumns);
    const std::array<ColumnType, 7> types = {ColumnType::Text, ColumnType::Text,  ColumnType::Text,
                                             ColumnType::Text, ColumnType::Int16, ColumnType::Text,
                                             ColumnType::Int16};
    RowBlock rows;
    rows.reset(types.size());
    std::vector<std::int64_t> noKeys;
    ask.fetch(rows, types, noKeys, 0, static_cast<std::size_t>(-1));
    std::vector<TableInfo> out;
    for (std::size_t r = 0; r < rows.rows(); ++r) {
      const auto text = [&](std::size_t column) { return rows.text(rows.cell(r, column)); };
      if (out.empty() || out.back().name != text(0))
        out.push_back({.name = std::string(text(0)), .columns = {}, .key = {}});
      TableInfo& table = out.back();
      table.columnsSoFar = static_cast<int>(rows.cell(r, 6).whole);
      const std::string name(text(1));
      const bool key = rows.cell(r, 4).whole != 0;
      if (key) {
        table.key = name;
        table.hiddenKey = name.starts_with("kv_");
        if (table.hiddenKey) continue;
      }
      ColumnInfo column{
          .name = name, .type = typeOf(text(2), text(5)), .size = sizeOf(text(5)), .counter = key};
      if (column.type != ColumnType::Text) column.size = 0;
      if (!key && rows.cell(r, 3).kind == Cell::Kind::Text) column.initial = initialOf(text(3));
      table.columns.push_back(std::move(column));
    }
    return out;
  }

  // The server says nothing by itself: what it refuses tells, and what a statement asks along.
  void watchTables(bool on) noexcept override { watching_ = on; }
  bool watchesTables() const noexcept override {
    return watching_ && connection_->survivesFailure();
  }
  bool metChangedTables() const noexcept override { return false; }
  bool tablesMayDiffer() override { return connection_->canAsk(); }

  void begin(Access access) override { connection_->begin(access); }
  void commit() override { connection_->commit(); }
  void rollback() noexcept override { connection_->rollback(); }
  bool inTransaction() const override { return connection_->inTransaction(); }
  void savepoint(int mark) override { connection_->savepoint(mark); }
  void release(int mark) override { connection_->release(mark); }
  void rollbackTo(int mark) override { connection_->rollbackTo(mark); }
  void guardStatements(bool on) override { connection_->guardStatements(on); }

  // A sequence never goes back, so numbers taken in a transaction that is undone are not given out
  // again. More than one number at a time is for callers who have the table to themselves.
  std::int64_t reserveCounter(const TableInfo& table, std::int64_t count) override {
    auto& next = counters_[table.name];
    if (!next)
      next = std::make_unique<PostgresStatement>(
          connection_, fmt::format("SELECT nextval({})", sequenceOf(table)));
    std::vector<std::int64_t> first;
    next->fetchKeys(first, 1);
    if (count > 1)
      connection_->execute(
          fmt::format("SELECT setval({}, {})", sequenceOf(table), first.at(0) + count - 1));
    return first.at(0);
  }

  std::int64_t counterReached(const TableInfo& table) override {
    PostgresStatement ask(
        connection_,
        fmt::format("SELECT coalesce(pg_sequence_last_value({}::regclass), 0)", sequenceOf(table)));
    std::vector<std::int64_t> reached;
    ask.fetchKeys(reached, 1);
    return reached.at(0);
  }

  // Forward one by one, so that nobody's number is given out twice; in one step where the way is
  // long, as after a register was filled, when nobody else adds.
  void countAbove(const TableInfo& table) override {
    constexpr int kFarAhead = 1000;
    const std::string sequence = sequenceOf(table);
    connection_->execute(fmt::format(
        "SELECT CASE WHEN g.top - g.at > {2} THEN setval({0}, g.top) ELSE (SELECT "
        "max(nextval({0})) FROM generate_series(1, g.top - g.at)) END FROM (SELECT "
        "coalesce(max(\"{1}\"), 0)::bigint AS top, "
        "coalesce(pg_sequence_last_value(({0})::regclass), 0) AS at FROM {3}) AS g WHERE g.top > "
        "g.at",
        sequence, table.key, kFarAhead, quoted(table.name)));
  }

  std::int64_t dataVersion() override {
    PostgresStatement ask(connection_,
                          "SELECT pg_snapshot_xmax(pg_current_snapshot())::text::bigint");
    std::vector<std::int64_t> version;
    ask.fetchKeys(version, 1);
    return version.at(0);
  }

  void markAsRegister() override {
    connection_->execute(fmt::format("CREATE TABLE {} (layout varchar PRIMARY KEY)", kMark));
  }

  bool readOnly() const override { return connection_->readOnly(); }
  std::uint64_t roundTrips() const noexcept override { return connection_->roundTrips(); }
  void interrupt() noexcept override { connection_->interrupt(); }
  void setTimeLimit(std::chrono::milliseconds limit) override { connection_->setTimeLimit(limit); }

 private:
  static std::string quoted(const std::string& name) {
    std::string out = "\"";
    for (const char c : name) out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
  }
  static std::string sequenceOf(const TableInfo& table) {
    return fmt::format("pg_get_serial_sequence('{}', '{}')", doubledQuotes(quoted(table.name)),
                       doubledQuotes(table.key));
  }

  std::shared_ptr<PostgresConnection> connection_;
  std::map<std::string, std::unique_ptr<PostgresStatement>> counters_;
  bool watching_ = false;
};

}  // namespace

std::unique_ptr<Engine> openPostgres(const OpenOptions& options) {
  return std::make_unique<PostgresEngine>(options);
}

}  // namespace kv::engine
