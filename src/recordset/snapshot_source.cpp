// SPDX-License-Identifier: Apache-2.0
#include "recordset/snapshot_source.h"

#include "common/error.h"
#include "recordset/shape_columns.h"

namespace kv {

SnapshotSource::SnapshotSource(std::shared_ptr<Database> database, PreparedStatement statement)
    : database_(std::move(database)), statement_(std::move(statement)) {
  columns_ = sharedColumns(*statement_.shape);
  stamp_ = &database_->stamp();
  requery();
}

void SnapshotSource::keep(engine::RowBlock rows) {
  auto members = std::make_shared<Rows>(nextGeneration(), rows.rows());
  members->rows = std::move(rows);
  members_ = std::move(members);
}

void SnapshotSource::requery() {
  auto& shape = *statement_.shape;
  auto& run = database_->ready(statement_, shape.whole, shape.emitted.whole);
  engine::RowBlock rows;
  rows.reset(columns_->size());
  std::vector<std::int64_t> noKeys;
  run.fetch(rows, shape.types, noKeys, 0, static_cast<std::size_t>(-1));
  keep(std::move(rows));
}

// Rows that cannot be edited are never looked for again.
RowKey SnapshotSource::keyOf(std::size_t) const { return {}; }
std::optional<std::size_t> SnapshotSource::slotOf(const RowKey&) const { return std::nullopt; }

void SnapshotSource::read(std::span<const std::size_t> slots, engine::RowBlock& into) {
  into.reset(columns_->size());
  for (const auto slot : slots) into.addRow(rows(), slot);
}

RowEdit SnapshotSource::beginAdd() { raise(kNotAvailable); }
std::size_t SnapshotSource::add(const RowEdit&) { raise(kNotAvailable); }
void SnapshotSource::update(const RowKey&, const RowEdit&, const engine::RowBlock&) {
  raise(kNotAvailable);
}
void SnapshotSource::remove(std::size_t) { raise(kNotAvailable); }

void SnapshotSource::arrange(const std::vector<std::size_t>& order) {
  engine::RowBlock rows;
  read(order, rows);
  keep(std::move(rows));
}

}  // namespace kv
