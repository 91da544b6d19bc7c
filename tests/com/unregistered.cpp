// SPDX-License-Identifier: Apache-2.0
// A program that uses the component by its manifest, unregistered.
//   unregistered.exe FOLDER        with kvvesk.dll and kvvesk.dll.manifest

#include "checks.h"
#include "client.h"
// Needs client.h.
#include "com/kvvesk_idl.h"

int wmain(int count, wchar_t** arguments) {
  if (count != 2) return 2;
  CoInitialize(nullptr);
  CLSID found;
  checks::that(FAILED(CLSIDFromProgID(L"KvVesk.clsVesk", &found)), "it is not registered");

  const std::wstring manifest = std::wstring(arguments[1]) + L"\\kvvesk.dll.manifest";
  ACTCTXW described{};
  described.cbSize = sizeof described;
  described.lpSource = manifest.c_str();
  const HANDLE context = CreateActCtxW(&described);
  ULONG_PTR cookie = 0;
  checks::that(context != INVALID_HANDLE_VALUE && ActivateActCtx(context, &cookie) != FALSE,
               "the manifest can be read");
  // Where a manifest names a file, the system looks for it as it does for every other.
  SetDllDirectoryW(arguments[1]);
  // The identifiers that names lead to here are the system's own; they make the same objects.
  for (const wchar_t* name : {L"KvVesk.clsVesk", L"KvVesk.clsVesk.1"}) {
    Object<_clsVesk> vesk;
    checks::that(CLSIDFromProgID(name, &found) == S_OK &&
                     CoCreateInstance(found, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_clsVesk),
                                      reinterpret_cast<void**>(&vesk)) == S_OK,
                 "an object by name");
    if (vesk.get() == nullptr) continue;
    VARIANT_BOOL full = VARIANT_FALSE;
    Text version;
    checks::that(vesk->Version(&full, &version) == S_OK && version.is(L"1.0"), "which works");
  }
  Object<_clsVesk> vesk;
  checks::that(CoCreateInstance(__uuidof(clsVesk), nullptr, CLSCTX_INPROC_SERVER,
                                __uuidof(_clsVesk), reinterpret_cast<void**>(&vesk)) == S_OK,
               "an object by identifier");
  vesk.reset();
  DeactivateActCtx(0, cookie);
  CoUninitialize();
  return checks::finish();
}
