// SPDX-License-Identifier: Apache-2.0
// Ref<T>: how objects are handed out. A shared pointer that raises 91 instead of crashing when
// empty.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "common/error.h"

namespace kv {

template <class T>
class Ref {
 public:
  Ref() noexcept = default;
  // Implicit, so that "no object" is written nullptr, and new objects flow into arguments.
  Ref(std::nullptr_t) noexcept {}  // NOLINT(*-explicit-*)
  Ref(std::shared_ptr<T> pointer) noexcept
      : pointer_(std::move(pointer)) {}  // NOLINT(*-explicit-*)
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  Ref(const Ref<U>& other) noexcept : pointer_(other.shared()) {}  // NOLINT(*-explicit-*)

  T* operator->() const { return &checked(); }
  T& operator*() const { return checked(); }
  [[nodiscard]] T* get() const noexcept { return pointer_.get(); }
  explicit operator bool() const noexcept { return pointer_ != nullptr; }
  [[nodiscard]] const std::shared_ptr<T>& shared() const noexcept { return pointer_; }
  void reset() noexcept { pointer_.reset(); }

  friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.pointer_ == b.pointer_; }
  friend bool operator==(const Ref& a, std::nullptr_t) noexcept { return a.pointer_ == nullptr; }

 private:
  T& checked() const {
    if (pointer_ == nullptr) raise(kObjectNotSet);
    return *pointer_;
  }

  std::shared_ptr<T> pointer_;
};

template <class T, class... Args>
[[nodiscard]] Ref<T> makeRef(Args&&... args) {
  return Ref<T>(std::make_shared<T>(std::forward<Args>(args)...));
}

}  // namespace kv
