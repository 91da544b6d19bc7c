// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/system.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "common/path.h"
#include "desk/refusal.h"
#include "desk/register/export/export_register.h"

namespace kv::cli {

namespace {

namespace fs = std::filesystem;

// A folder of its own beside another one, so that what was made in it can be moved there. It is
// gone at the end of the scope.
class FolderBeside {
 public:
  explicit FolderBeside(const fs::path& place) {
    const auto made = folderBeside(place);
    if (!made) throw UsageError("a folder beside '" + pathText(place) + "' cannot be made");
    path_ = *made;
  }
  ~FolderBeside() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  FolderBeside(const FolderBeside&) = delete;
  FolderBeside& operator=(const FolderBeside&) = delete;
  FolderBeside(FolderBeside&&) = delete;
  FolderBeside& operator=(FolderBeside&&) = delete;

  [[nodiscard]] fs::path operator/(const char* name) const { return path_ / name; }

 private:
  fs::path path_;
};

using Lines = std::vector<std::vector<std::string>>;

// Says on standard error why nothing was exported.
void showProblems(const std::vector<std::string>& problems) {
  constexpr std::size_t kShown = 50;
  for (std::size_t i = 0; i < std::min(problems.size(), kShown); ++i)
    std::cerr << problems[i] << '\n';
  if (problems.size() > kShown) std::cerr << "and " << problems.size() - kShown << " more\n";
  std::cerr << fmt::format("nothing was exported: {} {}\n", problems.size(),
                           problems.size() == 1 ? "problem" : "problems");
}

struct Export : RegisterVerb {
  static constexpr Formats kFormats = Formats::None;
  std::string to;

  void describe(Command& verb) {
    verb.addOption("folder", to, "The folder to make; it may be there if it is empty")->required();
  }
  [[nodiscard]] int run(const Session& session) const {
    desk::requireMayExport(session);
    const fs::path place = fs::absolute(pathOf(to)).lexically_normal();
    if (fs::exists(place) && !(fs::is_directory(place) && fs::is_empty(place)))
      desk::refuse("There is something at '" + to + "' already.");
    const FolderBeside work(place.has_filename() ? place : place.parent_path());
    const fs::path folder = work / "exported";
    fs::create_directory(folder);
    const auto report = desk::exportRegister(session, folder, work / "check.kvv");
    if (!report.problems.empty()) {
      showProblems(report.problems);
      return kRefused;
    }
    moveFolder(folder, place.has_filename() ? place : place.parent_path());
    Lines rows;
    for (const auto& [file, count] : report.written)
      rows.push_back({file + ".csv", std::to_string(count)});
    writeTable(std::cout, {"File", "Rows written"}, rows);
    if (report.lost.empty()) return kDone;
    Lines lost;
    for (const auto& difference : report.lost) lost.push_back({difference.what, difference.how});
    std::cout << '\n';
    writeTable(std::cout, {"Not the same", "How much"}, lost);
    return kDone;
  }
};

}  // namespace

void registerExport(Command& verb) { declare<Export>(verb); }

}  // namespace kv::cli
