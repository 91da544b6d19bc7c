// SPDX-License-Identifier: Apache-2.0
// Answers that no statement gives: rows put together by a use case, read like any others.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "recordset/recordset.h"

namespace kv::desk {

class AnswerSet {
 public:
  struct Column {
    const char* name;
    std::int32_t type;  // one of the kType numbers of record sets
  };
  AnswerSet(std::initializer_list<Column> columns);

  // One value for each column.
  void add(std::initializer_list<Variant> values);
  [[nodiscard]] Recordset& rows() const { return *rs_; }
  // The rows for whoever asked, from the first one.
  [[nodiscard]] Ref<Recordset> take() const;

 private:
  Ref<Recordset> rs_;
};

}  // namespace kv::desk
