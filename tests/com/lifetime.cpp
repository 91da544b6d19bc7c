// SPDX-License-Identifier: Apache-2.0
// That the component goes when nobody needs it any more: objects and locks are counted, and one
// object of the library is one object of the platform.
//   lifetime.exe REGISTER DLL

#include "checks.h"
#include "client.h"
// Needs client.h.
#include "com/kvvesk_idl.h"

namespace {

using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();
using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, LPVOID*);

template <class Function>
Function entry(HMODULE dll, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(dll, name)));
}

void session(const wchar_t* path, CanUnloadNow canUnload, IClassFactory& factory) {
  Object<_clsVesk> vesk;
  checks::that(
      factory.CreateInstance(nullptr, __uuidof(_clsVesk), reinterpret_cast<void**>(&vesk)) == S_OK,
      "an object is made");
  checks::that(canUnload() == S_FALSE, "an object keeps the component");
  Text connection((std::wstring(L"Data Source=") + path).c_str());
  Object<_kvProfile> none;
  VARIANT_BOOL opened = VARIANT_TRUE;
  checks::that(vesk->OpenConnection(&connection, &none, &opened) == S_OK, "opened");
  Text user(L"Keeper");
  Text password(L"sample");
  Text empty(L"");
  VARIANT result;
  VariantInit(&result);
  checks::that(vesk->Login(&user, &password, &empty, &none, &result) == S_OK, "logged in");

  Object<_clsVeskDocument> document;
  Object<_clsVeskDocument> again;
  checks::that(vesk->get_Document(&document) == S_OK && vesk->get_Document(&again) == S_OK &&
                   document.get() == again.get(),
               "one object of the library is one of the platform");
  Object<_clsVesk> back;
  checks::that(document->get_oVesk(&back) == S_OK && back.get() == vesk.get(), "the way back");
  Object<IUnknown> identity;
  Object<IUnknown> identityOfOther;
  checks::that(
      vesk->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity)) == S_OK &&
          back->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identityOfOther)) == S_OK &&
          identity.get() == identityOfOther.get(),
      "identity");

  // A field keeps its set, also when the set's own reference has gone.
  Object<_kvField> field;
  {
    Object<_kvRecordset> rows;
    Object<_kvFields> fields;
    Text sql(L"Select UserName From Users Order By ID");
    checks::that(vesk->GetRecordset(&sql, &rows) == S_OK && rows->get_Fields(&fields) == S_OK,
                 "a record set");
    VARIANT place;
    place.vt = VT_I4;
    place.lVal = 0;
    checks::that(fields->get_Item(place, &field) == S_OK, "a field");
  }
  checks::that(field->get_Value(&result) == S_OK && result.vt == VT_BSTR &&
                   std::wstring(result.bstrVal) == L"Keeper",
               "the value of a field whose set nobody holds");
  VariantClear(&result);
  checks::that(vesk->CloseSession() == S_OK, "closed");
  checks::that(canUnload() == S_FALSE, "closing is not releasing");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 3) return 2;
  CoInitialize(nullptr);
  const HMODULE dll = LoadLibraryW(arguments[2]);
  const auto canUnload = entry<CanUnloadNow>(dll, "DllCanUnloadNow");
  const auto getClassObject = entry<GetClassObject>(dll, "DllGetClassObject");
  checks::that(canUnload != nullptr && getClassObject != nullptr, "entry points");
  checks::that(canUnload() == S_OK, "a component without objects may go");
  {
    Object<IClassFactory> factory;
    checks::that(getClassObject(__uuidof(clsVesk), IID_IClassFactory,
                                reinterpret_cast<void**>(&factory)) == S_OK,
                 "a factory");
    checks::that(canUnload() == S_FALSE, "a factory keeps the component");
    for (int time = 0; time < 3; ++time) session(arguments[1], canUnload, *factory.get());
    void* aggregate = nullptr;
    checks::that(
        factory->CreateInstance(factory.get(), IID_IUnknown, &aggregate) == CLASS_E_NOAGGREGATION,
        "no aggregation");
    factory->LockServer(TRUE);
  }
  checks::that(canUnload() == S_FALSE, "a lock keeps the component");
  {
    Object<IClassFactory> factory;
    getClassObject(__uuidof(clsVesk), IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->LockServer(FALSE);
  }
  checks::that(canUnload() == S_OK, "all is gone");
  checks::that(DeleteFileW(arguments[1]) != FALSE, "the register's file is let go");
  void* nothing = nullptr;
  checks::that(
      getClassObject(IID_IUnknown, IID_IClassFactory, &nothing) == CLASS_E_CLASSNOTAVAILABLE,
      "no factory of other classes");
  FreeLibrary(dll);
  CoUninitialize();
  return checks::finish();
}
