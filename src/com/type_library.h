// SPDX-License-Identifier: Apache-2.0
// The type library, which the DLL carries with it.
#pragma once

#include "com/platform.h"

namespace kv::com {

// Its own file; both return S_OK or what the platform says.
[[nodiscard]] HRESULT moduleFile(wchar_t (&path)[MAX_PATH]) noexcept;
[[nodiscard]] HRESULT typeLibrary(ITypeLib** out) noexcept;

}  // namespace kv::com
