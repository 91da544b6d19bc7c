// SPDX-License-Identifier: Apache-2.0
#include "com/object.h"
#include "com/objects.h"
#include "data/connection.h"

namespace kv::com {

namespace {

class ConnectionObject final : public ComObject<kvConnection, _kvConnection> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE OpenRecordset(BSTR SQL, LONG CursorType, LONG LockType, LONG Options,
                                          _kvRecordset** result) override {
    return call(&Class::OpenRecordset, SQL, CursorType, LockType, Options, result);
  }
  HRESULT STDMETHODCALLTYPE Execute(BSTR SQL, LONG* RecordsAffected, LONG Options) override {
    return call(&Class::Execute, SQL, RecordsAffected, Options);
  }
  HRESULT STDMETHODCALLTYPE Close() override { return call(&Class::Close); }
  HRESULT STDMETHODCALLTYPE BeginTrans() override { return call(&Class::BeginTrans); }
  HRESULT STDMETHODCALLTYPE CommitTrans() override { return call(&Class::CommitTrans); }
  HRESULT STDMETHODCALLTYPE RollbackTrans() override { return call(&Class::RollbackTrans); }
};

}  // namespace

Wrapped* makeObject(Ref<kvConnection> object) { return new ConnectionObject(std::move(object)); }

}  // namespace kv::com
