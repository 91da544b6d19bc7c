// SPDX-License-Identifier: Apache-2.0
#include "classes/session/vesk.h"
#include "classes/users/user.h"
#include "com/object.h"
#include "com/objects.h"

namespace kv::com {

namespace {

class UserObject final : public ComObject<clsVeskUser, _clsVeskUser> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE get_oVesk(_clsVesk** result) override {
    return call(as<const Ref<clsVesk>&() const>(&Class::oVesk), result);
  }
  HRESULT STDMETHODCALLTYPE putref_oVesk(_clsVesk* value) override {
    return call(as<void(const Ref<clsVesk>&)>(&Class::oVesk), value);
  }
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
  HRESULT STDMETHODCALLTYPE GetRecordset(BSTR* cSQL, _kvRecordset** result) override {
    return call(&Class::GetRecordset, cSQL, result);
  }
  HRESULT STDMETHODCALLTYPE UserIDFromID(LONG* id, BSTR* result) override {
    return call(&Class::UserIDFromID, id, result);
  }
  HRESULT STDMETHODCALLTYPE UserID(BSTR* UserName, BSTR* result) override {
    return call(&Class::UserID, UserName, result);
  }
  HRESULT STDMETHODCALLTYPE getUserName(BSTR* id, BSTR* result) override {
    return call(&Class::getUserName, id, result);
  }
  HRESULT STDMETHODCALLTYPE LoadUser(_kvRecordset** rs, BSTR* UserID, BSTR* UserName, BSTR* Alias,
                                     BSTR* Password, BSTR* title, BSTR* email, BSTR* WorkgroupID,
                                     VARIANT_BOOL* result) override {
    return call(&Class::LoadUser, rs, UserID, UserName, Alias, Password, title, email, WorkgroupID,
                result);
  }
  HRESULT STDMETHODCALLTYPE SaveUser(_kvRecordset** rs, BSTR* UserID, BSTR* UserName, BSTR* Alias,
                                     BSTR* Password, BSTR* title, BSTR* email,
                                     VARIANT_BOOL* result) override {
    return call(&Class::SaveUser, rs, UserID, UserName, Alias, Password, title, email, result);
  }
  HRESULT STDMETHODCALLTYPE NewUser(_kvRecordset** rs, BSTR* UserName, BSTR* Alias, BSTR* Password,
                                    BSTR* title, BSTR* email, BSTR* WorkgroupID,
                                    BSTR* result) override {
    return call(&Class::NewUser, rs, UserName, Alias, Password, title, email, WorkgroupID, result);
  }
  HRESULT STDMETHODCALLTYPE DeleteUser(BSTR* id, VARIANT_BOOL* result) override {
    return call(&Class::DeleteUser, id, result);
  }
  HRESULT STDMETHODCALLTYPE GetTheseUsers(_kvRecordset** rs, _kvRecordset** result) override {
    return call(&Class::GetTheseUsers, rs, result);
  }
  HRESULT STDMETHODCALLTYPE GetQuery(LONG* QueryID, _clsUserQuery** result) override {
    return call(&Class::GetQuery, QueryID, result);
  }
  HRESULT STDMETHODCALLTYPE NewQuery(_clsUserQuery** result) override {
    return call(&Class::NewQuery, result);
  }
  HRESULT STDMETHODCALLTYPE SaveQuery(_clsUserQuery** oquery) override {
    return call(&Class::SaveQuery, oquery);
  }
  HRESULT STDMETHODCALLTYPE HardCopies(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::HardCopies, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE HardCopiesForViewDoc(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::HardCopiesForViewDoc, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE HardCopiesForViewMan(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::HardCopiesForViewMan, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE VirtualCopies(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::VirtualCopies, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE VirtualCopiesForViewDoc(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::VirtualCopiesForViewDoc, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE VirtualCopiesForViewMan(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::VirtualCopiesForViewMan, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE Owns(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::Owns, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE OwnsForView(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::OwnsForView, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE Approves(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::Approves, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE ApprovesForView(BSTR* UserID, _kvRecordset** result) override {
    return call(&Class::ApprovesForView, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE ReleaseDoc(BSTR* UserID, BSTR* DocumentID, VARIANT_BOOL* HardCopy,
                                       LONG* result) override {
    return call(&Class::ReleaseDoc, UserID, DocumentID, HardCopy, result);
  }
  HRESULT STDMETHODCALLTYPE ReleaseMan(BSTR* UserID, BSTR* ManualID, VARIANT_BOOL* HardCopy,
                                       BSTR* result) override {
    return call(&Class::ReleaseMan, UserID, ManualID, HardCopy, result);
  }
  HRESULT STDMETHODCALLTYPE SetOwner(BSTR* UserID, BSTR* DocumentID, VARIANT* result) override {
    return call(&Class::SetOwner, UserID, DocumentID, result);
  }
  HRESULT STDMETHODCALLTYPE SetApprover(BSTR* UserID, BSTR* DocumentID, VARIANT* result) override {
    return call(&Class::SetApprover, UserID, DocumentID, result);
  }
  HRESULT STDMETHODCALLTYPE ReturnDoc(BSTR* ReleaseID, VARIANT_BOOL* result) override {
    return call(&Class::ReturnDoc, ReleaseID, result);
  }
  HRESULT STDMETHODCALLTYPE ReturnMan(BSTR* UserID, BSTR* ManualID, VARIANT_BOOL* HardCopy,
                                      BSTR* CopyNumber, VARIANT_BOOL* result) override {
    return call(&Class::ReturnMan, UserID, ManualID, HardCopy, CopyNumber, result);
  }
  HRESULT STDMETHODCALLTYPE UnSetOwner(BSTR* UserID, BSTR* DocumentID,
                                       VARIANT_BOOL* result) override {
    return call(&Class::UnSetOwner, UserID, DocumentID, result);
  }
  HRESULT STDMETHODCALLTYPE UnSetApprover(BSTR* UserID, BSTR* DocumentID,
                                          VARIANT_BOOL* result) override {
    return call(&Class::UnSetApprover, UserID, DocumentID, result);
  }
  HRESULT STDMETHODCALLTYPE UserIsOwner(BSTR* id, BSTR* DocumentID, VARIANT_BOOL* result) override {
    return call(&Class::UserIsOwner, id, DocumentID, result);
  }
  HRESULT STDMETHODCALLTYPE UserIsApprover(BSTR* id, BSTR* DocumentID,
                                           VARIANT_BOOL* result) override {
    return call(&Class::UserIsApprover, id, DocumentID, result);
  }
  HRESULT STDMETHODCALLTYPE ChangeWorkGroup(BSTR* UserID, BSTR* WorkgroupID,
                                            VARIANT* result) override {
    return call(&Class::ChangeWorkGroup, UserID, WorkgroupID, result);
  }
  HRESULT STDMETHODCALLTYPE WorkGroup(LONG* WorkgroupID, BSTR* result) override {
    return call(&Class::WorkGroup, WorkgroupID, result);
  }
  HRESULT STDMETHODCALLTYPE WorkgroupID(BSTR* WorkGroup, BSTR* result) override {
    return call(&Class::WorkgroupID, WorkGroup, result);
  }
  HRESULT STDMETHODCALLTYPE Workgroups(_kvRecordset** result) override {
    return call(&Class::Workgroups, result);
  }
  HRESULT STDMETHODCALLTYPE Labels(_kvProfile** ouser, _kvRecordset** result) override {
    return call(&Class::Labels, ouser, result);
  }
  HRESULT STDMETHODCALLTYPE SaveLabel(_kvProfile** ouser, BSTR* FieldName, BSTR* FieldLabel,
                                      SHORT* FieldType) override {
    return call(&Class::SaveLabel, ouser, FieldName, FieldLabel, FieldType);
  }
  HRESULT STDMETHODCALLTYPE Keywords(_kvProfile** ouser, BSTR* FieldName,
                                     _kvRecordset** result) override {
    return call(&Class::Keywords, ouser, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE AddKeyword(_kvProfile** ouser, BSTR* FieldName,
                                       BSTR* Keyword) override {
    return call(&Class::AddKeyword, ouser, FieldName, Keyword);
  }
  HRESULT STDMETHODCALLTYPE DeleteKeyword(_kvProfile** ouser, BSTR* FieldName,
                                          BSTR* Keyword) override {
    return call(&Class::DeleteKeyword, ouser, FieldName, Keyword);
  }
  HRESULT STDMETHODCALLTYPE NewAction(BSTR* Subject, VARIANT* Description, BSTR* Orig,
                                      BSTR* Assignee) override {
    return call(&Class::NewAction, Subject, Description, Orig, Assignee);
  }
  HRESULT STDMETHODCALLTYPE ActionUserQueries(BSTR* UserID, BSTR* GroupID,
                                              _kvRecordset** result) override {
    return call(&Class::ActionUserQueries, UserID, GroupID, result);
  }
};

}  // namespace

Wrapped* makeObject(Ref<clsVeskUser> object) { return new UserObject(std::move(object)); }

}  // namespace kv::com
