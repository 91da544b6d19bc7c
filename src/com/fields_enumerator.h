// SPDX-License-Identifier: Apache-2.0
// Goes over the fields of a record set, for loops of scripts.
#pragma once

#include "com/platform.h"
#include "common/ref.h"
#include "recordset/fields.h"

namespace kv::com {

// A new enumerator with one reference, at the given field.
[[nodiscard]] IUnknown* makeEnumerator(Ref<Fields> fields, std::int32_t place = 0);

}  // namespace kv::com
