// Answers that no statement gives: rows put together by a verb, written like any others.
#pragma once

#include <initializer_list>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "cli/program/options.h"
#include "kvdata/recordset/recordset.h"

namespace kv::cli {

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

 private:
  Ref<Recordset> rs_;
};

// What a verb did to one thing: as a table `sentence`, otherwise one row with the keys of that
// thing, so that a script can go on with it.
void writeDone(std::ostream& out, const std::string& sentence,
               const std::vector<std::pair<const char*, Variant>>& keys, Format format);

}  // namespace kv::cli
