// SPDX-License-Identifier: Apache-2.0
#include "user/sender.h"

#include "user/action_batch.h"

namespace kv {

Variant kvSender::Send(const Ref<Recordset>& rsActions) {
  ActionBatch batch(connection_, rsActions);
  const std::int32_t sent = batch.take();
  batch.store();
  return sent;
}

}  // namespace kv
