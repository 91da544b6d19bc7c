// SPDX-License-Identifier: Apache-2.0
// Bound statements to SQL texts, for the engine whose dialect is given.
#pragma once

#include <vector>

#include "jet/binding/bound.h"
#include "jet/emit/dialect.h"
#include "jet/emit/emitted.h"

namespace kv::jet {

// `lifted` false writes every literal into the text. The parameters refer to columns of the catalog
// the statement was bound against.
[[nodiscard]] Emitted emit(const BoundStatement& bound, const std::vector<Literal>& literals,
                           bool lifted, const Dialect& dialect);

}  // namespace kv::jet
