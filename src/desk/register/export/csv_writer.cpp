// SPDX-License-Identifier: Apache-2.0
#include "desk/register/export/csv_writer.h"

#include <stdexcept>

namespace kv::desk {

namespace {

// In quotes only where it must be: these files are read by people, too.
std::string fieldText(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + '"';
}

}  // namespace

CsvWriter::CsvWriter(const std::filesystem::path& folder, const std::string& name,
                     const std::vector<std::string>& heading)
    : name_(name), out_(folder / (name + ".csv"), std::ios::binary) {
  add(heading);
}

void CsvWriter::add(const std::vector<std::string>& record) {
  std::string line;
  for (std::size_t i = 0; i < record.size(); ++i) line += (i > 0 ? "," : "") + fieldText(record[i]);
  out_ << line << "\r\n";
}

void CsvWriter::close() {
  out_.close();
  if (!out_) throw std::runtime_error(name_ + ".csv cannot be written");
}

}  // namespace kv::desk
