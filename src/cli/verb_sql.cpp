#include <iostream>

#include "cli/output.h"
#include "cli/verbs.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/recordset/database.h"

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
  const auto connection = session->DataServer()->Connection();
  const auto statement = connection->database()->prepare(text);
  if (statement.isSelect()) {
    const auto rs = connection->OpenRecordset(text, kKeyset, kReadOnly);
    writeRows(std::cout, *rs, format);
    return;
  }
  std::int32_t affected = 0;
  connection->Execute(text, affected);
  writeAffected(std::cout, affected, format);
}

int runText(const Options& options, const std::string& text) {
  const Session session(options);
  session.requireAdministrator("only administrators may run SQL");
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

}  // namespace

void addSql(Command& app, Action& chosen) {
  auto* verb =
      app.addSubcommand("sql", "Run a statement of the register's SQL dialect; for administrators");
  const auto options = std::make_shared<Options>();
  const auto text = std::make_shared<std::string>();
  addCommon(*verb, *options);
  addFormats(*verb, *options, true);
  verb->addOption("text", *text,
                  "The statement, or - for statements from standard input, one per line")
      ->required();
  verb->callback(
      [&chosen, options, text] { chosen = [options, text] { return runText(*options, *text); }; });
}

}  // namespace kv::cli
