// SPDX-License-Identifier: Apache-2.0
// The criteria of a query: values by name, without regard to case.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "common/export.h"
#include "common/variant.h"

namespace kv {

class KVVESK_API CriteriaList {
 public:
  // Raises 457 when there is one of that name.
  void add(std::string_view name, const Variant& value);
  void replace(std::string_view name, const Variant& value);
  // Raises 5 when there is none of that name.
  [[nodiscard]] const Variant& at(std::string_view name) const;
  // nullptr when there is none.
  [[nodiscard]] const Variant* find(std::string_view name) const;
  void clear() noexcept { values_.clear(); }

 private:
  std::unordered_map<std::string, Variant> values_;  // by folded name
};

}  // namespace kv
