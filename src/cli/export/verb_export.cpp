#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "cli/answers/output.h"
#include "cli/export/comparison.h"
#include "cli/export/exporter.h"
#include "cli/import/importer.h"
#include "cli/program/client_transaction.h"
#include "cli/program/system.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "cli/queries/query_lookup.h"
#include "common/clock.h"
#include "common/error.h"
#include "common/path.h"
#include "kvdata/schema/create_register.h"

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

// Imports what was exported and compares; whether all is there that must be. `lost` gets the rest.
bool check(const Session& session, const fs::path& folder, const fs::path& scratch, Lines& lost) {
  const auto copy =
      createRegister("Data Source=" + quotedValue(pathText(scratch)), [](const auto& database) {
        database->execute("Insert Into DocumentQuerys (QueryName) Values ('" +
                          std::string(kAllDocuments) + "')");
      });
  Importer importer(copy, now(), kFirstUserId, {});
  std::vector<std::string> problems;
  for (const auto& problem : importer.run(pathText(folder)).problems)
    problems.push_back(
        fmt::format("{}.csv, record {}: {}", problem.file, problem.record, problem.reason));
  if (problems.empty())
    for (const auto& difference : differences(session.database(), copy->database())) {
      if (difference.essential)
        problems.push_back(difference.what + ": " + difference.how);
      else
        lost.push_back({difference.what, difference.how});
    }
  if (problems.empty()) return true;
  constexpr std::size_t kShown = 50;
  for (std::size_t i = 0; i < std::min(problems.size(), kShown); ++i)
    std::cerr << problems[i] << '\n';
  if (problems.size() > kShown) std::cerr << "and " << problems.size() - kShown << " more\n";
  std::cerr << fmt::format("nothing was exported: {} {}\n", problems.size(),
                           problems.size() == 1 ? "problem" : "problems");
  return false;
}

int exportTo(const Options& options, const std::string& to) {
  const Session session(options);
  session.requireAdministrator("only administrators may export");
  const fs::path place = fs::absolute(pathOf(to)).lexically_normal();
  if (fs::exists(place) && !(fs::is_directory(place) && fs::is_empty(place)))
    throw Error(kInvalidCall, "kvvesk", "There is something at '" + to + "' already.");
  const FolderBeside work(place.has_filename() ? place : place.parent_path());
  const fs::path folder = work / "exported";
  fs::create_directory(folder);
  Exporter::Written written;
  Lines lost;
  {
    // Undone at the end, for nothing is written: on a file nobody else writes meanwhile.
    const ClientTransaction reading(session);
    written = Exporter(session.database(), folder).run();
    if (!check(session, folder, work / "check.kvv", lost)) return kRefused;
  }
  moveFolder(folder, place.has_filename() ? place : place.parent_path());
  Lines rows;
  for (const auto& [file, count] : written) rows.push_back({file + ".csv", std::to_string(count)});
  writeTable(std::cout, {"File", "Rows written"}, rows);
  if (lost.empty()) return kDone;
  std::cout << '\n';
  writeTable(std::cout, {"Not the same", "How much"}, lost);
  return kDone;
}

struct Export : RegisterVerb {
  static constexpr Formats kFormats = Formats::None;
  std::string folder;

  void describe(Command& verb) {
    verb.addOption("folder", folder, "The folder to make; it may be there if it is empty")
        ->required();
  }
  [[nodiscard]] int run() const { return exportTo(options, folder); }
};

}  // namespace

void registerExport(Command& verb) { declare<Export>(verb); }

}  // namespace kv::cli
