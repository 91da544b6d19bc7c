// The program's verbs. Each adds itself to the command line and, when chosen, runs and returns how
// the program ends.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "cli/options.h"

namespace kv::cli {

// Set by the verb that was chosen.
using Action = std::function<int()>;

void addNew(CLI::App& app, Action& chosen);
void addPasswd(CLI::App& app, Action& chosen);
void addConfig(CLI::App& app, Action& chosen);
void addImport(CLI::App& app, Action& chosen);
void addExport(CLI::App& app, Action& chosen);
void addCopy(CLI::App& app, Action& chosen);
void addSql(CLI::App& app, Action& chosen);
void addDocuments(CLI::App& app, Action& chosen);
void addDocument(CLI::App& app, Action& chosen);
void addRevisions(CLI::App& app, Action& chosen);
void addRevision(CLI::App& app, Action& chosen);
void addWorkgroups(CLI::App& app, Action& chosen);
void addKeywords(CLI::App& app, Action& chosen);
void addLabels(CLI::App& app, Action& chosen);
void addRights(CLI::App& app, Action& chosen);
void addUsers(CLI::App& app, Action& chosen);
void addUser(CLI::App& app, Action& chosen);
void addManuals(CLI::App& app, Action& chosen);
void addManual(CLI::App& app, Action& chosen);
void addRelease(CLI::App& app, Action& chosen);
void addCollect(CLI::App& app, Action& chosen);
void addPersonal(CLI::App& app, Action& chosen);
void addActions(CLI::App& app, Action& chosen);
void addAction(CLI::App& app, Action& chosen);
void addHoldings(CLI::App& app, Action& chosen);
void addReleases(CLI::App& app, Action& chosen);
void addStale(CLI::App& app, Action& chosen);
void addOwners(CLI::App& app, Action& chosen);
void addApprovers(CLI::App& app, Action& chosen);
void addQueries(CLI::App& app, Action& chosen);
// These two tell what the app has when they run, whatever is added after them.
void addCompletion(CLI::App& app, Action& chosen);
void addManpage(CLI::App& app, Action& chosen);

// REGISTER, --user and --trace, which every verb has.
void addCommon(CLI::App& verb, Options& options);
// --json alone, for verbs that answer with more than one result.
void addJson(CLI::App& verb, Options& options, const std::string& help);
// --csv, --json and, where it makes sense, --jsonl.
void addFormats(CLI::App& verb, Options& options, bool lines);

}  // namespace kv::cli
