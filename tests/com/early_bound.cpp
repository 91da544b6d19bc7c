// SPDX-License-Identifier: Apache-2.0
// A client in C++, bound early: it calls through the tables of virtual functions as the header has
// them, and compares these tables with what the type library says of every member.
//   early_bound.exe REGISTER DLL

#include "checks.h"
#include "client.h"
// Needs client.h.
#include "com/kvvesk_idl.h"

namespace {

constexpr const wchar_t* kDocument = L"User5010522091231";

std::wstring textOf(const VARIANT& value) {
  return value.vt == VT_BSTR && value.bstrVal != nullptr ? value.bstrVal : L"";
}

// Tells where in the table of virtual functions a member of the header is: a call of it on this
// object, whose table has one function for each place, answers with the place.
class Probe {
 public:
  Probe() {
    fill(std::make_index_sequence<kPlaces>());
    table_ = functions_;
  }
  template <class Interface>
  [[nodiscard]] Interface* as() noexcept {
    return reinterpret_cast<Interface*>(&table_);
  }

  static constexpr std::size_t kPlaces = 96;

 private:
  template <std::size_t Place>
  static HRESULT STDMETHODCALLTYPE answer() {
    return static_cast<HRESULT>(Place);
  }
  template <std::size_t... Place>
  void fill(std::index_sequence<Place...>) {
    ((functions_[Place] = reinterpret_cast<void*>(&answer<Place>)), ...);
  }

  void** table_ = nullptr;
  void* functions_[kPlaces];
};

template <class Interface, class... Parameters, std::size_t... At>
HRESULT callWithNothing(Interface* object,
                        HRESULT (STDMETHODCALLTYPE Interface::*member)(Parameters...),
                        std::index_sequence<At...>) {
  return (object->*member)(Parameters{}...);
}

class Library {
 public:
  explicit Library(const wchar_t* path) {
    checks::that(LoadTypeLibEx(path, REGKIND_NONE, &library_) == S_OK, "the type library");
  }

  // Whether a member stands where the type library says, and has as many parameters.
  template <class Interface, class... Parameters>
  void compare(const wchar_t* name, INVOKEKIND kind,
               HRESULT (STDMETHODCALLTYPE Interface::*member)(Parameters...)) {
    const HRESULT place =
        callWithNothing(probe_.as<Interface>(), member, std::index_sequence_for<Parameters...>());
    const auto described = find(__uuidof(Interface), name, kind);
    const bool same = described.offset == place * static_cast<int>(sizeof(void*)) &&
                      described.parameters == static_cast<int>(sizeof...(Parameters));
    if (!same) std::printf("%ls\n", name);
    checks::that(same, "a member's place and its number of parameters");
  }

 private:
  struct Described {
    int offset = -1;
    int parameters = -1;
  };

  Described find(REFIID id, const wchar_t* name, INVOKEKIND kind) {
    Object<ITypeInfo> info;
    Object<ITypeInfo> table;
    HREFTYPE reference = 0;
    Described out;
    if (library_->GetTypeInfoOfGuid(id, &info) != S_OK ||
        info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference) != S_OK ||
        info->GetRefTypeInfo(reference, &table) != S_OK)
      return out;
    FUNCDESC* function = nullptr;
    for (UINT at = 0; table->GetFuncDesc(at, &function) == S_OK; ++at) {
      Text found;
      UINT names = 0;
      table->GetNames(function->memid, &found, 1, &names);
      if (found.is(name) && function->invkind == kind) out = {function->oVft, function->cParams};
      table->ReleaseFuncDesc(function);
    }
    return out;
  }

  Object<ITypeLib> library_;
  Probe probe_;
};

void compareAll(Library& library) {
#define MEMBER(interface, name) library.compare(L## #name, INVOKE_FUNC, &interface::name)
#define GETTER(interface, name) \
  library.compare(L## #name, INVOKE_PROPERTYGET, &interface::get_##name)
#define PUTTER(interface, name) \
  library.compare(L## #name, INVOKE_PROPERTYPUT, &interface::put_##name)
#define SETTER(interface, name) \
  library.compare(L## #name, INVOKE_PROPERTYPUTREF, &interface::putref_##name)
#include "early_bound_members.inc"
#undef MEMBER
#undef GETTER
#undef PUTTER
#undef SETTER
}

// A few things a program would do.
void work(const wchar_t* path) {
  Object<_clsVesk> vesk;
  checks::that(CoCreateInstance(__uuidof(clsVesk), nullptr, CLSCTX_INPROC_SERVER,
                                __uuidof(_clsVesk), reinterpret_cast<void**>(&vesk)) == S_OK,
               "an object of the registered class");
  Text connection((std::wstring(L"Data Source=") + path).c_str());
  Object<_kvProfile> profile;
  VARIANT_BOOL opened = VARIANT_TRUE;
  checks::that(
      vesk->OpenConnection(&connection, &profile, &opened) == S_OK && opened == VARIANT_FALSE,
      "OpenConnection");
  Text user(L"Keeper");
  Text wrong(L"wrong");
  Text password(L"sample");
  Text none(L"");
  VARIANT result;
  VariantInit(&result);
  checks::that(vesk->Login(&user, &wrong, &none, &profile, &result) ==
                   static_cast<HRESULT>(0x80040000 + 2506),
               "the number of a wrong password");
  Object<IErrorInfo> error;
  Text source;
  Text description;
  checks::that(GetErrorInfo(0, &error) == S_OK && error->GetSource(&source) == S_OK &&
                   error->GetDescription(&description) == S_OK && source.is(L"Login") &&
                   description.is(L"UserName or Password is incorrect"),
               "its source and description");
  checks::that(
      vesk->Login(&user, &password, &none, &profile, &result) == S_OK && result.vt == VT_EMPTY,
      "Login");

  Object<_clsVeskDocument> document;
  checks::that(vesk->get_Document(&document) == S_OK, "Document");
  Text id(kDocument);
  Text title;
  Text number;
  Text level;
  Text effective;
  Text fields[4];
  Text notes;
  Text location;
  VARIANT_BOOL secured = VARIANT_TRUE;
  VARIANT_BOOL controlled = VARIANT_FALSE;
  LONG current = 0;
  Object<_kvRecordset> rows;
  checks::that(document->LoadData(&id, &title, &number, &level, &effective, &fields[0], &fields[1],
                                  &fields[2], &fields[3], &notes, &secured, &location, &controlled,
                                  &current, &rows) == S_OK,
               "LoadData");
  checks::that(number.is(L"SOP-001") && level.is(L"C") && secured == VARIANT_FALSE &&
                   controlled == VARIANT_TRUE && current == 19,
               "what it gives");
  Text field(L"DocumentTitle");
  checks::that(document->Value(&id, &field, &result) == S_OK &&
                   textOf(result) == L"Control of Documents and Records",
               "Value");
  VariantClear(&result);
  checks::that(document->Value(&id, nullptr, &result) == E_POINTER, "a missing pointer");
  eUserRight right = urCreateNewDocument;
  SHORT other = 0;
  VARIANT_BOOL held = VARIANT_FALSE;
  checks::that(vesk->UserAccess(&right, &other, &held) == S_OK && held == VARIANT_TRUE,
               "an enumeration");
  Object<_clsDocumentQuery> query;
  Object<_clsQuery> face;
  LONG place = 0;
  LONG samePlace = 0;
  checks::that(
      document->AddQuery(&query) == S_OK &&
          query->QueryInterface(__uuidof(_clsQuery), reinterpret_cast<void**>(&face)) == S_OK &&
          query->clsquery_ID(&place) == S_OK && face->id(&samePlace) == S_OK &&
          place == samePlace && place > 0,
      "a query by both its interfaces");
  checks::that(vesk->CloseSession() == S_OK, "CloseSession");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 3) return 2;
  CoInitialize(nullptr);
  {
    Library library(arguments[2]);
    compareAll(library);
  }
  work(arguments[1]);
  CoUninitialize();
  return checks::finish();
}
