// SPDX-License-Identifier: Apache-2.0
#include "com/registration.h"

#include <string>

#include "com/com_error.h"
#include "com/creatable.h"
#include "com/interfaces.h"
#include "com/registration_for_user.h"
#include "com/type_library.h"

namespace kv::com {

namespace {

constexpr const wchar_t* kClasses = L"Software\\Classes\\";

struct Failure {
  HRESULT result;
};

void require(LSTATUS status) {
  if (status != ERROR_SUCCESS) throw Failure{HRESULT_FROM_WIN32(static_cast<DWORD>(status))};
}

std::wstring guidText(const GUID& guid) {
  wchar_t text[40];
  StringFromGUID2(guid, text, 40);
  return text;
}

// Writes below the classes of everybody or of one user.
class ClassesKey {
 public:
  explicit ClassesKey(HKEY root) noexcept : root_(root) {}

  void set(const std::wstring& path, const std::wstring& value,
           const wchar_t* name = nullptr) const {
    HKEY key = nullptr;
    require(RegCreateKeyExW(root_, (kClasses + path).c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                            &key, nullptr));
    const LSTATUS status =
        RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                       static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
    require(status);
  }
  void remove(const std::wstring& path) const noexcept {
    RegDeleteTreeW(root_, (kClasses + path).c_str());
  }

 private:
  HKEY root_;
};

std::wstring classPath(const Creatable& creatable) {
  return L"CLSID\\" + guidText(*creatable.clsid);
}

std::wstring programId(const Creatable& creatable) {
  return std::wstring(L"KvVesk.") + creatable.name;
}

void write(const ClassesKey& classes, const Creatable& creatable, const std::wstring& file) {
  const std::wstring path = classPath(creatable);
  const std::wstring program = programId(creatable);
  const std::wstring versioned = program + L".1";
  const std::wstring clsid = guidText(*creatable.clsid);
  classes.set(path, creatable.description);
  classes.set(path + L"\\InprocServer32", file);
  classes.set(path + L"\\InprocServer32", L"Apartment", L"ThreadingModel");
  classes.set(path + L"\\ProgID", versioned);
  classes.set(path + L"\\VersionIndependentProgID", program);
  classes.set(path + L"\\TypeLib", guidText(LIBID_KvVesk));
  classes.set(path + L"\\Version", L"1.0");
  classes.set(path + L"\\Programmable", {});
  for (const auto& name : {program, versioned}) {
    classes.set(name, creatable.description);
    classes.set(name + L"\\CLSID", clsid);
  }
  classes.set(program + L"\\CurVer", versioned);
}

void removeFrom(const ClassesKey& classes) {
  for (const Creatable& creatable : creatableClasses()) {
    classes.remove(classPath(creatable));
    classes.remove(programId(creatable));
    classes.remove(programId(creatable) + L".1");
  }
}

void writeAll(const ClassesKey& classes, const std::wstring& file) {
  for (const Creatable& creatable : creatableClasses()) write(classes, creatable, file);
}

HRESULT registerLibrary(bool forUser, wchar_t* file) {
  ITypeLib* library = nullptr;
  HRESULT result = typeLibrary(&library);
  if (FAILED(result)) return result;
  result = forUser ? RegisterTypeLibForUser(library, file, nullptr)
                   : RegisterTypeLib(library, file, nullptr);
  library->Release();
  return result;
}

template <class Work>
HRESULT attempt(Work work) noexcept {
  try {
    return work();
  } catch (const Failure& failure) {
    return failure.result;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT registerUnder(HKEY root) noexcept {
  wchar_t file[MAX_PATH];
  const HRESULT found = moduleFile(file);
  if (FAILED(found)) return found;
  return attempt([&file, root] {
    writeAll(ClassesKey(root), file);
    return registerLibrary(root == HKEY_CURRENT_USER, file);
  });
}

}  // namespace

HRESULT registerClasses() noexcept {
  const HRESULT result = registerUnder(HKEY_LOCAL_MACHINE);
  return FAILED(result) ? registerUnder(HKEY_CURRENT_USER) : result;
}

HRESULT registerClassesForUser() noexcept { return registerUnder(HKEY_CURRENT_USER); }

HRESULT unregisterClasses() noexcept {
  const HRESULT result = attempt([] {
    removeFrom(ClassesKey(HKEY_LOCAL_MACHINE));
    UnRegisterTypeLib(LIBID_KvVesk, 1, 0, LOCALE_NEUTRAL, SYS_WIN64);
    return S_OK;
  });
  const HRESULT forUser = unregisterClassesForUser();
  return FAILED(result) ? result : forUser;
}

HRESULT unregisterClassesForUser() noexcept {
  return attempt([] {
    removeFrom(ClassesKey(HKEY_CURRENT_USER));
    UnRegisterTypeLibForUser(LIBID_KvVesk, 1, 0, LOCALE_NEUTRAL, SYS_WIN64);
    return S_OK;
  });
}

}  // namespace kv::com
