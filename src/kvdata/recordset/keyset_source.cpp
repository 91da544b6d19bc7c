#include "kvdata/recordset/keyset_source.h"

#include <algorithm>

#include "common/convert.h"
#include "common/error.h"
#include "kvdata/jet/emit/rows.h"
#include "kvdata/recordset/shape_columns.h"
#include "kvdata/recordset/value.h"

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
  load();
}

void KeysetSource::load() {
  auto& shape = *statement_.shape;
  keys_.clear();
  head_.reset(columns_->size());
  hasHead_ = false;
  if (!shape.large) {
    auto& run = database_->ready(statement_, shape.head, shape.emitted.head);
    const std::size_t most = jet::kHeadRows + 1;
    const auto rows = run.fetch(head_, shape.types, keys_, perRow_, most + 1);
    if (rows < most) {
      hasHead_ = true;
      slots_ = rows;
      return;
    }
    // More than a head: from now on sets of this shape are read by keys at once.
    shape.large = true;
    keys_.clear();
  }
  database_->ready(statement_, shape.keys, shape.emitted.keys).fetchKeys(keys_, perRow_);
  slots_ = keys_.size() / perRow_;
  shape.large = slots() > jet::kHeadRows;
}

bool KeysetSource::takeHead(engine::RowBlock& into) {
  if (!hasHead_) return false;
  std::swap(into, head_);
  hasHead_ = false;
  head_.reset(columns_->size());
  return true;
}

void KeysetSource::read(std::span<const std::size_t> slots, engine::RowBlock& into) {
  auto& shape = *statement_.shape;
  std::vector<std::int64_t> wanted;
  wanted.reserve(slots.size() * perRow_);
  for (const auto slot : slots)
    wanted.insert(wanted.end(), keys_.begin() + static_cast<std::ptrdiff_t>(slot * perRow_),
                  keys_.begin() + static_cast<std::ptrdiff_t>((slot + 1) * perRow_));
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
  const TableInfo& table = tableOf(0);
  const TableEdit values = editOf(0, edit);
  auto& insert =
      database_->rowStatement(jet::emitInsertRow(table, values.columns, database_->dialect()));
  int number = 1;
  for (const auto& value : values.values) insert.bind(number++, value);
  std::vector<std::int64_t> key;
  database_->wrote();
  insert.fetchKeys(key, 1);
  keys_.push_back(key.at(0));
  return slots_++;
}

void KeysetSource::update(std::size_t slot, const RowEdit& edit, const engine::RowBlock& original) {
  std::vector<std::pair<std::size_t, TableEdit>> edits;
  for (std::size_t t = 0; t < perRow_; ++t) {
    TableEdit own = editOf(t, edit);
    if (own.columns.empty()) continue;
    if (keys_[slot * perRow_ + t] == engine::kNoKey) raise(kNotAvailable);
    edits.emplace_back(t, std::move(own));
  }
  if (edits.size() == 1) {
    updateTable(edits[0].first, keys_[slot * perRow_ + edits[0].first], edits[0].second, original);
    return;
  }
  Transaction transaction(*database_, engine::Access::Write);
  for (const auto& [t, own] : edits) updateTable(t, keys_[slot * perRow_ + t], own, original);
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
  const TableInfo& table = tableOf(0);
  auto& run = database_->rowStatement(jet::emitDeleteRow(table, database_->dialect()));
  run.bind(1, keys_[slot]);
  database_->wrote();
  if (run.run() == 0) raise(kRowDeleted);
  makeHole(slot);
}

void KeysetSource::remove(std::span<const std::size_t> slots) {
  std::vector<std::int64_t> keys;
  keys.reserve(slots.size());
  for (const auto slot : slots) keys.push_back(keys_[slot]);
  Transaction transaction(*database_, engine::Access::Write);
  auto& run = database_->rowStatement(jet::emitDeleteRows(tableOf(0), database_->dialect()));
  const engine::KeyList list{.keys = keys, .perRow = 1};
  run.bindKeys(1, list);
  database_->wrote();
  if (run.run() != static_cast<std::int64_t>(keys.size())) raise(kRowDeleted);
  transaction.commit();
  for (const auto slot : slots) makeHole(slot);
}

void KeysetSource::arrange(const std::vector<std::size_t>& order) {
  std::vector<std::int64_t> keys;
  keys.reserve(keys_.size());
  for (const auto slot : order)
    for (std::size_t k = 0; k < perRow_; ++k) keys.push_back(keys_[slot * perRow_ + k]);
  keys_ = std::move(keys);
  hasHead_ = false;
}

void KeysetSource::requery() {
  load();
  beginAnew();
}

}  // namespace kv
