// SPDX-License-Identifier: Apache-2.0
// The entry points of the component.

#include <string_view>

#include "com/class_factory.h"
#include "com/creatable.h"
#include "com/module.h"
#include "com/platform.h"
#include "com/registration.h"

namespace {

HINSTANCE handle = nullptr;

}  // namespace

namespace kv::com {

HINSTANCE module() noexcept { return handle; }

}  // namespace kv::com

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    handle = instance;
    DisableThreadLibraryCalls(instance);
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID id, LPVOID* out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  for (const auto& creatable : kv::com::creatableClasses())
    if (*creatable.clsid == clsid) return kv::com::makeFactory(creatable, id, out);
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return kv::com::Uses::any() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() { return kv::com::registerClasses(); }

STDAPI DllUnregisterServer() { return kv::com::unregisterClasses(); }

// regsvr32 /n /i:user registers for the present user alone, with /u takes that away.
STDAPI DllInstall(BOOL install, LPCWSTR what) {
  if (what == nullptr || std::wstring_view(what) != L"user") return E_INVALIDARG;
  return install ? kv::com::registerClassesForUser() : kv::com::unregisterClassesForUser();
}
