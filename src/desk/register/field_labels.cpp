// SPDX-License-Identifier: Apache-2.0
#include "desk/register/field_labels.h"

#include <utility>

#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"

namespace kv::desk {

Labels labelsIn(const std::shared_ptr<Database>& database, const std::string& table) {
  const auto rs = openOwn(database, "Select * From [" + table + "]", kReadOnly);
  Labels labels;
  if (rs->RecordCount() == 0) return labels;
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const std::string& column = rs->Fields(i)->Name();
    std::string label = joinText(rs->Fields(i)->Value());
    if (!label.empty() && !equalNoCase(label, column)) labels.emplace(column, std::move(label));
  }
  return labels;
}

}  // namespace kv::desk
