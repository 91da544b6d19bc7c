// SPDX-License-Identifier: Apache-2.0
#include "data/query_store.h"

#include "common/convert.h"
#include "data/table_value.h"

namespace kv {

Ref<Recordset> kvQueries::Open(std::int32_t ID) const {
  return openOwn(connection_->database(),
                 "Select * From [" + table_ + "] Where QueryID = " + std::to_string(ID),
                 kPessimistic);
}

std::int32_t kvQueries::Add(const std::string& Name) {
  const auto rs = Open(-1);
  rs->AddNew();
  rs->Fields("QueryName")->Value(Name);
  const std::int32_t id = toInt32(rs->Fields("QueryID")->Value());
  rs->Update();
  return id;
}

void kvQueries::Delete(std::int32_t ID) {
  connection_->database()->execute("Delete * From [" + table_ +
                                   "] Where QueryID = " + std::to_string(ID));
}

}  // namespace kv
