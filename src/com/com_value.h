// SPDX-License-Identifier: Apache-2.0
// Values between the library's Variant and the platform's VARIANT.
#pragma once

#include "com/platform.h"
#include "common/variant.h"

namespace kv::com {

// The value of a VARIANT, by reference or not. Numbers of kinds that the library has not become the
// nearest that it has: whole ones 16 or 32 bits wide or, when they do not fit, double precision. An
// argument that was left out is Empty; a field of a record set is its value. Raises 13 for arrays,
// errors and objects of others, 5 for text that is not well-formed.
[[nodiscard]] Variant fromVariant(const VARIANT& value);
// The same of a value as text, number or date is asked of it: what an object of others stands for
// is its default property.
[[nodiscard]] Variant plainValue(const VARIANT& value);

// Overwrites `out`, which holds nothing yet. No object is VT_DISPATCH with a null pointer.
void toVariant(const Variant& value, VARIANT& out);

// The VARIANT that a chain of references ends in.
[[nodiscard]] const VARIANT& target(const VARIANT& value) noexcept;
// Whether it stands for an argument that was left out.
[[nodiscard]] bool isLeftOut(const VARIANT& value) noexcept;

// The platform's functions take what they only read as something they might write.
[[nodiscard]] inline VARIANT* readable(const VARIANT& value) noexcept {
  return const_cast<VARIANT*>(&value);
}

[[nodiscard]] constexpr VARIANT_BOOL toComBoolean(bool value) noexcept {
  return value ? VARIANT_TRUE : VARIANT_FALSE;
}

// A VARIANT that is cleared when it goes.
class OwnedVariant {
 public:
  OwnedVariant() noexcept { VariantInit(&value_); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  OwnedVariant(OwnedVariant&&) = delete;
  OwnedVariant& operator=(OwnedVariant&&) = delete;
  ~OwnedVariant() { VariantClear(&value_); }

  VARIANT* operator&() noexcept { return &value_; }  // NOLINT(google-runtime-operator)
  VARIANT* operator->() noexcept { return &value_; }
  VARIANT& operator*() noexcept { return value_; }
  const VARIANT& operator*() const noexcept { return value_; }

 private:
  VARIANT value_;
};

}  // namespace kv::com
