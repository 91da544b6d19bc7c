// SPDX-License-Identifier: Apache-2.0
// Recordset: a cursor over rows with fields by name, movement, editing, find and bookmarks.
//
// Membership and order are fixed when the set opens; own additions come at the end. Rows are read
// when they are visited, in blocks, and a block is thrown away as soon as its connection writes
// anything. A set holds no lock. Members keep the names that clients of record sets know. Not for
// use from several threads at once.
//
// Members raise 3704 on a closed set. When the connection is closed, those that move, read or write
// raise 3709; the others answer as before, and Close and CancelUpdate go on working.
#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "recordset/constants.h"
#include "recordset/fields.h"
#include "recordset/rows.h"

namespace kv {

namespace engine {
class RowBlock;
}

class Database;
class LocalSource;
class RowSource;
struct PreparedStatement;

// A value for a column.
struct NamedValue {
  std::string_view column;
  Variant value;
};

class KVVESK_API Recordset : public Object, public std::enable_shared_from_this<Recordset> {
  struct Private {};

 public:
  explicit Recordset(Private);
  ~Recordset() override;
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;
  Recordset(Recordset&&) = delete;
  Recordset& operator=(Recordset&&) = delete;

  // A closed set without columns: append fields and open it, and it is free-standing.
  [[nodiscard]] static Ref<Recordset> create();
  // A set over a SELECT. For other statements see Connection::OpenRecordset.
  [[nodiscard]] static Ref<Recordset> open(const std::shared_ptr<Database>& database,
                                           PreparedStatement statement,
                                           std::int32_t cursorType = kKeyset,
                                           std::int32_t lockType = kOptimistic);

  // ---- the object ----

  // Opens a free-standing set. Raises 3705 when open, 3709 when it has no fields.
  void Open();
  // Raises 3219 while an edit or addition is pending, and leaves both as they are; 3704 when
  // closed.
  void Close();
  [[nodiscard]] std::int32_t State() const noexcept;
  [[nodiscard]] std::int32_t EditMode() const;
  [[nodiscard]] std::int32_t CursorType() const noexcept { return cursorType_; }
  void CursorType(std::int32_t type);  // 3705 when open
  [[nodiscard]] std::int32_t LockType() const noexcept { return lockType_; }
  void LockType(std::int32_t type);  // 3705 when open
  [[nodiscard]] bool Supports(std::int32_t options) const;
  [[nodiscard]] kv::Fields& Fields() noexcept { return fields_; }
  [[nodiscard]] Ref<Field> Fields(std::string_view name) const { return fields_(name); }
  [[nodiscard]] Ref<Field> Fields(const char* name) const { return fields_(name); }
  [[nodiscard]] Ref<Field> Fields(std::int32_t place) const { return fields_(place); }

  // ---- position ----

  [[nodiscard]] bool Eof() const;
  [[nodiscard]] bool Bof() const;
  [[nodiscard]] std::int32_t RecordCount() const;
  // Every move first saves a pending edit or addition; if that fails, position and edit stay.
  // Moves past an end stop there; from an end further on, and on an empty set, they raise 3021.
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  // By rows from the current one, or from `Start`: a bookmark, kFromFirst or kFromLast.
  void Move(std::int32_t NumRecords, const Variant& Start = {});
  // Goes to the next row (backwards: the previous one) for which `Criteria`, one comparison of a
  // column with a value, holds, beginning with the current row, `SkipRows` rows further or at
  // `Start`. Without one it stops at Eof (backwards: Bof) and raises nothing. Text is compared
  // without regard to case. 3001 for anything that is not one comparison, 3265 for an unknown
  // column.
  void Find(const std::string& Criteria, std::int32_t SkipRows = 0,
            std::int32_t Direction = kForward, const Variant& Start = {});
  // Raises 3021 without a current row, 3001 for something that is no bookmark of this set or its
  // clones.
  [[nodiscard]] Variant Bookmark() const;
  void Bookmark(const Variant& bookmark);
  // The current row's number from 1, or one of the kPosition numbers.
  [[nodiscard]] std::int32_t AbsolutePosition() const;
  void AbsolutePosition(std::int32_t position);

  // ---- writing ----

  void AddNew();
  // Stores what is pending; does nothing, and never fails, when nothing is.
  void Update();
  // Adds a row with these values and stores it, or raises and adds nothing.
  void AddNew(std::initializer_list<NamedValue> values);
  // Gives the current row these values and stores them, or raises and changes nothing. What was
  // pending before is stored first.
  void Update(std::initializer_list<NamedValue> values);
  // Drops what is pending; after an addition the row left becomes current again.
  void CancelUpdate();
  // Deletes the current row and leaves its position as a hole, until a transaction that is open is
  // rolled back. A pending edit of it is dropped; during an addition it raises 3219.
  void Delete();
  // Deletes all rows of the set, or those that its filter shows, and moves behind them. In a table
  // it is one statement; when a row is gone already, it raises -2147217885 and deletes none.
  void DeleteAll();
  // Runs the set's statement again and begins with the first row; the filter and the order stay,
  // bookmarks from before are none any more. When it fails the set is as it was.
  void Requery();

  // ---- whole sets ----

  // The rows as a range, for a loop; see rows.h.
  [[nodiscard]] Rows rows();

  // Up to `Rows` rows from the current one or `Start` on, as values[field][row]; moves behind them.
  // `Fields` names the columns wanted, all when empty. 3021 without a current row.
  [[nodiscard]] std::vector<std::vector<Variant>> GetRows(
      std::int32_t Rows = kRestOfRows, const Variant& Start = {},
      const std::vector<std::string>& Fields = {});
  // A set over the same rows with a position, an edit, a filter and an order of its own, at its
  // first row. When one of the two is requeried, the other takes the new rows at its next use,
  // whatever that is, and begins with the first; what it has pending stays so, and is stored in
  // the row it is of.
  [[nodiscard]] Ref<Recordset> Clone();
  // Shows only the rows for which the criteria hold: comparisons joined by And and Or, with
  // parentheses. They are tested when set; rows changed or added later stay visible. Empty text
  // and kFilterNone, also as text, show all rows again; other numbers raise 3001.
  [[nodiscard]] const std::string& Filter() const noexcept;
  void Filter(const std::string& criteria);
  void Filter(std::int32_t constant) { Filter(std::to_string(constant)); }
  // Puts the rows into the order in which the values of a text column stand in a list, compared
  // without regard to case; rows whose value is not in it come last, as they were. For the
  // components; Requery forgets it.
  void arrange(const std::string& column, const std::vector<std::string>& values);
  // Rows are read in large blocks from here on; for the components, before they visit every row.
  void readMany() noexcept;
  // Orders the rows shown by columns, each with an optional ASC or DESC, separated by commas. Empty
  // text takes the set's own order again.
  [[nodiscard]] const std::string& Sort() const noexcept;
  void Sort(const std::string& columns);

 private:
  friend class Edit;
  friend class Field;
  friend class Fields;

  enum class At : std::uint8_t { Bof, Row, Eof };
  struct Position {
    At at = At::Eof;
    std::size_t place = 0;  // in the order shown; meaningful At::Row, where it may be a hole
  };
  struct Pending;
  struct Shown;

  void attach(std::shared_ptr<RowSource> source);
  void requireOpen() const;
  // The above, and the rows are those that the source has now.
  void requireRows() const;
  // The above, and the connection is open.
  void requireData() const;
  void requireWritable() const;
  // Takes the rows that the source has now and begins with the first.
  void takeRows() const;
  void show(const std::string& filter, const std::string& sort);
  // The place of the current row; raises 3021 where there is none.
  [[nodiscard]] std::size_t currentPlace() const;

  [[nodiscard]] std::size_t places() const noexcept;
  [[nodiscard]] std::size_t slotAt(std::size_t place) const noexcept;
  [[nodiscard]] bool isHoleAt(std::size_t place) const;
  [[nodiscard]] bool isEmpty() const;

  // Steps over holes; false when there is no further row.
  bool stepForward(Position& position) const;
  bool stepBackward(Position& position) const;
  [[nodiscard]] Position first() const;
  [[nodiscard]] Position last() const;
  [[nodiscard]] Position startOf(const Variant& start) const;
  [[nodiscard]] Position placeOfBookmark(const Variant& bookmark) const;
  [[nodiscard]] Variant bookmarkOf(std::size_t slot) const;

  void moveTo(Position position) const noexcept {
    position_ = position;
    row_ = kNoRow;
  }
  // The row of the block under the cursor; raises as rowAt, and 3021 where there is none.
  [[nodiscard]] std::size_t currentRow();
  // The row of the block that holds this place, reading it when needed. Raises -2147217885 for a
  // row that is gone.
  std::size_t rowAt(std::size_t place);
  // The same, false for a row that is gone.
  bool readRow(std::size_t place, std::size_t& row);
  [[nodiscard]] const engine::RowBlock& block() const noexcept;

  void beginEdit();
  // What every move does first.
  void saveFirst();
  [[nodiscard]] Variant fieldValue(std::size_t column);
  [[nodiscard]] Variant originalValue(std::size_t column);
  [[nodiscard]] std::string_view fieldText(std::size_t column);
  [[nodiscard]] bool fieldIsNull(std::size_t column);
  void assign(std::size_t column, const Variant& value);
  void assignAll(std::initializer_list<NamedValue> values);

  kv::Fields fields_;
  std::shared_ptr<RowSource> source_;
  std::shared_ptr<LocalSource>
      local_;  // the columns appended so far, until a free-standing set opens
  bool open_ = false;
  std::int32_t cursorType_ = kKeyset;
  std::int32_t lockType_ = kOptimistic;

  // The set changes by itself when another one has requeried the rows they share, also in members
  // that only ask.
  mutable std::uint32_t generation_ = 0;  // of the rows that position and view are about
  mutable Position position_;
  std::unique_ptr<Shown> shown_;  // always there
  static constexpr std::size_t kNoRow = static_cast<std::size_t>(-1);
  mutable std::size_t row_ = kNoRow;  // of the window, under the cursor; kNoRow until it is read

  std::unique_ptr<Pending> pending_;
  std::string scratch_;  // text of an assigned value, for views of it
};

}  // namespace kv
