// SPDX-License-Identifier: Apache-2.0
#include "com/dispatch_argument.h"

#include "com/com_text.h"
#include "common/convert.h"
#include "common/error.h"

namespace kv::com {

namespace {

// What a by-reference VARIANT leads to, when a value can be stored there.
VARIANT* variableOf(VARIANT* given) noexcept {
  while (given->vt == (VT_BYREF | VT_VARIANT)) {
    VARIANT* inner = given->pvarVal;
    if ((inner->vt & VT_BYREF) == 0) return given;
    given = inner;
  }
  return (given->vt & VT_BYREF) != 0 ? given : nullptr;
}

IUnknown* objectOf(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY: return nullptr;
    case VT_DISPATCH:
    case VT_UNKNOWN: return value.punkVal;
    case VT_DISPATCH | VT_BYREF:
    case VT_UNKNOWN | VT_BYREF: return *value.ppunkVal;
    default: raise(kTypeMismatch);
  }
}

void copy(const VARIANT& from, VARIANT* to) {
  if (FAILED(VariantCopy(to, readable(from)))) raise(kTypeMismatch);
}

}  // namespace

DispatchArgument::DispatchArgument(const MemberParameter& parameter, VARIANT* given)
    : parameter_(&parameter) {
  if (given == nullptr || isLeftOut(*given)) {
    preset();
  } else {
    convert(target(*given));
    if (parameter.byReference) variable_ = variableOf(given);
  }
  if (parameter.byReference && parameter.type != VT_VARIANT) copy(*value_, &before_);
  reference_.vt = passedType();
  // Every member of the union begins where the union does.
  reference_.byref = parameter.type == VT_VARIANT ? static_cast<void*>(&value_) : &value_->llVal;
}

void DispatchArgument::preset() {
  const VARTYPE type = parameter_->type;
  if (type == VT_VARIANT) {
    value_->vt = VT_ERROR;
    value_->scode = DISP_E_PARAMNOTFOUND;
    return;
  }
  if (parameter_->preset.vt != VT_EMPTY) *value_ = parameter_->preset;
  value_->vt = type;
}

void DispatchArgument::convert(const VARIANT& given) {
  switch (parameter_->type) {
    case VT_VARIANT:
      if (FAILED(VariantCopyInd(&value_, readable(given)))) raise(kTypeMismatch);
      return;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      value_->vt = parameter_->type;
      value_->punkVal = nullptr;
      if (IUnknown* object = objectOf(given))
        if (FAILED(object->QueryInterface(parameter_->interfaceId,
                                          reinterpret_cast<void**>(&value_->punkVal))))
          raise(kTypeMismatch);
      return;
    case VT_BSTR: value_->bstrVal = toBstr(toText(plainValue(given))); break;
    case VT_BOOL: value_->boolVal = toComBoolean(toBoolean(plainValue(given))); break;
    case VT_I2: value_->iVal = toInt16(plainValue(given)); break;
    case VT_I4: value_->lVal = toInt32(plainValue(given)); break;
    case VT_DATE: value_->date = toDate(plainValue(given)).days(); break;
    default: raise(kTypeMismatch);
  }
  value_->vt = parameter_->type;
}

bool DispatchArgument::changed() const noexcept {
  const VARIANT& now = *value_;
  const VARIANT& then = *before_;
  switch (parameter_->type) {
    case VT_VARIANT: return false;  // members only read these
    case VT_BSTR: {
      const UINT length = SysStringByteLen(now.bstrVal);
      return length != SysStringByteLen(then.bstrVal) ||
             (length != 0 && memcmp(now.bstrVal, then.bstrVal, length) != 0);
    }
    case VT_BOOL:
    case VT_I2: return now.iVal != then.iVal;
    case VT_I4: return now.lVal != then.lVal;
    default: return now.llVal != then.llVal;
  }
}

void DispatchArgument::writeBack() {
  if (variable_ == nullptr) return;
  if (variable_->vt == (VT_BYREF | VT_VARIANT)) {
    VARIANT* place = variable_->pvarVal;
    if (parameter_->type != VT_VARIANT && (changed() || place->vt == VT_EMPTY))
      copy(*value_, place);
    return;
  }
  if (!changed()) return;
  OwnedVariant converted;
  const auto type = static_cast<VARTYPE>(variable_->vt & ~VT_BYREF);
  if (FAILED(VariantChangeType(&converted, &*value_, 0, type))) raise(kTypeMismatch);
  switch (type) {
    case VT_BSTR: std::swap(*variable_->pbstrVal, converted->bstrVal); break;
    case VT_DISPATCH:
    case VT_UNKNOWN: std::swap(*variable_->ppunkVal, converted->punkVal); break;
    case VT_BOOL:
    case VT_I2:
    case VT_UI2: *variable_->piVal = converted->iVal; break;
    case VT_I1:
    case VT_UI1: *variable_->pbVal = converted->bVal; break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4: *variable_->plVal = converted->lVal; break;
    case VT_DECIMAL: *variable_->pdecVal = converted->decVal; break;
    default: *variable_->pllVal = converted->llVal; break;
  }
}

}  // namespace kv::com
