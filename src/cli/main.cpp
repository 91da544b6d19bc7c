// kvvesk: a controlled-document register from the shell.

#include <fmt/format.h>

#include <iostream>

#include "cli/system.h"
#include "cli/terminal.h"
#include "cli/verbs.h"
#include "common/error.h"
#include "kvvesk/version.h"

namespace {

int run(const std::vector<const char*>& words) {
  kv::cli::CommandLine line(
      "kvvesk",
      "Keeps a controlled-document register: documents, revisions, manuals, users and who holds "
      "what.",
      kv::kVersionText);
  kv::cli::Command& app = line.command();
  app.requireSubcommand();
  app.footer(
      "The register's answers go to standard output, everything else to standard error.\n"
      "Exit status: 0 done, 1 the register said no, 2 the command line makes no sense.");
  kv::cli::Action chosen;
  kv::cli::addNew(app, chosen);
  kv::cli::addDocuments(app, chosen);
  kv::cli::addDocument(app, chosen);
  kv::cli::addRevisions(app, chosen);
  kv::cli::addRevision(app, chosen);
  kv::cli::addManuals(app, chosen);
  kv::cli::addManual(app, chosen);
  kv::cli::addRelease(app, chosen);
  kv::cli::addCollect(app, chosen);
  kv::cli::addPersonal(app, chosen);
  kv::cli::addHoldings(app, chosen);
  kv::cli::addReleases(app, chosen);
  kv::cli::addStale(app, chosen);
  kv::cli::addOwners(app, chosen);
  kv::cli::addApprovers(app, chosen);
  kv::cli::addActions(app, chosen);
  kv::cli::addAction(app, chosen);
  kv::cli::addQueries(app, chosen);
  kv::cli::addUsers(app, chosen);
  kv::cli::addUser(app, chosen);
  kv::cli::addWorkgroups(app, chosen);
  kv::cli::addRights(app, chosen);
  kv::cli::addPasswd(app, chosen);
  kv::cli::addKeywords(app, chosen);
  kv::cli::addLabels(app, chosen);
  kv::cli::addConfig(app, chosen);
  kv::cli::addImport(app, chosen);
  kv::cli::addExport(app, chosen);
  kv::cli::addCopy(app, chosen);
  kv::cli::addSql(app, chosen);
  kv::cli::addCompletion(app, chosen);
  kv::cli::addManpage(app, chosen);
  int status = kv::cli::kDone;
  if (!line.parse(words, status)) return status;
  return chosen();
}

}  // namespace

int main(int argc, char** argv) {
  const auto streams = kv::cli::plainStreams();
  try {
    const auto texts = kv::cli::commandLine(argc, argv);
    std::vector<const char*> words;
    words.reserve(texts.size());
    for (const auto& text : texts) words.push_back(text.c_str());
    return run(words);
  } catch (const kv::cli::UsageError& e) {
    std::cerr << "kvvesk: " << e.what() << '\n';
    return kv::cli::kUsage;
  } catch (const kv::Error& e) {
    std::cerr << fmt::format("error {} ({}): {}\n", e.number(), e.source(), e.description());
    return kv::cli::kRefused;
  } catch (const std::exception& e) {
    std::cerr << "kvvesk: " << e.what() << '\n';
    return kv::cli::kRefused;
  }
}
