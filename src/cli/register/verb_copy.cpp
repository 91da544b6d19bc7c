// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "desk/register/copy_to.h"

namespace kv::cli {

namespace {

struct Copy : RegisterVerb {
  static constexpr Formats kFormats = Formats::None;
  std::string to;
  bool users = false;

  void describe(Command& verb) {
    verb.addOption("to", to, "Where to: a path, or postgresql://... of an empty database")
        ->required();
    verb.addFlag("--users", users,
                 "Only the users, their actions and saved queries, for registers to share: then "
                 "set UserDBLocation");
  }
  void run(const Session& session) const {
    std::vector<CopiedTable> tables;
    {
      Progress progress("copying");
      const auto show = [&](std::int64_t done, std::int64_t all, const std::string& table) {
        progress.show(static_cast<std::size_t>(done), static_cast<std::size_t>(all),
                      "rows, " + table);
      };
      tables =
          desk::copyTo(session, to, users ? desk::CopyWhat::Users : desk::CopyWhat::Register, show);
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
  }
};

}  // namespace

void registerCopy(Command& verb) { declare<Copy>(verb); }

}  // namespace kv::cli
