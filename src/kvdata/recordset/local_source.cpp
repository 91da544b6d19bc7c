#include "kvdata/recordset/local_source.h"

#include "common/error.h"

namespace kv {

LocalSource::LocalSource() : own_(std::make_shared<std::vector<SourceColumn>>()) {
  columns_ = own_;
  stamp_ = &version_;
}

void LocalSource::append(SourceColumn column) {
  column.updatable = true;
  column.nullable = true;
  column.counter = false;
  own_->push_back(std::move(column));
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
  slots_ = rows_.size();
  return slots_ - 1;
}

void LocalSource::update(std::size_t slot, const RowEdit& edit, const engine::RowBlock& original) {
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
  makeHole(slot);
  ++version_;
}

void LocalSource::arrange(const std::vector<std::size_t>& order) {
  std::vector<std::vector<SqlValue>> rows;
  rows.reserve(order.size());
  for (const auto slot : order) rows.push_back(std::move(rows_[slot]));
  rows_ = std::move(rows);
  ++version_;
}

void LocalSource::requery() { raise(kNotAvailable); }

}  // namespace kv
