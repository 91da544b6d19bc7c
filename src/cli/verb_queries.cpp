#include <iostream>

#include "cli/answer_set.h"
#include "cli/client_transaction.h"
#include "cli/detail.h"
#include "cli/given_options.h"
#include "cli/output.h"
#include "cli/query_criteria.h"
#include "cli/query_lookup.h"
#include "cli/saved_query.h"
#include "cli/terminal.h"
#include "cli/verbs.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/table_value.h"

namespace kv::cli {

namespace {

constexpr const char* kKey = "QueryID";
constexpr const char* kName = "QueryName";

// Only those of documents are for a kind of them.
bool haveKinds(const QueryKind& kind) { return kind.of == Queried::Documents; }

AnswerSet answerOfQueries(const QueryKind& kind) {
  if (haveKinds(kind))
    return AnswerSet({{kKey, kTypeInteger},
                      {kName, kTypeVarWChar},
                      {"Kind", kTypeVarWChar},
                      {"Condition", kTypeLongVarWChar}});
  return AnswerSet(
      {{kKey, kTypeInteger}, {kName, kTypeVarWChar}, {"Condition", kTypeLongVarWChar}});
}

// The condition as it goes into statements; in parentheses why there is none.
std::string conditionOf(const StoredQuery& query) {
  try {
    return query.JetSQL();
  } catch (const Error& e) {
    return "(" + e.description() + ")";
  }
}

void addTo(AnswerSet& answer, const QueryKind& kind, const StoredQuery& query) {
  const Variant name = query.GetQueryValue(kName);
  if (haveKinds(kind))
    answer.add({query.id(), name, kindOf(query), conditionOf(query)});
  else
    answer.add({query.id(), name, conditionOf(query)});
}

int show(const Options& options, const QueryKind& kind, const std::optional<std::string>& query) {
  const Session session(options);
  session.requireRight(kind.viewRight);
  AnswerSet answer = answerOfQueries(kind);
  if (query) {
    addTo(answer, kind, *SavedQuery::load(session, kind, findQuery(session, *query, kind)));
    answer.rows().MoveFirst();
    writeDetail(std::cout, answer.rows(), options.format);
    return kDone;
  }
  const auto all =
      openOwn(session.database(),
              std::string("Select QueryID From ") + kind.table + " Order By QueryID", kReadOnly);
  for (; !all->Eof(); all->MoveNext())
    addTo(answer, kind, *SavedQuery::load(session, kind, toInt32(all->Fields(0)->Value())));
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

// Queries are found by their names.
void requireFreeName(const Session& session, const QueryKind& kind, const std::string& name,
                     std::int32_t except = -1) {
  if (isQueryName(session, name, kind, except))
    throw Error(kInvalidCall, "kvvesk",
                std::string("There is a ") + kind.kind + " query '" + name + "' already.");
}

// Registers that share their users share the queries of users, too, and lock there.
void lockNames(ClientTransaction& transaction, const QueryKind& kind) {
  if (kind.of == Queried::Users)
    transaction.lock("Users");
  else
    transaction.lockNewNames();
}

void requireName(const std::string& name) {
  if (name.empty()) throw UsageError("a query needs a name");
}

void apply(const Session& session, const QueryKind& kind, const QueryCriteria& criteria,
           StoredQuery& query) {
  const auto typeOf = [&](const QueryColumn& column) {
    const auto types = session->User()->Labels(session.profile());
    const std::string type = "Type" + column.name;
    for (std::int32_t i = 0; i < types->Fields().Count(); ++i)
      if (types->Fields(i)->Name() == type) return userFieldType(types->Fields(i)->Value());
    return UserFieldType::Text;  // name, alias and title
  };
  applyCriteria(criteria, kind.of, typeOf, query);
}

// Saves criteria under a name: as a new query or, with `replace`, in the one of that name.
int save(const Options& options, const QueryKind& kind, const std::string& name,
         const QueryCriteria& criteria, bool replace) {
  requireName(name);
  checkCriteria(criteria, kind.of);
  const Session session(options);
  session.requireRight(kind.changeRight);
  ClientTransaction transaction(session);
  lockNames(transaction, kind);
  if (!replace) requireFreeName(session, kind, name);
  const bool known = isQueryName(session, name, kind);
  const auto query = known ? SavedQuery::load(session, kind, findQueryNamed(session, name, kind))
                           : SavedQuery::add(session, kind);
  if (!known) query->SetQueryValue(kName, name);
  apply(session, kind, criteria, *query);
  query.save(session);
  transaction.commit();
  writeDone(std::cout,
            (known ? "changed the query " : "added the query ") + std::to_string(query->id()) +
                ", " + name,
            {{kKey, query->id()}}, options.format);
  return kDone;
}

int edit(const Options& options, const QueryKind& kind, const std::string& which,
         const std::optional<std::string>& name, const QueryCriteria& criteria) {
  if (!name && !criteria.any())
    throw UsageError("nothing to change: give a name or at least one criterion");
  if (name) requireName(*name);
  checkCriteria(criteria, kind.of);
  const Session session(options);
  session.requireRight(kind.changeRight);
  ClientTransaction transaction(session);
  lockNames(transaction, kind);
  const auto query = SavedQuery::load(session, kind, findQuery(session, which, kind));
  if (name) {
    requireFreeName(session, kind, *name, query->id());
    query->SetQueryValue(kName, *name);
  }
  apply(session, kind, criteria, *query);
  query.save(session);
  transaction.commit();
  writeDone(std::cout, "changed the query " + std::to_string(query->id()), {{kKey, query->id()}},
            options.format);
  return kDone;
}

int remove(const Options& options, const QueryKind& kind, const std::string& which) {
  const Session session(options);
  session.requireRight(kind.changeRight);
  ClientTransaction transaction(session);
  lockNames(transaction, kind);
  const std::int32_t id = findQuery(session, which, kind);
  SavedQuery::remove(session, kind, id);
  transaction.commit();
  writeDone(std::cout, "deleted the query " + std::to_string(id), {{kKey, id}}, options.format);
  return kDone;
}

void addOf(Command& verb, QueryKind& kind) {
  verb.addOption(
          "--of",
          [&kind](const std::string& of) {
            if (equalNoCase(of, "documents"))
              kind = kDocumentQueries;
            else if (equalNoCase(of, "manuals"))
              kind = kManualQueries;
            else if (equalNoCase(of, "users"))
              kind = kUserQueries;
            else
              throw WrongWord("takes documents, manuals or users, not '" + of + "'");
          },
          "Queries of documents, manuals or users; documents when left out")
      ->typeName("KIND");
}

void addKey(Command& verb, std::string& query) {
  verb.addOption("query", query, "The query, by number or name")->required();
}

void addShow(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("show", "Show all saved queries, or one, with their conditions");
  const auto options = std::make_shared<Options>();
  const auto kind = std::make_shared<QueryKind>(kDocumentQueries);
  const auto query = std::make_shared<std::optional<std::string>>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addOf(*sub, *kind);
  addText(*sub, "query", *query, "The query, by number or name; all of them when left out");
  sub->callback([&chosen, options, kind, query] {
    chosen = [options, kind, query] { return show(*options, *kind, *query); };
  });
}

void addList(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("list", "List all saved queries with their conditions");
  const auto options = std::make_shared<Options>();
  const auto kind = std::make_shared<QueryKind>(kDocumentQueries);
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addOf(*sub, *kind);
  sub->callback([&chosen, options, kind] {
    chosen = [options, kind] { return show(*options, *kind, std::nullopt); };
  });
}

void addSave(Command& verb, Action& chosen, const char* word, const char* help, bool replace) {
  auto* sub = verb.addSubcommand(word, help);
  const auto options = std::make_shared<Options>();
  const auto kind = std::make_shared<QueryKind>(kDocumentQueries);
  const auto name = std::make_shared<std::string>();
  const auto criteria = std::make_shared<QueryCriteria>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addOf(*sub, *kind);
  sub->addOption("name", *name, "The name it is listed by")->required();
  addCriteria(*sub, *criteria);
  sub->callback([&chosen, options, kind, name, criteria, replace] {
    chosen = [options, kind, name, criteria, replace] {
      return save(*options, *kind, *name, *criteria, replace);
    };
  });
}

void addEdit(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("edit", "Change the name or criteria of a saved query");
  const auto options = std::make_shared<Options>();
  const auto kind = std::make_shared<QueryKind>(kDocumentQueries);
  const auto query = std::make_shared<std::string>();
  const auto name = std::make_shared<std::optional<std::string>>();
  const auto criteria = std::make_shared<QueryCriteria>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addOf(*sub, *kind);
  addKey(*sub, *query);
  addText(*sub, "--name", *name, "The new name");
  addCriteria(*sub, *criteria);
  addDropping(*sub, *criteria);
  sub->callback([&chosen, options, kind, query, name, criteria] {
    chosen = [options, kind, query, name, criteria] {
      return edit(*options, *kind, *query, *name, *criteria);
    };
  });
}

void addDelete(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("delete", "Delete a saved query");
  const auto options = std::make_shared<Options>();
  const auto kind = std::make_shared<QueryKind>(kDocumentQueries);
  const auto query = std::make_shared<std::string>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addOf(*sub, *kind);
  addKey(*sub, *query);
  sub->callback([&chosen, options, kind, query] {
    chosen = [options, kind, query] { return remove(*options, *kind, *query); };
  });
}

}  // namespace

void addQueries(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand(
      "queries",
      "Show, add, change or delete the saved queries that documents, manuals and users are listed "
      "by");
  verb->requireSubcommand();
  addList(*verb, chosen);
  addShow(*verb, chosen);
  addSave(*verb, chosen, "add", "Save a new query", false);
  addSave(*verb, chosen, "set", "Save a query, whether there is one of that name or not", true);
  addEdit(*verb, chosen);
  addDelete(*verb, chosen);
}

}  // namespace kv::cli
