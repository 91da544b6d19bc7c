// SPDX-License-Identifier: Apache-2.0
// One INSERT of the dialect, built value by value.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/connection.h"

namespace kv::desk {

class Insert {
 public:
  explicit Insert(std::string table) : table_(std::move(table)) {}

  // Empty text, and an empty date (year-month-day), are Null.
  Insert& text(std::string_view column, std::string_view value);
  Insert& number(std::string_view column, std::int64_t value);
  Insert& real(std::string_view column, double value);
  Insert& date(std::string_view column, std::string_view isoDay);
  Insert& truth(std::string_view column, bool value);
  Insert& null(std::string_view column);

  void run(kvConnection& connection) const;
  [[nodiscard]] const std::string& table() const noexcept { return table_; }

 private:
  Insert& add(std::string_view column, std::string_view value);

  std::string table_;
  std::string columns_;
  std::string values_;
};

}  // namespace kv::desk
