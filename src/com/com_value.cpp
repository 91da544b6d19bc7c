// SPDX-License-Identifier: Apache-2.0
#include "com/com_value.h"

#include <cmath>
#include <limits>
#include <new>

#include "com/com_text.h"
#include "com/objects.h"
#include "common/convert.h"
#include "common/error.h"
#include "recordset/fields.h"

namespace kv::com {

namespace {

Variant wholeNumber(std::int64_t value) {
  if (value >= std::numeric_limits<std::int32_t>::min() &&
      value <= std::numeric_limits<std::int32_t>::max())
    return static_cast<std::int32_t>(value);
  return static_cast<double>(value);
}

Variant wholeNumber(std::uint64_t value) {
  if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max()))
    return static_cast<std::int32_t>(value);
  return static_cast<double>(value);
}

// A kind of number that only the platform can read.
Variant asDouble(const VARIANT& value) {
  OwnedVariant number;
  if (FAILED(VariantChangeType(&number, readable(value), 0, VT_R8))) raise(kTypeMismatch);
  return number->dblVal;
}

Variant fromObject(IUnknown* object) {
  if (object == nullptr) return Variant::ObjectRef{};
  const auto ours = wrappedObject(object);
  if (ours == nullptr) raise(kTypeMismatch);
  if (const auto* field = dynamic_cast<const Field*>(ours.get())) return field->Value();
  return ours;
}

// The value that a VARIANT refers to, as a VARIANT of its own; nothing in it belongs to the copy.
VARIANT dereferenced(const VARIANT& value) {
  VARIANT out;
  VariantInit(&out);
  out.vt = value.vt & static_cast<VARTYPE>(~VT_BYREF);
  switch (out.vt) {
    case VT_UI1:
    case VT_I1: out.bVal = *value.pbVal; break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL: out.iVal = *value.piVal; break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_ERROR:
    case VT_R4: out.lVal = *value.plVal; break;
    case VT_DECIMAL:
      out.decVal = *value.pdecVal;
      out.vt = VT_DECIMAL;
      break;
    default: out.llVal = *value.pllVal; break;  // all others are eight bytes wide
  }
  return out;
}

}  // namespace

const VARIANT& target(const VARIANT& value) noexcept {
  const VARIANT* at = &value;
  while (at->vt == (VT_BYREF | VT_VARIANT)) at = at->pvarVal;
  return *at;
}

bool isLeftOut(const VARIANT& value) noexcept {
  const VARIANT& end = target(value);
  return end.vt == VT_ERROR && end.scode == DISP_E_PARAMNOTFOUND;
}

Variant fromVariant(const VARIANT& given) {
  const VARIANT& value = target(given);
  if ((value.vt & VT_BYREF) != 0 && (value.vt & VT_ARRAY) == 0)
    return fromVariant(dereferenced(value));
  switch (value.vt) {
    case VT_EMPTY: return {};
    case VT_NULL: return Null;
    case VT_I2: return static_cast<std::int16_t>(value.iVal);
    case VT_I4:
    case VT_INT: return static_cast<std::int32_t>(value.lVal);
    case VT_R4: return value.fltVal;
    case VT_R8: return value.dblVal;
    case VT_DATE: return Date(value.date);
    case VT_BSTR: return fromBstr(value.bstrVal);
    case VT_BOOL: return value.boolVal != VARIANT_FALSE;
    case VT_I1: return static_cast<std::int16_t>(static_cast<signed char>(value.cVal));
    case VT_UI1: return static_cast<std::int16_t>(value.bVal);
    case VT_UI2: return static_cast<std::int32_t>(value.uiVal);
    case VT_UI4:
    case VT_UINT: return wholeNumber(static_cast<std::uint64_t>(value.ulVal));
    case VT_I8: return wholeNumber(static_cast<std::int64_t>(value.llVal));
    case VT_UI8: return wholeNumber(static_cast<std::uint64_t>(value.ullVal));
    case VT_CY:
    case VT_DECIMAL: return asDouble(value);
    case VT_DISPATCH:
    case VT_UNKNOWN: return fromObject(value.punkVal);
    case VT_ERROR:
      if (value.scode == DISP_E_PARAMNOTFOUND) return {};
      raise(kTypeMismatch);
    default: raise(kTypeMismatch);
  }
}

Variant plainValue(const VARIANT& given) {
  const VARIANT& value = target(given);
  IDispatch* object = nullptr;
  if (value.vt == VT_DISPATCH) object = value.pdispVal;
  if (value.vt == (VT_DISPATCH | VT_BYREF)) object = *value.ppdispVal;
  if (object == nullptr) return fromVariant(value);
  DISPPARAMS none{};
  OwnedVariant result;
  if (FAILED(object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                            DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, &result, nullptr,
                            nullptr)))
    raise(kTypeMismatch);
  return fromVariant(*result);
}

void toVariant(const Variant& value, VARIANT& out) {
  VariantInit(&out);
  switch (value.kind()) {
    case VariantKind::Empty: return;
    case VariantKind::Null: out.vt = VT_NULL; return;
    case VariantKind::Int16:
      out.iVal = *value.as<std::int16_t>();
      out.vt = VT_I2;
      return;
    case VariantKind::Int32:
      out.lVal = *value.as<std::int32_t>();
      out.vt = VT_I4;
      return;
    case VariantKind::Boolean:
      out.boolVal = toComBoolean(*value.as<bool>());
      out.vt = VT_BOOL;
      return;
    case VariantKind::Single:
      out.fltVal = *value.as<float>();
      out.vt = VT_R4;
      return;
    case VariantKind::Double:
      out.dblVal = *value.as<double>();
      out.vt = VT_R8;
      return;
    case VariantKind::Date:
      out.date = value.as<Date>()->days();
      out.vt = VT_DATE;
      return;
    case VariantKind::String:
      out.bstrVal = toBstr(*value.as<std::string>());
      out.vt = VT_BSTR;
      return;
    case VariantKind::Object:
      out.pdispVal = wrapAny(*value.as<Variant::ObjectRef>());
      out.vt = VT_DISPATCH;
      return;
  }
}

}  // namespace kv::com
