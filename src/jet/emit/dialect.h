// SPDX-License-Identifier: Apache-2.0
// What one engine's SQL says differently from another's, each difference one named answer. The
// emitter is written against this; a third engine brings one more of these.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/catalog.h"
#include "jet/emit/emitted.h"

namespace kv::jet {

// What a parameter holds.
enum class ValueKind : std::uint8_t { Whole, Real, Text, Date };

class Dialect {
 public:
  Dialect() = default;
  Dialect(const Dialect&) = delete;
  Dialect& operator=(const Dialect&) = delete;
  Dialect(Dialect&&) = delete;
  Dialect& operator=(Dialect&&) = delete;
  virtual ~Dialect() = default;

  // Parameter number `n`, from 1, where a column beside it says what it is.
  [[nodiscard]] virtual std::string parameter(int n) const = 0;
  // The same anywhere.
  [[nodiscard]] virtual std::string parameter(int n, ValueKind kind) const = 0;
  // How many of them a statement takes without suffering from it.
  [[nodiscard]] virtual int mostParameters() const = 0;
  // A text written into the statement.
  [[nodiscard]] virtual std::string text(std::string_view value) const = 0;
  // A date written into the statement.
  [[nodiscard]] virtual std::string date(Date value) const = 0;

  // Keys of a text expression.
  [[nodiscard]] virtual std::string fold(const std::string& sql) const = 0;
  [[nodiscard]] virtual std::vector<std::string> order(const std::string& sql) const = 0;
  // The forms in which a literal stands beside what `order` gives, as many as that has parts.
  [[nodiscard]] virtual std::vector<ParamUse::Form> orderForms() const = 0;
  // A text that matches a pattern: one that stands in the statement in the form `patternForm`, or
  // one that is only known when the statement runs.
  [[nodiscard]] virtual ParamUse::Form patternForm() const = 0;
  [[nodiscard]] virtual std::string likeLiteral(const std::string& value,
                                                const std::string& pattern) const = 0;
  [[nodiscard]] virtual std::string like(const std::string& value,
                                         const std::string& pattern) const = 0;
  // The least or greatest text of a group by order key.
  [[nodiscard]] virtual std::string textExtreme(const std::string& sql, bool greatest) const = 0;
  // One spelling of texts that are equal by fold key, the same on every engine: the least by code
  // point.
  [[nodiscard]] virtual std::string anySpelling(const std::string& sql) const = 0;

  // A condition as a value: -1, 0 or Null.
  [[nodiscard]] virtual std::string stored(const std::string& condition) const = 0;
  // An operand of arithmetic, wide enough for what is calculated with it.
  [[nodiscard]] virtual std::string operand(const std::string& sql, ColumnType type) const = 0;
  // A date as its day count.
  [[nodiscard]] virtual std::string dayCount(const std::string& sql) const = 0;
  // A stored value of one type read or stored as another; raises an error where it cannot be.
  [[nodiscard]] virtual std::string convert(const std::string& sql, ColumnType from,
                                            ColumnType to) const = 0;
  // What follows an ORDER BY expression so that Null sorts first ascending and last descending.
  [[nodiscard]] virtual std::string direction(bool descending) const = 0;

  // A FROM item named k whose rows are the list of keys bound to parameter 1, with columns k1, k2,
  // ...
  [[nodiscard]] virtual std::string keyList(std::size_t keysPerRow) const = 0;
  // What keeps rows joined to that list in its order; empty where they stay in it anyway.
  [[nodiscard]] virtual std::string inKeyListOrder() const = 0;
  // What makes a SELECT lock the rows it finds until the transaction ends; empty where a writing
  // transaction has locked everything already.
  [[nodiscard]] virtual std::string forUpdate() const = 0;

  // A condition that holds, and that makes the statement fail with kColumnsMark when the table has
  // got columns since it was described and the parameter `watch` is not 0; empty where the engine
  // tells by itself that a table has changed.
  [[nodiscard]] virtual std::string noNewColumns(const TableInfo& table,
                                                 const std::string& watch) const = 0;

  // Definition of a column, and of the key that names a row.
  [[nodiscard]] virtual std::string columnDefinition(const ColumnInfo& column) const = 0;
  [[nodiscard]] virtual std::string hiddenKeyDefinition(const std::string& name) const = 0;
  // What follows the key expressions of an index by order key.
  [[nodiscard]] virtual std::string orderIndexTail(const TableInfo& table) const = 0;
};

// The dialect of that name ("sqlite", "postgres"); raises 5 for one there is not. Dialects have no
// state and live as long as the program.
[[nodiscard]] const Dialect& dialectNamed(std::string_view name);
[[nodiscard]] const Dialect& sqliteDialect();
[[nodiscard]] const Dialect& postgresDialect();

}  // namespace kv::jet
