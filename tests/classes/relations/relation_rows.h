// SPDX-License-Identifier: Apache-2.0
// Rows of what relations change as texts, as the model and the register are compared by.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "classes/relations/relation_model.h"
#include "support/session_test.h"

namespace kv::test {

// A text of rights in which these are set.
[[nodiscard]] std::string rightsText(std::initializer_list<int> rights);

[[nodiscard]] std::string cell(const std::optional<double>& place);
// As a single-precision column has it.
[[nodiscard]] std::string singleCell(const std::optional<double>& place);
[[nodiscard]] std::optional<double> placeIn(const Variant& value);

[[nodiscard]] Texts sorted(Texts rows);
[[nodiscard]] Texts distinct(Texts rows);
// Some columns of a set's rows, in the order of the text.
[[nodiscard]] Texts columnsOf(Recordset& rs, const std::vector<std::string>& names);
// The first rows that are not the same, of what may be thousands.
[[nodiscard]] std::string difference(const Texts& model, const Texts& library);

}  // namespace kv::test
