// SPDX-License-Identifier: Apache-2.0
#include "com/dispatch.h"

#include <deque>
#include <vector>

#include "com/com_error.h"
#include "com/dispatch_argument.h"
#include "com/members.h"
#include "com/type_library.h"
#include "common/error.h"

namespace kv::com {

namespace {

struct Found {
  const Member* member = nullptr;
  IUnknown* pointer = nullptr;
};

Found findMember(std::span<const DispatchFace> faces, DISPID id, WORD kinds) {
  for (const auto& face : faces)
    if (const Member* member = Members::of(face.interfaceId).find(id, kinds))
      return {member, face.pointer};
  return {};
}

bool isPut(WORD kinds) noexcept {
  return (kinds & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
}

// The caller's arguments in the member's order; a named one goes where its number says, the value
// of a property last. What does not fit remains for the default member of what the member gives.
struct Placed {
  std::vector<VARIANT*> arguments;  // nullptr for one that was left out
  std::vector<VARIANT*> remaining;
};

HRESULT place(const Member& member, const DISPPARAMS& given, Placed& out) {
  const std::size_t count = member.parameters.size();
  out.arguments.assign(count, nullptr);
  for (UINT at = 0; at < given.cNamedArgs; ++at) {
    const DISPID name = given.rgdispidNamedArgs[at];
    const std::size_t to = name == DISPID_PROPERTYPUT ? count - 1 : static_cast<std::size_t>(name);
    if (name < 0 && name != DISPID_PROPERTYPUT) return DISP_E_NONAMEDARGS;
    if (to >= count || out.arguments[to] != nullptr) return DISP_E_PARAMNOTFOUND;
    out.arguments[to] = &given.rgvarg[at];
  }
  std::size_t to = 0;
  for (UINT at = given.cArgs; at-- > given.cNamedArgs;) {
    if (to == count) {
      out.remaining.push_back(&given.rgvarg[at]);
      continue;
    }
    if (out.arguments[to] != nullptr) return DISP_E_BADPARAMCOUNT;
    out.arguments[to++] = &given.rgvarg[at];
  }
  return S_OK;
}

HRESULT failed(HRESULT result, EXCEPINFO* error) noexcept {
  if (error != nullptr && takeErrorInfo(result, *error)) return DISP_E_EXCEPTION;
  return result;
}

// Calls the virtual function. Conversions that fail, and what the member raises, are reported in
// the same way.
HRESULT callMember(const Found& found, const Placed& placed, const DispatchCall& call,
                   VARIANT& result) {
  const Member& member = *found.member;
  std::deque<DispatchArgument> arguments;  // they refer to their own parts
  const HRESULT prepared = guarded([&] {
    for (std::size_t at = 0; at < member.parameters.size(); ++at)
      arguments.emplace_back(member.parameters[at], placed.arguments[at]);
  });
  if (FAILED(prepared)) {
    if (call.badArgument != nullptr && !placed.arguments.empty())
      *call.badArgument = static_cast<UINT>(placed.arguments.size() - 1 - arguments.size());
    return failed(prepared, call.error);
  }

  std::vector<VARTYPE> types;
  std::vector<VARIANT*> values;
  for (auto& argument : arguments) {
    types.push_back(argument.passedType());
    values.push_back(argument.passed());
  }
  OwnedVariant answer;
  VARIANT answerPlace;
  if (member.result != VT_EMPTY) {
    if (member.result != VT_VARIANT) answer->vt = member.result;
    answerPlace.vt = static_cast<VARTYPE>(VT_BYREF | member.result);
    answerPlace.byref = member.result == VT_VARIANT ? static_cast<void*>(&answer) : &answer->llVal;
    types.push_back(answerPlace.vt);
    values.push_back(&answerPlace);
  }
  OwnedVariant status;
  SetErrorInfo(0, nullptr);
  HRESULT done =
      DispCallFunc(found.pointer, member.slot, CC_STDCALL, VT_ERROR,
                   static_cast<UINT>(types.size()), types.data(), values.data(), &status);
  if (SUCCEEDED(done)) done = status->scode;
  const HRESULT returned = guarded([&] {
    for (auto& argument : arguments) argument.writeBack();
  });
  if (FAILED(done) || FAILED(returned)) return failed(FAILED(done) ? done : returned, call.error);
  std::swap(result, *answer);
  return S_OK;
}

// Goes on with the default member of an object that a property gave: rs("Name") is
// rs.Fields.Item("Name").
HRESULT callDefault(const VARIANT& object, const std::vector<VARIANT*>& remaining,
                    const DispatchCall& call) {
  if (object.vt != VT_DISPATCH || object.pdispVal == nullptr) return DISP_E_BADPARAMCOUNT;
  std::vector<VARIANT> reversed;
  DISPID putName = DISPID_PROPERTYPUT;
  DISPPARAMS next{};
  if (isPut(call.kinds)) {
    reversed.push_back(call.arguments->rgvarg[0]);
    next.rgdispidNamedArgs = &putName;
    next.cNamedArgs = 1;
  }
  for (auto at = remaining.size(); at-- > 0;) reversed.push_back(*remaining[at]);
  next.rgvarg = reversed.data();
  next.cArgs = static_cast<UINT>(reversed.size());
  return object.pdispVal->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, call.kinds, &next,
                                 call.result, call.error, call.badArgument);
}

// A property that is an object and cannot be assigned itself passes the value on to the default
// member of that object: rs("Name") = 1.
HRESULT putThrough(std::span<const DispatchFace> faces, const DispatchCall& call) {
  const Found getter = findMember(faces, call.id, DISPATCH_PROPERTYGET);
  if (getter.member == nullptr) return DISP_E_MEMBERNOTFOUND;
  DISPPARAMS withoutValue = *call.arguments;
  ++withoutValue.rgvarg;
  --withoutValue.cArgs;
  withoutValue.cNamedArgs = 0;
  withoutValue.rgdispidNamedArgs = nullptr;
  Placed placed;
  HRESULT result = place(*getter.member, withoutValue, placed);
  if (FAILED(result)) return result;
  OwnedVariant object;
  result = callMember(getter, placed, call, *object);
  return FAILED(result) ? result : callDefault(*object, placed.remaining, call);
}

HRESULT callFound(const Found& found, const DispatchCall& call) {
  Placed placed;
  HRESULT result = place(*found.member, *call.arguments, placed);
  if (FAILED(result)) return result;
  const bool isObjectProperty =
      found.member->kind == INVOKE_PROPERTYGET && found.member->result == VT_DISPATCH;
  if (!placed.remaining.empty() && !isObjectProperty) return DISP_E_BADPARAMCOUNT;
  for (std::size_t at = 0; at < placed.arguments.size(); ++at)
    if (!found.member->parameters[at].optional &&
        (placed.arguments[at] == nullptr || isLeftOut(*placed.arguments[at])))
      return DISP_E_PARAMNOTOPTIONAL;
  OwnedVariant answer;
  result = callMember(found, placed, call, *answer);
  if (FAILED(result)) return result;
  if (!placed.remaining.empty()) return callDefault(*answer, placed.remaining, call);
  if (call.result != nullptr) {
    VariantInit(call.result);
    std::swap(*call.result, *answer);
  }
  return S_OK;
}

}  // namespace

HRESULT typeInfo(REFIID id, ITypeInfo** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  ITypeLib* library = nullptr;
  HRESULT result = typeLibrary(&library);
  if (FAILED(result)) return result;
  result = library->GetTypeInfoOfGuid(id, out);
  library->Release();
  return result;
}

HRESULT idsOfNames(std::span<const DispatchFace> faces, LPOLESTR* names, UINT count,
                   DISPID* ids) noexcept {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  try {
    HRESULT result = DISP_E_UNKNOWNNAME;
    for (const auto& face : faces) {
      result = Members::of(face.interfaceId).info()->GetIDsOfNames(names, count, ids);
      if (ids[0] != DISPID_UNKNOWN && result != DISP_E_UNKNOWNNAME) break;
    }
    return result;
  } catch (const Members::Failure& failure) {
    return failure.result;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT invoke(std::span<const DispatchFace> faces, const DispatchCall& call) noexcept {
  if (call.arguments == nullptr) return E_INVALIDARG;
  if (call.arguments->cNamedArgs > call.arguments->cArgs) return E_INVALIDARG;
  try {
    if (!isPut(call.kinds)) {
      const Found found = findMember(faces, call.id, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
      return found.member != nullptr ? callFound(found, call) : DISP_E_MEMBERNOTFOUND;
    }
    if (call.arguments->cArgs == 0) return DISP_E_BADPARAMCOUNT;
    // Hosts do not agree on which of the two kinds an object is assigned by.
    const Found found = findMember(faces, call.id, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
    return found.member != nullptr ? callFound(found, call) : putThrough(faces, call);
  } catch (const Members::Failure& failure) {
    return failure.result;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace kv::com
