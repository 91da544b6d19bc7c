#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/detail.h"
#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "cli/queries/query_criteria.h"
#include "common/text.h"
#include "desk/queries/save_query.h"
#include "desk/queries/view_queries.h"

namespace kv::cli {

namespace {

constexpr const char* kKey = "QueryID";
using desk::QueryKind;

int show(const Options& options, const QueryKind& kind, const std::optional<std::string>& query) {
  const Session session(options);
  if (query)
    writeDetail(std::cout, *desk::viewQuery(session, kind, *query), options.format);
  else
    writeRows(std::cout, *desk::listQueries(session, kind), options.format);
  return kDone;
}

// Saves criteria under a name: as a new query or, with `replace`, in the one of that name.
int save(const Options& options, const QueryKind& kind, const std::string& name,
         const QueryCriteria& criteria, bool replace) {
  desk::QueryChange{.name = name, .criteria = criteria}.check(kind);
  const Session session(options);
  const auto saved = replace ? desk::setQuery(session, kind, name, criteria)
                             : desk::addQuery(session, kind, name, criteria);
  writeDone(std::cout,
            (saved.known ? "changed the query " : "added the query ") +
                std::to_string(saved.query) + ", " + name,
            {{kKey, saved.query}}, options.format);
  return kDone;
}

int edit(const Options& options, const QueryKind& kind, const std::string& which,
         const std::optional<std::string>& name, const QueryCriteria& criteria) {
  const desk::QueryChange change{.name = name, .criteria = criteria};
  change.checkChange(kind);
  const Session session(options);
  const std::int32_t id = desk::editQuery(session, kind, which, change);
  writeDone(std::cout, "changed the query " + std::to_string(id), {{kKey, id}}, options.format);
  return kDone;
}

int remove(const Options& options, const QueryKind& kind, const std::string& which) {
  const Session session(options);
  const std::int32_t id = desk::deleteQuery(session, kind, which);
  writeDone(std::cout, "deleted the query " + std::to_string(id), {{kKey, id}}, options.format);
  return kDone;
}

void addOf(Command& verb, QueryKind& kind) {
  verb.addOption(
          "--of",
          [&kind](const std::string& of) {
            if (equalNoCase(of, "documents"))
              kind = desk::kDocumentQueries;
            else if (equalNoCase(of, "manuals"))
              kind = desk::kManualQueries;
            else if (equalNoCase(of, "users"))
              kind = desk::kUserQueries;
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
  QueryKind kind = desk::kDocumentQueries;
  std::optional<std::string> query;

  void describe(Command& verb) {
    addOf(verb, kind);
    addText(verb, "query", query, "The query, by number or name; all of them when left out");
  }
  [[nodiscard]] int run() const { return show(options, kind, query); }
};

struct List : RegisterVerb {
  QueryKind kind = desk::kDocumentQueries;

  void describe(Command& verb) { addOf(verb, kind); }
  [[nodiscard]] int run() const { return show(options, kind, std::nullopt); }
};

template <bool replace>
struct Save : RegisterVerb {
  QueryKind kind = desk::kDocumentQueries;
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
  QueryKind kind = desk::kDocumentQueries;
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
  QueryKind kind = desk::kDocumentQueries;
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
