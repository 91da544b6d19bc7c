// SPDX-License-Identifier: Apache-2.0
// The classes that clients create by themselves.
#pragma once

#include <span>

#include "com/platform.h"

namespace kv::com {

struct Creatable {
  const GUID* clsid;
  const wchar_t* name;  // as in the program identifier "KvVesk.<name>"
  const wchar_t* description;
  // A new object with one reference. Throws.
  IUnknown* (*make)();
};

[[nodiscard]] std::span<const Creatable> creatableClasses() noexcept;

}  // namespace kv::com
