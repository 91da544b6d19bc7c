// SPDX-License-Identifier: Apache-2.0
// What a database holds: tables, their columns and types. Engines describe their database with it,
// the SQL front end binds names against it; neither knows the other.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

enum class ColumnType : std::uint8_t {
  Boolean,  // -1 or 0, never Null
  Int16,
  Int32,
  Single,
  Double,
  Date,
  Text,  // up to `size` characters
  Memo,  // text of any length
};

[[nodiscard]] constexpr bool isTextType(ColumnType t) noexcept {
  return t == ColumnType::Text || t == ColumnType::Memo;
}
[[nodiscard]] constexpr bool isWholeType(ColumnType t) noexcept {
  return t == ColumnType::Int16 || t == ColumnType::Int32;
}
[[nodiscard]] std::string_view typeName(ColumnType type) noexcept;

struct ColumnInfo {
  std::string name;
  ColumnType type = ColumnType::Text;
  int size = 0;          // characters a Text column holds; 0 for the other types
  bool counter = false;  // filled by the database, and the table's key
  // A second name of another column of the same table, read and written as this one's type: the
  // name of that column. Empty for columns that are stored.
  std::string stands = {};
  // Literal text of the value a new row gets when none is given; empty for Null.
  std::string initial = {};

  friend bool operator==(const ColumnInfo&, const ColumnInfo&) = default;
};

struct IndexInfo {
  enum class Kind : std::uint8_t {
    Fold,   // text columns by their fold key: equality and joins
    Order,  // one text column by its order key: sorting and ranges
    Plain,  // numbers and dates by value
  };
  Kind kind = Kind::Plain;
  std::vector<std::string> columns;
};

struct TableInfo {
  std::string name;
  std::vector<ColumnInfo> columns;
  // The column that names a row: the counter, or a hidden one that neither `*` nor Fields shows.
  std::string key;
  bool hiddenKey = false;
  std::vector<IndexInfo> indexes = {};
  // How many columns the table has had so far, where its engine counts those that were dropped as
  // well; 0 where it does not.
  int columnsSoFar = 0;

  // By name without regard to case; nothing when there is none.
  [[nodiscard]] std::optional<std::size_t> find(std::string_view column) const;
  [[nodiscard]] const ColumnInfo* counterColumn() const noexcept;
};

// Whether two descriptions of a table say the same; a description that an engine gives lists no
// indexes, so they do not count.
[[nodiscard]] bool sameTable(const TableInfo& a, const TableInfo& b);

// What a text that finds a table with other columns than it was written for makes the engine say.
inline constexpr std::string_view kColumnsMark = "kv_columns_";

// An immutable list of tables. Handed out as shared_ptr<const Catalog>; TableInfo pointers live as
// long as it.
class Catalog {
 public:
  Catalog() = default;
  explicit Catalog(std::vector<TableInfo> tables);

  // By name without regard to case; nullptr when there is none.
  [[nodiscard]] const TableInfo* find(std::string_view table) const;
  [[nodiscard]] const std::vector<TableInfo>& tables() const noexcept { return tables_; }

 private:
  std::vector<TableInfo> tables_;
  std::map<std::string, std::size_t, std::less<>> byName_;  // fold key to place
};

}  // namespace kv
