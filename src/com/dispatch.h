// SPDX-License-Identifier: Apache-2.0
// Late binding: calls by name, with arguments of any kind that can be made into the declared ones.
//
// The platform's own would refuse a variable of a script where a member takes an argument of a
// definite type by reference. Here the value is converted, and what the member writes goes back
// into the variable. What is passed as an expression gets nothing back.
#pragma once

#include <span>

#include "com/platform.h"

namespace kv::com {

// One of the interfaces of an object.
struct DispatchFace {
  GUID interfaceId;
  IUnknown* pointer;  // to that interface's table of virtual functions
};

struct DispatchCall {
  DISPID id;
  WORD kinds;  // DISPATCH_METHOD and the like
  DISPPARAMS* arguments;
  VARIANT* result;
  EXCEPINFO* error;
  UINT* badArgument;
};

// The type information of an interface or class.
[[nodiscard]] HRESULT typeInfo(REFIID id, ITypeInfo** out) noexcept;
// Looks at the faces in their order; identifiers differ from face to face.
[[nodiscard]] HRESULT idsOfNames(std::span<const DispatchFace> faces, LPOLESTR* names, UINT count,
                                 DISPID* ids) noexcept;
[[nodiscard]] HRESULT invoke(std::span<const DispatchFace> faces,
                             const DispatchCall& call) noexcept;

}  // namespace kv::com
