// SPDX-License-Identifier: Apache-2.0
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

void addKey(Command& verb, std::string& query) {
  verb.addOption("query", query, "The query, by number or name")->required();
}

// Whose queries are meant, as each of these verbs takes it.
struct QueryVerb : RegisterVerb {
  QueryKind kind = desk::kDocumentQueries;

  void describe(Command& verb) {
    verb.addOption(
            "--of",
            [this](const std::string& of) {
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
};

struct List : QueryVerb {
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listQueries(session, kind), options.format);
  }
};

struct Show : List {
  std::optional<std::string> query;

  void describe(Command& verb) {
    QueryVerb::describe(verb);
    addText(verb, "query", query, "The query, by number or name; all of them when left out");
  }
  void run(const Session& session) const {
    if (!query) return List::run(session);
    writeDetail(std::cout, *desk::viewQuery(session, kind, *query), options.format);
  }
};

// Saves criteria under a name: as a new query or, with `replace`, in the one of that name.
template <bool replace>
struct Save : QueryVerb {
  std::string name;
  QueryCriteria criteria;

  void describe(Command& verb) {
    QueryVerb::describe(verb);
    verb.addOption("name", name, "The name it is listed by")->required();
    addCriteria(verb, criteria);
  }
  void check() const { desk::QueryChange{.name = name, .criteria = criteria}.check(kind); }
  void run(const Session& session) const {
    const auto saved = replace ? desk::setQuery(session, kind, name, criteria)
                               : desk::addQuery(session, kind, name, criteria);
    writeDone(std::cout,
              (saved.known ? "changed the query " : "added the query ") +
                  std::to_string(saved.query) + ", " + name,
              {{kKey, saved.query}}, options.format);
  }
};

struct Edit : QueryVerb {
  std::string query;
  std::optional<std::string> name;
  QueryCriteria criteria;

  void describe(Command& verb) {
    QueryVerb::describe(verb);
    addKey(verb, query);
    addText(verb, "--name", name, "The new name");
    addCriteria(verb, criteria);
    addDropping(verb, criteria);
  }
  void check() const { change().checkChange(kind); }
  void run(const Session& session) const {
    const std::int32_t id = desk::editQuery(session, kind, query, change());
    writeDone(std::cout, "changed the query " + std::to_string(id), {{kKey, id}}, options.format);
  }

 private:
  [[nodiscard]] desk::QueryChange change() const { return {.name = name, .criteria = criteria}; }
};

struct Delete : QueryVerb {
  std::string query;

  void describe(Command& verb) {
    QueryVerb::describe(verb);
    addKey(verb, query);
  }
  void run(const Session& session) const {
    const std::int32_t id = desk::deleteQuery(session, kind, query);
    writeDone(std::cout, "deleted the query " + std::to_string(id), {{kKey, id}}, options.format);
  }
};

}  // namespace

void queryList(Command& verb) { declare<List>(verb); }
void queryShow(Command& verb) { declare<Show>(verb); }
void queryAdd(Command& verb) { declare<Save<false>>(verb); }
void querySet(Command& verb) { declare<Save<true>>(verb); }
void queryEdit(Command& verb) { declare<Edit>(verb); }
void queryDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
