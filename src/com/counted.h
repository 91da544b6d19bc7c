// SPDX-License-Identifier: Apache-2.0
// An object of the DLL's own that has one interface and stands for nothing in the library: it
// counts its references and keeps the DLL loaded.
#pragma once

#include <atomic>

#include "com/module.h"

namespace kv::com {

template <class Interface>
class Counted : public Interface {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  Counted(Counted&&) = delete;
  Counted& operator=(Counted&&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = id == IID_IUnknown || id == __uuidof(Interface) ? this : nullptr;
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~Counted() = default;

 private:
  std::atomic<ULONG> references_ = 1;
  Use use_;
};

}  // namespace kv::com
