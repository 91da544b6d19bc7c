// SPDX-License-Identifier: Apache-2.0
// What the registry says about the classes, so that clients find them by name.
#pragma once

#include "com/platform.h"

namespace kv::com {

// For everybody on the machine, or, for somebody who may not do that, for the present user alone.
[[nodiscard]] HRESULT registerClasses() noexcept;
// For the present user alone, whoever that is.
[[nodiscard]] HRESULT registerClassesForUser() noexcept;
// Takes away what of that there is, of both kinds where the caller may.
[[nodiscard]] HRESULT unregisterClasses() noexcept;
[[nodiscard]] HRESULT unregisterClassesForUser() noexcept;

}  // namespace kv::com
