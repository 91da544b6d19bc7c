// SPDX-License-Identifier: Apache-2.0
#include "recordset/keyset_source.h"

#include <algorithm>
#include <utility>

#include "common/convert.h"
#include "common/error.h"
#include "jet/emit/rows.h"
#include "recordset/shape_columns.h"
#include "recordset/value.h"

namespace kv {

namespace {

// The initial value of a column, as far as it is a constant.
std::optional<SqlValue> initialValue(const ColumnInfo& column) {
  if (column.type == ColumnType::Boolean)
    return SqlValue(std::int64_t{column.initial == "-1" ? -1 : 0});
  if (column.initial.empty()) return std::nullopt;
  return storedValue(Variant(column.initial), column.type, column.size);
}

}  // namespace

KeysetSource::KeysetSource(std::shared_ptr<Database> database, PreparedStatement statement)
    : database_(std::move(database)),
      statement_(std::move(statement)),
      perRow_(statement_.shape->bound.select->named.size()) {
  columns_ = sharedColumns(*statement_.shape);
  stamp_ = &database_->stamp();
  const auto& s = select();
  anyUpdatable_ = std::any_of(columns_->begin(), columns_->end(),
                              [](const SourceColumn& column) { return column.updatable; });
  single_ = perRow_ == 1 && (s.scope.size() == 1 || s.rowsOnly);
  requery();
}

// Everything is read before anything is given up.
void KeysetSource::requery() {
  auto& shape = *statement_.shape;
  if (!shape.large && loadHead()) return;
  std::vector<std::int64_t> keys;
  database_->ready(statement_, shape.keys, shape.emitted.keys).fetchKeys(keys, perRow_);
  keep(std::move(keys));
  shape.large = slots() > jet::kHeadRows;
}

// False for a set of more than a head: from now on sets of this shape are read by keys at once.
bool KeysetSource::loadHead() {
  auto& shape = *statement_.shape;
  auto& run = database_->ready(statement_, shape.head, shape.emitted.head);
  const std::size_t most = jet::kHeadRows + 1;
  std::vector<std::int64_t> keys;
  engine::RowBlock head;
  head.reset(columns_->size());
  if (run.fetch(head, shape.types, keys, perRow_, most + 1) >= most) {
    shape.large = true;
    return false;
  }
  keep(std::move(keys));
  rows().head = std::move(head);
  rows().hasHead = true;
  return true;
}

void KeysetSource::keep(std::vector<std::int64_t> keys) {
  auto members = std::make_shared<Rows>(nextGeneration(), keys.size() / perRow_);
  members->keys = std::move(keys);
  members_ = std::move(members);
}

bool KeysetSource::takeHead(engine::RowBlock& into) {
  if (!rows().hasHead) return false;
  into = std::exchange(rows().head, {});
  rows().hasHead = false;
  return true;
}

RowKey KeysetSource::keyOf(std::size_t slot) const {
  const auto keys = keysOf(slot);
  return {keys.begin(), keys.end()};
}

std::optional<std::size_t> KeysetSource::slotOf(const RowKey& row) const {
  for (std::size_t slot = 0; slot < slots(); ++slot)
    if (std::equal(row.begin(), row.end(), keysOf(slot).begin())) return slot;
  return std::nullopt;
}

void KeysetSource::read(std::span<const std::size_t> slots, engine::RowBlock& into) {
  auto& shape = *statement_.shape;
  std::vector<std::int64_t> wanted;
  wanted.reserve(slots.size() * perRow_);
  for (const auto slot : slots) {
    const auto keys = keysOf(slot);
    wanted.insert(wanted.end(), keys.begin(), keys.end());
  }
  const engine::KeyList list{.keys = wanted, .perRow = perRow_};
  auto& run = database_->ready(statement_, shape.rows, shape.emitted.rows);
  run.bindKeys(1, list);
  into.reset(columns_->size());
  std::vector<std::int64_t> found;
  found.reserve(wanted.size());
  run.fetch(into, shape.types, found, perRow_, slots.size() + 1);
  for (std::size_t row = 0; row < slots.size(); ++row)
    if (!std::equal(found.begin() + static_cast<std::ptrdiff_t>(row * perRow_),
                    found.begin() + static_cast<std::ptrdiff_t>((row + 1) * perRow_),
                    wanted.begin() + static_cast<std::ptrdiff_t>(row * perRow_)))
      into.setMissing(row);
}

RowEdit KeysetSource::beginAdd() {
  RowEdit edit(columns_->size());
  const TableInfo& table = tableOf(0);
  for (std::size_t i = 0; i < columns_->size(); ++i) {
    const auto& output = select().outputs[i];
    if (output.table < 0) continue;
    const auto& column = table.columns[static_cast<std::size_t>(output.column)];
    if (column.stands.empty() && !column.counter) edit[i] = initialValue(column);
  }
  if (const ColumnInfo* counter = table.counterColumn()) {
    // At once and for good, so that the caller can use the number before the row is stored.
    Transaction transaction(*database_, engine::Access::Write);
    const SqlValue number = database_->nextNumber(table);
    transaction.commit();
    database_->wrote();
    for (std::size_t i = 0; i < columns_->size(); ++i) {
      const auto& output = select().outputs[i];
      if (output.table >= 0 && &table.columns[static_cast<std::size_t>(output.column)] == counter)
        edit[i] = number;
    }
  }
  return edit;
}

KeysetSource::TableEdit KeysetSource::editOf(std::size_t named, const RowEdit& edit) const {
  const TableInfo& table = tableOf(named);
  TableEdit out;
  for (std::size_t i = 0; i < edit.size(); ++i) {
    const auto& output = select().outputs[i];
    if (!edit[i] || output.table != select().named[named]) continue;
    const auto& shown = table.columns[static_cast<std::size_t>(output.column)];
    int place = output.column;
    SqlValue value = *edit[i];
    if (!shown.stands.empty()) {
      place = static_cast<int>(*table.find(shown.stands));
      const auto& stored = table.columns[static_cast<std::size_t>(place)];
      value = storedValue(shownValue(value, shown.type), stored.type, stored.size);
    }
    const auto known = std::find(out.columns.begin(), out.columns.end(), place);
    if (known != out.columns.end()) {
      out.values[static_cast<std::size_t>(known - out.columns.begin())] = std::move(value);
      continue;
    }
    out.columns.push_back(place);
    out.values.push_back(std::move(value));
  }
  return out;
}

std::size_t KeysetSource::add(const RowEdit& edit) {
  database_->joinTransactions();
  const TableInfo& table = tableOf(0);
  const TableEdit values = editOf(0, edit);
  auto& insert =
      database_->rowStatement(jet::emitInsertRow(table, values.columns, database_->dialect()));
  int number = 1;
  for (const auto& value : values.values) insert.bind(number++, value);
  std::vector<std::int64_t> key;
  database_->wrote();
  insert.fetchKeys(key, 1);
  rows().keys.push_back(key.at(0));
  const auto slot = members_->add();
  database_->whenUndone([members = std::weak_ptr(members_), slot] {
    if (const auto rows = members.lock()) rows->undone(slot);
  });
  return slot;
}

void KeysetSource::update(const RowKey& row, const RowEdit& edit,
                          const engine::RowBlock& original) {
  std::vector<std::pair<std::size_t, TableEdit>> edits;
  for (std::size_t t = 0; t < perRow_; ++t) {
    TableEdit own = editOf(t, edit);
    if (own.columns.empty()) continue;
    if (row[t] == engine::kNoKey) raise(kNotAvailable);
    edits.emplace_back(t, std::move(own));
  }
  if (edits.size() == 1) {
    database_->joinTransactions();
    updateTable(edits[0].first, row[edits[0].first], edits[0].second, original);
    return;
  }
  Transaction transaction(*database_, engine::Access::Write);
  for (const auto& [t, own] : edits) updateTable(t, row[t], own, original);
  transaction.commit();
}

// All columns of the set from this table are checked, as they were read; each once.
UpdatePlan& KeysetSource::planUpdate(std::size_t named, const std::vector<int>& set) {
  auto& plans = statement_.shape->updates;
  for (auto& plan : plans)
    if (plan.named == named && plan.set == set) return plan;
  const TableInfo& table = tableOf(named);
  UpdatePlan plan{.named = named, .set = set, .check = {}, .statement = {}};
  std::vector<int> places;
  for (std::size_t i = 0; i < columns_->size(); ++i) {
    const auto& output = select().outputs[i];
    if (output.table != select().named[named]) continue;
    const auto& shown = table.columns[static_cast<std::size_t>(output.column)];
    const int place =
        shown.stands.empty() ? output.column : static_cast<int>(*table.find(shown.stands));
    if (shown.counter || std::find(places.begin(), places.end(), place) != places.end()) continue;
    places.push_back(place);
    plan.check.push_back({i, shown.stands.empty() ? -1 : place});
  }
  plan.statement =
      database_->engine().prepare(jet::emitUpdateRow(table, set, places, database_->dialect()));
  constexpr std::size_t kMostPlans = 16;  // different edits of one shape are few
  if (plans.size() >= kMostPlans) plans.erase(plans.begin());
  plans.push_back(std::move(plan));
  return plans.back();
}

void KeysetSource::updateTable(std::size_t named, std::int64_t key, const TableEdit& edit,
                               const engine::RowBlock& original) {
  (void)database_->engine();  // a plan may have outlived its connection
  const TableInfo& table = tableOf(named);
  const UpdatePlan& plan = planUpdate(named, edit.columns);
  auto& run = *plan.statement;
  int number = 1;
  for (const auto& value : edit.values) run.bind(number++, value);
  run.bind(number++, key);
  for (const auto& [column, stored] : plan.check) {
    if (stored < 0) {
      run.bindCell(number++, original, 0, column);
      continue;
    }
    const auto& as = table.columns[static_cast<std::size_t>(stored)];
    run.bind(number++, storedValue(shownValue(original, 0, column, (*columns_)[column].type),
                                   as.type, as.size));
  }
  database_->wrote();
  if (run.run() == 1) return;
  auto& exists = database_->rowStatement(jet::emitRowExists(table, database_->dialect()));
  exists.bind(1, key);
  std::vector<std::int64_t> found;
  exists.fetchKeys(found, 1);
  raise(found.empty() ? kRowDeleted : kRowChanged);
}

void KeysetSource::remove(std::size_t slot) {
  database_->joinTransactions();
  const TableInfo& table = tableOf(0);
  auto& run = database_->rowStatement(jet::emitDeleteRow(table, database_->dialect()));
  run.bind(1, keysOf(slot)[0]);
  database_->wrote();
  if (run.run() == 0) raise(kRowDeleted);
  becomeHoles({slot});
}

void KeysetSource::remove(std::span<const std::size_t> slots) {
  std::vector<std::int64_t> keys;
  keys.reserve(slots.size());
  for (const auto slot : slots) keys.push_back(keysOf(slot)[0]);
  Transaction transaction(*database_, engine::Access::Write);
  auto& run = database_->rowStatement(jet::emitDeleteRows(tableOf(0), database_->dialect()));
  const engine::KeyList list{.keys = keys, .perRow = 1};
  run.bindKeys(1, list);
  database_->wrote();
  if (run.run() != static_cast<std::int64_t>(keys.size())) raise(kRowDeleted);
  transaction.commit();
  becomeHoles({slots.begin(), slots.end()});
}

// Until a transaction that is open now is rolled back.
void KeysetSource::becomeHoles(std::vector<std::size_t> slots) {
  for (const auto slot : slots) members_->deleted(slot);
  database_->whenUndone([members = std::weak_ptr(members_), slots = std::move(slots)] {
    if (const auto rows = members.lock())
      for (const auto slot : slots) rows->restored(slot);
  });
}

void KeysetSource::arrange(const std::vector<std::size_t>& order) {
  std::vector<std::int64_t> keys;
  keys.reserve(rows().keys.size());
  for (const auto slot : order) {
    const auto own = keysOf(slot);
    keys.insert(keys.end(), own.begin(), own.end());
  }
  keep(std::move(keys));
}

}  // namespace kv
