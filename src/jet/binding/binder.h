// SPDX-License-Identifier: Apache-2.0
// Resolves the names of a syntax tree against a catalog and gives every expression its type.
#pragma once

#include <string_view>

#include "jet/binding/bound.h"

namespace kv::jet {

// Raises -2147217865 for unknown tables, -2147217904 for unknown columns, -2147217913 where types
// do not go together and -2147217900 for everything else that makes no sense. The result refers to
// tables of `catalog`, which must outlive it, and to nothing of `text`.
[[nodiscard]] BoundStatement bind(Statement statement, std::string_view text,
                                  const std::vector<Literal>& literals, const Catalog& catalog);

}  // namespace kv::jet
