// SPDX-License-Identifier: Apache-2.0
#include "com/object.h"
#include "com/objects.h"
#include "data/query_store.h"

namespace kv::com {

namespace {

class QueriesObject final : public ComObject<kvQueries, _kvQueries> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE Open(LONG ID, _kvRecordset** result) override {
    return call(&Class::Open, ID, result);
  }
  HRESULT STDMETHODCALLTYPE Add(BSTR Name, LONG* result) override {
    return call(&Class::Add, Name, result);
  }
  HRESULT STDMETHODCALLTYPE Delete(LONG ID) override { return call(&Class::Delete, ID); }
};

}  // namespace

Wrapped* makeObject(Ref<kvQueries> object) { return new QueriesObject(std::move(object)); }

}  // namespace kv::com
