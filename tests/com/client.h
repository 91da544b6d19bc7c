// SPDX-License-Identifier: Apache-2.0
// What clients in C++ need: text and objects that clean up after themselves.
#pragma once

#include <windows.h>
// Below: these need windows.h.
#include <ocidl.h>
#include <oleauto.h>

#include <string>
#include <utility>

// A string of the platform.
class Text {
 public:
  Text() = default;
  explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  Text(Text&&) = delete;
  Text& operator=(Text&&) = delete;
  ~Text() { SysFreeString(text_); }

  BSTR* operator&() noexcept { return &text_; }  // NOLINT(google-runtime-operator)
  [[nodiscard]] BSTR get() const noexcept { return text_; }
  [[nodiscard]] bool is(const wchar_t* other) const {
    return std::wstring(text_ != nullptr ? text_ : L"") == other;
  }

 private:
  BSTR text_ = nullptr;
};

// A reference to an object.
template <class Interface>
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  Object(Object&&) = delete;
  Object& operator=(Object&&) = delete;
  ~Object() { reset(); }

  Interface** operator&() noexcept { return &pointer_; }  // NOLINT(google-runtime-operator)
  Interface* operator->() const noexcept { return pointer_; }
  [[nodiscard]] Interface* get() const noexcept { return pointer_; }
  void reset() noexcept {
    if (pointer_ != nullptr) std::exchange(pointer_, nullptr)->Release();
  }

 private:
  Interface* pointer_ = nullptr;
};
