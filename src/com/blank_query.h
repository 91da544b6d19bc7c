// SPDX-License-Identifier: Apache-2.0
// What one gets who creates a clsQuery: that class is an interface and has no behaviour of its own.
#pragma once

#include "classes/queries/query.h"

namespace kv::com {

class BlankQuery final : public clsQuery {
 public:
  void LoadQuery(const Ref<Recordset>& /*rs*/) override {}
  void SaveQuery(const Ref<Recordset>& /*rs*/) const override {}
  [[nodiscard]] std::string JetSQL() const override { return {}; }
  [[nodiscard]] std::string CrystalSQL() const override { return {}; }
  void SetQueryValue(const std::string& /*FieldName*/, const Variant& /*Value*/) override {}
  [[nodiscard]] Variant GetQueryValue(const std::string& /*FieldName*/) const override {
    return {};
  }
  [[nodiscard]] std::int32_t id() const override { return 0; }
};

}  // namespace kv::com
