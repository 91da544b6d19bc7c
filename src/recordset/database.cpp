// SPDX-License-Identifier: Apache-2.0
#include "recordset/database.h"

#include <algorithm>
#include <utility>

#include "common/error.h"
#include "common/text.h"
#include "jet/binding/binder.h"
#include "jet/emit/emitter.h"
#include "jet/emit/rows.h"
#include "jet/syntax/parser.h"
#include "recordset/row_source.h"

namespace kv {

Database::Database(std::unique_ptr<engine::Engine> engine, std::shared_ptr<const Catalog> catalog)
    : engine_(std::move(engine)),
      catalog_(std::move(catalog)),
      dialect_(&jet::dialectNamed(engine_->dialect())) {}

Database::~Database() { close(); }

void Database::renew(std::shared_ptr<const Catalog> catalog) {
  forgetStatements();
  catalog_ = std::move(catalog);
  wrote();
}

// ---- tables that others have changed ----

Database::TablesWatch::TablesWatch(Database& database)
    : database_(database), partner_(database.partner()) {
  for (Database* each : {&database_, partner_.get()}) {
    if (each == nullptr || !each->engine_) continue;
    if (each->engine_->metChangedTables()) (void)each->rereadTables(true);
    each->watchTables(true);
  }
}

Database::TablesWatch::~TablesWatch() {
  database_.watchTables(false);
  if (partner_) partner_->watchTables(false);
}

void Database::watchTables(bool on) noexcept {
  if (engine_ && reader_) engine_->watchTables(on);
}

bool Database::takeOnPresentTables(const Error& error) {
  const bool told = dynamic_cast<const engine::TablesChanged*>(&error) != nullptr;
  if (!told && error.number() != kUnknownTable && error.number() != kUnknownName) return false;
  bool changed = rereadTables(told);
  if (const auto beside = partner(); beside && beside->rereadTables(told)) changed = true;
  return changed;
}

bool Database::rereadTables(bool told) {
  if (!engine_ || !reader_) return false;
  const bool watching = engine_->watchesTables();
  watchTables(false);
  bool changed = told;
  try {
    if (told || engine_->tablesMayDiffer()) {
      auto present = std::make_shared<const Catalog>(reader_(*engine_));
      const auto& before = catalog_->tables();
      const auto& now = present->tables();
      changed =
          told || !std::equal(before.begin(), before.end(), now.begin(), now.end(), sameTable);
      if (changed) renew(std::move(present));
    }
  } catch (const Error&) {  // the failure that led here is the one to tell
    changed = false;
  }
  watchTables(watching);
  return changed;
}

// ---- statements ----

void Database::forgetStatements(StatementShape& shape) noexcept {
  shape.whole.reset();
  shape.keys.reset();
  shape.head.reset();
  shape.rows.reset();
  shape.updates.clear();
}

void Database::forgetStatements() noexcept {
  for (auto& entry : shapes_) forgetStatements(*entry.shape);
  byKey_.clear();
  shapes_.clear();
  byRowSql_.clear();
  rowStatements_.clear();
}

// Statements go before the engine they belong to.
void Database::close() noexcept {
  joined_.clear();
  if (other_) other_->close();
  forgetStatements();
  if (engine_) engine_->rollback();
  engine_.reset();
  stamp_ = kClosedStamp;
}

engine::Engine& Database::engine() {
  if (!engine_) raise(kNoConnection);
  return *engine_;
}

PreparedStatement Database::prepare(std::string_view text) {
  (void)engine();
  jet::lex(text, lexed_);
  PreparedStatement out;
  const auto known = lexed_.lifted ? byKey_.find(lexed_.shape) : byKey_.end();
  if (known != byKey_.end()) {
    if (known->second != shapes_.begin()) shapes_.splice(shapes_.begin(), shapes_, known->second);
    out.shape = known->second->shape;
  } else {
    out.shape = makeShape(text, lexed_);
    if (lexed_.lifted) {
      shapes_.push_front({std::string(lexed_.shape), out.shape});
      byKey_.emplace(shapes_.front().key, shapes_.begin());
      if (shapes_.size() > kMostShapes) {
        byKey_.erase(shapes_.back().key);
        shapes_.pop_back();
      }
    }
  }
  if (out.shape->elsewhere) {
    auto keeper = other_ ? other_ : main_.lock();
    if (!keeper) raise(kNoConnection);
    out = keeper->prepare(text);
    out.home = std::move(keeper);
    return out;
  }
  out.literals = std::move(lexed_.literals);
  out.text = text;
  return out;
}

std::shared_ptr<StatementShape> Database::makeShape(std::string_view text,
                                                    const jet::Lexed& lexed) {
  auto shape = std::make_shared<StatementShape>();
  auto statement = jet::parse(text, lexed);
  if (runsElsewhere(statement)) {
    shape->elsewhere = true;
    return shape;
  }
  shape->catalog = catalog_;
  try {
    shape->bound = jet::bind(std::move(statement), text, lexed.literals, *catalog_);
  } catch (const Error&) {
    if (!rereadTables(false)) throw;
    shape->catalog = catalog_;
    shape->bound = jet::bind(jet::parse(text, lexed), text, lexed.literals, *catalog_);
  }
  shape->emitted = jet::emit(shape->bound, lexed.literals, lexed.lifted, dialect());
  if (shape->bound.select)
    for (const auto& output : shape->bound.select->outputs) shape->types.push_back(output.type);
  return shape;
}

engine::Statement& Database::ready(const PreparedStatement& statement,
                                   std::unique_ptr<engine::Statement>& slot,
                                   const jet::SqlText& text) {
  auto& open = engine();
  if (!slot) slot = open.prepare(text.text);
  int number = text.firstParam;
  for (const auto& use : text.params)
    slot->bind(number++, use.form == jet::ParamUse::Form::Watch
                             ? SqlValue(std::int64_t{open.watchesTables() ? 1 : 0})
                             : jet::boundValue(use, statement.literals, statement.text));
  return *slot;
}

engine::Statement& Database::rowStatement(const std::string& sql) {
  auto& open = engine();
  const auto known = byRowSql_.find(sql);
  if (known != byRowSql_.end()) {
    rowStatements_.splice(rowStatements_.begin(), rowStatements_, known->second);
    return *known->second->statement;
  }
  rowStatements_.push_front({sql, open.prepare(sql)});
  byRowSql_.emplace(rowStatements_.front().sql, rowStatements_.begin());
  if (rowStatements_.size() > kMostRowStatements) {
    byRowSql_.erase(rowStatements_.back().sql);
    rowStatements_.pop_back();
  }
  return *rowStatements_.front().statement;
}

std::int64_t Database::execute(const PreparedStatement& statement) {
  if (statement.home && statement.home.get() != this) return statement.home->execute(statement);
  if (statement.isSelect()) return 0;
  joinTransactions();
  auto& shape = *statement.shape;
  auto& run = ready(statement, shape.whole, shape.emitted.whole);
  // Whatever becomes of it: a failed statement may have ended the transaction it ran in.
  wrote();
  const TableInfo* into = shape.bound.insertTable;
  const auto& columns = shape.bound.insertColumns;
  const bool numbered =
      into != nullptr && std::any_of(columns.begin(), columns.end(), [&](int column) {
        return into->columns[static_cast<std::size_t>(column)].counter;
      });
  if (into != nullptr && !numbered) settleCounters();
  const auto affected = run.run();
  if (!numbered) return affected;
  if (std::find(numbered_.begin(), numbered_.end(), into->name) == numbered_.end())
    numbered_.push_back(into->name);
  if (levels_.empty()) settleCounters();
  return affected;
}

void Database::settleCounters() {
  for (const auto& name : std::exchange(numbered_, {}))
    if (const TableInfo* table = catalog_->find(name)) engine().countAbove(*table);
}

std::int64_t Database::nextNumber(const TableInfo& table) {
  joinTransactions();
  settleCounters();
  return engine().reserveCounter(table, 1);
}

bool Database::isWriting() const noexcept {
  return std::any_of(levels_.begin(), levels_.end(),
                     [](const Level& level) { return level.access == engine::Access::Write; });
}

void Database::insertRows(const TableInfo& table, std::span<const int> columns,
                          std::span<const std::vector<SqlValue>> rows) {
  const auto most = jet::rowsTogether(columns.size(), dialect());
  joinTransactions();
  settleCounters();
  wrote();
  std::unique_ptr<engine::Statement> several;
  std::size_t prepared = 0;
  while (!rows.empty()) {
    const auto count = std::min(rows.size(), most);
    const auto sql = [&] { return jet::emitInsertRows(table, columns, count, dialect()); };
    if (count > 1 && count != prepared) several = engine().prepare(sql());
    prepared = count;
    auto& insert = count > 1 ? *several : rowStatement(sql());
    int number = 1;
    for (const auto& row : rows.first(count))
      for (const auto& value : row) insert.bind(number++, value);
    (void)insert.run();
    rows = rows.subspan(count);
  }
}

std::int64_t Database::execute(std::string_view text) { return execute(prepare(text)); }

// ---- two databases that answer as one ----

namespace {

void addTables(const jet::TableRef& from, std::vector<std::string_view>& names) {
  if (from.kind == jet::TableRef::Kind::Table) names.push_back(from.name);
  for (const auto* side : {from.left.get(), from.right.get()})
    if (side != nullptr) addTables(*side, names);
}

std::vector<std::string_view> tablesNamed(const jet::Statement& statement) {
  std::vector<std::string_view> names;
  const auto add = [&](const jet::TableRefPtr& from) {
    if (from) addTables(*from, names);
  };
  if (statement.select) add(statement.select->from);
  if (statement.update) add(statement.update->from);
  if (statement.remove) add(statement.remove->from);
  if (statement.insert) {
    add(statement.insert->table);
    if (statement.insert->select) add(statement.insert->select->from);
  }
  return names;
}

}  // namespace

void Database::link(const std::shared_ptr<Database>& main, const std::shared_ptr<Database>& other,
                    const std::vector<std::string>& there, const std::string& each) {
  main->forgetStatements();
  other->forgetStatements();
  main->other_ = other;
  main->apart_ = there;
  other->main_ = main;
  other->apart_ = there;
  other->apart_.push_back(each);
}

std::shared_ptr<Database> Database::keeperOf(std::string_view table) const {
  const bool apart = std::any_of(apart_.begin(), apart_.end(),
                                 [&](const std::string& name) { return equalNoCase(name, table); });
  if (other_) return apart ? other_ : nullptr;
  return apart ? nullptr : main_.lock();
}

bool Database::runsElsewhere(const jet::Statement& statement) const {
  if (apart_.empty()) return false;
  std::string here;
  std::string elsewhere;
  for (const auto name : tablesNamed(statement)) {
    auto& list = keeperOf(name) ? elsewhere : here;
    list.append(list.empty() ? "" : ", ").append(name);
  }
  if (elsewhere.empty() || here.empty()) return here.empty() && !elsewhere.empty();
  throw Error(kSyntax, "kvData",
              "Users and actions are kept in a database of their own, and a statement cannot name "
              "tables of both. (" +
                  here + "; " + elsewhere + ")");
}

void Database::joinTransactions() {
  const auto main = main_.lock();
  if (!main || joining_) return;
  joining_ = true;
  try {
    while (main->joined_.size() < main->levels_.size()) {
      const auto& level = main->levels_[main->joined_.size()];
      main->joined_.push_back(std::make_unique<Transaction>(
          *this, level.access,
          level.client ? Transaction::For::Client : Transaction::For::Library));
    }
  } catch (...) {
    joining_ = false;
    throw;
  }
  joining_ = false;
}

// ---- what to do when a transaction is undone ----

void Database::whenUndone(std::function<void()> undo) {
  if (opener_ >= 0) undos_.push_back({static_cast<int>(levels_.size()) - 1, std::move(undo)});
}

void Database::undoFrom(int level) noexcept {
  while (!undos_.empty() && undos_.back().level >= level) {
    undos_.back().run();
    undos_.pop_back();
  }
}

void Database::handUndosOn(int level) noexcept {
  if (opener_ < 0) undos_.clear();
  for (auto undo = undos_.rbegin(); undo != undos_.rend() && undo->level >= level; ++undo)
    undo->level = level - 1;
}

// ---- Transaction ----

// Reading levels change nothing about what a failure may undo.
void Database::guardStatements() noexcept {
  if (!engine_) return;
  const auto writing = std::find_if(levels_.rbegin(), levels_.rend(), [](const Level& level) {
    return level.access == engine::Access::Write;
  });
  engine_->guardStatements(writing != levels_.rend() && writing->client);
}

Transaction::Transaction(Database& database, engine::Access access, For whom)
    : database_(database) {
  if (access == engine::Access::Write) database.joinTransactions();
  level_ = static_cast<int>(database.levels_.size());
  auto& engine = database_.engine();
  const bool open = database_.opener_ >= 0;
  const bool openForWriting =
      open && database_.levels_[static_cast<std::size_t>(database_.opener_)].access ==
                  engine::Access::Write;
  if (access == engine::Access::Write && open && !openForWriting) {
    engine.commit();
    database_.opener_ = -1;
    database_.undos_.clear();
  }
  if (database_.opener_ < 0) {
    engine.begin(access);
    database_.opener_ = level_;
    opened_ = true;
  } else if (access == engine::Access::Write) {
    engine.savepoint(level_);
    marked_ = true;
  }
  database_.levels_.push_back({access, whom == For::Client});
  database_.guardStatements();
}

Transaction::~Transaction() {
  if (done_) return;
  if (!database_.isOpen()) {  // closed under it: the engine has rolled back
    database_.undoFrom(level_);
    leave();
    return;
  }
  auto& engine = database_.engine();
  if (opened_ && database_.opener_ == level_) {
    engine.rollback();
    if (database_.levels_[static_cast<std::size_t>(level_)].access == engine::Access::Write)
      database_.wrote();
  } else if (marked_) {
    database_.wrote();
    try {
      if (engine.inTransaction()) {
        engine.rollbackTo(level_);
        engine.release(level_);
      }
    } catch (const std::exception&) {
      engine.rollback();  // a mark that cannot be reached: the whole transaction goes, and commit
                          // will say so
    }
  }
  if (opened_ || marked_) database_.undoFrom(level_);
  leave();
}

void Transaction::commit() {
  auto& engine = database_.engine();
  if (opened_ && database_.opener_ == level_) {
    if (!engine.inTransaction()) raise(Cause::TransactionEnded);
    database_.settleCounters();
    engine.commit();
  } else if (marked_) {
    engine.release(level_);
  }
  done_ = true;
  // The register first: people told of what has not come about are worse off than people not told.
  const auto other = joined();
  leave();
  if (other) other->commit();
}

std::unique_ptr<Transaction> Transaction::joined() noexcept {
  const auto level = static_cast<std::size_t>(level_);
  return level < database_.joined_.size() ? std::move(database_.joined_[level]) : nullptr;
}

void Transaction::leave() noexcept {
  const auto level = static_cast<std::size_t>(level_);
  if (database_.joined_.size() > level) database_.joined_.resize(level);
  if (database_.opener_ == level_) database_.opener_ = -1;
  database_.levels_.pop_back();
  database_.handUndosOn(level_);
  database_.guardStatements();
}

}  // namespace kv
