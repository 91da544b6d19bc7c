// SPDX-License-Identifier: Apache-2.0
// A folder that a test has to itself and that goes with it.
#pragma once

#include <filesystem>
#include <string>

namespace kv::test {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  TempFolder(TempFolder&&) = delete;
  TempFolder& operator=(TempFolder&&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

// All bytes of a file; a failed expectation when it cannot be read.
[[nodiscard]] std::string contents(const std::string& path);
void write(const std::string& path, const std::string& bytes);

}  // namespace kv::test
