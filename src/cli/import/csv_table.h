// A CSV file with a heading, read whole.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kv::cli {

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
  // out.
  CsvTable(const std::string& folder, std::string name, const std::vector<std::string>& columns,
           std::vector<Problem>& problems);

  [[nodiscard]] const std::string& name() const noexcept { return name_; }
  [[nodiscard]] std::size_t rows() const noexcept { return rows_.size(); }
  // Records in the file behind the heading, those left out included.
  [[nodiscard]] std::size_t read() const noexcept { return read_; }
  [[nodiscard]] const std::string& at(std::size_t row, std::string_view column) const;
  [[nodiscard]] std::size_t record(std::size_t row) const { return records_[row]; }

 private:
  struct Reading;
  void take(const std::string& bytes, const std::vector<std::string>& columns,
            std::vector<Problem>& problems);

  std::string name_;
  std::map<std::string, std::size_t, std::less<>> places_;
  std::vector<std::vector<std::string>> rows_;
  std::vector<std::size_t> records_;
  std::size_t read_ = 0;
};

}  // namespace kv::cli
