// SPDX-License-Identifier: Apache-2.0
// Rows of a free-standing set, which no database is behind.
#pragma once

#include "recordset/row_source.h"

namespace kv {

class LocalSource final : public RowSource {
 public:
  LocalSource();

  // A column takes Null whatever it was copied from, a counter too.
  void append(SourceColumn column);

  [[nodiscard]] RowKey keyOf(std::size_t slot) const override;
  [[nodiscard]] std::optional<std::size_t> slotOf(const RowKey& row) const override;

  void read(std::span<const std::size_t> slots, engine::RowBlock& into) override;
  bool canUpdate() const override { return true; }
  bool canAdd() const override { return true; }
  bool canDelete() const override { return true; }
  RowEdit beginAdd() override;
  std::size_t add(const RowEdit& edit) override;
  void update(const RowKey& row, const RowEdit& edit, const engine::RowBlock& original) override;
  using RowSource::remove;
  void remove(std::size_t slot) override;
  void arrange(const std::vector<std::size_t>& order) override;
  void requery() override;

 private:
  std::shared_ptr<std::vector<SourceColumn>> own_;
  std::vector<std::vector<SqlValue>> rows_;
  std::uint64_t version_ = 1;
};

}  // namespace kv
