// SPDX-License-Identifier: Apache-2.0
#include "com/fields_enumerator.h"

#include <algorithm>

#include "com/com_error.h"
#include "com/counted.h"
#include "com/objects.h"

namespace kv::com {

namespace {

class FieldsEnumerator final : public Counted<IEnumVARIANT> {
 public:
  FieldsEnumerator(Ref<Fields> fields, std::int32_t place)
      : fields_(std::move(fields)), place_(place) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* out, ULONG* fetched) override {
    if (out == nullptr) return E_POINTER;
    ULONG given = 0;
    const HRESULT result = guarded([&] {
      for (; given < wanted && place_ < fields_->Count(); ++given, ++place_) {
        out[given].pdispVal = wrap((*fields_)(place_));
        out[given].vt = VT_DISPATCH;
      }
    });
    if (fetched != nullptr) *fetched = given;
    if (FAILED(result)) return result;
    return given == wanted ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    return guarded([&] {
      const auto left = static_cast<ULONG>(fields_->Count() - place_);
      place_ += static_cast<std::int32_t>(std::min(count, left));
    });
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    place_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** out) override {
    if (out == nullptr) return E_POINTER;
    return guarded([&] { *out = new FieldsEnumerator(fields_, place_); });
  }

 private:
  Ref<Fields> fields_;
  std::int32_t place_;
};

}  // namespace

IUnknown* makeEnumerator(Ref<Fields> fields, std::int32_t place) {
  return new FieldsEnumerator(std::move(fields), place);
}

}  // namespace kv::com
