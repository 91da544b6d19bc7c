// SPDX-License-Identifier: Apache-2.0
#include "user/sender.h"

#include <utility>

#include "common/text.h"
#include "data/operation.h"
#include "data/table_value.h"

namespace kv {

Variant kvSender::Send(const Ref<Recordset>& rsActions) {
  rsActions->Update();
  Operation operation(connection_);
  // What a sending that fails has left in the set goes with it.
  auto table = std::exchange(actions_, {});
  if (!table) table = openOwn(connection_->database(), "Select * From Actions Where ActionID = -1");
  std::int32_t sent = 0;
  if (rsActions->RecordCount() > 0) rsActions->MoveFirst();
  for (; !rsActions->Eof(); rsActions->MoveNext()) {
    table->AddNew();
    for (std::int32_t i = 0; i < rsActions->Fields().Count(); ++i) {
      const auto field = rsActions->Fields(i);
      if (!equalNoCase(field->Name(), "ActionID"))
        table->Fields(field->Name())->Value(field->Value());
    }
    table->Update();
    ++sent;
  }
  operation.commit();
  actions_ = table;
  return sent;
}

}  // namespace kv
