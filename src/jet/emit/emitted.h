// SPDX-License-Identifier: Apache-2.0
// What the emitters hand to the floor above: SQL texts of the engine's own dialect, with the uses
// of the statement's literals as parameters.
#pragma once

#include <string>
#include <vector>

#include "common/catalog.h"
#include "common/sql_value.h"
#include "jet/syntax/ast.h"

namespace kv::jet {

// One parameter of an emitted text: which literal goes there, and in which form.
struct ParamUse {
  enum class Form : std::uint8_t {
    Plain,      // the value
    Fold,       // the fold key of a text
    Order,      // the whole order key of a text
    OrderBase,  // the first part of the order key of a text
    Pattern,    // a Like pattern as a regular expression over fold keys
    Assign,     // the value as `column` stores it
    Watch,      // no literal: 1 where the statement may fail because the tables have changed, or 0
  };
  Form form = Form::Plain;
  int literal = 0;
  // Between: the lesser or the greater of `literal` and `other`, by order key for text; -1 for
  // neither.
  int other = -1;
  bool greater = false;
  bool negative = false;               // the number with its sign turned
  const ColumnInfo* column = nullptr;  // Assign
};

struct SqlText {
  std::string text;
  std::vector<ParamUse> params;  // the first one is parameter number `firstParam`
  int firstParam = 1;
};

// The rows that a head text gives at most; a set with more of them is read by keys and blocks.
inline constexpr int kHeadRows = 200;

struct Emitted {
  // SELECT whose rows have no keys: all rows. INSERT, UPDATE, DELETE: the statement.
  SqlText whole;
  // SELECT whose rows have keys. `keys` gives the keys of the named tables for every row; `head`
  // the outputs and then the keys of the first kHeadRows rows; `rows` the same for rows given by
  // key, parameter 1 being the list of keys. All three in the same order.
  SqlText keys;
  SqlText head;
  SqlText rows;
};

// The value that a use of a literal binds. Raises -2147217913 where the column cannot take a value
// of that kind, -2147217833 for numbers out of its range, -2147467259 for text that is too long;
// `statement` is for the place.
[[nodiscard]] SqlValue boundValue(const ParamUse& use, const std::vector<Literal>& literals,
                                  std::string_view statement);

}  // namespace kv::jet
