// SPDX-License-Identifier: Apache-2.0
// Rows by key: the keys of all rows are read when the set opens, the rows themselves when they are
// visited. No lock is held between.
#pragma once

#include <memory>

#include "recordset/database.h"
#include "recordset/row_source.h"

namespace kv {

class KeysetSource final : public RowSource {
 public:
  KeysetSource(std::shared_ptr<Database> database, PreparedStatement statement);

  [[nodiscard]] RowKey keyOf(std::size_t slot) const override;
  [[nodiscard]] std::optional<std::size_t> slotOf(const RowKey& row) const override;
  void read(std::span<const std::size_t> slots, engine::RowBlock& into) override;
  bool takeHead(engine::RowBlock& into) override;
  bool canUpdate() const override { return anyUpdatable_; }
  bool canAdd() const override { return single_; }
  bool canDelete() const override { return single_; }
  RowEdit beginAdd() override;
  std::size_t add(const RowEdit& edit) override;
  void update(const RowKey& row, const RowEdit& edit, const engine::RowBlock& original) override;
  void remove(std::size_t slot) override;
  void remove(std::span<const std::size_t> slots) override;
  void arrange(const std::vector<std::size_t>& order) override;
  void requery() override;

 private:
  struct Rows : Membership {
    using Membership::Membership;
    std::vector<std::int64_t> keys;  // perRow_ for each slot
    engine::RowBlock head;           // the rows themselves, until somebody takes them
    bool hasHead = false;
  };
  [[nodiscard]] Rows& rows() const { return static_cast<Rows&>(*members_); }
  [[nodiscard]] std::span<const std::int64_t> keysOf(std::size_t slot) const {
    return std::span(rows().keys).subspan(slot * perRow_, perRow_);
  }
  void keep(std::vector<std::int64_t> keys);
  bool loadHead();
  void becomeHoles(std::vector<std::size_t> slots);
  [[nodiscard]] const jet::BoundSelect& select() const { return *statement_.shape->bound.select; }
  [[nodiscard]] const TableInfo& tableOf(std::size_t named) const {
    return *select().scope[static_cast<std::size_t>(select().named[named])].info;
  }
  // The edit's values by place in the stored columns of one named table, in the columns' order.
  struct TableEdit {
    std::vector<int> columns;
    std::vector<SqlValue> values;
  };
  [[nodiscard]] TableEdit editOf(std::size_t named, const RowEdit& edit) const;
  // The plan for writing these columns of a named table; kept with the statement's shape.
  UpdatePlan& planUpdate(std::size_t named, const std::vector<int>& set);
  void updateTable(std::size_t named, std::int64_t key, const TableEdit& edit,
                   const engine::RowBlock& original);

  std::shared_ptr<Database> database_;
  PreparedStatement statement_;
  std::size_t perRow_;
  bool anyUpdatable_ = false;
  bool single_ = false;  // exactly one table: rows can be added and deleted
};

}  // namespace kv
