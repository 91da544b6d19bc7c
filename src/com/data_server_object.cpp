// SPDX-License-Identifier: Apache-2.0
#include "com/object.h"
#include "com/objects.h"
#include "data/data_server.h"

namespace kv::com {

namespace {

class DataServerObject final : public ComObject<kvDataServer, _kvDataServer> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE OpenConnection(BSTR ConnectionString, _kvProfile* oProfile) override {
    return call(&Class::OpenConnection, ConnectionString, oProfile);
  }
  HRESULT STDMETHODCALLTYPE SetTables(BSTR Config, BSTR Groups, BSTR Queries, BSTR Keywords,
                                      BSTR Reporting, BSTR Profiles, BSTR Reserved1,
                                      BSTR Reserved2) override {
    return call(&Class::SetTables, Config, Groups, Queries, Keywords, Reporting, Profiles,
                Reserved1, Reserved2);
  }
  HRESULT STDMETHODCALLTYPE Close() override { return call(&Class::Close); }
  HRESULT STDMETHODCALLTYPE get_Config(_kvConfig** result) override {
    return call(&Class::Config, result);
  }
  HRESULT STDMETHODCALLTYPE get_Connection(_kvConnection** result) override {
    return call(&Class::Connection, result);
  }
  HRESULT STDMETHODCALLTYPE get_Profile(_kvProfile** result) override {
    return call(as<const Ref<kvProfile>&() const>(&Class::Profile), result);
  }
  HRESULT STDMETHODCALLTYPE putref_Profile(_kvProfile* value) override {
    return call(as<void(const Ref<kvProfile>&)>(&Class::Profile), value);
  }
  HRESULT STDMETHODCALLTYPE get_Queries(_kvQueries** result) override {
    return call(&Class::Queries, result);
  }
  HRESULT STDMETHODCALLTYPE get_StatementLog(BSTR* result) override {
    return call(as<std::string() const>(&Class::StatementLog), result);
  }
  HRESULT STDMETHODCALLTYPE put_StatementLog(BSTR value) override {
    return call(as<void(const std::string&)>(&Class::StatementLog), value);
  }
};

}  // namespace

Wrapped* makeObject(Ref<kvDataServer> object) { return new DataServerObject(std::move(object)); }

}  // namespace kv::com
