// SPDX-License-Identifier: Apache-2.0
// Makes objects of one class for the platform.
#pragma once

#include "com/creatable.h"
#include "com/platform.h"

namespace kv::com {

// A new factory, asked for an interface.
[[nodiscard]] HRESULT makeFactory(const Creatable& creatable, REFIID id, void** out) noexcept;

}  // namespace kv::com
