// SPDX-License-Identifier: Apache-2.0
#include "classes/documents/document.h"
#include "com/child_object.h"
#include "com/objects.h"

namespace kv::com {

namespace {

class DocumentObject final : public ChildObject<clsVeskDocument, _clsVeskDocument> {
 public:
  using ChildObject::ChildObject;

  HRESULT STDMETHODCALLTYPE Records(LONG* filterid, BSTR* SortFields, BSTR* cSQL, BSTR* Fields,
                                    _kvRecordset** result) override {
    return call(
        as<Ref<Recordset>(std::int32_t, const std::string&, std::string&, const std::string&)>(
            &Class::Records),
        filterid, SortFields, cSQL, Fields, result);
  }
  HRESULT STDMETHODCALLTYPE Record(BSTR* id, _kvRecordset** result) override {
    return call(&Class::Record, id, result);
  }
  HRESULT STDMETHODCALLTYPE LoadData(BSTR* docid, BSTR* title, BSTR* number, BSTR* RevisionLevel,
                                     BSTR* EffectiveDate, BSTR* user1, BSTR* user2, BSTR* user3,
                                     BSTR* user4, BSTR* Notes, VARIANT_BOOL* securitylevel,
                                     BSTR* location, VARIANT_BOOL* Controlled, LONG* currentRevID,
                                     _kvRecordset** rs) override {
    return call(&Class::LoadData, docid, title, number, RevisionLevel, EffectiveDate, user1, user2,
                user3, user4, Notes, securitylevel, location, Controlled, currentRevID, rs);
  }
  HRESULT STDMETHODCALLTYPE Add(BSTR* UserID, BSTR* title, BSTR* number, BSTR* user1, BSTR* user2,
                                BSTR* user3, BSTR* user4, BSTR* Notes, SHORT* securitylevel,
                                BSTR* location, BSTR* RevisionLevel, BSTR* EffectiveDate,
                                VARIANT_BOOL* RevReady, VARIANT_BOOL* Controlled,
                                VARIANT_BOOL* Secured, _kvRecordset** rs, BSTR* result) override {
    return call(&Class::Add, UserID, title, number, user1, user2, user3, user4, Notes,
                securitylevel, location, RevisionLevel, EffectiveDate, RevReady, Controlled,
                Secured, rs, result);
  }
  HRESULT STDMETHODCALLTYPE SaveData(BSTR* id, BSTR* title, BSTR* number, BSTR* user1, BSTR* user2,
                                     BSTR* user3, BSTR* user4, BSTR* Notes, VARIANT_BOOL* Secured,
                                     VARIANT_BOOL* Controlled, BSTR* location, _kvRecordset** rs,
                                     SHORT* result) override {
    return call(&Class::SaveData, id, title, number, user1, user2, user3, user4, Notes, Secured,
                Controlled, location, rs, result);
  }
  HRESULT STDMETHODCALLTYPE Value(BSTR* docid, BSTR* FieldName, VARIANT* result) override {
    return call(&Class::Value, docid, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE SetValue(BSTR* docid, BSTR* FieldName, VARIANT* Value) override {
    return call(&Class::SetValue, docid, FieldName, Value);
  }
  HRESULT STDMETHODCALLTYPE IDValue(LONG* id, BSTR* FieldName, VARIANT* result) override {
    return call(&Class::IDValue, id, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE HasCurrentRevision(BSTR* DocumentID, VARIANT_BOOL* result) override {
    return call(&Class::HasCurrentRevision, DocumentID, result);
  }
  HRESULT STDMETHODCALLTYPE MakeUnControlled(BSTR* docid) override {
    return call(&Class::MakeUnControlled, docid);
  }
  HRESULT STDMETHODCALLTYPE Delete(BSTR* id, VARIANT_BOOL* DeleteFromDocTable) override {
    return call(&Class::Delete, id, DeleteFromDocTable);
  }
  HRESULT STDMETHODCALLTYPE Copies(BSTR* docid, VARIANT_BOOL* AllFields,
                                   _kvRecordset** result) override {
    return call(&Class::Copies, docid, AllFields, result);
  }
  HRESULT STDMETHODCALLTYPE Manuals(BSTR* docid, VARIANT_BOOL* AllFields,
                                    _kvRecordset** result) override {
    return call(&Class::Manuals, docid, AllFields, result);
  }
  HRESULT STDMETHODCALLTYPE Owners(BSTR* docid, VARIANT_BOOL* AllFields, VARIANT_BOOL* IncludeDocID,
                                   _kvRecordset** result) override {
    return call(&Class::Owners, docid, AllFields, IncludeDocID, result);
  }
  HRESULT STDMETHODCALLTYPE Approvers(BSTR* docid, VARIANT_BOOL* AllFields,
                                      _kvRecordset** result) override {
    return call(&Class::Approvers, docid, AllFields, result);
  }
  HRESULT STDMETHODCALLTYPE Users(BSTR* docid, VARIANT_BOOL* AllFields,
                                  _kvRecordset** result) override {
    return call(&Class::Users, docid, AllFields, result);
  }
  HRESULT STDMETHODCALLTYPE DocRevisions(BSTR* docid, _kvRecordset** result) override {
    return call(&Class::DocRevisions, docid, result);
  }
  HRESULT STDMETHODCALLTYPE ReleaseCopy(BSTR* docid, BSTR* UserID, LONG* ReleaseID,
                                        VARIANT_BOOL* result) override {
    return call(&Class::ReleaseCopy, docid, UserID, ReleaseID, result);
  }
  HRESULT STDMETHODCALLTYPE AddUser(BSTR* docid, BSTR* UserID, LONG* ReleaseID,
                                    VARIANT_BOOL* result) override {
    return call(&Class::AddUser, docid, UserID, ReleaseID, result);
  }
  HRESULT STDMETHODCALLTYPE CollectCopy(LONG* cReleaseID, VARIANT_BOOL* result) override {
    return call(&Class::CollectCopy, cReleaseID, result);
  }
  HRESULT STDMETHODCALLTYPE RemoveUser(LONG* cReleaseID, VARIANT_BOOL* result) override {
    return call(&Class::RemoveUser, cReleaseID, result);
  }
  HRESULT STDMETHODCALLTYPE IntoManual(BSTR* docid, BSTR* ManualID, VARIANT_BOOL* result) override {
    return call(&Class::IntoManual, docid, ManualID, result);
  }
  HRESULT STDMETHODCALLTYPE OutofManual(BSTR* docid, BSTR* ManualID,
                                        VARIANT_BOOL* result) override {
    return call(&Class::OutofManual, docid, ManualID, result);
  }
  HRESULT STDMETHODCALLTYPE AddOwner(BSTR* docid, BSTR* UserID, VARIANT_BOOL* result) override {
    return call(&Class::AddOwner, docid, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE RemoveOwner(BSTR* docid, BSTR* UserID, VARIANT_BOOL* result) override {
    return call(&Class::RemoveOwner, docid, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE AddApprover(BSTR* docid, BSTR* UserID, VARIANT_BOOL* result) override {
    return call(&Class::AddApprover, docid, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE RemoveApprover(BSTR* docid, BSTR* UserID,
                                           VARIANT_BOOL* result) override {
    return call(&Class::RemoveApprover, docid, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE PersonalDocuments(BSTR* id, _kvRecordset** result) override {
    return call(&Class::PersonalDocuments, id, result);
  }
  HRESULT STDMETHODCALLTYPE Personals(BSTR* id, VARIANT_BOOL* VirtualCopies,
                                      VARIANT_BOOL* HardCopies, _kvRecordset** result) override {
    return call(&Class::Personals, id, VirtualCopies, HardCopies, result);
  }
  HRESULT STDMETHODCALLTYPE ChangeListOrder(BSTR* docid, BSTR* OldPosition, BSTR* NewPosition,
                                            VARIANT_BOOL* result) override {
    return call(&Class::ChangeListOrder, docid, OldPosition, NewPosition, result);
  }
  HRESULT STDMETHODCALLTYPE GetQuery(LONG* QueryID, _clsDocumentQuery** result) override {
    return call(&Class::GetQuery, QueryID, result);
  }
  HRESULT STDMETHODCALLTYPE AddQuery(_clsDocumentQuery** result) override {
    return call(&Class::AddQuery, result);
  }
  HRESULT STDMETHODCALLTYPE SaveQuery(_clsDocumentQuery** oquery) override {
    return call(&Class::SaveQuery, oquery);
  }
  HRESULT STDMETHODCALLTYPE DeleteQuery(LONG* id) override { return call(&Class::DeleteQuery, id); }
};

}  // namespace

Wrapped* makeObject(Ref<clsVeskDocument> object) { return new DocumentObject(std::move(object)); }

}  // namespace kv::com
