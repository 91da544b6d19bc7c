// SPDX-License-Identifier: Apache-2.0
#include "classes/queries/document_query.h"
#include "classes/queries/manual_query.h"
#include "classes/queries/user_query.h"
#include "com/object.h"
#include "com/objects.h"

namespace kv::com {

namespace {

// The members of the interface that all queries share.
template <class T, class Base>
class QueryMembers : public Base {
 protected:
  using Base::call;

 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE LoadQuery(_kvRecordset** rs) override {
    return call(&T::LoadQuery, rs);
  }
  HRESULT STDMETHODCALLTYPE SaveQuery(_kvRecordset** rs) override {
    return call(&T::SaveQuery, rs);
  }
  HRESULT STDMETHODCALLTYPE JetSQL(BSTR* result) override { return call(&T::JetSQL, result); }
  HRESULT STDMETHODCALLTYPE CrystalSQL(BSTR* result) override {
    return call(&T::CrystalSQL, result);
  }
  HRESULT STDMETHODCALLTYPE SetQueryValue(BSTR* FieldName, VARIANT* Value) override {
    return call(&T::SetQueryValue, FieldName, Value);
  }
  HRESULT STDMETHODCALLTYPE GetQueryValue(BSTR* FieldName, VARIANT* result) override {
    return call(&T::GetQueryValue, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE id(LONG* result) override { return call(&T::id, result); }
};

using QueryObject = QueryMembers<clsQuery, ComObject<clsQuery, _clsQuery>>;

// The three kinds differ in their interface's name only.
template <class T>
class StoredQueryObject final : public QueryMembers<T, ComObject<T, InterfaceOf<T>, _clsQuery>> {
  using Base = QueryMembers<T, ComObject<T, InterfaceOf<T>, _clsQuery>>;
  using Base::call;

 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE clsquery_SetQueryValue(BSTR* FieldName, VARIANT* Value) override {
    return call(&T::clsquery_SetQueryValue, FieldName, Value);
  }
  HRESULT STDMETHODCALLTYPE clsquery_GetQueryValue(BSTR* FieldName, VARIANT* result) override {
    return call(&T::clsquery_GetQueryValue, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE clsquery_CrystalSQL(BSTR* result) override {
    return call(&T::clsquery_CrystalSQL, result);
  }
  HRESULT STDMETHODCALLTYPE clsquery_JetSQL(BSTR* result) override {
    return call(&T::clsquery_JetSQL, result);
  }
  HRESULT STDMETHODCALLTYPE clsquery_LoadQuery(_kvRecordset** rs) override {
    return call(&T::clsquery_LoadQuery, rs);
  }
  HRESULT STDMETHODCALLTYPE clsquery_SaveQuery(_kvRecordset** rs) override {
    return call(&T::clsquery_SaveQuery, rs);
  }
  HRESULT STDMETHODCALLTYPE clsquery_ID(LONG* result) override {
    return call(&T::clsquery_ID, result);
  }
};

}  // namespace

Wrapped* makeObject(Ref<clsQuery> object) { return new QueryObject(std::move(object)); }
Wrapped* makeObject(Ref<clsDocumentQuery> object) {
  return new StoredQueryObject<clsDocumentQuery>(std::move(object));
}
Wrapped* makeObject(Ref<clsManualQuery> object) {
  return new StoredQueryObject<clsManualQuery>(std::move(object));
}
Wrapped* makeObject(Ref<clsUserQuery> object) {
  return new StoredQueryObject<clsUserQuery>(std::move(object));
}

}  // namespace kv::com
