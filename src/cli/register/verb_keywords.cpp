#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/program/client_transaction.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/table_value.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kField = "FieldName";
constexpr const char* kKeyword = "Keyword";

struct Entry {
  std::string field;
  std::string keyword;
};

Ref<Recordset> everyKeyword(const Session& session) {
  return openOwn(session.database(), "Select FieldName, Keyword From Keywords", kReadOnly);
}

bool isKeyword(const Session& session, const Entry& entry) {
  return openOwn(session.database(),
                 "Select Keyword From Keywords Where FieldName = '" + doubledQuotes(entry.field) +
                     "' and Keyword = '" + doubledQuotes(entry.keyword) + "'",
                 kReadOnly)
             ->RecordCount() > 0;
}

// The field as its table spells it. Raises 5 when no record has such a field: a keyword of it would
// never be asked for.
std::string fieldNamed(const Session& session, const std::string& name) {
  for (const char* table : {"Documents", "Revisions", "Manuals", "Users"}) {
    const auto keeper = session.database()->keeperOf(table);
    const auto& columns = (keeper ? *keeper : *session.database()).catalog()->find(table)->columns;
    for (const auto& column : columns)
      if (equalNoCase(column.name, name)) return column.name;
  }
  throw Error(kInvalidCall, "kvvesk",
              "There is no field '" + name + "' of documents, revisions, manuals or users.");
}

int show(const Options& options, const std::optional<std::string>& field) {
  const Session session(options);
  AnswerSet answer({{kField, kTypeVarWChar}, {kKeyword, kTypeVarWChar}});
  const auto rs = field ? session->User()->Keywords(session.profile(), doubledQuotes(*field))
                        : everyKeyword(session);
  for (; !rs->Eof(); rs->MoveNext())
    answer.add({rs->Fields(kField)->Value(), rs->Fields(kKeyword)->Value()});
  answer.rows().Sort("FieldName, Keyword");
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

int add(const Options& options, const Entry& given) {
  Entry entry = given;
  if (trimmed(entry.keyword).empty()) throw UsageError("an empty text is no keyword");
  const Session session(options);
  session.requireRight(urAddKeywordsToValidatedFields);
  ClientTransaction transaction(session);
  transaction.lock("Keywords");
  entry.field = fieldNamed(session, entry.field);
  if (isKeyword(session, entry))
    throw Error(kInvalidCall, "kvvesk",
                "The field " + entry.field + " has the keyword '" + entry.keyword + "' already.");
  session->User()->AddKeyword(session.profile(), doubledQuotes(entry.field),
                              doubledQuotes(entry.keyword));
  transaction.commit();
  writeDone(std::cout, "added the keyword " + entry.keyword + " to the field " + entry.field,
            {{kField, entry.field}, {kKeyword, entry.keyword}}, options.format);
  return kDone;
}

int remove(const Options& options, const Entry& entry) {
  const Session session(options);
  session.requireRight(urAddKeywordsToValidatedFields);
  ClientTransaction transaction(session);
  transaction.lock("Keywords");
  if (!isKeyword(session, entry))
    throw Error(kInvalidCall, "kvvesk",
                "The field " + entry.field + " has no keyword '" + entry.keyword + "'.");
  session->User()->DeleteKeyword(session.profile(), doubledQuotes(entry.field),
                                 doubledQuotes(entry.keyword));
  transaction.commit();
  writeDone(std::cout, "deleted the keyword " + entry.keyword + " of the field " + entry.field,
            {{kField, entry.field}, {kKeyword, entry.keyword}}, options.format);
  return kDone;
}

struct Show : RegisterVerb {
  std::optional<std::string> field;

  void describe(Command& verb) {
    addText(verb, "field", field, "The field; all of them when left out")->typeName("FIELD");
  }
  [[nodiscard]] int run() const { return show(options, field); }
};

template <int (*make)(const Options&, const Entry&)>
struct Change : RegisterVerb {
  Entry entry;

  void describe(Command& verb) {
    verb.addOption("field", entry.field,
                   "The field, such as DocUser2, as the record's own column is called")
        ->required()
        ->typeName("FIELD");
    verb.addOption("keyword", entry.keyword, "The keyword; case does not matter")->required();
  }
  [[nodiscard]] int run() const { return make(options, entry); }
};

}  // namespace

void keywordShow(Command& verb) { declare<Show>(verb); }
void keywordAdd(Command& verb) { declare<Change<add>>(verb); }
void keywordDelete(Command& verb) { declare<Change<remove>>(verb); }

}  // namespace kv::cli
