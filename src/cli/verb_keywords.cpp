#include <iostream>

#include "cli/answer_set.h"
#include "cli/client_transaction.h"
#include "cli/given_options.h"
#include "cli/output.h"
#include "cli/terminal.h"
#include "cli/verbs.h"
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

int add(const Options& options, Entry entry) {
  if (trimmed(entry.keyword).empty()) throw UsageError("an empty text is no keyword");
  const Session session(options);
  session.requireRight(urAddKeywordsToValidatedFields);
  ClientTransaction transaction(session);
  transaction.lockNewNames();
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
  transaction.lockNewNames();
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

void addShow(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("show", "List the keywords of one field, or of all");
  const auto options = std::make_shared<Options>();
  const auto field = std::make_shared<std::optional<std::string>>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addText(*sub, "field", *field, "The field; all of them when left out")->typeName("FIELD");
  sub->callback(
      [&chosen, options, field] { chosen = [options, field] { return show(*options, *field); }; });
}

template <class Change>
void addChange(Command& verb, Action& chosen, const char* name, const char* help, Change run) {
  auto* sub = verb.addSubcommand(name, help);
  const auto options = std::make_shared<Options>();
  const auto entry = std::make_shared<Entry>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  sub->addOption("field", entry->field,
                 "The field, such as DocUser2, as the record's own column is called")
      ->required()
      ->typeName("FIELD");
  sub->addOption("keyword", entry->keyword, "The keyword; case does not matter")->required();
  sub->callback([&chosen, options, entry, run] {
    chosen = [options, entry, run] { return run(*options, *entry); };
  });
}

}  // namespace

void addKeywords(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand("keywords",
                                 "List, add or delete the values that validated fields may have");
  verb->requireSubcommand();
  addShow(*verb, chosen);
  addChange(*verb, chosen, "add", "Add a keyword to a field", add);
  addChange(*verb, chosen, "delete", "Delete a keyword; records that have it keep it", remove);
}

}  // namespace kv::cli
