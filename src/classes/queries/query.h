// SPDX-License-Identifier: Apache-2.0
// clsQuery: a saved query, which is a set of criteria by which a list is narrowed.
#pragma once

#include <cstdint>
#include <string>

#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "recordset/recordset.h"

namespace kv {

class KVVESK_API clsQuery : public Object {
 public:
  // Takes the columns of the set's current row as criteria.
  virtual void LoadQuery(const Ref<Recordset>& rs) = 0;
  // Writes the criteria into the set's current row and updates it; QueryID is never written. A
  // column without a criterion raises 5.
  virtual void SaveQuery(const Ref<Recordset>& rs) const = 0;
  // A condition in the SQL dialect, with its WHERE; empty when no criterion applies. The criteria
  // are joined in as they are: this builds text and refuses nothing. Raises 5 for a missing
  // criterion, 94 and 13 for an operator that is Null or no number.
  [[nodiscard]] virtual std::string JetSQL() const = 0;
  // The same for the report engine, as a record-selection formula.
  [[nodiscard]] virtual std::string CrystalSQL() const = 0;
  // Sets or replaces a criterion; never raises.
  virtual void SetQueryValue(const std::string& FieldName, const Variant& Value) = 0;
  // Empty for a criterion that is not there; never raises.
  [[nodiscard]] virtual Variant GetQueryValue(const std::string& FieldName) const = 0;
  // The query's number in its store.
  [[nodiscard]] virtual std::int32_t id() const = 0;
};

}  // namespace kv
