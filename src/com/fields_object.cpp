// SPDX-License-Identifier: Apache-2.0
#include "com/fields_enumerator.h"
#include "com/object.h"
#include "com/objects.h"
#include "common/convert.h"
#include "recordset/fields.h"

namespace kv::com {

namespace {

class FieldsObject final : public ComObject<Fields, _kvFields> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE get_Item(VARIANT Index, _kvField** result) override {
    return guarded([&] { give(item(Index), &pointed(result)); });
  }
  HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** result) override {
    return guarded([&] { pointed(result) = makeEnumerator(held()); });
  }
  HRESULT STDMETHODCALLTYPE get_Count(LONG* result) override { return call(&Class::Count, result); }
  HRESULT STDMETHODCALLTYPE Append(BSTR Name, LONG Type, LONG DefinedSize,
                                   LONG Attributes) override {
    return call(&Class::Append, Name, Type, DefinedSize, Attributes);
  }

 private:
  // By name, or by place for a number.
  [[nodiscard]] Ref<Field> item(const VARIANT& index) const {
    const Variant value = plainValue(index);
    return value.isNumber() ? (*held())(toInt32(value)) : (*held())(toText(value));
  }
};

}  // namespace

Wrapped* makeObject(Ref<Fields> object) { return new FieldsObject(std::move(object)); }

}  // namespace kv::com
