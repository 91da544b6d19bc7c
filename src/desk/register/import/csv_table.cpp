// SPDX-License-Identifier: Apache-2.0
#include "desk/register/import/csv_table.h"

#include <csv.h>
#include <fmt/format.h>

#include <fstream>
#include <iterator>

#include "common/path.h"
#include "common/text.h"

namespace kv::desk {

struct CsvTable::Reading {
  std::vector<std::string> record;
  std::vector<std::vector<std::string>> records;

  static void field(void* text, std::size_t size, void* self) {
    static_cast<Reading*>(self)->record.emplace_back(static_cast<const char*>(text), size);
  }
  static void end(int, void* self) {
    auto* reading = static_cast<Reading*>(self);
    reading->records.push_back(std::move(reading->record));
    reading->record.clear();
  }
};

CsvTable::CsvTable(const std::string& folder, std::string name,
                   const std::vector<std::string>& columns, std::vector<Problem>& problems,
                   const std::string& key)
    : name_(std::move(name)) {
  std::ifstream in(pathOf(folder) / (name_ + ".csv"), std::ios::binary);
  if (!in.is_open()) {
    problems.push_back({name_, 0, "the file is missing or cannot be read"});
    return;
  }
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  take(bytes, columns, problems, key);
}

void CsvTable::take(const std::string& bytes, const std::vector<std::string>& columns,
                    std::vector<Problem>& problems, const std::string& key) {
  std::string_view text = bytes;
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());

  Reading reading;
  csv_parser parser{};
  if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) return;
  // Blanks belong to the field they stand in.
  csv_set_space_func(&parser, [](unsigned char) { return 0; });
  const bool good = csv_parse(&parser, text.data(), text.size(), Reading::field, Reading::end,
                              &reading) == text.size() &&
                    csv_fini(&parser, Reading::field, Reading::end, &reading) == 0;
  csv_free(&parser);
  if (!good) {
    read_ = reading.records.size();
    problems.push_back({name_, reading.records.size() + 1, "a quotation mark is out of place"});
    return;
  }
  if (reading.records.empty()) {
    problems.push_back({name_, 0, "the file has no heading"});
    return;
  }
  const auto& heading = reading.records[0];
  for (std::size_t i = 0; i < heading.size(); ++i)
    if (!places_.emplace(heading[i], i).second)
      problems.push_back({name_, 1, "the column '" + heading[i] + "' occurs twice"});
  bool complete = true;
  for (const auto& column : columns)
    if (!places_.contains(column)) {
      problems.push_back({name_, 1, "the column '" + column + "' is missing"});
      complete = false;
    }
  if (!complete) return;
  readable_ = true;
  read_ = reading.records.size() - 1;
  const auto keyPlace = places_.find(key);
  const auto leaveOut = [&](const std::vector<std::string>& record) {
    if (keyPlace != places_.end() && keyPlace->second < record.size())
      leftOut_.insert(record[keyPlace->second]);
  };
  for (std::size_t r = 1; r < reading.records.size(); ++r) {
    auto& record = reading.records[r];
    if (record.size() != heading.size()) {
      problems.push_back({name_, r + 1,
                          fmt::format("it has {} fields where the heading has {}", record.size(),
                                      heading.size())});
      leaveOut(record);
      continue;
    }
    bool storable = true;
    for (std::size_t i = 0; i < record.size() && storable; ++i)
      if (!isStorableText(record[i])) {
        problems.push_back(
            {name_, r + 1, "the field '" + heading[i] + "' is not well-formed UTF-8"});
        storable = false;
      }
    if (!storable) {
      leaveOut(record);
      continue;
    }
    rows_.push_back(std::move(record));
    records_.push_back(r + 1);
  }
}

const std::string& CsvTable::at(std::size_t row, std::string_view column) const {
  return rows_[row][places_.find(column)->second];
}

}  // namespace kv::desk
