// SPDX-License-Identifier: Apache-2.0
// Variant: a value of any of the kinds that arguments, results and fields may have.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "common/date.h"
#include "common/export.h"

namespace kv {

// Base of everything that can be held by a Variant as an object.
class KVVESK_API Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  Object(Object&&) = delete;
  Object& operator=(Object&&) = delete;
  virtual ~Object() = default;
};

// The database's absence; Variant{} (Empty) is "never assigned".
struct NullValue {
  friend constexpr bool operator==(NullValue, NullValue) noexcept { return true; }
};
inline constexpr NullValue Null{};

enum class VariantKind { Empty, Null, Int16, Int32, Boolean, Single, Double, Date, String, Object };

class KVVESK_API Variant {
 public:
  using ObjectRef = std::shared_ptr<Object>;

  // Implicit from each kind on purpose: a Variant argument takes any value as it is written.
  Variant() noexcept = default;
  Variant(NullValue) noexcept : value_(NullValue{}) {}       // NOLINT(*-explicit-*)
  Variant(std::int16_t v) noexcept : value_(v) {}            // NOLINT(*-explicit-*)
  Variant(std::int32_t v) noexcept : value_(v) {}            // NOLINT(*-explicit-*)
  Variant(bool v) noexcept : value_(v) {}                    // NOLINT(*-explicit-*)
  Variant(float v) noexcept : value_(v) {}                   // NOLINT(*-explicit-*)
  Variant(double v) noexcept : value_(v) {}                  // NOLINT(*-explicit-*)
  Variant(Date v) noexcept : value_(v) {}                    // NOLINT(*-explicit-*)
  Variant(std::string v) noexcept : value_(std::move(v)) {}  // NOLINT(*-explicit-*)
  Variant(std::string_view v) : value_(std::string(v)) {}    // NOLINT(*-explicit-*)
  Variant(const char* v) : value_(std::string(v)) {}         // NOLINT(*-explicit-*)
  Variant(ObjectRef v) noexcept : value_(std::move(v)) {}    // NOLINT(*-explicit-*)

  [[nodiscard]] VariantKind kind() const noexcept {
    return static_cast<VariantKind>(value_.index());
  }
  [[nodiscard]] bool isEmpty() const noexcept { return kind() == VariantKind::Empty; }
  [[nodiscard]] bool isNull() const noexcept { return kind() == VariantKind::Null; }
  // Any of the numeric kinds; dates and booleans count as numbers.
  [[nodiscard]] bool isNumber() const noexcept {
    return kind() >= VariantKind::Int16 && kind() <= VariantKind::Date;
  }
  [[nodiscard]] bool isText() const noexcept { return kind() == VariantKind::String; }

  // The held value; nullptr when the Variant is of another kind.
  template <class T>
  [[nodiscard]] const T* as() const noexcept {
    return std::get_if<T>(&value_);
  }

  // Same kind and same value; text by its bytes. For tests and containers; the host's comparison,
  // which converts, is compareValues.
  friend bool operator==(const Variant&, const Variant&) noexcept = default;

 private:
  std::variant<std::monostate, NullValue, std::int16_t, std::int32_t, bool, float, double, Date,
               std::string, ObjectRef>
      value_;
};

}  // namespace kv
