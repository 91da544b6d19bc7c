// SPDX-License-Identifier: Apache-2.0
#include "com/object.h"
#include "com/objects.h"
#include "recordset/fields.h"

namespace kv::com {

namespace {

class FieldObject final : public ComObject<Field, _kvField> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE get_Value(VARIANT* result) override {
    return call(as<Variant() const>(&Class::Value), result);
  }
  HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) override {
    return call(as<void(const Variant&)>(&Class::Value), value);
  }
  HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) override { return call(&Class::Name, result); }
  HRESULT STDMETHODCALLTYPE get_OriginalValue(VARIANT* result) override {
    return call(&Class::OriginalValue, result);
  }
  HRESULT STDMETHODCALLTYPE get_Type(LONG* result) override { return call(&Class::Type, result); }
  HRESULT STDMETHODCALLTYPE get_DefinedSize(LONG* result) override {
    return call(&Class::DefinedSize, result);
  }
  HRESULT STDMETHODCALLTYPE get_ActualSize(LONG* result) override {
    return call(&Class::ActualSize, result);
  }
  HRESULT STDMETHODCALLTYPE get_Attributes(LONG* result) override {
    return call(&Class::Attributes, result);
  }
};

}  // namespace

Wrapped* makeObject(Ref<Field> object) { return new FieldObject(std::move(object)); }

}  // namespace kv::com
