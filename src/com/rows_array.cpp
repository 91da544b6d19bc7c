// SPDX-License-Identifier: Apache-2.0
#include "com/rows_array.h"

#include <new>

#include "com/com_value.h"

namespace kv::com {

void toRowsArray(const std::vector<std::vector<Variant>>& values, VARIANT& out) {
  const std::size_t rows = values.empty() ? 0 : values.front().size();
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(values.size()), 0},
                              {static_cast<ULONG>(rows), 0}};
  VariantInit(&out);
  out.parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (out.parray == nullptr) throw std::bad_alloc();
  out.vt = VT_ARRAY | VT_VARIANT;
  for (std::size_t row = 0; row < rows; ++row)
    for (std::size_t field = 0; field < values.size(); ++field) {
      LONG place[2] = {static_cast<LONG>(field), static_cast<LONG>(row)};
      OwnedVariant value;
      toVariant(values[field][row], *value);
      if (FAILED(SafeArrayPutElement(out.parray, place, &value))) throw std::bad_alloc();
    }
}

}  // namespace kv::com
