// SPDX-License-Identifier: Apache-2.0
#include "recordset/local_source.h"

#include "common/error.h"

namespace kv {

LocalSource::LocalSource() : own_(std::make_shared<std::vector<SourceColumn>>()) {
  columns_ = own_;
  stamp_ = &version_;
  members_ = std::make_shared<Membership>(nextGeneration(), 0);
}

void LocalSource::append(SourceColumn column) {
  column.updatable = true;
  column.nullable = true;
  column.counter = false;
  own_->push_back(std::move(column));
}

// Slots never begin anew here.
RowKey LocalSource::keyOf(std::size_t slot) const { return {static_cast<std::int64_t>(slot)}; }
std::optional<std::size_t> LocalSource::slotOf(const RowKey& row) const {
  return static_cast<std::size_t>(row[0]);
}

void LocalSource::read(std::span<const std::size_t> slots, engine::RowBlock& into) {
  into.reset(columns_->size());
  for (const auto slot : slots) {
    for (const auto& value : rows_[slot]) into.addValue(value);
    into.endRow(isHole(slot));
  }
}

RowEdit LocalSource::beginAdd() { return RowEdit(columns_->size()); }

std::size_t LocalSource::add(const RowEdit& edit) {
  std::vector<SqlValue> row;
  for (const auto& value : edit) row.push_back(value.value_or(SqlValue{}));
  rows_.push_back(std::move(row));
  ++version_;
  return members_->add();
}

void LocalSource::update(const RowKey& key, const RowEdit& edit, const engine::RowBlock& original) {
  const auto slot = static_cast<std::size_t>(key[0]);
  if (isHole(slot)) raise(kRowDeleted);
  auto& row = rows_[slot];
  for (std::size_t i = 0; i < row.size(); ++i)  // a clone may have changed it meanwhile
    if (original.value(0, i) != row[i]) raise(kRowChanged);
  for (std::size_t i = 0; i < row.size(); ++i)
    if (edit[i]) row[i] = *edit[i];
  ++version_;
}

void LocalSource::remove(std::size_t slot) {
  if (isHole(slot)) raise(kRowDeleted);
  members_->deleted(slot);
  ++version_;
}

void LocalSource::arrange(const std::vector<std::size_t>&) { raise(kNotAvailable); }
void LocalSource::requery() { raise(kNotAvailable); }

}  // namespace kv
