// SPDX-License-Identifier: Apache-2.0
// Where a record set's rows are: its membership, which is fixed when it opens and grows only by its
// own additions, and the reading and writing of rows. Cursors with a position of their own work on
// top; clones share one source, and learn from its generation that another one has requeried it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "common/catalog.h"
#include "common/error.h"
#include "common/sql_value.h"
#include "engine/row_block.h"
#include "recordset/membership.h"

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

// What a row is known by whatever its slot, also after the slots have begun anew.
using RowKey = std::vector<std::int64_t>;

// The stamp of a connection that is closed.
inline constexpr std::uint64_t kClosedStamp = static_cast<std::uint64_t>(-1);

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
  [[nodiscard]] std::size_t slots() const noexcept { return members_->slots(); }
  [[nodiscard]] bool isHole(std::size_t slot) const noexcept { return members_->isHole(slot); }
  [[nodiscard]] std::size_t holes() const noexcept { return members_->holes(); }
  // Raises what reading a hole raises.
  [[noreturn]] void raiseHole(std::size_t slot) const {
    if (members_->isUndone(slot)) raise(kRowDeleted);
    raise(kNoCurrentRow);
  }
  [[nodiscard]] virtual RowKey keyOf(std::size_t slot) const = 0;
  // The slot of a row, nothing when it is not among them.
  [[nodiscard]] virtual std::optional<std::size_t> slotOf(const RowKey& row) const = 0;

  // Appends the rows of these slots to `into`, which is reset for them; rows that are gone come as
  // missing.
  virtual void read(std::span<const std::size_t> slots, engine::RowBlock& into) = 0;
  // Changes when rows read before may not be what they were.
  [[nodiscard]] std::uint64_t stamp() const noexcept { return *stamp_; }
  // False once the connection that the rows came through is closed: nothing of them is shown then.
  [[nodiscard]] bool connected() const noexcept { return *stamp_ != kClosedStamp; }
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
  virtual void update(const RowKey& row, const RowEdit& edit, const engine::RowBlock& original) = 0;
  virtual void remove(std::size_t slot) = 0;
  // The same for several, none of them a hole: all of them or none.
  virtual void remove(std::span<const std::size_t> slots) {
    for (const auto slot : slots) remove(slot);
  }

  // Puts the slots into another order, in which they begin anew: slot i becomes what slot
  // `order[i]` was. There must be no holes.
  virtual void arrange(const std::vector<std::size_t>& order) = 0;
  // Runs the statement again; slots begin anew. When that fails they stay as they were.
  virtual void requery() = 0;
  // Which membership this is, of those that there have been; places and bookmarks are good for one.
  [[nodiscard]] std::uint32_t generation() const noexcept { return members_->generation(); }
  // The present membership, for going back to it when what follows a Requery fails.
  [[nodiscard]] std::shared_ptr<Membership> members() const noexcept { return members_; }
  void goBackTo(std::shared_ptr<Membership> members) noexcept { members_ = std::move(members); }

 protected:
  [[nodiscard]] std::uint32_t nextGeneration() noexcept { return ++generations_; }

  std::shared_ptr<Membership> members_;   // set by the constructors
  const std::uint64_t* stamp_ = nullptr;  // set by the constructors; lives as long as the source
  // Shared: sets of one statement shape have the same columns.
  std::shared_ptr<const std::vector<SourceColumn>> columns_;

 private:
  std::uint32_t generations_ = 0;
};

}  // namespace kv
