// SPDX-License-Identifier: Apache-2.0
// The platform object around an object of the library: identity, life time, late binding and error
// information. A class adds the members of its interface.
#pragma once

#include <array>
#include <atomic>
#include <utility>

#include "com/call.h"
#include "com/dispatch.h"
#include "com/module.h"
#include "com/objects.h"

namespace kv::com {

// `More` are further interfaces besides the default one; late-bound callers reach their members,
// too.
template <class T, class Default, class... More>
class ComObject : public Default,
                  public More...,
                  public Wrapped,
                  public ISupportErrorInfo,
                  public IProvideClassInfo {
 public:
  explicit ComObject(Ref<T> object) : object_(std::move(object)) {}
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;
  ComObject(ComObject&&) = delete;
  ComObject& operator=(ComObject&&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = find(id);
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      forgetWrapped(object_.get(), this);
      delete this;
    }
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT place, LCID /*language*/, ITypeInfo** out) override {
    return place == 0 ? typeInfo(__uuidof(Default), out) : DISP_E_BADINDEX;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count,
                                          LCID /*language*/, DISPID* ids) override {
    return com::idsOfNames(faces(), names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID /*reserved*/, LCID /*language*/, WORD flags,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* error,
                                   UINT* badArgument) override {
    return com::invoke(faces(), {id, flags, arguments, result, error, badArgument});
  }

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID /*interface*/) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** out) override {
    return typeInfo(Face<T>::clsid(), out);
  }

  [[nodiscard]] std::shared_ptr<Object> object() const noexcept override {
    return object_.shared();
  }
  [[nodiscard]] bool addRefIfAlive() noexcept override {
    ULONG now = references_;
    while (now != 0)
      if (references_.compare_exchange_weak(now, now + 1)) return true;
    return false;
  }

 protected:
  using Class = T;

  virtual ~ComObject() = default;

  [[nodiscard]] const Ref<T>& held() const noexcept { return object_; }

  template <class Member, class... Raw>
  [[nodiscard]] HRESULT call(Member member, Raw... given) noexcept {
    return callOn(*object_, member, given...);
  }

 private:
  [[nodiscard]] void* find(REFIID id) noexcept {
    if (id == IID_IUnknown || id == IID_IDispatch || id == __uuidof(Default))
      return static_cast<Default*>(this);
    if (id == kWrappedId) return static_cast<Wrapped*>(this);
    if (id == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
    if (id == IID_IProvideClassInfo) return static_cast<IProvideClassInfo*>(this);
    void* out = nullptr;
    ((id == __uuidof(More) ? out = static_cast<More*>(this) : nullptr), ...);
    return out;
  }
  [[nodiscard]] std::array<DispatchFace, 1 + sizeof...(More)> faces() noexcept {
    return {DispatchFace{__uuidof(Default), static_cast<Default*>(this)},
            DispatchFace{__uuidof(More), static_cast<More*>(this)}...};
  }

  Ref<T> object_;
  std::atomic<ULONG> references_ = 1;
  Use use_;
};

}  // namespace kv::com
