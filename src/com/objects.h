// SPDX-License-Identifier: Apache-2.0
// Objects of the library as objects of the platform, and back. While one of ours is alive, the same
// object of the library is always the same object of the platform.
#pragma once

#include <memory>

#include "com/interfaces.h"
#include "common/error.h"
#include "common/ref.h"

namespace kv::com {

// By which an object of this DLL is known from others.
// {8E0E4C57-6B4C-4F0B-9E6A-0C5D0B7A41D2}
inline constexpr GUID kWrappedId = {
    0x8e0e4c57, 0x6b4c, 0x4f0b, {0x9e, 0x6a, 0x0c, 0x5d, 0x0b, 0x7a, 0x41, 0xd2}};

class Wrapped : public IUnknown {
 public:
  Wrapped() = default;
  Wrapped(const Wrapped&) = delete;
  Wrapped& operator=(const Wrapped&) = delete;
  Wrapped(Wrapped&&) = delete;
  Wrapped& operator=(Wrapped&&) = delete;

  [[nodiscard]] virtual std::shared_ptr<Object> object() const noexcept = 0;
  // Another reference, unless the last one has just gone.
  [[nodiscard]] virtual bool addRefIfAlive() noexcept = 0;

 protected:
  ~Wrapped() = default;
};

// The library's object behind an object of the platform; nothing for one that is not ours.
[[nodiscard]] std::shared_ptr<Object> wrappedObject(IUnknown* object);

// Which platform object stands for an object of the library; a reference more, or nothing.
[[nodiscard]] Wrapped* findWrapped(const Object* object) noexcept;
void rememberWrapped(const Object* object, Wrapped* wrapped);
void forgetWrapped(const Object* object, const Wrapped* wrapped) noexcept;

// New platform objects, each made in the file of its class.
Wrapped* makeObject(Ref<clsVesk> object);
Wrapped* makeObject(Ref<clsVeskDocument> object);
Wrapped* makeObject(Ref<clsVeskManual> object);
Wrapped* makeObject(Ref<clsVeskRevision> object);
Wrapped* makeObject(Ref<clsVeskUser> object);
Wrapped* makeObject(Ref<clsQuery> object);
Wrapped* makeObject(Ref<clsDocumentQuery> object);
Wrapped* makeObject(Ref<clsManualQuery> object);
Wrapped* makeObject(Ref<clsUserQuery> object);
Wrapped* makeObject(Ref<kvDataServer> object);
Wrapped* makeObject(Ref<kvConfig> object);
Wrapped* makeObject(Ref<kvConnection> object);
Wrapped* makeObject(Ref<kvProfile> object);
Wrapped* makeObject(Ref<kvQueries> object);
Wrapped* makeObject(Ref<kvUser> object);
Wrapped* makeObject(Ref<kvSender> object);
Wrapped* makeObject(Ref<Recordset> object);
Wrapped* makeObject(Ref<Fields> object);
Wrapped* makeObject(Ref<Field> object);

// The platform's object for one of the library, with a reference for the caller; nothing for none.
template <class T>
[[nodiscard]] InterfaceOf<T>* wrap(const Ref<T>& object) {
  if (!object) return nullptr;
  const Object* key = object.get();
  Wrapped* wrapped = findWrapped(key);
  if (wrapped == nullptr) {
    wrapped = makeObject(object);
    rememberWrapped(key, wrapped);
  }
  InterfaceOf<T>* out = nullptr;
  wrapped->QueryInterface(Face<T>::iid(), reinterpret_cast<void**>(&out));
  wrapped->Release();
  return out;  // NOLINT(clang-analyzer-cplusplus.NewDelete): QueryInterface has counted it
}

// The same of an object whose class is not known; raises 13 for one that has no face.
[[nodiscard]] IDispatch* wrapAny(const std::shared_ptr<Object>& object);

// The library's object behind one of the platform. Raises 13 for one that is not ours, or of
// another class.
template <class T>
[[nodiscard]] Ref<T> unwrap(IUnknown* object) {
  if (object == nullptr) return {};
  auto out = std::dynamic_pointer_cast<T>(wrappedObject(object));
  if (out == nullptr) raise(kTypeMismatch);
  return Ref<T>(std::move(out));
}

}  // namespace kv::com
