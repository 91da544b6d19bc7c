// SPDX-License-Identifier: Apache-2.0
#include "classes/manuals/manual.h"
#include "com/child_object.h"
#include "com/objects.h"

namespace kv::com {

namespace {

class ManualObject final : public ChildObject<clsVeskManual, _clsVeskManual> {
 public:
  using ChildObject::ChildObject;

  HRESULT STDMETHODCALLTYPE Records(LONG* filterid, BSTR* SortFields, BSTR* cSQL, BSTR* Fields,
                                    _kvRecordset** result) override {
    return call(
        as<Ref<Recordset>(std::int32_t, const std::string&, std::string&, const std::string&)>(
            &Class::Records),
        filterid, SortFields, cSQL, Fields, result);
  }
  HRESULT STDMETHODCALLTYPE RecordsWithContents(LONG* filterid, BSTR SortFields, BSTR* cSQL,
                                                BSTR* Fields, _kvRecordset** result) override {
    return call(
        as<Ref<Recordset>(std::int32_t, const std::string&, std::string&, const std::string&)>(
            &Class::RecordsWithContents),
        filterid, SortFields, cSQL, Fields, result);
  }
  HRESULT STDMETHODCALLTYPE Record(BSTR* ManualID, _kvRecordset** result) override {
    return call(&Class::Record, ManualID, result);
  }
  HRESULT STDMETHODCALLTYPE LoadData(BSTR* ManualID, BSTR* ManualName, BSTR* user1, BSTR* user2,
                                     BSTR* user3, BSTR* user4, BSTR* Notes,
                                     _kvRecordset** rs) override {
    return call(&Class::LoadData, ManualID, ManualName, user1, user2, user3, user4, Notes, rs);
  }
  HRESULT STDMETHODCALLTYPE SaveData(BSTR* ManualID, BSTR* ManualName, BSTR* user1, BSTR* user2,
                                     BSTR* user3, BSTR* user4, BSTR* Notes,
                                     _kvRecordset** rs) override {
    return call(&Class::SaveData, ManualID, ManualName, user1, user2, user3, user4, Notes, rs);
  }
  HRESULT STDMETHODCALLTYPE Add(BSTR* ManualName, BSTR* user1, BSTR* user2, BSTR* user3,
                                BSTR* user4, BSTR* Notes, _kvRecordset** rs,
                                BSTR* result) override {
    return call(&Class::Add, ManualName, user1, user2, user3, user4, Notes, rs, result);
  }
  HRESULT STDMETHODCALLTYPE Value(BSTR* ManualID, BSTR* FieldName, VARIANT* result) override {
    return call(&Class::Value, ManualID, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE SetValue(BSTR* ManualID, BSTR* FieldName, VARIANT* Value,
                                     VARIANT* result) override {
    return call(&Class::SetValue, ManualID, FieldName, Value, result);
  }
  HRESULT STDMETHODCALLTYPE IDValue(LONG* id, BSTR* FieldName, VARIANT* result) override {
    return call(&Class::IDValue, id, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE HasContents(BSTR* ManualID, VARIANT_BOOL* result) override {
    return call(&Class::HasContents, ManualID, result);
  }
  HRESULT STDMETHODCALLTYPE Delete(BSTR* id, _kvRecordset** rs) override {
    return call(&Class::Delete, id, rs);
  }
  HRESULT STDMETHODCALLTYPE GetQuery(LONG* QueryID, _clsManualQuery** result) override {
    return call(&Class::GetQuery, QueryID, result);
  }
  HRESULT STDMETHODCALLTYPE NewQuery(_clsManualQuery** result) override {
    return call(&Class::NewQuery, result);
  }
  HRESULT STDMETHODCALLTYPE SaveQuery(_clsManualQuery** oquery) override {
    return call(&Class::SaveQuery, oquery);
  }
  HRESULT STDMETHODCALLTYPE Contents(BSTR* Manid, VARIANT_BOOL* AllFields, VARIANT_BOOL* WithManID,
                                     _kvRecordset** result) override {
    return call(&Class::Contents, Manid, AllFields, WithManID, result);
  }
  HRESULT STDMETHODCALLTYPE RepositionContents(BSTR* ManualID, BSTR* docid,
                                               SHORT* position) override {
    return call(&Class::RepositionContents, ManualID, docid, position);
  }
  HRESULT STDMETHODCALLTYPE NextCopyNumber(BSTR* Manid, BSTR* result) override {
    return call(&Class::NextCopyNumber, Manid, result);
  }
  HRESULT STDMETHODCALLTYPE DuplicateCopyNumber(BSTR* ManualID, BSTR* CopyNum,
                                                VARIANT_BOOL* result) override {
    return call(&Class::DuplicateCopyNumber, ManualID, CopyNum, result);
  }
  HRESULT STDMETHODCALLTYPE ChangeCopyNumber(BSTR* ManualID, BSTR* OldNumber,
                                             BSTR* NewNumber) override {
    return call(&Class::ChangeCopyNumber, ManualID, OldNumber, NewNumber);
  }
  HRESULT STDMETHODCALLTYPE AddDocument(BSTR* Manid, BSTR* docid, VARIANT_BOOL* result) override {
    return call(&Class::AddDocument, Manid, docid, result);
  }
  HRESULT STDMETHODCALLTYPE RemoveDocument(BSTR* Manid, BSTR* docid,
                                           VARIANT_BOOL* result) override {
    return call(&Class::RemoveDocument, Manid, docid, result);
  }
  HRESULT STDMETHODCALLTYPE ReleaseCopy(BSTR* Manid, BSTR* UserID, BSTR* CopyNumber,
                                        VARIANT_BOOL* result) override {
    return call(&Class::ReleaseCopy, Manid, UserID, CopyNumber, result);
  }
  HRESULT STDMETHODCALLTYPE CollectCopy(BSTR* Manid, BSTR* UserID, BSTR* CopyNumber,
                                        VARIANT_BOOL* result) override {
    return call(&Class::CollectCopy, Manid, UserID, CopyNumber, result);
  }
  HRESULT STDMETHODCALLTYPE AddUser(BSTR* Manid, BSTR* UserID, VARIANT_BOOL* result) override {
    return call(&Class::AddUser, Manid, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE RemoveUser(BSTR* Manid, BSTR* UserID, VARIANT_BOOL* result) override {
    return call(&Class::RemoveUser, Manid, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE Copies(BSTR* Manid, VARIANT_BOOL* AllFields,
                                   _kvRecordset** result) override {
    return call(&Class::Copies, Manid, AllFields, result);
  }
  HRESULT STDMETHODCALLTYPE Users(BSTR* Manid, VARIANT_BOOL* AllFields,
                                  _kvRecordset** result) override {
    return call(&Class::Users, Manid, AllFields, result);
  }
  HRESULT STDMETHODCALLTYPE PersonalManuals(BSTR* id, VARIANT_BOOL* VirtualCopies,
                                            VARIANT_BOOL* HardCopies,
                                            _kvRecordset** result) override {
    return call(&Class::PersonalManuals, id, VirtualCopies, HardCopies, result);
  }
  HRESULT STDMETHODCALLTYPE PersonalManualsForView(BSTR* id, VARIANT_BOOL* VirtualCopies,
                                                   VARIANT_BOOL* HardCopies,
                                                   _kvRecordset** result) override {
    return call(&Class::PersonalManualsForView, id, VirtualCopies, HardCopies, result);
  }
};

}  // namespace

Wrapped* makeObject(Ref<clsVeskManual> object) { return new ManualObject(std::move(object)); }

}  // namespace kv::com
