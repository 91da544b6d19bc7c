// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <filesystem>
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "common/clock.h"
#include "common/path.h"
#include "desk/register/import/import_register.h"

namespace kv::cli {

namespace {

void show(const desk::ImportReport& report) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& [file, count] : report.read)
    rows.push_back({file + ".csv", std::to_string(count), std::to_string(report.refused(file))});
  writeTable(std::cout, {"File", "Rows read", "Refused"}, rows);
  if (report.problems.empty()) {
    rows.clear();
    for (const auto& [table, count] : report.written)
      rows.push_back({table, std::to_string(count)});
    std::cout << '\n';
    writeTable(std::cout, {"Table", "Rows written"}, rows);
    return;
  }
  constexpr std::size_t kShown = 50;
  for (std::size_t i = 0; i < std::min(report.problems.size(), kShown); ++i) {
    const auto& problem = report.problems[i];
    std::cerr << problem.file << ".csv";
    if (problem.record > 0) std::cerr << ", record " << problem.record;
    std::cerr << ": " << problem.reason << '\n';
  }
  if (report.problems.size() > kShown)
    std::cerr << "and " << report.problems.size() - kShown << " more\n";
  std::cerr << fmt::format("nothing was imported: {} {}\n", report.problems.size(),
                           report.problems.size() == 1 ? "problem" : "problems");
}

struct Import {
  Options options;
  std::string folder;
  std::string asOf;

  void describe(Command& verb) {
    verb.addOption("folder", folder, "The folder with users.csv, documents.csv and the others")
        ->required()
        ->existingFolder();
    addCommon(verb, options, Formats::None);
    verb.addOption("--as-of", asOf,
                   "Date and time that new identifiers of manuals are made of; now when left out");
  }
  void check() const { (void)date(); }
  [[nodiscard]] int run(const Session& session) const {
    Progress progress("importing");
    const auto report = desk::importRegister(
        session, folder, date(), [&](std::size_t done, std::size_t all, const std::string& file) {
          progress.show(done, all, "rows, " + file);
        });
    show(report);
    return report.problems.empty() ? kDone : kRefused;
  }

 private:
  [[nodiscard]] Date date() const {
    if (asOf.empty()) return now();
    const auto date = parseDate(asOf);
    if (!date) throw UsageError("--as-of takes a date and time such as 2026-07-24T23:57:50");
    return *date;
  }
};

}  // namespace

void registerImport(Command& verb) { declare<Import>(verb); }

}  // namespace kv::cli
