// SPDX-License-Identifier: Apache-2.0
// What documents, manuals and revisions have in common: the way back to the root, a data server of
// their own, opening and log-in.
#pragma once

#include "classes/session/vesk.h"
#include "com/object.h"

namespace kv::com {

template <class T, class Default>
class ChildObject : public ComObject<T, Default> {
 public:
  using ComObject<T, Default>::ComObject;

  HRESULT STDMETHODCALLTYPE get_oVesk(_clsVesk** result) override {
    return this->call(as<const Ref<clsVesk>&() const>(&T::oVesk), result);
  }
  HRESULT STDMETHODCALLTYPE putref_oVesk(_clsVesk* value) override {
    return this->call(as<void(const Ref<clsVesk>&)>(&T::oVesk), value);
  }
  HRESULT STDMETHODCALLTYPE get_DataServer(_kvDataServer** result) override {
    return this->call(as<const Ref<kvDataServer>&() const>(&T::DataServer), result);
  }
  HRESULT STDMETHODCALLTYPE putref_DataServer(_kvDataServer* value) override {
    return this->call(as<void(const Ref<kvDataServer>&)>(&T::DataServer), value);
  }
  HRESULT STDMETHODCALLTYPE OpenConnection(BSTR* ConnectionString, _kvProfile** oProfile,
                                           VARIANT* result) override {
    return this->call(&T::OpenConnection, ConnectionString, oProfile, result);
  }
  HRESULT STDMETHODCALLTYPE Login(VARIANT* result) override {
    return this->call(&T::Login, result);
  }
};

}  // namespace kv::com
