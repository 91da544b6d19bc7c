// SPDX-License-Identifier: Apache-2.0
#include "com/object.h"
#include "com/objects.h"
#include "user/main_user.h"

namespace kv::com {

namespace {

class MainUserObject final : public ComObject<kvUser, _kvUser> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE OpenConnection(BSTR ConnectionString, _kvProfile* oProfile) override {
    return call(&Class::OpenConnection, ConnectionString, oProfile);
  }
  HRESULT STDMETHODCALLTYPE get_DataServer(_kvDataServer** result) override {
    return call(&Class::DataServer, result);
  }
  HRESULT STDMETHODCALLTYPE get_ApplicationCode(BSTR* result) override {
    return call(as<const std::string&() const>(&Class::ApplicationCode), result);
  }
  HRESULT STDMETHODCALLTYPE put_ApplicationCode(BSTR value) override {
    return call(as<void(const std::string&)>(&Class::ApplicationCode), value);
  }
  HRESULT STDMETHODCALLTYPE Login(BSTR UserName, BSTR Password, _kvProfile* oProfile) override {
    return call(&Class::Login, UserName, Password, oProfile);
  }
  HRESULT STDMETHODCALLTYPE get_Profile(_kvProfile** result) override {
    return call(&Class::Profile, result);
  }
  HRESULT STDMETHODCALLTYPE UserValue(BSTR UserID, BSTR FieldName, VARIANT* result) override {
    return call(&Class::UserValue, UserID, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE UserRecords(VARIANT Users, _kvRecordset** result) override {
    return guarded([&] { give(records(Users), &pointed(result)); });
  }
  HRESULT STDMETHODCALLTYPE Sender(_kvSender** result) override {
    return call(&Class::Sender, result);
  }
  HRESULT STDMETHODCALLTYPE CloseAction(BSTR ID, DATE Completed, VARIANT Closed) override {
    return call(&Class::CloseAction, ID, Completed, Closed);
  }

 private:
  // Of a record set, or of the text of a SELECT.
  [[nodiscard]] Ref<Recordset> records(const VARIANT& users) const {
    const Variant value = fromVariant(users);
    if (const auto* object = value.as<Variant::ObjectRef>()) {
      auto set = std::dynamic_pointer_cast<Recordset>(*object);
      if (set == nullptr && *object != nullptr) raise(kTypeMismatch);
      return held()->UserRecords(Ref<Recordset>(std::move(set)));
    }
    return held()->UserRecords(toText(value));
  }
};

}  // namespace

Wrapped* makeObject(Ref<kvUser> object) { return new MainUserObject(std::move(object)); }

}  // namespace kv::com
