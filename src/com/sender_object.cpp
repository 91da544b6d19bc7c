// SPDX-License-Identifier: Apache-2.0
#include "com/object.h"
#include "com/objects.h"
#include "user/sender.h"

namespace kv::com {

namespace {

class SenderObject final : public ComObject<kvSender, _kvSender> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE Send(_kvRecordset* rsActions, VARIANT* result) override {
    return call(&Class::Send, rsActions, result);
  }
};

}  // namespace

Wrapped* makeObject(Ref<kvSender> object) { return new SenderObject(std::move(object)); }

}  // namespace kv::com
