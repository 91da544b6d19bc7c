// SPDX-License-Identifier: Apache-2.0
#include "desk/register/labels.h"

#include <array>
#include <string_view>

#include "common/text.h"
#include "data/table_value.h"
#include "desk/answer_set.h"
#include "desk/queries/user_field_type.h"
#include "desk/refusal.h"
#include "desk/transaction.h"

namespace kv::desk {

namespace {

struct LabelTable {
  std::string_view of;
  const char* table;
};
constexpr auto kTables = std::to_array<LabelTable>({{"documents", "DocumentConfig"},
                                                    {"revisions", "RevisionConfig"},
                                                    {"manuals", "ManualConfig"},
                                                    {"users", "UserConfig"}});
constexpr const char* kUserLabels = "UserConfig";
constexpr std::string_view kType = "Type";

const LabelTable& tableOf(const std::string& of) {
  for (const auto& table : kTables)
    if (equalNoCase(of, table.of)) return table;
  throw WrongInput("there are fields of documents, revisions, manuals and users, not of '" + of +
                   "'");
}

// The labels of users' fields have the fields' types beside them.
bool isLabel(const std::string& column) {
  return column.size() < kType.size() ||
         !equalNoCase(std::string_view(column).substr(0, kType.size()), kType);
}

const char* typeText(UserFieldType type) {
  switch (type) {
    case UserFieldType::Text: return "text";
    case UserFieldType::Number: return "number";
    case UserFieldType::Date: return "date";
  }
  return "";
}

}  // namespace

void Labelling::check() const { (void)tableOf(of); }

Ref<Recordset> listLabels(const Session& session) {
  AnswerSet answer({{"Of", kTypeVarWChar},
                    {"Field", kTypeVarWChar},
                    {"Label", kTypeVarWChar},
                    {"Type", kTypeVarWChar}});
  for (const auto& [of, table] : kTables) {
    const bool ofUsers = table == std::string_view(kUserLabels);
    const auto rs =
        ofUsers ? session->User()->Labels(session.profile())
                : openOwn(session.database(), std::string("Select * From ") + table, kReadOnly);
    if (rs->Eof()) continue;
    for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
      const auto field = rs->Fields(i);
      if (!isLabel(field->Name())) continue;
      answer.add({std::string(of), field->Name(), field->Value(),
                  ofUsers ? Variant(typeText(userFieldType(
                                rs->Fields(std::string(kType) + field->Name())->Value())))
                          : Variant(Null)});
    }
  }
  return answer.take();
}

Labelling setLabel(const Session& session, const Labelling& given) {
  const LabelTable& table = tableOf(given.of);
  session.requireAdministrator("only administrators may change labels");
  Transaction transaction(session);
  transaction.lock(table.table);
  const TableInfo& columns = *session.database()->catalog()->find(table.table);
  const auto place = columns.find(given.field);
  if (!place || !isLabel(columns.columns[*place].name))
    refuse("There is no field '" + given.field + "' of " + std::string(table.of) +
           " that has a label.");
  const std::string& field = columns.columns[*place].name;
  if (table.table == std::string_view(kUserLabels))
    session->User()->SaveLabel(session.profile(), field, doubledQuotes(given.label));
  else
    storeTableValue(session.database(), table.table, field, given.label);
  transaction.commit();
  return {.of = std::string(table.of), .field = field, .label = given.label};
}

}  // namespace kv::desk
