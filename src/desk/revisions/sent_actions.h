// SPDX-License-Identifier: Apache-2.0
// Whom a use case told what: the actions that its own transaction has sent.
#pragma once

#include <cstdint>
#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// Remembers where the actions about one revision end. Belongs in a transaction that has locked the
// revisions of its document: whoever else sends an action about one of them changes one of them too
// and has to wait, so what is found there later was sent by this transaction.
class SentActions {
 public:
  SentActions(const Session& session, std::string documentId, std::int32_t revision);

  // Those sent since, in order.
  [[nodiscard]] Ref<Recordset> rows() const;

 private:
  const Session& session_;
  std::string documentId_;
  std::int32_t revision_;
  std::string last_;
};

}  // namespace kv::desk
