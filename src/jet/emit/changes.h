// SPDX-License-Identifier: Apache-2.0
// INSERT, UPDATE and DELETE as clients write them.
#pragma once

#include <vector>

#include "jet/binding/bound.h"
#include "jet/emit/dialect.h"
#include "jet/emit/emitted.h"

namespace kv::jet {

[[nodiscard]] SqlText emitInsert(const BoundStatement& bound, const std::vector<Literal>& literals,
                                 bool lifted, const Dialect& dialect);
[[nodiscard]] SqlText emitUpdate(const BoundStatement& bound, const std::vector<Literal>& literals,
                                 bool lifted, const Dialect& dialect);
[[nodiscard]] SqlText emitDelete(const BoundStatement& bound, const std::vector<Literal>& literals,
                                 bool lifted, const Dialect& dialect);

}  // namespace kv::jet
