// SPDX-License-Identifier: Apache-2.0
#include "com/object.h"
#include "com/objects.h"
#include "com/rows_array.h"
#include "common/convert.h"
#include "recordset/recordset.h"

namespace kv::com {

namespace {

class RecordsetObject final : public ComObject<Recordset, _kvRecordset> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE get_Fields(_kvFields** result) override {
    return guarded([&] { give(fields(), &pointed(result)); });
  }
  HRESULT STDMETHODCALLTYPE Open() override { return call(&Class::Open); }
  HRESULT STDMETHODCALLTYPE Close() override { return call(&Class::Close); }
  HRESULT STDMETHODCALLTYPE get_State(LONG* result) override { return call(&Class::State, result); }
  HRESULT STDMETHODCALLTYPE get_EditMode(LONG* result) override {
    return call(&Class::EditMode, result);
  }
  HRESULT STDMETHODCALLTYPE get_CursorType(LONG* result) override {
    return call(as<std::int32_t() const>(&Class::CursorType), result);
  }
  HRESULT STDMETHODCALLTYPE put_CursorType(LONG value) override {
    return call(as<void(std::int32_t)>(&Class::CursorType), value);
  }
  HRESULT STDMETHODCALLTYPE get_LockType(LONG* result) override {
    return call(as<std::int32_t() const>(&Class::LockType), result);
  }
  HRESULT STDMETHODCALLTYPE put_LockType(LONG value) override {
    return call(as<void(std::int32_t)>(&Class::LockType), value);
  }
  HRESULT STDMETHODCALLTYPE get_EOF(VARIANT_BOOL* result) override {
    return call(&Class::Eof, result);
  }
  HRESULT STDMETHODCALLTYPE get_BOF(VARIANT_BOOL* result) override {
    return call(&Class::Bof, result);
  }
  HRESULT STDMETHODCALLTYPE get_RecordCount(LONG* result) override {
    return call(&Class::RecordCount, result);
  }
  HRESULT STDMETHODCALLTYPE Move(LONG NumRecords, VARIANT Start) override {
    return call(&Class::Move, NumRecords, Start);
  }
  HRESULT STDMETHODCALLTYPE MoveFirst() override { return call(&Class::MoveFirst); }
  HRESULT STDMETHODCALLTYPE MoveLast() override { return call(&Class::MoveLast); }
  HRESULT STDMETHODCALLTYPE MoveNext() override { return call(&Class::MoveNext); }
  HRESULT STDMETHODCALLTYPE MovePrevious() override { return call(&Class::MovePrevious); }
  HRESULT STDMETHODCALLTYPE Find(BSTR Criteria, LONG SkipRows, LONG Direction,
                                 VARIANT Start) override {
    return call(&Class::Find, Criteria, SkipRows, Direction, Start);
  }
  HRESULT STDMETHODCALLTYPE get_Bookmark(VARIANT* result) override {
    return call(as<Variant() const>(&Class::Bookmark), result);
  }
  HRESULT STDMETHODCALLTYPE put_Bookmark(VARIANT value) override {
    return call(as<void(const Variant&)>(&Class::Bookmark), value);
  }
  HRESULT STDMETHODCALLTYPE get_AbsolutePosition(LONG* result) override {
    return call(as<std::int32_t() const>(&Class::AbsolutePosition), result);
  }
  HRESULT STDMETHODCALLTYPE put_AbsolutePosition(LONG value) override {
    return call(as<void(std::int32_t)>(&Class::AbsolutePosition), value);
  }
  HRESULT STDMETHODCALLTYPE AddNew() override { return call(as<void()>(&Class::AddNew)); }
  HRESULT STDMETHODCALLTYPE Update() override { return call(as<void()>(&Class::Update)); }
  HRESULT STDMETHODCALLTYPE CancelUpdate() override { return call(&Class::CancelUpdate); }
  HRESULT STDMETHODCALLTYPE Delete() override { return call(&Class::Delete); }
  HRESULT STDMETHODCALLTYPE Requery() override { return call(&Class::Requery); }
  HRESULT STDMETHODCALLTYPE GetRows(LONG Rows, VARIANT Start, VARIANT Fields,
                                    VARIANT* result) override {
    return guarded([&] {
      toRowsArray(
          held()->GetRows(static_cast<std::int32_t>(Rows), fromVariant(Start), names(Fields)),
          pointed(result));
    });
  }
  HRESULT STDMETHODCALLTYPE Clone(_kvRecordset** result) override {
    return call(&Class::Clone, result);
  }
  HRESULT STDMETHODCALLTYPE get_Filter(BSTR* result) override {
    return call(as<const std::string&() const>(&Class::Filter), result);
  }
  HRESULT STDMETHODCALLTYPE put_Filter(BSTR value) override {
    return call(as<void(const std::string&)>(&Class::Filter), value);
  }
  HRESULT STDMETHODCALLTYPE get_Sort(BSTR* result) override {
    return call(as<const std::string&() const>(&Class::Sort), result);
  }
  HRESULT STDMETHODCALLTYPE put_Sort(BSTR value) override {
    return call(as<void(const std::string&)>(&Class::Sort), value);
  }
  HRESULT STDMETHODCALLTYPE Supports(LONG CursorOptions, VARIANT_BOOL* result) override {
    return call(&Class::Supports, CursorOptions, result);
  }

 private:
  // The fields live in the set and keep it.
  [[nodiscard]] Ref<kv::Fields> fields() const {
    return std::shared_ptr<kv::Fields>(held().shared(), &held()->Fields());
  }
  [[nodiscard]] std::string name(const VARIANT& field) const {
    const Variant value = plainValue(field);
    return value.isNumber() ? held()->Fields(toInt32(value))->Name() : toText(value);
  }
  // One field or an array of them, each by name or place.
  [[nodiscard]] std::vector<std::string> names(const VARIANT& given) const {
    const VARIANT& wanted = target(given);
    if (wanted.vt == VT_EMPTY || isLeftOut(wanted)) return {};
    if ((wanted.vt & VT_ARRAY) == 0) return {name(wanted)};
    SAFEARRAY* array = (wanted.vt & VT_BYREF) != 0 ? *wanted.pparray : wanted.parray;
    if ((wanted.vt & VT_TYPEMASK) != VT_VARIANT || SafeArrayGetDim(array) != 1)
      raise(kTypeMismatch);
    LONG first = 0;
    LONG last = -1;
    SafeArrayGetLBound(array, 1, &first);
    SafeArrayGetUBound(array, 1, &last);
    std::vector<std::string> out;
    for (LONG at = first; at <= last; ++at) {
      OwnedVariant field;
      if (FAILED(SafeArrayGetElement(array, &at, &field))) raise(kTypeMismatch);
      out.push_back(name(*field));
    }
    return out;
  }
};

}  // namespace

Wrapped* makeObject(Ref<Recordset> object) { return new RecordsetObject(std::move(object)); }

}  // namespace kv::com
