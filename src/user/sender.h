// SPDX-License-Identifier: Apache-2.0
// kvSender: writes actions into the table that their assignees read.
#pragma once

#include <cstdint>
#include <vector>

#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "data/connection.h"

namespace kv {

class KVVESK_API kvSender : public Object {
 public:
  explicit kvSender(Ref<kvConnection> connection) : connection_(std::move(connection)) {}

  // Adds every row of a set of actions, all of them or none; a pending row is saved first. Numbers
  // are given anew. Returns how many were added.
  Variant Send(const Ref<Recordset>& rsActions);

 private:
  Ref<kvConnection> connection_;
};

}  // namespace kv
