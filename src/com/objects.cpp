// SPDX-License-Identifier: Apache-2.0
#include "com/objects.h"

#include <mutex>
#include <unordered_map>

#include "classes/documents/document.h"
#include "classes/manuals/manual.h"
#include "classes/revisions/revision.h"
#include "classes/session/vesk.h"
#include "classes/users/user.h"

namespace kv::com {

namespace {

struct Identities {
  std::mutex mutex;
  std::unordered_map<const Object*, Wrapped*> wrapped;
};

Identities& identities() {
  static Identities all;
  return all;
}

template <class... Classes>
struct WrapOneOf {
  static IDispatch* of(const std::shared_ptr<Object>& object) {
    IDispatch* out = nullptr;
    const bool found = ((out = wrapAs<Classes>(object), out != nullptr) || ...);
    if (!found) raise(kTypeMismatch);
    return out;
  }

 private:
  template <class T>
  static IDispatch* wrapAs(const std::shared_ptr<Object>& object) {
    return wrap(Ref<T>(std::dynamic_pointer_cast<T>(object)));
  }
};

}  // namespace

std::shared_ptr<Object> wrappedObject(IUnknown* object) {
  Wrapped* wrapped = nullptr;
  if (FAILED(object->QueryInterface(kWrappedId, reinterpret_cast<void**>(&wrapped))))
    return nullptr;
  auto out = wrapped->object();
  wrapped->Release();
  return out;
}

Wrapped* findWrapped(const Object* object) noexcept {
  auto& all = identities();
  const std::lock_guard lock(all.mutex);
  const auto found = all.wrapped.find(object);
  return found != all.wrapped.end() && found->second->addRefIfAlive() ? found->second : nullptr;
}

void rememberWrapped(const Object* object, Wrapped* wrapped) {
  auto& all = identities();
  const std::lock_guard lock(all.mutex);
  all.wrapped[object] = wrapped;
}

void forgetWrapped(const Object* object, const Wrapped* wrapped) noexcept {
  auto& all = identities();
  const std::lock_guard lock(all.mutex);
  const auto found = all.wrapped.find(object);
  if (found != all.wrapped.end() && found->second == wrapped) all.wrapped.erase(found);
}

IDispatch* wrapAny(const std::shared_ptr<Object>& object) {
  if (object == nullptr) return nullptr;
  return WrapOneOf<Recordset, Field, Fields, kvProfile, kvDataServer, kvConnection, kvConfig,
                   kvQueries, kvUser, kvSender, clsVesk, clsVeskDocument, clsVeskManual,
                   clsVeskRevision, clsVeskUser, clsDocumentQuery, clsManualQuery, clsUserQuery,
                   clsQuery>::of(object);
}

}  // namespace kv::com
