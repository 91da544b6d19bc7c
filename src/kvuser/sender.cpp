#include "kvuser/sender.h"

#include "common/text.h"
#include "kvdata/operation.h"
#include "kvdata/table_value.h"

namespace kv {

Variant kvSender::Send(const Ref<Recordset>& rsActions) {
  rsActions->Update();
  Operation operation(connection_);
  const auto actions =
      openOwn(connection_->database(), "Select * From Actions Where ActionID = -1");
  std::int32_t sent = 0;
  if (rsActions->RecordCount() > 0) rsActions->MoveFirst();
  for (; !rsActions->Eof(); rsActions->MoveNext()) {
    actions->AddNew();
    for (std::int32_t i = 0; i < rsActions->Fields().Count(); ++i) {
      const auto field = rsActions->Fields(i);
      if (!equalNoCase(field->Name(), "ActionID"))
        actions->Fields(field->Name())->Value(field->Value());
    }
    actions->Update();
    ++sent;
  }
  operation.commit();
  return sent;
}

}  // namespace kv
