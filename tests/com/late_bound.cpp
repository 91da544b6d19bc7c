// SPDX-License-Identifier: Apache-2.0
// A client bound late, with what the scripting host of the tests cannot do: named arguments,
// variables of every kind by reference, numbers of every kind, text that is none.
//   late_bound.exe REGISTER

#include <algorithm>
#include <vector>

#include "checks.h"
#include "client.h"
// Needs client.h.
#include "com/kvvesk_idl.h"

namespace {

struct Named {
  const wchar_t* name;
  VARIANT value;
};

VARIANT number(LONG value) {
  VARIANT out;
  out.vt = VT_I4;
  out.lVal = value;
  return out;
}

VARIANT truth(bool value) {
  VARIANT out;
  out.vt = VT_BOOL;
  out.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return out;
}

// Not freed: a test ends.
VARIANT text(const wchar_t* value) {
  VARIANT out;
  out.vt = VT_BSTR;
  out.bstrVal = SysAllocString(value);
  return out;
}

VARIANT leftOut() {
  VARIANT out;
  out.vt = VT_ERROR;
  out.scode = DISP_E_PARAMNOTFOUND;
  return out;
}

VARIANT object(IDispatch* value) {
  VARIANT out;
  out.vt = VT_DISPATCH;
  out.pdispVal = value;
  return out;
}

VARIANT reference(VARTYPE type, void* place) {
  VARIANT out;
  out.vt = static_cast<VARTYPE>(type | VT_BYREF);
  out.byref = place;
  return out;
}

struct Answer {
  HRESULT status = S_OK;
  VARIANT value{};
  EXCEPINFO error{};
};

Answer call(IDispatch* on, WORD kinds, const wchar_t* member, std::vector<VARIANT> arguments,
            const std::vector<Named>& named = {}) {
  Answer out;
  std::vector<const wchar_t*> names{member};
  for (const auto& one : named) names.push_back(one.name);
  std::vector<DISPID> ids(names.size());
  out.status = on->GetIDsOfNames(IID_NULL, const_cast<wchar_t**>(names.data()),
                                 static_cast<UINT>(names.size()), LOCALE_USER_DEFAULT, ids.data());
  if (FAILED(out.status)) return out;
  for (auto one = named.begin(); one != named.end(); ++one) arguments.push_back(one->value);
  std::reverse(arguments.begin(), arguments.end());
  std::vector<DISPID> namedIds(ids.begin() + 1, ids.end());
  std::reverse(namedIds.begin(), namedIds.end());
  if ((kinds & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0)
    namedIds.push_back(DISPID_PROPERTYPUT);
  DISPPARAMS parameters{arguments.data(), namedIds.data(), static_cast<UINT>(arguments.size()),
                        static_cast<UINT>(namedIds.size())};
  out.status = on->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, kinds, &parameters, &out.value,
                          &out.error, nullptr);
  return out;
}

Answer get(IDispatch* on, const wchar_t* member, std::vector<VARIANT> arguments = {},
           const std::vector<Named>& named = {}) {
  return call(on, DISPATCH_METHOD | DISPATCH_PROPERTYGET, member, std::move(arguments), named);
}

bool raised(const Answer& answer, std::uint32_t code, const wchar_t* source) {
  return answer.status == DISP_E_EXCEPTION && answer.error.scode == static_cast<HRESULT>(code) &&
         answer.error.bstrSource != nullptr && std::wstring(answer.error.bstrSource) == source;
}

LONG countOf(const Answer& rows) {
  if (rows.status != S_OK || rows.value.vt != VT_DISPATCH || rows.value.pdispVal == nullptr)
    return -1;
  return get(rows.value.pdispVal, L"RecordCount").value.lVal;
}

void named(IDispatch* vesk) {
  const LONG hard = countOf(
      get(vesk, L"Releases",
          {text(L"User3"), leftOut(), leftOut(), leftOut(), leftOut(), leftOut(), truth(true)}));
  const LONG both[2] = {
      countOf(
          get(vesk, L"Releases", {}, {{L"UserID", text(L"User3")}, {L"HardCopies", truth(true)}})),
      countOf(get(vesk, L"releases", {text(L"User3")}, {{L"HARDCOPIES", truth(true)}}))};
  checks::that(hard > 0 && both[0] == hard && both[1] == hard, "named arguments");
  checks::that(
      get(vesk, L"Releases", {}, {{L"Nobody", text(L"User3")}}).status == DISP_E_UNKNOWNNAME,
      "a name that no argument has");
  checks::that(get(vesk, L"Releases", {text(L"User3")}, {{L"UserID", text(L"User4")}}).status ==
                   DISP_E_BADPARAMCOUNT,
               "an argument twice");
  checks::that(get(vesk, L"GetRecordset", {text(L"Select ID From Users"), text(L"ID")}).status ==
                   DISP_E_BADPARAMCOUNT,
               "an argument too many");
  checks::that(get(vesk, L"HasActions", {leftOut()}).status == DISP_E_PARAMNOTOPTIONAL,
               "an argument that is not optional");
}

void byReference(IDispatch* document, IDispatch* revision) {
  BSTR title = SysAllocString(L"before");
  VARIANT level;
  VariantInit(&level);
  SHORT controlled = 0;
  SHORT current = 0;
  VARIANT inner = text(L"");
  VARIANT outer = reference(VT_VARIANT, &inner);
  VARIANT ignored;
  VariantInit(&ignored);
  const Answer read =
      get(document, L"LoadData",
          {text(L"User5010522091231"), reference(VT_BSTR, &title), reference(VT_VARIANT, &outer),
           reference(VT_VARIANT, &level), reference(VT_VARIANT, &ignored), text(L""), text(L""),
           text(L""), text(L""), text(L""), truth(false), text(L""),
           reference(VT_BOOL, &controlled), reference(VT_I2, &current)});
  checks::that(read.status == S_OK, "LoadData");
  checks::that(std::wstring(title) == L"Control of Documents and Records",
               "into a variable of the declared kind");
  checks::that(inner.vt == VT_BSTR && std::wstring(inner.bstrVal) == L"SOP-001",
               "into a variable behind two references");
  checks::that(level.vt == VT_BSTR && std::wstring(level.bstrVal) == L"C",
               "into one that was Empty");
  checks::that(controlled == VARIANT_TRUE, "into a truth value");
  checks::that(current == 19, "into a variable of a narrower kind");

  IDispatch* approvals = nullptr;
  VARIANT any[10];
  for (auto& one : any) VariantInit(&one);
  std::vector<VARIANT> arguments{number(23)};
  for (auto& one : any) arguments.push_back(reference(VT_VARIANT, &one));
  arguments.push_back(reference(VT_DISPATCH, &approvals));
  checks::that(get(revision, L"LoadRevisionData", arguments).value.boolVal == VARIANT_TRUE &&
                   approvals != nullptr,
               "into a variable for objects");
  IDispatch* first = approvals;
  checks::that(get(revision, L"LoadRevisionData", arguments).status == S_OK &&
                   approvals != nullptr && approvals != first,
               "and again");
  if (approvals != nullptr) approvals->Release();
}

void kindsOfNumbers(IDispatch* revision) {
  VARIANT of[6];
  of[0].vt = VT_I8;
  of[0].llVal = 19;
  of[1].vt = VT_UI4;
  of[1].ulVal = 19;
  of[2].vt = VT_CY;
  of[2].cyVal.int64 = 190000;
  of[3].vt = VT_DECIMAL;
  VarDecFromI4(19, &of[3].decVal);
  of[3].vt = VT_DECIMAL;
  of[4].vt = VT_UI1;
  of[4].bVal = 19;
  of[5] = text(L"19");
  for (const auto& one : of)
    checks::that(countOf(get(revision, L"GetRevRS", {one})) == 1, "a number of another kind");
  VARIANT large;
  large.vt = VT_I8;
  large.llVal = 1LL << 40;
  checks::that(raised(get(revision, L"GetRevRS", {large}), 0x800A0006, L"KvVesk"),
               "a number that is too large");
}

void badArguments(IDispatch* vesk, IDispatch* document) {
  const wchar_t half[] = {0xD83D, L'x', 0};
  checks::that(raised(get(vesk, L"HasActions", {text(half)}), 0x800A0005, L"KvVesk"),
               "text that is none");
  VARIANT array;
  array.vt = VT_ARRAY | VT_VARIANT;
  array.parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
  checks::that(raised(get(vesk, L"HasActions", {array}), 0x800A000D, L"KvVesk"), "an array");
  Object<IDispatch> foreign;
  CLSID id;
  CLSIDFromProgID(L"Scripting.FileSystemObject", &id);
  CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                   reinterpret_cast<void**>(&foreign));
  checks::that(raised(get(vesk, L"SendActions", {object(foreign.get())}), 0x800A000D, L"KvVesk"),
               "an object of somebody else's");
  checks::that(get(vesk, L"NoSuchMember").status == DISP_E_UNKNOWNNAME, "no such member");

  // Without a place for it, the error is where clients that are bound early look for it.
  DISPID member = 0;
  auto* name = const_cast<wchar_t*>(L"SaveQuery");
  document->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &member);
  VARIANT nothing = object(nullptr);
  DISPPARAMS parameters{&nothing, nullptr, 1, 0};
  Object<IErrorInfo> error;
  Text source;
  checks::that(document->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                nullptr, nullptr, nullptr) == static_cast<HRESULT>(0x800A005B) &&
                   GetErrorInfo(0, &error) == S_OK && error->GetSource(&source) == S_OK &&
                   source.is(L"KvVesk"),
               "an error without a place for it");
}

void properties(IDispatch* vesk, IDispatch* document) {
  checks::that(call(document, DISPATCH_PROPERTYPUT, L"oVesk", {object(vesk)}).status == S_OK,
               "an object assigned as a value");
  checks::that(call(document, DISPATCH_PROPERTYPUTREF, L"oVesk", {object(vesk)}).status == S_OK,
               "an object assigned as an object");
  checks::that(call(vesk, DISPATCH_PROPERTYPUT, L"Document", {object(document)}).status ==
                   DISP_E_MEMBERNOTFOUND,
               "a property that is only read");
}

void typeInformation(IDispatch* vesk) {
  Object<ITypeInfo> info;
  Object<IProvideClassInfo> provider;
  Object<ITypeInfo> ofClass;
  Text name;
  Text className;
  checks::that(vesk->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info) == S_OK &&
                   info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr) == S_OK &&
                   name.is(L"_clsVesk"),
               "type information");
  checks::that(
      vesk->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&provider)) == S_OK &&
          provider->GetClassInfo(&ofClass) == S_OK &&
          ofClass->GetDocumentation(MEMBERID_NIL, &className, nullptr, nullptr, nullptr) == S_OK &&
          className.is(L"clsVesk"),
      "and that of the class");
}

void enumerate(IDispatch* vesk) {
  const Answer rows = get(vesk, L"GetRecordset", {text(L"Select ID, UserID, UserName From Users")});
  const Answer fields = get(rows.value.pdispVal, L"Fields");
  const Answer made = get(fields.value.pdispVal, L"_NewEnum");
  Object<IEnumVARIANT> fieldsInTurn;
  checks::that(made.value.vt == VT_UNKNOWN && made.value.punkVal != nullptr &&
                   made.value.punkVal->QueryInterface(
                       IID_IEnumVARIANT, reinterpret_cast<void**>(&fieldsInTurn)) == S_OK,
               "an enumerator");
  VARIANT got[4];
  ULONG count = 0;
  checks::that(fieldsInTurn->Next(4, got, &count) == S_FALSE && count == 3, "all of them");
  fieldsInTurn->Reset();
  fieldsInTurn->Skip(2);
  Object<IEnumVARIANT> copy;
  checks::that(fieldsInTurn->Clone(&copy) == S_OK && copy->Next(1, got, nullptr) == S_OK &&
                   std::wstring(get(got[0].pdispVal, L"Name").value.bstrVal) == L"UserName",
               "a copy goes on from where it was made");
  checks::that(copy->Next(1, got, &count) == S_FALSE && count == 0, "nothing is left");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 2) return 2;
  CoInitialize(nullptr);
  CLSID id;
  Object<IDispatch> vesk;
  checks::that(CLSIDFromProgID(L"KvVesk.clsVesk.1", &id) == S_OK &&
                   CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                    reinterpret_cast<void**>(&vesk)) == S_OK,
               "an object by its versioned name");
  const std::wstring connection = std::wstring(L"Data Source=") + arguments[1];
  checks::that(get(vesk.get(), L"OpenConnection", {text(connection.c_str())}).status == S_OK &&
                   get(vesk.get(), L"Login", {text(L"Keeper"), text(L"sample")}).status == S_OK,
               "a session");
  IDispatch* document = get(vesk.get(), L"Document").value.pdispVal;
  IDispatch* revision = get(vesk.get(), L"Revision").value.pdispVal;
  named(vesk.get());
  byReference(document, revision);
  kindsOfNumbers(revision);
  badArguments(vesk.get(), document);
  properties(vesk.get(), document);
  typeInformation(vesk.get());
  enumerate(vesk.get());
  checks::that(get(vesk.get(), L"CloseSession").status == S_OK, "closed");
  return checks::finish();
}
