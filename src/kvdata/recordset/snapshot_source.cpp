#include "kvdata/recordset/snapshot_source.h"

#include "common/error.h"
#include "kvdata/recordset/shape_columns.h"

namespace kv {

SnapshotSource::SnapshotSource(std::shared_ptr<Database> database, PreparedStatement statement)
    : database_(std::move(database)), statement_(std::move(statement)) {
  columns_ = sharedColumns(*statement_.shape);
  stamp_ = &version_;
  load();
}

void SnapshotSource::load() {
  auto& shape = *statement_.shape;
  auto& run = database_->ready(statement_, shape.whole, shape.emitted.whole);
  rows_.reset(columns_->size());
  std::vector<std::int64_t> noKeys;
  run.fetch(rows_, shape.types, noKeys, 0, static_cast<std::size_t>(-1));
  slots_ = rows_.rows();
  ++version_;
}

void SnapshotSource::read(std::span<const std::size_t> slots, engine::RowBlock& into) {
  into.reset(columns_->size());
  for (const auto slot : slots) into.addRow(rows_, slot);
}

RowEdit SnapshotSource::beginAdd() { raise(kNotAvailable); }
std::size_t SnapshotSource::add(const RowEdit&) { raise(kNotAvailable); }
void SnapshotSource::update(std::size_t, const RowEdit&, const engine::RowBlock&) {
  raise(kNotAvailable);
}
void SnapshotSource::remove(std::size_t) { raise(kNotAvailable); }

void SnapshotSource::arrange(const std::vector<std::size_t>& order) {
  engine::RowBlock rows;
  read(order, rows);
  rows_ = std::move(rows);
  ++version_;
}

void SnapshotSource::requery() {
  load();
  beginAnew();
}

}  // namespace kv
