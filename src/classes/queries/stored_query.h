// SPDX-License-Identifier: Apache-2.0
// What the three kinds of queries have in common: the criteria, and the names under which clients
// that hold one of the classes reach the members of clsQuery.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "classes/queries/criteria_list.h"
#include "classes/queries/query.h"
#include "common/export.h"

namespace kv {

class KVVESK_API StoredQuery : public clsQuery {
 public:
  void SetQueryValue(const std::string& FieldName, const Variant& Value) override;
  [[nodiscard]] Variant GetQueryValue(const std::string& FieldName) const override;

  void clsquery_SetQueryValue(const std::string& FieldName, const Variant& Value) {
    SetQueryValue(FieldName, Value);
  }
  [[nodiscard]] Variant clsquery_GetQueryValue(const std::string& FieldName) const {
    return GetQueryValue(FieldName);
  }
  [[nodiscard]] std::string clsquery_CrystalSQL() const { return CrystalSQL(); }
  [[nodiscard]] std::string clsquery_JetSQL() const { return JetSQL(); }
  void clsquery_LoadQuery(const Ref<Recordset>& rs) { LoadQuery(rs); }
  void clsquery_SaveQuery(const Ref<Recordset>& rs) const { SaveQuery(rs); }
  [[nodiscard]] std::int32_t clsquery_ID() const { return id(); }

 protected:
  // Whether a column is written back: every one but the query's number.
  [[nodiscard]] static bool isWritten(std::string_view column) { return column != "QueryID"; }
  // Null and empty text are criteria that do not apply.
  [[nodiscard]] static bool applies(const Variant& value);

  // The conditions of Field1, Field2 and so on with their codes Field1Key, Field2Key, for columns
  // by place: for the SQL text, or, with a table, for the report formula.
  void addFields(std::string& conditions, std::span<const std::string_view> columns,
                 std::string_view formulaTable = {}) const;

  CriteriaList criteria_;
};

}  // namespace kv
