// SPDX-License-Identifier: Apache-2.0
// clsUserQuery: criteria for the user list.
//
// Criteria: for each of UserName, Alias, Title and User00 to User11 a value under the field's name,
// an operator code under the name and "Operator", and the end of a range under the name and
// "Upper". Whether a field is text, a number or a date is configured for the whole register;
// LoadFieldTypes brings that in.
#pragma once

#include "classes/queries/stored_query.h"
#include "common/export.h"

namespace kv {

class KVVESK_API clsUserQuery : public StoredQuery {
 public:
  // Raises 457 when it already holds criteria, 3021 on an empty set.
  void LoadQuery(const Ref<Recordset>& rs) override;
  // Writes only what has changed, each column with an update of its own; Null, empty and blank text
  // become Null.
  void SaveQuery(const Ref<Recordset>& rs) const override;
  // Values are joined in as they are, apostrophes too. Both raise 5 until the field types are
  // loaded, once a criterion applies.
  [[nodiscard]] std::string JetSQL() const override;
  [[nodiscard]] std::string CrystalSQL() const override;
  // Raises 94 when QueryID is Null, 5 when there is none.
  [[nodiscard]] std::int32_t id() const override;

  // For clsVeskUser: takes the field types from the current row of UserConfig. A second call raises
  // 457.
  void LoadFieldTypes(const Ref<Recordset>& rs);
  // For the same: raises -2147217900 when a value that applies would change the shape of the
  // statement that JetSQL is joined into.
  void requireJoinable() const;

 private:
  enum class FieldType { Text, Number, Date };
  [[nodiscard]] FieldType typeOf(const std::string& field) const;

  CriteriaList fieldTypes_;
};

}  // namespace kv
