// The program's verbs. Each adds itself to the command line and, when chosen, runs and returns how
// the program ends.
#pragma once

#include <functional>
#include "cli/program/command.h"

#include "cli/program/options.h"

namespace kv::cli {

// Set by the verb that was chosen.
using Action = std::function<int()>;

void addNew(Command& app, Action& chosen);
void addPasswd(Command& app, Action& chosen);
void addConfig(Command& app, Action& chosen);
void addImport(Command& app, Action& chosen);
void addExport(Command& app, Action& chosen);
void addCopy(Command& app, Action& chosen);
void addSql(Command& app, Action& chosen);
void addDocuments(Command& app, Action& chosen);
void addDocument(Command& app, Action& chosen);
void addRevisions(Command& app, Action& chosen);
void addRevision(Command& app, Action& chosen);
void addWorkgroups(Command& app, Action& chosen);
void addKeywords(Command& app, Action& chosen);
void addLabels(Command& app, Action& chosen);
void addRights(Command& app, Action& chosen);
void addUsers(Command& app, Action& chosen);
void addUser(Command& app, Action& chosen);
void addManuals(Command& app, Action& chosen);
void addManual(Command& app, Action& chosen);
void addRelease(Command& app, Action& chosen);
void addCollect(Command& app, Action& chosen);
void addPersonal(Command& app, Action& chosen);
void addActions(Command& app, Action& chosen);
void addAction(Command& app, Action& chosen);
void addHoldings(Command& app, Action& chosen);
void addReleases(Command& app, Action& chosen);
void addStale(Command& app, Action& chosen);
void addOwners(Command& app, Action& chosen);
void addApprovers(Command& app, Action& chosen);
void addQueries(Command& app, Action& chosen);
// These two tell what the app has when they run, whatever is added after them.
void addCompletion(Command& app, Action& chosen);
void addManpage(Command& app, Action& chosen);

// REGISTER, --user and --trace, which every verb has.
void addCommon(Command& verb, Options& options);
// --json alone, for verbs that answer with more than one result.
void addJson(Command& verb, Options& options, const std::string& help);
// --csv, --json and, where it makes sense, --jsonl.
void addFormats(Command& verb, Options& options, bool lines);

}  // namespace kv::cli
