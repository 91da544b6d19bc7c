// SPDX-License-Identifier: Apache-2.0
#include "desk/register/import/user_fields.h"

#include <array>
#include <string_view>

#include "common/convert.h"
#include "data/table_value.h"
#include "schema/change_columns.h"

namespace kv::desk {

namespace {

struct FieldLabel {
  const char* table;
  const char* field;
  const char* label;
};

constexpr std::array kLabels = {
    FieldLabel{"DocumentConfig", "DocumentTitle", "Title"},
    FieldLabel{"DocumentConfig", "DocumentNumber", "Number"},
    FieldLabel{"DocumentConfig", "RevisionLevel", "Stage"},
    FieldLabel{"DocumentConfig", "EffectiveDate", "Effective"},
    FieldLabel{"DocumentConfig", "DocUser1", "Workgroup"},
    FieldLabel{"DocumentConfig", "DocUser2", "Category"},
    FieldLabel{"DocumentConfig", "DocUser3", "Created"},
    FieldLabel{"DocumentConfig", "DocUser4", "Participating groups"},
    FieldLabel{"DocumentConfig", "DocumentNotes", "Notes"},
    FieldLabel{"DocumentConfig", "Location", "Location"},
    FieldLabel{"ManualConfig", "ManualName", "Name"},
    FieldLabel{"ManualConfig", "ManUser1", "Workgroup"},
    FieldLabel{"ManualConfig", "ManUser2", "Owned documents"},
    FieldLabel{"ManualConfig", "ManUser3", "Participating documents"},
    FieldLabel{"ManualConfig", "ManUserMemo", "Notes"},
    FieldLabel{"RevisionConfig", "RevisionLevel", "Stage"},
    FieldLabel{"RevisionConfig", "RevUser1", "Change request"},
    FieldLabel{"RevisionConfig", "RevUser2", "Source status"},
    FieldLabel{"RevisionConfig", "ChangeDescription", "Change"},
    FieldLabel{"RevisionConfig", "EffectiveDate", "Effective"},
    FieldLabel{"RevisionConfig", "Location", "Location"},
};

struct UserField {
  const char* name;
  const char* label;
  std::int16_t typeCode;  // 1 number, 2 date, others text
  ColumnType type;
};

constexpr std::array kUserFields = {
    UserField{"User00", "Workgroup", 0, ColumnType::Text},
    UserField{"User01", "Documents owned", 1, ColumnType::Int32},
    UserField{"User02", "First revision", 2, ColumnType::Date},
    UserField{"User03", "Kind", 0, ColumnType::Text},
};

bool isUnset(const std::shared_ptr<Database>& database, const std::string& table,
             const std::string& field) {
  return tableValue(database, table, field).isEmpty();
}

}  // namespace

void prepareFields(const Ref<kvConnection>& connection) {
  const auto& database = connection->database();
  for (const auto& [table, field, label] : kLabels)
    if (isUnset(database, table, field)) storeTableValue(database, table, field, label);
  std::vector<ColumnInfo> changes;
  for (const auto& field : kUserFields) {
    if (!isUnset(database, "UserConfig", field.name)) continue;
    const auto used =
        openOwn(database, std::string("Select ID From Users Where Not IsNull(") + field.name + ")");
    if (used->RecordCount() > 0) continue;
    storeTableValue(database, "UserConfig", field.name, field.label);
    storeTableValue(database, "UserConfig", std::string("Type") + field.name, field.typeCode);
    if (field.typeCode != 0) changes.push_back({.name = field.name, .type = field.type});
  }
  const auto keeper = database->keeperOf("Users");
  if (!changes.empty()) changeColumns(keeper ? keeper : database, "Users", changes);
}

}  // namespace kv::desk
