// SPDX-License-Identifier: Apache-2.0
#include "desk/register/export/export_register.h"

#include <fmt/format.h>

#include "common/clock.h"
#include "common/path.h"
#include "desk/register/data_source.h"
#include "desk/register/import/importer.h"
#include "desk/register/new_register.h"
#include "desk/transaction.h"
#include "schema/create_register.h"

namespace kv::desk {

namespace {

// Imports what was exported and compares.
void check(const Session& session, const std::filesystem::path& folder,
           const std::filesystem::path& scratch, ExportReport& report) {
  const auto copy = createRegister(dataSource(pathText(scratch)),
                                   [](const auto& database) { addQueryForAll(*database); });
  Importer importer(copy, now(), kFirstUserId, {});
  for (const auto& problem : importer.run(pathText(folder)).problems)
    report.problems.push_back(
        fmt::format("{}.csv, record {}: {}", problem.file, problem.record, problem.reason));
  if (!report.problems.empty()) return;
  for (auto& difference : differences(session.database(), copy->database())) {
    if (difference.essential)
      report.problems.push_back(difference.what + ": " + difference.how);
    else
      report.lost.push_back(std::move(difference));
  }
}

}  // namespace

void requireMayExport(const Session& session) {
  session.requireAdministrator("only administrators may export");
}

ExportReport exportRegister(const Session& session, const std::filesystem::path& folder,
                            const std::filesystem::path& scratch) {
  requireMayExport(session);
  // Undone at the end, for nothing is written: on a file nobody else writes meanwhile.
  const Transaction reading(session);
  ExportReport report;
  report.written = Exporter(session.database(), folder).run();
  check(session, folder, scratch, report);
  return report;
}

}  // namespace kv::desk
