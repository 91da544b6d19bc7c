// SPDX-License-Identifier: Apache-2.0
// The criteria of Find and Filter: comparisons of a column with a value.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/like.h"
#include "common/variant.h"
#include "recordset/row_source.h"

namespace kv {

class Comparison {
 public:
  enum class Op : std::uint8_t { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, Like };

  // Raises 3001 when the value does not go with the column's type.
  Comparison(std::size_t column, const SourceColumn& info, Op op, Variant value);

  [[nodiscard]] std::size_t column() const noexcept { return column_; }
  // Null equals Null and nothing else; no other comparison with Null holds, but "not equal".
  [[nodiscard]] bool holds(const Variant& value) const;
  // As above for text at hand.
  [[nodiscard]] bool holdsText(std::string_view text) const;
  [[nodiscard]] bool isText() const noexcept { return isText_; }

 private:
  std::size_t column_;
  Op op_;
  Variant value_;
  bool isText_ = false;
  std::string key_;                   // fold or order key of a text value, as the operator needs it
  std::vector<LikePattern> pattern_;  // one, for Like
};

// A tree of comparisons joined by And and Or.
struct Criteria {
  enum class Kind : std::uint8_t { Comparison, And, Or };
  Kind kind = Kind::Comparison;
  std::vector<Comparison> comparison;  // one, for Comparison
  std::vector<Criteria> parts;
};

// Reads exactly one comparison; 3001 for anything else, 3265 for an unknown column.
[[nodiscard]] Comparison parseComparison(std::string_view text,
                                         const std::vector<SourceColumn>& columns);
// Reads comparisons joined by And, Or and parentheses.
[[nodiscard]] Criteria parseCriteria(std::string_view text,
                                     const std::vector<SourceColumn>& columns);

struct SortColumn {
  std::size_t column;
  bool descending;
};
// Reads "A, [B c] DESC".
[[nodiscard]] std::vector<SortColumn> parseSort(std::string_view text,
                                                const std::vector<SourceColumn>& columns);

}  // namespace kv
