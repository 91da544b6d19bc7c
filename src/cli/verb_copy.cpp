#include <fmt/format.h>

#include <iostream>

#include "cli/output.h"
#include "cli/terminal.h"
#include "cli/verbs.h"
#include "kvdata/connection_string.h"
#include "kvdata/schema/copy_register.h"

namespace kv::cli {

namespace {

int copy(const Options& options, const std::string& to) {
  const Session session(options);
  session.requireAdministrator("only administrators may copy a register");
  std::vector<CopiedTable> tables;
  {
    Progress progress("copying");
    tables = copyRegister(session->DataServer()->Connection(), "Data Source=" + quotedValue(to),
                          [&](std::int64_t done, std::int64_t all, const std::string& table) {
                            progress.show(static_cast<std::size_t>(done),
                                          static_cast<std::size_t>(all), "rows, " + table);
                          });
  }
  std::vector<std::vector<std::string>> rows;
  std::int64_t all = 0;
  for (const auto& table : tables) {
    rows.push_back(
        {table.name, std::to_string(table.rows), fmt::format("{:016x}", table.checksum)});
    all += table.rows;
  }
  writeTable(std::cout, {"Table", "Rows", "Checksum"}, rows);
  std::cout << fmt::format("copied {} rows; both sides are the same\n", all);
  return kDone;
}

}  // namespace

void addCopy(CLI::App& app, Action& chosen) {
  auto* verb = app.add_subcommand(
      "copy",
      "Copy a register to a new place: from a file to a server, back, or to another file; all of "
      "it or nothing; for administrators");
  const auto options = std::make_shared<Options>();
  const auto to = std::make_shared<std::string>();
  addCommon(*verb, *options);
  verb->add_option("to", *to, "Where to: a path, or postgresql://... of an empty database")
      ->required();
  verb->callback(
      [&chosen, options, to] { chosen = [options, to] { return copy(*options, *to); }; });
}

}  // namespace kv::cli
