// SPDX-License-Identifier: Apache-2.0
#include "desk/answer_set.h"

namespace kv::desk {

AnswerSet::AnswerSet(std::initializer_list<Column> columns) : rs_(Recordset::create()) {
  constexpr std::int32_t kWide = 255;
  for (const auto& [name, type] : columns)
    rs_->Fields().Append(name, type, type == kTypeVarWChar ? kWide : 0);
  rs_->Open();
}

void AnswerSet::add(std::initializer_list<Variant> values) {
  rs_->AddNew();
  std::int32_t place = 0;
  for (const auto& value : values) rs_->Fields(place++)->Value(value);
  rs_->Update();
}

Ref<Recordset> AnswerSet::take() const {
  if (rs_->RecordCount() > 0) rs_->MoveFirst();
  return rs_;
}

}  // namespace kv::desk
