// SPDX-License-Identifier: Apache-2.0
// Rows without keys (DISTINCT, grouping, constants): read once, when the set opens, and kept.
#pragma once

#include <memory>

#include "recordset/database.h"
#include "recordset/row_source.h"

namespace kv {

class SnapshotSource final : public RowSource {
 public:
  SnapshotSource(std::shared_ptr<Database> database, PreparedStatement statement);

  [[nodiscard]] RowKey keyOf(std::size_t slot) const override;
  [[nodiscard]] std::optional<std::size_t> slotOf(const RowKey& row) const override;
  void read(std::span<const std::size_t> slots, engine::RowBlock& into) override;
  bool keyed() const override { return false; }
  bool canUpdate() const override { return false; }
  bool canAdd() const override { return false; }
  bool canDelete() const override { return false; }
  RowEdit beginAdd() override;
  std::size_t add(const RowEdit& edit) override;
  void update(const RowKey& row, const RowEdit& edit, const engine::RowBlock& original) override;
  using RowSource::remove;
  void remove(std::size_t slot) override;
  void arrange(const std::vector<std::size_t>& order) override;
  void requery() override;

 private:
  struct Rows : Membership {
    using Membership::Membership;
    engine::RowBlock rows;
  };
  [[nodiscard]] const engine::RowBlock& rows() const {
    return static_cast<const Rows&>(*members_).rows;
  }
  void keep(engine::RowBlock rows);

  std::shared_ptr<Database> database_;
  PreparedStatement statement_;
};

}  // namespace kv
