// SPDX-License-Identifier: Apache-2.0
#include "classes/session/vesk.h"
#include "com/object.h"
#include "com/objects.h"

namespace kv::com {

namespace {

class VeskObject final : public ComObject<clsVesk, _clsVesk> {
 public:
  using ComObject::ComObject;

  HRESULT STDMETHODCALLTYPE get_Document(_clsVeskDocument** result) override {
    return call(&Class::Document, result);
  }
  HRESULT STDMETHODCALLTYPE get_Manual(_clsVeskManual** result) override {
    return call(&Class::Manual, result);
  }
  HRESULT STDMETHODCALLTYPE get_MainUser(_kvUser** result) override {
    return call(&Class::MainUser, result);
  }
  HRESULT STDMETHODCALLTYPE get_User(_clsVeskUser** result) override {
    return call(&Class::User, result);
  }
  HRESULT STDMETHODCALLTYPE get_DataServer(_kvDataServer** result) override {
    return call(&Class::DataServer, result);
  }
  HRESULT STDMETHODCALLTYPE get_Revision(_clsVeskRevision** result) override {
    return call(&Class::Revision, result);
  }
  HRESULT STDMETHODCALLTYPE Version(VARIANT_BOOL* bIncludeRevisionLevel, BSTR* result) override {
    return call(&Class::Version, bIncludeRevisionLevel, result);
  }
  HRESULT STDMETHODCALLTYPE CloseSession() override { return call(&Class::CloseSession); }
  HRESULT STDMETHODCALLTYPE OpenConnection(BSTR* ConnectionString, _kvProfile** oProfile,
                                           VARIANT_BOOL* result) override {
    return call(&Class::OpenConnection, ConnectionString, oProfile, result);
  }
  HRESULT STDMETHODCALLTYPE Login(BSTR* UserName, BSTR* Password, BSTR* ConnectionString,
                                  _kvProfile** oProfile, VARIANT* result) override {
    return call(&Class::Login, UserName, Password, ConnectionString, oProfile, result);
  }
  HRESULT STDMETHODCALLTYPE GetRecordset(BSTR* cSQL, _kvRecordset** result) override {
    return call(&Class::GetRecordset, cSQL, result);
  }
  HRESULT STDMETHODCALLTYPE Execute(BSTR* cSQL, LONG* Options, LONG* result) override {
    return call(&Class::Execute, cSQL, Options, result);
  }
  HRESULT STDMETHODCALLTYPE urDescription(SHORT* UserRight, BSTR* result) override {
    return call(&Class::urDescription, UserRight, result);
  }
  HRESULT STDMETHODCALLTYPE uoDescription(SHORT* UserRight, BSTR* result) override {
    return call(&Class::uoDescription, UserRight, result);
  }
  HRESULT STDMETHODCALLTYPE aoDescription(SHORT* UserRight, BSTR* result) override {
    return call(&Class::aoDescription, UserRight, result);
  }
  HRESULT STDMETHODCALLTYPE orDescription(SHORT* UserRight, BSTR* result) override {
    return call(&Class::orDescription, UserRight, result);
  }
  HRESULT STDMETHODCALLTYPE UserAccess(eUserRight* Access, SHORT* naccess,
                                       VARIANT_BOOL* result) override {
    return call(&Class::UserAccess, Access, naccess, result);
  }
  HRESULT STDMETHODCALLTYPE OwnerAccess(eOwnerRight* Access, SHORT* naccess,
                                        VARIANT_BOOL* result) override {
    return call(&Class::OwnerAccess, Access, naccess, result);
  }
  HRESULT STDMETHODCALLTYPE UserOption(eUserOption* opt, SHORT* nOpt,
                                       VARIANT_BOOL* result) override {
    return call(&Class::UserOption, opt, nOpt, result);
  }
  HRESULT STDMETHODCALLTYPE AppOption(eApplicationOption* opt, SHORT* nOpt,
                                      VARIANT_BOOL* result) override {
    return call(&Class::AppOption, opt, nOpt, result);
  }
  HRESULT STDMETHODCALLTYPE SetOwnerAccess(SHORT* Access, VARIANT_BOOL* Setting) override {
    return call(&Class::SetOwnerAccess, Access, Setting);
  }
  HRESULT STDMETHODCALLTYPE SetUserOption(SHORT* opt, VARIANT_BOOL* Setting) override {
    return call(&Class::SetUserOption, opt, Setting);
  }
  HRESULT STDMETHODCALLTYPE SetAppOption(SHORT* opt, VARIANT_BOOL* Setting) override {
    return call(&Class::SetAppOption, opt, Setting);
  }
  HRESULT STDMETHODCALLTYPE DocumentManualRelation(BSTR* ManualID, BSTR* DocumentID,
                                                   VARIANT_BOOL* Remove, LONG* recordsaffected,
                                                   VARIANT_BOOL* result) override {
    return call(as<bool(const std::string&, const std::string&, bool, std::int32_t&)>(
                    &Class::DocumentManualRelation),
                ManualID, DocumentID, Remove, recordsaffected, result);
  }
  HRESULT STDMETHODCALLTYPE OwnsRelation(BSTR* DocumentID, BSTR* UserID, VARIANT_BOOL* Remove,
                                         VARIANT_BOOL* result) override {
    return call(&Class::OwnsRelation, DocumentID, UserID, Remove, result);
  }
  HRESULT STDMETHODCALLTYPE ApprovesRelation(BSTR* DocumentID, BSTR* UserID, VARIANT_BOOL* Remove,
                                             VARIANT_BOOL* result) override {
    return call(&Class::ApprovesRelation, DocumentID, UserID, Remove, result);
  }
  HRESULT STDMETHODCALLTYPE DocumentUserRelation(BSTR* DocumentID, BSTR* UserID,
                                                 VARIANT_BOOL* HardCopy, VARIANT_BOOL* Remove,
                                                 LONG* ReleaseID, VARIANT_BOOL* result) override {
    return call(&Class::DocumentUserRelation, DocumentID, UserID, HardCopy, Remove, ReleaseID,
                result);
  }
  HRESULT STDMETHODCALLTYPE ManualUserRelation(BSTR* ManualID, BSTR* UserID, VARIANT_BOOL* HardCopy,
                                               BSTR* CopyNumber, VARIANT_BOOL* Remove,
                                               VARIANT_BOOL* result) override {
    return call(&Class::ManualUserRelation, ManualID, UserID, HardCopy, CopyNumber, Remove, result);
  }
  HRESULT STDMETHODCALLTYPE Releases(BSTR* UserID, BSTR* ManualID, BSTR* DocumentID,
                                     LONG* manualqueryid, LONG* documentqueryid, LONG* userqueryid,
                                     VARIANT_BOOL* HardCopies, _kvRecordset** result) override {
    return call(&Class::Releases, UserID, ManualID, DocumentID, manualqueryid, documentqueryid,
                userqueryid, HardCopies, result);
  }
  HRESULT STDMETHODCALLTYPE ReleaseValue(LONG* ReleaseID, BSTR* FieldName,
                                         VARIANT* result) override {
    return call(&Class::ReleaseValue, ReleaseID, FieldName, result);
  }
  HRESULT STDMETHODCALLTYPE SetExternalActionSystem(VARIANT_BOOL* TurnOn, BSTR* ConnectionString,
                                                    VARIANT_BOOL* result) override {
    return call(&Class::SetExternalActionSystem, TurnOn, ConnectionString, result);
  }
  HRESULT STDMETHODCALLTYPE ActionRecord(_kvRecordset** result) override {
    return call(&Class::ActionRecord, result);
  }
  HRESULT STDMETHODCALLTYPE SendActions(_kvRecordset** rsActions, _kvRecordset** rsUsers,
                                        VARIANT* result) override {
    return call(&Class::SendActions, rsActions, rsUsers, result);
  }
  HRESULT STDMETHODCALLTYPE GetActions(BSTR* UserID, VARIANT_BOOL* IncludeClosed,
                                       _kvRecordset** result) override {
    return call(&Class::GetActions, UserID, IncludeClosed, result);
  }
  HRESULT STDMETHODCALLTYPE HasActions(BSTR* UserID, VARIANT_BOOL* result) override {
    return call(&Class::HasActions, UserID, result);
  }
  HRESULT STDMETHODCALLTYPE CompleteCloseAction(BSTR* id, DATE* datecompleted, VARIANT* dateclosed,
                                                VARIANT* result) override {
    return call(&Class::CompleteCloseAction, id, datecompleted, dateclosed, result);
  }
};

}  // namespace

Wrapped* makeObject(Ref<clsVesk> object) { return new VeskObject(std::move(object)); }

}  // namespace kv::com
