// SPDX-License-Identifier: Apache-2.0
#include "com/object.h"
#include "com/objects.h"
#include "data/config.h"

namespace kv::com {

namespace {

class ConfigObject final : public ComObject<kvConfig, _kvConfig> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE Value(BSTR Key, VARIANT* result) override {
    return call(&Class::Value, Key, result);
  }
  HRESULT STDMETHODCALLTYPE Store(BSTR Key, VARIANT Value) override {
    return call(&Class::Store, Key, Value);
  }
  HRESULT STDMETHODCALLTYPE Label(BSTR Key, SHORT Form, BSTR* result) override {
    return call(&Class::Label, Key, Form, result);
  }
};

}  // namespace

Wrapped* makeObject(Ref<kvConfig> object) { return new ConfigObject(std::move(object)); }

}  // namespace kv::com
