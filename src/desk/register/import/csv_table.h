// SPDX-License-Identifier: Apache-2.0
// A CSV file with a heading, read whole.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kv::desk {

// Why a row, or a whole file, cannot be taken.
struct Problem {
  std::string file;
  std::size_t record = 0;  // counting the heading as 1; 0 for the whole file
  std::string reason;
};

class CsvTable {
 public:
  // Reads `folder`/`name`.csv: UTF-8, RFC 4180, one heading. `columns` must all be there, in any
  // order; others are passed over. What is wrong goes to `problems`; rows that are wrong are left
  // out. `key` is the column by which other files refer to a row, if they do.
  CsvTable(const std::string& folder, std::string name, const std::vector<std::string>& columns,
           std::vector<Problem>& problems, const std::string& key = {});

  [[nodiscard]] const std::string& name() const noexcept { return name_; }
  [[nodiscard]] std::size_t rows() const noexcept { return rows_.size(); }
  // Whether the file could be read to its end; without that it has no rows.
  [[nodiscard]] bool readable() const noexcept { return readable_; }
  // Whether a row of this key was there but left out, so that a reference to it leads somewhere.
  [[nodiscard]] bool leftOut(const std::string& key) const { return leftOut_.contains(key); }
  // Records in the file behind the heading, those left out included; up to the broken one where a
  // quotation mark is out of place.
  [[nodiscard]] std::size_t read() const noexcept { return read_; }
  // Whether the heading names a column that need not be there.
  [[nodiscard]] bool has(std::string_view column) const { return places_.contains(column); }
  [[nodiscard]] const std::string& at(std::size_t row, std::string_view column) const;
  [[nodiscard]] std::size_t record(std::size_t row) const { return records_[row]; }

 private:
  struct Reading;
  void take(const std::string& bytes, const std::vector<std::string>& columns,
            std::vector<Problem>& problems, const std::string& key);

  std::string name_;
  std::map<std::string, std::size_t, std::less<>> places_;
  std::vector<std::vector<std::string>> rows_;
  std::vector<std::size_t> records_;
  std::set<std::string> leftOut_;
  std::size_t read_ = 0;
  bool readable_ = false;
};

}  // namespace kv::desk
