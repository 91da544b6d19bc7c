// SPDX-License-Identifier: Apache-2.0
#include "com/object.h"
#include "com/objects.h"
#include "data/profile.h"

namespace kv::com {

namespace {

class ProfileObject final : public ComObject<kvProfile, _kvProfile> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* result) override {
    return call(&Class::ConnectionString, result);
  }
  HRESULT STDMETHODCALLTYPE get_UserID(BSTR* result) override {
    return call(&Class::UserID, result);
  }
  HRESULT STDMETHODCALLTYPE get_UserName(BSTR* result) override {
    return call(&Class::UserName, result);
  }
  HRESULT STDMETHODCALLTYPE get_Rights(BSTR* result) override {
    return call(as<const std::string&() const>(&Class::Rights), result);
  }
  HRESULT STDMETHODCALLTYPE put_Rights(BSTR value) override {
    return call(as<void(const std::string&)>(&Class::Rights), value);
  }
  HRESULT STDMETHODCALLTYPE HasRight(SHORT Number, VARIANT_BOOL* result) override {
    return call(&Class::HasRight, Number, result);
  }
  HRESULT STDMETHODCALLTYPE get_Administrator(SHORT* result) override {
    return call(&Class::Administrator, result);
  }
  HRESULT STDMETHODCALLTYPE get_OwnerOverride(LONG* result) override {
    return call(&Class::OwnerOverride, result);
  }
  HRESULT STDMETHODCALLTYPE Value(BSTR Key, VARIANT* result) override {
    return call(&Class::Value, Key, result);
  }
  HRESULT STDMETHODCALLTYPE Store(BSTR Key, VARIANT Value) override {
    return call(&Class::Store, Key, Value);
  }
  HRESULT STDMETHODCALLTYPE Close() override { return call(&Class::Close); }
};

}  // namespace

Wrapped* makeObject(Ref<kvProfile> object) { return new ProfileObject(std::move(object)); }

}  // namespace kv::com
