// SPDX-License-Identifier: Apache-2.0
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace kv::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
  std::string name = (fs::temp_directory_path() / "kvvesk-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = name;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  fs::permissions(path_, fs::perms::owner_all, ignored);
  fs::remove_all(path_, ignored);
}

std::string contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in.is_open()) << path;
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void write(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
}

}  // namespace kv::test
