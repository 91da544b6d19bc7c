// SPDX-License-Identifier: Apache-2.0
// One argument on its way from a caller of the platform into the library, and, where the library
// gives something back in it, out again. There is a conversion for each pair that goes together;
// for any other pair the compiler says so.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "com/com_error.h"
#include "com/com_text.h"
#include "com/com_value.h"
#include "com/objects.h"
#include "common/convert.h"
#include "common/date.h"

namespace kv::com {

template <class Raw>
[[nodiscard]] Raw& pointed(Raw* pointer) {
  if (pointer == nullptr) throw NullPointer{};
  return *pointer;
}

template <class Parameter, class Raw>
class Argument;  // no such pair: the member's declaration and the library's do not agree

// What the library only reads, kept as a value.
template <class Value>
class Input {
 public:
  explicit Input(Value value) : value_(std::move(value)) {}
  [[nodiscard]] const Value& get() const noexcept { return value_; }
  void writeBack() const noexcept {}

 private:
  Value value_;
};

template <>
class Argument<const std::string&, BSTR> : public Input<std::string> {
 public:
  explicit Argument(BSTR text) : Input(fromBstr(text)) {}
};
template <>
class Argument<const std::string&, BSTR*> : public Input<std::string> {
 public:
  explicit Argument(BSTR* text) : Input(fromBstr(pointed(text))) {}
};

template <>
class Argument<bool, VARIANT_BOOL*> : public Input<bool> {
 public:
  explicit Argument(VARIANT_BOOL* value) : Input(pointed(value) != VARIANT_FALSE) {}
};
template <>
class Argument<std::int16_t, SHORT> : public Input<std::int16_t> {
 public:
  using Input::Input;
};
template <>
class Argument<std::int16_t, SHORT*> : public Input<std::int16_t> {
 public:
  explicit Argument(SHORT* value) : Input(pointed(value)) {}
};
// Enumerations are 32 bits wide there and 16 here.
template <class Enumeration>
requires std::is_enum_v<Enumeration>
class Argument<std::int16_t, Enumeration*> : public Input<std::int16_t> {
 public:
  explicit Argument(Enumeration* value)
      : Input(toInt16(static_cast<std::int32_t>(pointed(value)))) {}
};
template <>
class Argument<std::int32_t, LONG> : public Input<std::int32_t> {
 public:
  explicit Argument(LONG value) : Input(static_cast<std::int32_t>(value)) {}
};
template <>
class Argument<std::int32_t, LONG*> : public Input<std::int32_t> {
 public:
  explicit Argument(LONG* value) : Input(static_cast<std::int32_t>(pointed(value))) {}
};
template <>
class Argument<const Date&, DATE> : public Input<Date> {
 public:
  explicit Argument(DATE value) : Input(Date(value)) {}
};
template <>
class Argument<const Date&, DATE*> : public Input<Date> {
 public:
  explicit Argument(DATE* value) : Input(Date(pointed(value))) {}
};
template <>
class Argument<const Variant&, VARIANT> : public Input<Variant> {
 public:
  explicit Argument(const VARIANT& value) : Input(fromVariant(value)) {}
};
template <>
class Argument<const Variant&, VARIANT*> : public Input<Variant> {
 public:
  explicit Argument(VARIANT* value) : Input(fromVariant(pointed(value))) {}
};
template <class T>
class Argument<const Ref<T>&, InterfaceOf<T>*> : public Input<Ref<T>> {
 public:
  explicit Argument(InterfaceOf<T>* object) : Input<Ref<T>>(unwrap<T>(object)) {}
};
template <class T>
class Argument<const Ref<T>&, InterfaceOf<T>**> : public Input<Ref<T>> {
 public:
  explicit Argument(InterfaceOf<T>** object) : Input<Ref<T>>(unwrap<T>(pointed(object))) {}
};

// What the library may write. It is written back also when something is raised: what was written
// by then stays written.
template <class Value>
class Output {
 public:
  explicit Output(Value value) : value_(std::move(value)), before_(value_) {}
  [[nodiscard]] Value& get() noexcept { return value_; }

 protected:
  [[nodiscard]] bool changed() const { return !(value_ == before_); }
  [[nodiscard]] const Value& value() const noexcept { return value_; }

 private:
  Value value_;
  Value before_;
};

template <>
class Argument<std::string&, BSTR*> : public Output<std::string> {
 public:
  explicit Argument(BSTR* text) : Output(fromBstr(pointed(text))), text_(text) {}
  void writeBack() const {
    if (!changed()) return;
    BSTR now = toBstr(value());
    SysFreeString(*text_);
    *text_ = now;
  }

 private:
  BSTR* text_;
};
template <>
class Argument<bool&, VARIANT_BOOL*> : public Output<bool> {
 public:
  explicit Argument(VARIANT_BOOL* place) : Output(pointed(place) != VARIANT_FALSE), place_(place) {}
  void writeBack() const { *place_ = toComBoolean(value()); }

 private:
  VARIANT_BOOL* place_;
};
template <>
class Argument<std::int16_t&, SHORT*> : public Output<std::int16_t> {
 public:
  explicit Argument(SHORT* place) : Output(pointed(place)), place_(place) {}
  void writeBack() const { *place_ = value(); }

 private:
  SHORT* place_;
};
template <>
class Argument<std::int32_t&, LONG*> : public Output<std::int32_t> {
 public:
  explicit Argument(LONG* place)
      : Output(static_cast<std::int32_t>(pointed(place))), place_(place) {}
  void writeBack() const { *place_ = value(); }

 private:
  LONG* place_;
};
template <class T>
class Argument<Ref<T>&, InterfaceOf<T>**> : public Output<Ref<T>> {
 public:
  explicit Argument(InterfaceOf<T>** place)
      : Output<Ref<T>>(unwrap<T>(pointed(place))), place_(place) {}
  void writeBack() const {
    if (!this->changed()) return;
    InterfaceOf<T>* now = wrap(this->value());
    if (*place_ != nullptr) (*place_)->Release();
    *place_ = now;
  }

 private:
  InterfaceOf<T>** place_;
};

// ---- results ----

inline void give(const std::string& value, BSTR* out) { *out = toBstr(value); }
inline void give(bool value, VARIANT_BOOL* out) { *out = toComBoolean(value); }
inline void give(std::int16_t value, SHORT* out) { *out = value; }
inline void give(std::int32_t value, LONG* out) { *out = value; }
inline void give(const Variant& value, VARIANT* out) { toVariant(value, *out); }
template <class T>
void give(const Ref<T>& value, InterfaceOf<T>** out) {
  *out = wrap(value);
}

}  // namespace kv::com
