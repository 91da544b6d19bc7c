// SPDX-License-Identifier: Apache-2.0
// clsDocumentQuery: criteria for the document list.
//
// Criteria: DocType (0 controlled, 1 uncontrolled, else both), Field1 to Field6 with their operator
// codes Field1Key to Field6Key (title, number, four data fields), Rev1 with Rev1Key (revision
// level), Rev4 with Rev4Key and Rev5 (effective date and the end of a range), Field7 (revision
// level in the report formula).
#pragma once

#include "classes/queries/stored_query.h"
#include "common/export.h"

namespace kv {

class KVVESK_API clsDocumentQuery : public StoredQuery {
 public:
  // From an empty set every column becomes Null. Raises 457 when it already holds criteria.
  void LoadQuery(const Ref<Recordset>& rs) override;
  // Empty text becomes Null.
  void SaveQuery(const Ref<Recordset>& rs) const override;
  // The two texts differ in more than their syntax: operator codes of dates, the revision level's
  // criterion and one spelling. Stored reports rely on each of these differences.
  [[nodiscard]] std::string JetSQL() const override;
  [[nodiscard]] std::string CrystalSQL() const override;
  // 0 when QueryID is Null.
  [[nodiscard]] std::int32_t id() const override;
};

}  // namespace kv
