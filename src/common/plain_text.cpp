// SPDX-License-Identifier: Apache-2.0
#include "common/plain_text.h"

#include "common/convert.h"

namespace kv {

std::string plainText(const Variant& value) {
  switch (value.kind()) {
    case VariantKind::Null: return {};
    case VariantKind::Boolean: return *value.as<bool>() ? "true" : "false";
    case VariantKind::Date: return isoText(*value.as<Date>());
    case VariantKind::Empty:
    case VariantKind::Int16:
    case VariantKind::Int32:
    case VariantKind::Single:
    case VariantKind::Double:
    case VariantKind::String:
    case VariantKind::Object: break;
  }
  return toText(value);
}

}  // namespace kv
