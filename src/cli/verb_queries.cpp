#include <iostream>

#include "cli/answer_set.h"
#include "cli/client_transaction.h"
#include "cli/detail.h"
#include "cli/given_options.h"
#include "cli/output.h"
#include "cli/query_criteria.h"
#include "cli/query_lookup.h"
#include "cli/terminal.h"
#include "cli/verbs.h"
#include "common/convert.h"
#include "common/error.h"
#include "kvdata/table_value.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kKey = "QueryID";
constexpr const char* kName = "QueryName";

AnswerSet answerOfQueries() {
  return AnswerSet({{kKey, kTypeInteger},
                    {kName, kTypeVarWChar},
                    {"Kind", kTypeVarWChar},
                    {"Condition", kTypeLongVarWChar}});
}

// The condition as it goes into statements; in parentheses why there is none.
std::string conditionOf(const clsDocumentQuery& query) {
  try {
    return query.JetSQL();
  } catch (const Error& e) {
    return "(" + e.description() + ")";
  }
}

void addTo(AnswerSet& answer, const clsDocumentQuery& query) {
  answer.add({query.id(), query.GetQueryValue(kName), kindOf(query), conditionOf(query)});
}

int show(const Options& options, const std::optional<std::string>& query) {
  const Session session(options);
  session.requireRight(urViewDocumentList);
  AnswerSet answer = answerOfQueries();
  if (query) {
    addTo(answer, *session->Document()->GetQuery(findQuery(session, *query)));
    answer.rows().MoveFirst();
    writeDetail(std::cout, answer.rows(), options.format);
    return kDone;
  }
  const auto all =
      openOwn(session.database(), "Select QueryID From DocumentQuerys Order By QueryID", kReadOnly);
  for (; !all->Eof(); all->MoveNext())
    addTo(answer, *session->Document()->GetQuery(toInt32(all->Fields(0)->Value())));
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

// Queries are found by their names.
void requireFreeName(const Session& session, const std::string& name, std::int32_t except = -1) {
  if (isQueryName(session, name, except))
    throw Error(kInvalidCall, "kvvesk", "There is a document query '" + name + "' already.");
}

void requireName(const std::string& name) {
  if (name.empty()) throw UsageError("a query needs a name");
}

int add(const Options& options, const std::string& name, const QueryCriteria& criteria) {
  requireName(name);
  checkCriteria(criteria);
  const Session session(options);
  session.requireRight(urCreateNewdocumentquery);
  ClientTransaction transaction(session);
  transaction.lock("DocumentQuerys");
  requireFreeName(session, name);
  const auto query = session->Document()->AddQuery();
  query->SetQueryValue(kName, name);
  applyCriteria(criteria, *query);
  session->Document()->SaveQuery(query);
  transaction.commit();
  writeDone(std::cout, "added the query " + std::to_string(query->id()) + ", " + name,
            {{kKey, query->id()}}, options.format);
  return kDone;
}

int edit(const Options& options, const std::string& which, const std::optional<std::string>& name,
         const QueryCriteria& criteria) {
  if (!name && !criteria.any())
    throw UsageError("nothing to change: give a name or at least one criterion");
  if (name) requireName(*name);
  checkCriteria(criteria);
  const Session session(options);
  session.requireRight(urCreateNewdocumentquery);
  ClientTransaction transaction(session);
  transaction.lock("DocumentQuerys");
  const auto query = session->Document()->GetQuery(findQuery(session, which));
  if (name) {
    requireFreeName(session, *name, query->id());
    query->SetQueryValue(kName, *name);
  }
  applyCriteria(criteria, *query);
  session->Document()->SaveQuery(query);
  transaction.commit();
  writeDone(std::cout, "changed the query " + std::to_string(query->id()), {{kKey, query->id()}},
            options.format);
  return kDone;
}

int remove(const Options& options, const std::string& which) {
  const Session session(options);
  session.requireRight(urCreateNewdocumentquery);
  ClientTransaction transaction(session);
  const std::int32_t id = findQuery(session, which);
  session->Document()->DeleteQuery(id);
  transaction.commit();
  writeDone(std::cout, "deleted the query " + std::to_string(id), {{kKey, id}}, options.format);
  return kDone;
}

void addKey(Command& verb, std::string& query) {
  verb.addOption("query", query, "The query, by number or name")->required();
}

void addShow(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("show", "Show all saved queries, or one, with their conditions");
  const auto options = std::make_shared<Options>();
  const auto query = std::make_shared<std::optional<std::string>>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addText(*sub, "query", *query, "The query, by number or name; all of them when left out");
  sub->callback(
      [&chosen, options, query] { chosen = [options, query] { return show(*options, *query); }; });
}

void addAdd(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("add", "Save a new query");
  const auto options = std::make_shared<Options>();
  const auto name = std::make_shared<std::string>();
  const auto criteria = std::make_shared<QueryCriteria>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  sub->addOption("name", *name, "The name it is listed by")->required();
  addCriteria(*sub, *criteria);
  sub->callback([&chosen, options, name, criteria] {
    chosen = [options, name, criteria] { return add(*options, *name, *criteria); };
  });
}

void addEdit(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("edit", "Change the name or criteria of a saved query");
  const auto options = std::make_shared<Options>();
  const auto query = std::make_shared<std::string>();
  const auto name = std::make_shared<std::optional<std::string>>();
  const auto criteria = std::make_shared<QueryCriteria>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addKey(*sub, *query);
  addText(*sub, "--name", *name, "The new name");
  addCriteria(*sub, *criteria);
  addDropping(*sub, *criteria);
  sub->callback([&chosen, options, query, name, criteria] {
    chosen = [options, query, name, criteria] { return edit(*options, *query, *name, *criteria); };
  });
}

void addDelete(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("delete", "Delete a saved query");
  const auto options = std::make_shared<Options>();
  const auto query = std::make_shared<std::string>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addKey(*sub, *query);
  sub->callback([&chosen, options, query] {
    chosen = [options, query] { return remove(*options, *query); };
  });
}

}  // namespace

void addQueries(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand(
      "queries", "Show, add, change or delete the saved queries that documents are listed by");
  verb->requireSubcommand();
  addShow(*verb, chosen);
  addAdd(*verb, chosen);
  addEdit(*verb, chosen);
  addDelete(*verb, chosen);
}

}  // namespace kv::cli
