// kvvesk: a controlled-document register from the shell.

#include <fmt/format.h>

#include <iostream>

#include "cli/system.h"
#include "cli/terminal.h"
#include "cli/verbs.h"
#include "common/error.h"
#include "session/version.h"

namespace {

// One of the words may be a password, given here by mistake; it must not be repeated where errors
// are kept. So no more is told than the names of options.
[[noreturn]] void refuseExtras(const CLI::App& app) {
  std::string options;
  for (const auto& word : app.remaining(true))
    if (word.starts_with("-")) options += " " + word.substr(0, word.find('='));
  throw kv::cli::UsageError(options.empty() ? "there are more words than this takes; see --help"
                                            : "this does not take" + options + "; see --help");
}

int run(const std::vector<const char*>& words) {
  CLI::App app{
      "Keeps a controlled-document register: documents, revisions, manuals, users and who holds "
      "what.",
      "kvvesk"};
  app.set_version_flag("--version", fmt::format("kvvesk {}.{}.{}", kv::kVersionMajor,
                                                kv::kVersionMinor, kv::kVersionRevision));
  app.allow_windows_style_options(false);  // one command line everywhere; "/..." is a path
  app.require_subcommand(1);
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
  kv::cli::addOwners(app, chosen);
  kv::cli::addApprovers(app, chosen);
  kv::cli::addActions(app, chosen);
  kv::cli::addAction(app, chosen);
  kv::cli::addQueries(app, chosen);
  kv::cli::addUsers(app, chosen);
  kv::cli::addUser(app, chosen);
  kv::cli::addRights(app, chosen);
  kv::cli::addPasswd(app, chosen);
  kv::cli::addConfig(app, chosen);
  kv::cli::addImport(app, chosen);
  kv::cli::addExport(app, chosen);
  kv::cli::addCopy(app, chosen);
  kv::cli::addSql(app, chosen);
  try {
    app.parse(static_cast<int>(words.size()), words.data());
  } catch (const CLI::ExtrasError&) {
    refuseExtras(app);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? kv::cli::kDone : kv::cli::kUsage;
  }
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
