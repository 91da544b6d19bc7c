// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/verbs.h"
#include "common/error.h"
#include "common/text.h"
#include "desk/register/run_statement.h"

namespace kv::cli {

namespace {

// The statement with a caret under the fault, where the error knows the place and the statement is
// one line.
void showPlace(const Error& error, const std::string& text) {
  if (error.where().offset > text.size() || text.find('\n') != std::string::npos) return;
  std::cerr << text << '\n'
            << std::string(characterCount(text.substr(0, error.where().offset)), ' ') << "^\n";
}

void runOne(const Session& session, const std::string& text, Format format) {
  const auto result = desk::runStatement(session, text);
  if (result.rows)
    writeRows(std::cout, *result.rows, format);
  else
    writeAffected(std::cout, result.affected, format);
}

struct Sql : RegisterVerb {
  static constexpr Formats kFormats = Formats::Lines;
  std::string text;

  void describe(Command& verb) {
    verb.addOption("text", text,
                   "The statement, or - for statements from standard input, one per line")
        ->required();
  }
  [[nodiscard]] int run(const Session& session) const {
    desk::requireMayRunStatements(session);
    int ending = kDone;
    const auto run = [&](const std::string& statement) {
      try {
        runOne(session, statement, options.format);
      } catch (const Error& e) {
        if (options.format != Format::JsonLines) {
          showPlace(e, statement);
          throw;
        }
        writeErrorLine(std::cout, e);
        ending = kRefused;
      }
    };
    if (text != "-") {
      run(text);
      return ending;
    }
    for (std::string line; std::getline(std::cin, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (line.find_first_not_of(" \t") == std::string::npos) continue;
      run(line);
      std::cout << std::flush;
    }
    return ending;
  }
};

}  // namespace

void registerSql(Command& verb) { declare<Sql>(verb); }

}  // namespace kv::cli
