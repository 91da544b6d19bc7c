// SPDX-License-Identifier: Apache-2.0
#include "com/type_library.h"

#include "com/module.h"

namespace kv::com {

HRESULT moduleFile(wchar_t (&path)[MAX_PATH]) noexcept {
  const DWORD length = GetModuleFileNameW(module(), path, MAX_PATH);
  if (length == 0) return HRESULT_FROM_WIN32(GetLastError());
  return length < MAX_PATH ? S_OK : HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER);
}

HRESULT typeLibrary(ITypeLib** out) noexcept {
  wchar_t path[MAX_PATH];
  const HRESULT result = moduleFile(path);
  return FAILED(result) ? result : LoadTypeLibEx(path, REGKIND_NONE, out);
}

}  // namespace kv::com
