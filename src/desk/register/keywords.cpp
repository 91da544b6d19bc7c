// SPDX-License-Identifier: Apache-2.0
#include "desk/register/keywords.h"

#include "classes/rights/rights.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/answer_set.h"
#include "desk/refusal.h"
#include "desk/transaction.h"

namespace kv::desk {

namespace {

Ref<Recordset> everyKeyword(const Session& session) {
  return openOwn(session.database(), "Select FieldName, Keyword From Keywords", kReadOnly);
}

bool isKeyword(const Session& session, const Keyword& keyword) {
  return openOwn(session.database(),
                 "Select Keyword From Keywords Where FieldName = '" + doubledQuotes(keyword.field) +
                     "' and Keyword = '" + doubledQuotes(keyword.keyword) + "'",
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
  refuse("There is no field '" + name + "' of documents, revisions, manuals or users.");
}

}  // namespace

Ref<Recordset> listKeywords(const Session& session, const std::optional<std::string>& field) {
  AnswerSet answer({{"FieldName", kTypeVarWChar}, {"Keyword", kTypeVarWChar}});
  const auto rs = field ? session->User()->Keywords(session.profile(), doubledQuotes(*field))
                        : everyKeyword(session);
  for (; !rs->Eof(); rs->MoveNext())
    answer.add({rs->Fields("FieldName")->Value(), rs->Fields("Keyword")->Value()});
  answer.rows().Sort("FieldName, Keyword");
  return answer.take();
}

void requireKeyword(const std::string& text) {
  if (trimmed(text).empty()) throw WrongInput("an empty text is no keyword");
}

Keyword addKeyword(const Session& session, const Keyword& keyword) {
  requireKeyword(keyword.keyword);
  session.requireRight(urAddKeywordsToValidatedFields);
  Transaction transaction(session);
  transaction.lockNewNames();
  Keyword added{.field = fieldNamed(session, keyword.field), .keyword = keyword.keyword};
  if (isKeyword(session, added))
    refuse("The field " + added.field + " has the keyword '" + added.keyword + "' already.");
  session->User()->AddKeyword(session.profile(), doubledQuotes(added.field),
                              doubledQuotes(added.keyword));
  transaction.commit();
  return added;
}

void deleteKeyword(const Session& session, const Keyword& keyword) {
  session.requireRight(urAddKeywordsToValidatedFields);
  Transaction transaction(session);
  transaction.lockNewNames();
  if (!isKeyword(session, keyword))
    refuse("The field " + keyword.field + " has no keyword '" + keyword.keyword + "'.");
  session->User()->DeleteKeyword(session.profile(), doubledQuotes(keyword.field),
                                 doubledQuotes(keyword.keyword));
  transaction.commit();
}

}  // namespace kv::desk
