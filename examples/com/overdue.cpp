// Lists the controlled documents that have no revision in force.
//   overdue.exe REGISTER USER     the password is in the variable KVVESK_PASSWORD
// kvvesk_idl.h is made from src/com/kvvesk.idl.
#include <windows.h>
// Below: needs windows.h.
#include <comdef.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "kvvesk_idl.h"

namespace {

// Raises what the component reported, with its description.
void check(HRESULT result) {
  if (SUCCEEDED(result)) return;
  IErrorInfo* info = nullptr;
  GetErrorInfo(0, &info);
  throw _com_error(result, info);
}

void printText(_kvFields& fields, const wchar_t* name) {
  _variant_t place(name);
  _kvField* field = nullptr;
  check(fields.get_Item(place, &field));
  _variant_t value;
  const HRESULT result = field->get_Value(&value);
  field->Release();
  check(result);
  std::printf("%ls  ", static_cast<const wchar_t*>(_bstr_t(value)));
}

void list(_clsVesk& vesk, const wchar_t* path, const wchar_t* user, const wchar_t* password) {
  // Every argument is passed by reference.
  BSTR connection = SysAllocString((std::wstring(L"Data Source=") + path).c_str());
  BSTR name = SysAllocString(user);
  BSTR word = SysAllocString(password);
  BSTR none = nullptr;
  _kvProfile* profile = nullptr;
  VARIANT_BOOL opened = VARIANT_FALSE;
  _variant_t nothing;
  check(vesk.OpenConnection(&connection, &profile, &opened));
  check(vesk.Login(&name, &word, &none, &profile, &nothing));

  BSTR sql = SysAllocString(
      L"Select DocumentNumber, DocumentTitle From Documents "
      L"Where Controlled = True And IsNull(CurrentRevID) Order By DocumentNumber");
  _kvRecordset* rows = nullptr;
  check(vesk.GetRecordset(&sql, &rows));
  _kvFields* fields = nullptr;
  check(rows->get_Fields(&fields));
  VARIANT_BOOL atEnd = VARIANT_FALSE;
  for (check(rows->get_EOF(&atEnd)); atEnd == VARIANT_FALSE; check(rows->get_EOF(&atEnd))) {
    printText(*fields, L"DocumentNumber");
    printText(*fields, L"DocumentTitle");
    std::printf("\n");
    check(rows->MoveNext());
  }
  fields->Release();
  rows->Release();
  for (BSTR text : {connection, name, word, sql}) SysFreeString(text);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 3) return 2;
  const wchar_t* password = _wgetenv(L"KVVESK_PASSWORD");
  CoInitialize(nullptr);
  int status = 0;
  _clsVesk* vesk = nullptr;
  try {
    check(CoCreateInstance(__uuidof(clsVesk), nullptr, CLSCTX_INPROC_SERVER, __uuidof(_clsVesk),
                           reinterpret_cast<void**>(&vesk)));
    list(*vesk, arguments[1], arguments[2], password != nullptr ? password : L"");
  } catch (const _com_error& error) {
    std::fprintf(stderr, "error %ld (%ls): %ls\n", static_cast<long>(error.Error()),
                 static_cast<const wchar_t*>(error.Source()),
                 static_cast<const wchar_t*>(error.Description()));
    status = 1;
  }
  if (vesk != nullptr) {
    vesk->CloseSession();
    vesk->Release();
  }
  CoUninitialize();
  return status;
}
