#include <array>
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/people/user_field_type.h"
#include "cli/program/client_transaction.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/table_value.h"

namespace kv::cli {

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

struct Labelling {
  std::string of;
  std::string field;
  std::string label;
};

const LabelTable& tableOf(const std::string& of) {
  for (const auto& table : kTables)
    if (equalNoCase(of, table.of)) return table;
  throw UsageError("there are fields of documents, revisions, manuals and users, not of '" + of +
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

int show(const Options& options) {
  const Session session(options);
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
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

int set(const Options& options, const Labelling& given) {
  const LabelTable& table = tableOf(given.of);
  const Session session(options);
  session.requireAdministrator("only administrators may change labels");
  ClientTransaction transaction(session);
  transaction.lock(table.table);
  const TableInfo& columns = *session.database()->catalog()->find(table.table);
  const auto place = columns.find(given.field);
  if (!place || !isLabel(columns.columns[*place].name))
    throw Error(kInvalidCall, "kvvesk",
                "There is no field '" + given.field + "' of " + std::string(table.of) +
                    " that has a label.");
  const std::string& field = columns.columns[*place].name;
  if (table.table == std::string_view(kUserLabels))
    session->User()->SaveLabel(session.profile(), field, doubledQuotes(given.label));
  else
    storeTableValue(session.database(), table.table, field, given.label);
  transaction.commit();
  writeDone(
      std::cout,
      given.label.empty()
          ? "took the label off the field " + field + " of " + std::string(table.of)
          : "the field " + field + " of " + std::string(table.of) + " is now called " + given.label,
      {{"Of", std::string(table.of)}, {"Field", field}, {"Label", given.label}}, options.format);
  return kDone;
}

struct Show : RegisterVerb {
  [[nodiscard]] int run() const { return show(options); }
};

struct Set : RegisterVerb {
  Labelling given;

  void describe(Command& verb) {
    verb.addOption("of", given.of, "Whose field: of documents, revisions, manuals or users")
        ->required()
        ->typeName("KIND");
    verb.addOption("field", given.field, "The field, as 'kvvesk labels show' lists it")
        ->required()
        ->typeName("FIELD");
    verb.addOption("label", given.label, "The label; an empty text for none")->required();
  }
  [[nodiscard]] int run() const { return set(options, given); }
};

}  // namespace

void labelShow(Command& verb) { declare<Show>(verb); }
void labelSet(Command& verb) { declare<Set>(verb); }

}  // namespace kv::cli
