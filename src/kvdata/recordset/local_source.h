// Rows of a free-standing set, which no database is behind.
#pragma once

#include "kvdata/recordset/row_source.h"

namespace kv {

class LocalSource final : public RowSource {
 public:
  LocalSource();

  // A column takes Null whatever it was copied from, a counter too.
  void append(SourceColumn column);

  std::size_t slots() const override { return rows_.size(); }
  void read(std::span<const std::size_t> slots, engine::RowBlock& into) override;
  std::uint64_t stamp() const override { return stamp_; }
  bool canUpdate() const override { return true; }
  bool canAdd() const override { return true; }
  bool canDelete() const override { return true; }
  RowEdit beginAdd() override;
  std::size_t add(const RowEdit& edit) override;
  void update(std::size_t slot, const RowEdit& edit, const engine::RowBlock& original) override;
  void remove(std::size_t slot) override;
  void arrange(const std::vector<std::size_t>& order) override;
  void requery() override;

 private:
  std::shared_ptr<std::vector<SourceColumn>> own_;
  std::vector<std::vector<SqlValue>> rows_;
  std::uint64_t stamp_ = 1;
};

}  // namespace kv
