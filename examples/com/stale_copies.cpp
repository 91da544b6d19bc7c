// SPDX-License-Identifier: Apache-2.0
// Lists the hard copies that are not of the revision in force, by early binding.
//   stale_copies.exe REGISTER USER PASSWORD
// Compile it with the folder of kvvesk_idl.h, and link ole32, oleaut32 and uuid.
#include <windows.h>
// Below: these need windows.h.
#include <oleauto.h>

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

#include "kvvesk_idl.h"

namespace {

std::string utf8(BSTR text) {
  const int length = static_cast<int>(SysStringLen(text));
  std::string out(static_cast<std::size_t>(length) * 3, '\0');
  out.resize(static_cast<std::size_t>(WideCharToMultiByte(
      CP_UTF8, 0, text, length, out.data(), static_cast<int>(out.size()), nullptr, nullptr)));
  return out;
}

// Every call gives a status; what a failed one has to say is kept for the thread.
void require(HRESULT status) {
  if (SUCCEEDED(status)) return;
  std::string message = "error " + std::to_string(status);
  IErrorInfo* info = nullptr;
  if (GetErrorInfo(0, &info) == S_OK) {
    BSTR description = nullptr;
    if (SUCCEEDED(info->GetDescription(&description))) message += ": " + utf8(description);
    SysFreeString(description);
    info->Release();
  }
  throw std::runtime_error(message);
}

// Objects and text that go when their scope ends; & gives the place that a call fills.
struct Releasing {
  void operator()(IUnknown* object) const noexcept { object->Release(); }
};
template <class T>
using Object = std::unique_ptr<T, Releasing>;

class Text {
 public:
  explicit Text(const wchar_t* text = L"") : text_(SysAllocString(text)) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(text_); }
  BSTR* place() noexcept { return &text_; }
  [[nodiscard]] BSTR get() const noexcept { return text_; }

 private:
  BSTR text_;
};

class Value {
 public:
  Value() noexcept { VariantInit(&value_); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  ~Value() { VariantClear(&value_); }
  VARIANT* place() noexcept { return &value_; }
  [[nodiscard]] bool isNull() const noexcept { return value_.vt == VT_NULL; }
  [[nodiscard]] long number() {
    require(VariantChangeType(&value_, &value_, 0, VT_I4));
    return value_.lVal;
  }
  [[nodiscard]] std::string text() {
    if (isNull()) return {};
    require(VariantChangeType(&value_, &value_, 0, VT_BSTR));
    return utf8(value_.bstrVal);
  }

 private:
  VARIANT value_;
};

void read(_kvRecordset& set, const wchar_t* column, Value& into) {
  _kvFields* fields = nullptr;
  require(set.get_Fields(&fields));
  const Object<_kvFields> keepFields(fields);
  Value name;
  name.place()->vt = VT_BSTR;
  name.place()->bstrVal = SysAllocString(column);
  _kvField* field = nullptr;
  require(fields->get_Item(*name.place(), &field));
  const Object<_kvField> keepField(field);
  require(field->get_Value(into.place()));
}

void list(_clsVesk& vesk) {
  Text none;
  long noQuery = 0;
  VARIANT_BOOL hardCopies = VARIANT_TRUE;
  _kvRecordset* set = nullptr;
  require(vesk.Releases(none.place(), none.place(), none.place(), &noQuery, &noQuery, &noQuery,
                        &hardCopies, &set));
  const Object<_kvRecordset> copies(set);
  _clsVeskUser* user = nullptr;
  require(vesk.get_User(&user));
  const Object<_clsVeskUser> users(user);
  for (VARIANT_BOOL end = VARIANT_FALSE;; require(copies->MoveNext())) {
    require(copies->get_EOF(&end));
    if (end != VARIANT_FALSE) break;
    Value current;
    Value held;
    read(*copies, L"CurrentRevID", current);
    read(*copies, L"RevisionID", held);
    if (current.isNull() || held.number() == current.number()) continue;
    Value holder;
    Value document;
    Value level;
    Value inForce;
    read(*copies, L"UserID", holder);
    read(*copies, L"DocumentNumber", document);
    read(*copies, L"RevisionLevel", level);
    read(*copies, L"CurrentRevisionLevel", inForce);
    Text name;
    require(users->getUserName(&holder.place()->bstrVal, name.place()));
    std::printf("%s\t%s\t%s\t%s\n", utf8(name.get()).c_str(), document.text().c_str(),
                level.text().c_str(), inForce.text().c_str());
  }
  require(copies->Close());
}

void run(wchar_t** words) {
  void* made = nullptr;
  require(CoCreateInstance(__uuidof(clsVesk), nullptr, CLSCTX_INPROC_SERVER, __uuidof(_clsVesk),
                           &made));
  const Object<_clsVesk> vesk(static_cast<_clsVesk*>(made));
  Text connection((std::wstring(L"Data Source=") + words[1]).c_str());
  Text user(words[2]);
  Text password(words[3]);
  Text alreadyOpen;
  _kvProfile* noProfile = nullptr;
  VARIANT_BOOL saysNothing = VARIANT_FALSE;
  Value saysNothingEither;
  require(vesk->OpenConnection(connection.place(), &noProfile, &saysNothing));
  require(vesk->Login(user.place(), password.place(), alreadyOpen.place(), &noProfile,
                      saysNothingEither.place()));
  list(*vesk);
  require(vesk->CloseSession());
}

}  // namespace

int wmain(int count, wchar_t** words) {
  if (count != 4) {
    std::fputs("usage: stale_copies REGISTER USER PASSWORD\n", stderr);
    return 2;
  }
  require(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
  int status = 0;
  try {
    run(words);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    status = 1;
  }
  CoUninitialize();
  return status;
}
