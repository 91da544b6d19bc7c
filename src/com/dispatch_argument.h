// SPDX-License-Identifier: Apache-2.0
// One argument of a late-bound call, from the caller's VARIANT to what the member takes, and back.
#pragma once

#include "com/com_value.h"
#include "com/members.h"

namespace kv::com {

class DispatchArgument {
 public:
  // Converts; `given` is nullptr for an argument that was left out. Raises as the conversions of
  // the host do, 13 for an object of another class.
  DispatchArgument(const MemberParameter& parameter, VARIANT* given);

  // As the virtual function takes it.
  [[nodiscard]] VARTYPE passedType() const noexcept {
    return static_cast<VARTYPE>(parameter_->type | (parameter_->byReference ? VT_BYREF : 0));
  }
  [[nodiscard]] VARIANT* passed() noexcept {
    return parameter_->byReference ? &reference_ : &value_;
  }
  // Puts what the member wrote into the caller's variable: one that was Empty also takes a value
  // that the member left as it was, so that it has the kind that the member declares. Raises 13
  // for a variable of another kind.
  void writeBack();

 private:
  void convert(const VARIANT& given);
  void preset();
  [[nodiscard]] bool changed() const noexcept;

  const MemberParameter* parameter_;
  VARIANT* variable_ = nullptr;  // the caller's, when it is one
  OwnedVariant value_;
  OwnedVariant before_;
  VARIANT reference_{};  // to value_
};

}  // namespace kv::com
