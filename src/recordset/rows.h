// SPDX-License-Identifier: Apache-2.0
// The rows of a record set as a range:
//
//   for (const auto& row : rs->rows())
//     std::cout << row.text("DocumentTitle") << row.get<std::optional<kv::Date>>("EffectiveDate");
//
// The range moves the set itself: it begins at the first row and stands at Eof when it is through.
// Leaving the loop early leaves the set at that row. One range at a time for a set; clones have
// ranges of their own.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/export.h"
#include "common/variant.h"

namespace kv {

class Field;
class Recordset;
class Rows;

// The row that the range stands at. Columns are named without regard to case; an unknown one raises
// 3265. Whatever a field may raise when it is read is raised here, too.
class KVVESK_API Row {
 public:
  // The value as text, "" for Null; dates and numbers as joining them to a text gives. Valid until
  // the range moves, the row is edited or this column is read again.
  [[nodiscard]] std::string_view text(std::string_view column) const;
  [[nodiscard]] bool isNull(std::string_view column) const;
  // The value as it is, Null included.
  [[nodiscard]] Variant value(std::string_view column) const;
  // The value as a T: std::string, std::int16_t, std::int32_t, bool, float, double, Date, or a
  // std::optional of one of them, which is empty for Null. Raises 13 for a column whose values do
  // not all fit a T, whatever stands in this row: text is no number, and a wide number does not go
  // into a narrow one. Raises 94 for Null without an optional.
  template <class T>
  [[nodiscard]] T get(std::string_view column) const;

 private:
  friend class Rows;
  explicit Row(Rows& rows) noexcept : rows_(&rows) {}

  Rows* rows_;
};

class KVVESK_API Rows {
 public:
  // Holds the set as long as it lives.
  explicit Rows(std::shared_ptr<Recordset> set) noexcept : set_(std::move(set)), row_(*this) {}
  ~Rows() = default;
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;
  Rows(Rows&&) = delete;
  Rows& operator=(Rows&&) = delete;

  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Row;
    using difference_type = std::ptrdiff_t;
    using pointer = const Row*;
    using reference = const Row&;

    explicit Iterator(Rows& rows) noexcept : rows_(&rows) {}
    [[nodiscard]] const Row& operator*() const noexcept { return rows_->row_; }
    [[nodiscard]] const Row* operator->() const noexcept { return &rows_->row_; }
    Iterator& operator++() {
      rows_->next();
      return *this;
    }
    void operator++(int) { rows_->next(); }
    [[nodiscard]] bool operator==(std::default_sentinel_t) const { return rows_->done(); }

   private:
    Rows* rows_;
  };

  // Moves to the first row, which first saves what is pending.
  [[nodiscard]] Iterator begin();
  [[nodiscard]] static std::default_sentinel_t end() noexcept { return {}; }

 private:
  friend class Row;

  // A column that was asked for, under the spelling that was used.
  struct Column {
    std::string name;
    std::shared_ptr<Field> field;
    bool isText;
    std::string buffer;  // what text() shows of a value that is not text
  };

  void next();
  [[nodiscard]] bool done() const;
  [[nodiscard]] Column& column(std::string_view name);

  std::shared_ptr<Recordset> set_;
  Row row_;
  std::vector<Column> columns_;
  std::size_t last_ = 0;  // loops ask for the same columns in the same order
};

}  // namespace kv
