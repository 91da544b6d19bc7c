#include "com/object.h"
#include "com/objects.h"
#include "queries/query.h"

namespace kv::com {

namespace {

class QueryObject final : public ComObject<clsQuery, _clsQuery> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE LoadQuery(_kvRecordset** rs) override {
    return call(&Class::LoadQuery, rs);
  }
  HRESULT STDMETHODCALLTYPE SaveQuery(_kvRecordset** rs) override {
    return call(&Class::SaveQuery, rs);
  }
  HRESULT STDMETHODCALLTYPE JetSQL(BSTR* result) override { return call(&Class::JetSQL, result); }
  HRESULT STDMETHODCALLTYPE CrystalSQL(BSTR* result) override {
    return call(&Class::CrystalSQL, result);
  }
  HRESULT STDMETHODCALLTYPE SetQueryValue(BSTR* FieldName, VARIANT* Value) override {
    return call(&Class::SetQueryValue, FieldName, Value);
  }
  HRESULT STDMETHODCALLTYPE GetQueryValue(BSTR* FieldName, VARIANT* result) override {
    return call(&Class::GetQueryValue, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE id(LONG* result) override { return call(&Class::id, result); }
};

}  // namespace

Wrapped* makeObject(Ref<clsQuery> object) { return new QueryObject(std::move(object)); }

}  // namespace kv::com
