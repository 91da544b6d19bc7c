// SPDX-License-Identifier: Apache-2.0
#include "com/members.h"

#include <array>
#include <map>
#include <memory>
#include <mutex>

#include "com/type_library.h"

namespace kv::com {

namespace {

void require(HRESULT result) {
  if (FAILED(result)) throw Members::Failure{result};
}

// Releases what the platform has handed out.
struct Releasing {
  void operator()(IUnknown* object) const { object->Release(); }
};
template <class T>
using Held = std::unique_ptr<T, Releasing>;

template <class T, class Get>
Held<T> held(Get get) {
  T* out = nullptr;
  require(get(&out));
  return Held<T>(out);
}

template <class Read>
void withAttributes(ITypeInfo& info, Read read) {
  TYPEATTR* attributes = nullptr;
  require(info.GetTypeAttr(&attributes));
  const TYPEATTR copy = *attributes;
  info.ReleaseTypeAttr(attributes);
  read(copy);
}

// A type with a name: an enumeration is a number, an interface an object.
void readNamed(ITypeInfo& info, HREFTYPE reference, MemberParameter& out) {
  const auto named =
      held<ITypeInfo>([&](ITypeInfo** p) { return info.GetRefTypeInfo(reference, p); });
  withAttributes(*named, [&out](const TYPEATTR& attributes) {
    if (attributes.typekind == TKIND_ENUM) {
      out.type = VT_I4;
    } else {
      out.type = VT_DISPATCH;
      out.interfaceId = attributes.guid;
    }
  });
}

// Pointers in front of a type are taken off: one belongs to an interface, one more says that the
// argument is passed by reference.
void readType(ITypeInfo& info, const TYPEDESC& declared, MemberParameter& out) {
  const TYPEDESC* type = &declared;
  int pointers = 0;
  for (; type->vt == VT_PTR; type = type->lptdesc) ++pointers;
  out.type = type->vt;
  if (type->vt == VT_USERDEFINED) readNamed(info, type->hreftype, out);
  if (out.type == VT_DISPATCH || out.type == VT_UNKNOWN) {
    if (type->vt == VT_USERDEFINED) --pointers;
  }
  if (out.type == VT_INT) out.type = VT_I4;
  out.byReference = pointers > 0;
}

Member readMember(ITypeInfo& info, const FUNCDESC& function) {
  Member out;
  out.id = function.memid;
  out.kind = function.invkind;
  out.slot = static_cast<ULONG_PTR>(function.oVft);
  for (SHORT at = 0; at < function.cParams; ++at) {
    const ELEMDESC& element = function.lprgelemdescParam[at];
    const USHORT flags = element.paramdesc.wParamFlags;
    MemberParameter parameter;
    readType(info, element.tdesc, parameter);
    if ((flags & PARAMFLAG_FRETVAL) != 0) {
      out.result = parameter.type;
      continue;
    }
    parameter.optional = (flags & PARAMFLAG_FOPT) != 0;
    VariantInit(&parameter.preset);
    // Presets are numbers, so that their bytes can be copied.
    if ((flags & PARAMFLAG_FHASDEFAULT) != 0)
      parameter.preset = element.paramdesc.pparamdescex->varDefaultValue;
    out.parameters.push_back(parameter);
  }
  return out;
}

struct LessGuid {
  bool operator()(const GUID& a, const GUID& b) const noexcept {
    return memcmp(&a, &b, sizeof(GUID)) < 0;
  }
};

}  // namespace

const Members& Members::of(REFIID interfaceId) {
  static std::mutex mutex;
  static std::map<GUID, std::unique_ptr<Members>, LessGuid> known;
  const std::lock_guard lock(mutex);
  auto& members = known[interfaceId];
  if (members == nullptr) {
    auto reading = std::make_unique<Members>();
    reading->read(interfaceId);
    members = std::move(reading);
  }
  return *members;
}

void Members::read(REFIID interfaceId) {
  const auto library = held<ITypeLib>([](ITypeLib** p) { return typeLibrary(p); });
  auto info =
      held<ITypeInfo>([&](ITypeInfo** p) { return library->GetTypeInfoOfGuid(interfaceId, p); });
  // Of the two views that a dual interface has, the one with virtual functions.
  HREFTYPE reference = 0;
  require(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
  const auto table =
      held<ITypeInfo>([&](ITypeInfo** p) { return info->GetRefTypeInfo(reference, p); });
  withAttributes(*table, [&](const TYPEATTR& attributes) {
    for (WORD at = 0; at < attributes.cFuncs; ++at) {
      FUNCDESC* function = nullptr;
      require(table->GetFuncDesc(at, &function));
      members_.push_back(readMember(*table, *function));
      table->ReleaseFuncDesc(function);
    }
  });
  info_ = info.release();
}

const Member* Members::find(DISPID id, WORD kinds) const noexcept {
  for (const Member& member : members_)
    if (member.id == id && (member.kind & kinds) != 0) return &member;
  return nullptr;
}

}  // namespace kv::com
