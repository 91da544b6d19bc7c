// SPDX-License-Identifier: Apache-2.0
#include "com/class_factory.h"

#include <new>

#include "com/com_error.h"
#include "com/counted.h"
#include "com/module.h"

namespace kv::com {

namespace {

class ClassFactory final : public Counted<IClassFactory> {
 public:
  explicit ClassFactory(const Creatable& creatable) : creatable_(creatable) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    IUnknown* object = nullptr;
    HRESULT result = guarded([&] { object = creatable_.make(); });
    if (FAILED(result)) return result;
    result = object->QueryInterface(id, out);
    object->Release();
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    if (lock != FALSE)
      Uses::add();
    else
      Uses::drop();
    return S_OK;
  }

 private:
  const Creatable& creatable_;
};

}  // namespace

HRESULT makeFactory(const Creatable& creatable, REFIID id, void** out) noexcept {
  auto* factory = new (std::nothrow) ClassFactory(creatable);
  if (factory == nullptr) return E_OUTOFMEMORY;
  const HRESULT result = factory->QueryInterface(id, out);
  factory->Release();
  return result;
}

}  // namespace kv::com
