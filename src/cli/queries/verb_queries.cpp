#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/detail.h"
#include "cli/answers/output.h"
#include "cli/program/client_transaction.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "cli/queries/query_criteria.h"
#include "cli/queries/query_lookup.h"
#include "cli/queries/saved_query.h"
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
  transaction.lock(kind.table);
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
  transaction.lock(kind.table);
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

struct Show : RegisterVerb {
  QueryKind kind = kDocumentQueries;
  std::optional<std::string> query;

  void describe(Command& verb) {
    addOf(verb, kind);
    addText(verb, "query", query, "The query, by number or name; all of them when left out");
  }
  [[nodiscard]] int run() const { return show(options, kind, query); }
};

struct List : RegisterVerb {
  QueryKind kind = kDocumentQueries;

  void describe(Command& verb) { addOf(verb, kind); }
  [[nodiscard]] int run() const { return show(options, kind, std::nullopt); }
};

template <bool replace>
struct Save : RegisterVerb {
  QueryKind kind = kDocumentQueries;
  std::string name;
  QueryCriteria criteria;

  void describe(Command& verb) {
    addOf(verb, kind);
    verb.addOption("name", name, "The name it is listed by")->required();
    addCriteria(verb, criteria);
  }
  [[nodiscard]] int run() const { return save(options, kind, name, criteria, replace); }
};

struct Edit : RegisterVerb {
  QueryKind kind = kDocumentQueries;
  std::string query;
  std::optional<std::string> name;
  QueryCriteria criteria;

  void describe(Command& verb) {
    addOf(verb, kind);
    addKey(verb, query);
    addText(verb, "--name", name, "The new name");
    addCriteria(verb, criteria);
    addDropping(verb, criteria);
  }
  [[nodiscard]] int run() const { return edit(options, kind, query, name, criteria); }
};

struct Delete : RegisterVerb {
  QueryKind kind = kDocumentQueries;
  std::string query;

  void describe(Command& verb) {
    addOf(verb, kind);
    addKey(verb, query);
  }
  [[nodiscard]] int run() const { return remove(options, kind, query); }
};

}  // namespace

void queryList(Command& verb) { declare<List>(verb); }
void queryShow(Command& verb) { declare<Show>(verb); }
void queryAdd(Command& verb) { declare<Save<false>>(verb); }
void querySet(Command& verb) { declare<Save<true>>(verb); }
void queryEdit(Command& verb) { declare<Edit>(verb); }
void queryDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
