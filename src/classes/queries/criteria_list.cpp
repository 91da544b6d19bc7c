// SPDX-License-Identifier: Apache-2.0
#include "classes/queries/criteria_list.h"

#include "common/error.h"
#include "common/text_key.h"

namespace kv {

void CriteriaList::add(std::string_view name, const Variant& value) {
  if (!values_.try_emplace(foldKey(name), value).second) raise(kDuplicateKey);
}

void CriteriaList::replace(std::string_view name, const Variant& value) {
  values_.insert_or_assign(foldKey(name), value);
}

const Variant& CriteriaList::at(std::string_view name) const {
  const auto* value = find(name);
  if (value == nullptr) raise(kInvalidCall);
  return *value;
}

const Variant* CriteriaList::find(std::string_view name) const {
  const auto found = values_.find(foldKey(name));
  return found == values_.end() ? nullptr : &found->second;
}

}  // namespace kv
