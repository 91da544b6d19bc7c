// SPDX-License-Identifier: Apache-2.0
// A CSV file with a heading, written record by record, in the form that CsvTable reads.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace kv::desk {

class CsvWriter {
 public:
  // Makes `folder`/`name`.csv with its heading.
  CsvWriter(const std::filesystem::path& folder, const std::string& name,
            const std::vector<std::string>& heading);

  void add(const std::vector<std::string>& record);
  // Raises when something could not be written.
  void close();

 private:
  std::string name_;
  std::ofstream out_;
};

}  // namespace kv::desk
