// SPDX-License-Identifier: Apache-2.0
// clsManualQuery: criteria for the manual list.
//
// Criteria: Field1 to Field5 with their operator codes Field1Key to Field5Key (name, four data
// fields).
#pragma once

#include "classes/queries/stored_query.h"
#include "common/export.h"

namespace kv {

class KVVESK_API clsManualQuery : public StoredQuery {
 public:
  // Replaces the criteria. Raises 3021 on an empty set.
  void LoadQuery(const Ref<Recordset>& rs) override;
  // Null, empty and blank text become Null.
  void SaveQuery(const Ref<Recordset>& rs) const override;
  [[nodiscard]] std::string JetSQL() const override;
  [[nodiscard]] std::string CrystalSQL() const override;
  // Raises 94 when QueryID is Null, 5 when there is none.
  [[nodiscard]] std::int32_t id() const override;
};

}  // namespace kv
