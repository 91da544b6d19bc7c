// SPDX-License-Identifier: Apache-2.0
#include "user/action_batch.h"

#include <algorithm>
#include <utility>

#include "common/error.h"
#include "common/text.h"
#include "data/operation.h"
#include "recordset/database.h"
#include "recordset/value.h"

namespace kv {

namespace {

constexpr const char* kActions = "Actions";
constexpr const char* kNumber = "ActionID";

}  // namespace

ActionBatch::ActionBatch(const Ref<kvConnection>& connection, Ref<Recordset> rsActions)
    : connection_(connection), actions_(std::move(rsActions)) {
  database_ = connection_->database()->keeperOf(kActions);
  if (!database_) database_ = connection_->database();
  table_ = database_->catalog()->find(kActions);
  if (table_ == nullptr) raise(kUnknownTable, kActions);
  for (std::int32_t i = 0; i < actions_->Fields().Count(); ++i) {
    const auto field = actions_->Fields(i);
    if (equalNoCase(field->Name(), kNumber)) continue;
    const auto place = table_->find(field->Name());
    if (!place) raise(kNoSuchItem, field->Name());
    const auto& column = table_->columns[*place];
    places_.push_back(static_cast<int>(*place));
    columns_.push_back({field, column.type, column.size});
  }
}

std::int32_t ActionBatch::take() {
  actions_->Update();
  std::int32_t taken = 0;
  if (actions_->RecordCount() > 0) actions_->MoveFirst();
  for (; !actions_->Eof(); actions_->MoveNext(), ++taken) {
    auto& row = rows_.emplace_back();
    row.reserve(columns_.size());
    for (const auto& column : columns_)
      row.push_back(storedValue(column.from->Value(), column.type, column.size));
  }
  return taken;
}

void ActionBatch::store() {
  if (rows_.empty()) return;
  Operation operation(connection_);
  database_->insertRows(*table_, places_, rows_);
  operation.commit();
}

}  // namespace kv
