// Where a record set's rows are: its membership, which is fixed when it opens and grows only by its
// own additions, and the reading and writing of rows. Cursors with a position of their own work on
// top; clones share one source.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "common/catalog.h"
#include "common/sql_value.h"
#include "kvdata/engine/row_block.h"

namespace kv {

struct SourceColumn {
  std::string name;
  ColumnType type = ColumnType::Text;
  int size = 0;
  bool updatable = true;
  bool nullable = true;
  bool counter = false;
  // Columns with the same number show the same stored column, so the last assignment to any of them
  // counts; -1 for columns of their own.
  int storage = -1;
};

// The values assigned in one edit or addition, one place per column.
using RowEdit = std::vector<std::optional<SqlValue>>;

class RowSource {
 public:
  RowSource() = default;
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;
  RowSource(RowSource&&) = delete;
  RowSource& operator=(RowSource&&) = delete;
  virtual ~RowSource() = default;

  [[nodiscard]] const std::vector<SourceColumn>& columns() const noexcept { return *columns_; }

  // Slots are the rows in order, from 0; a deleted row leaves its slot as a hole.
  [[nodiscard]] std::size_t slots() const noexcept { return slots_; }
  [[nodiscard]] bool isHole(std::size_t slot) const noexcept {
    return slot < holes_.size() && holes_[slot];
  }
  [[nodiscard]] std::size_t holes() const noexcept { return holeCount_; }

  // Appends the rows of these slots to `into`, which is reset for them; rows that are gone come as
  // missing.
  virtual void read(std::span<const std::size_t> slots, engine::RowBlock& into) = 0;
  // Changes when rows read before may not be what they were.
  [[nodiscard]] std::uint64_t stamp() const noexcept { return *stamp_; }
  // Rows of the first slots that opening the set has read already; empties what is kept of them.
  virtual bool takeHead(engine::RowBlock& into) {
    (void)into;
    return false;
  }

  [[nodiscard]] virtual bool keyed() const { return true; }
  [[nodiscard]] virtual bool canUpdate() const = 0;
  [[nodiscard]] virtual bool canAdd() const = 0;
  [[nodiscard]] virtual bool canDelete() const = 0;

  // The values a new row begins with: its counter taken, its columns' initial values.
  virtual RowEdit beginAdd() = 0;
  // Stores a new row and returns its slot, the last one.
  virtual std::size_t add(const RowEdit& edit) = 0;
  // Stores the assigned values if the row still is as in `original`, a block of this one row.
  // Raises -2147217864 when it is not, -2147217885 when it is gone; then nothing is written.
  virtual void update(std::size_t slot, const RowEdit& edit, const engine::RowBlock& original) = 0;
  virtual void remove(std::size_t slot) = 0;
  // The same for several, none of them a hole: all of them or none.
  virtual void remove(std::span<const std::size_t> slots) {
    for (const auto slot : slots) remove(slot);
  }

  // Puts the slots into another order: slot i becomes what slot `order[i]` was. There must be no
  // holes.
  virtual void arrange(const std::vector<std::size_t>& order) = 0;
  // Runs the statement again; slots begin anew.
  virtual void requery() = 0;
  // How often the membership began anew; bookmarks are good for one.
  [[nodiscard]] std::uint32_t generation() const noexcept { return generation_; }

 protected:
  void makeHole(std::size_t slot) {
    if (holes_.size() <= slot) holes_.resize(slot + 1);
    if (!holes_[slot]) ++holeCount_;
    holes_[slot] = true;
  }
  void beginAnew() {
    holes_.clear();
    holeCount_ = 0;
    ++generation_;
  }

  std::size_t slots_ = 0;
  const std::uint64_t* stamp_ = nullptr;  // set by the constructors; lives as long as the source
  // Shared: sets of one statement shape have the same columns.
  std::shared_ptr<const std::vector<SourceColumn>> columns_;

 private:
  std::vector<bool> holes_;
  std::size_t holeCount_ = 0;
  std::uint32_t generation_ = 1;
};

}  // namespace kv
