// SPDX-License-Identifier: Apache-2.0
#include "classes/revisions/revision.h"
#include "com/child_object.h"
#include "com/objects.h"

namespace kv::com {

namespace {

class RevisionObject final : public ChildObject<clsVeskRevision, _clsVeskRevision> {
 public:
  using ChildObject::ChildObject;

  HRESULT STDMETHODCALLTYPE Add(BSTR* DocumentID, BSTR* RevisionLevel, BSTR* user1, BSTR* user2,
                                BSTR* ChangeDescription, BSTR* location, VARIANT_BOOL* current,
                                BSTR* responsibleid, BSTR* dateEffective, LONG* result) override {
    return call(&Class::Add, DocumentID, RevisionLevel, user1, user2, ChangeDescription, location,
                current, responsibleid, dateEffective, result);
  }
  HRESULT STDMETHODCALLTYPE SaveData(LONG* RevisionID, BSTR* RevisionLevel, BSTR* user1,
                                     BSTR* user2, BSTR* ChangeDescription, BSTR* location,
                                     BSTR* EffectiveDate) override {
    return call(&Class::SaveData, RevisionID, RevisionLevel, user1, user2, ChangeDescription,
                location, EffectiveDate);
  }
  HRESULT STDMETHODCALLTYPE LoadRevisionData(
      LONG* RevisionID, BSTR* DocumentID, SHORT* RoutingStatus, SHORT* RevisionStatus,
      BSTR* RevisionLevel, BSTR* user1, BSTR* user2, BSTR* EffectiveDate, BSTR* ChangeDescription,
      BSTR* location, BSTR* statusstring, _kvRecordset** approvals, VARIANT_BOOL* result) override {
    return call(&Class::LoadRevisionData, RevisionID, DocumentID, RoutingStatus, RevisionStatus,
                RevisionLevel, user1, user2, EffectiveDate, ChangeDescription, location,
                statusstring, approvals, result);
  }
  HRESULT STDMETHODCALLTYPE GetRevRS(LONG* RevID, _kvRecordset** result) override {
    return call(&Class::GetRevRS, RevID, result);
  }
  HRESULT STDMETHODCALLTYPE GetRevApprovalList(LONG* id, _kvRecordset** result) override {
    return call(&Class::GetRevApprovalList, id, result);
  }
  HRESULT STDMETHODCALLTYPE approvals(LONG* RevisionID, _kvRecordset** result) override {
    return call(&Class::approvals, RevisionID, result);
  }
  HRESULT STDMETHODCALLTYPE GetRevFileName(BSTR* RevisionID, VARIANT* result) override {
    return call(&Class::GetRevFileName, RevisionID, result);
  }
  HRESULT STDMETHODCALLTYPE DeleteRevision(LONG* id, VARIANT_BOOL* result) override {
    return call(&Class::DeleteRevision, id, result);
  }
  HRESULT STDMETHODCALLTYPE SetUsersRevisionTo(BSTR* ReleaseID, BSTR* RevisionID,
                                               VARIANT_BOOL* result) override {
    return call(&Class::SetUsersRevisionTo, ReleaseID, RevisionID, result);
  }
  HRESULT STDMETHODCALLTYPE RouteForApproval(_kvRecordset** rs, VARIANT_BOOL* sendaction,
                                             VARIANT* result) override {
    return call(&Class::RouteForApproval, rs, sendaction, result);
  }
  HRESULT STDMETHODCALLTYPE NotifyNextapprover(_kvRecordset** rsrevisions,
                                               _kvRecordset** rsApprovals,
                                               VARIANT_BOOL* sendaction) override {
    return call(&Class::NotifyNextapprover, rsrevisions, rsApprovals, sendaction);
  }
  HRESULT STDMETHODCALLTYPE CanApprove(BSTR* UserID, LONG* RevisionID, BSTR* ApprovingForID,
                                       VARIANT_BOOL* result) override {
    return call(&Class::CanApprove, UserID, RevisionID, ApprovingForID, result);
  }
  HRESULT STDMETHODCALLTYPE ApproveRevision(_kvRecordset** rsrevisions, BSTR* CurrentUserID,
                                            BSTR* UserApproveForID, _kvRecordset** rsApprovals,
                                            VARIANT_BOOL* sendaction,
                                            VARIANT_BOOL* result) override {
    return call(&Class::ApproveRevision, rsrevisions, CurrentUserID, UserApproveForID, rsApprovals,
                sendaction, result);
  }
  HRESULT STDMETHODCALLTYPE RejectRevision(_kvRecordset** rsrevisions, BSTR* CurrentUserID,
                                           BSTR* UserRejectforID, _kvRecordset** rsApprovals,
                                           VARIANT_BOOL* sendaction,
                                           VARIANT_BOOL* result) override {
    return call(&Class::RejectRevision, rsrevisions, CurrentUserID, UserRejectforID, rsApprovals,
                sendaction, result);
  }
  HRESULT STDMETHODCALLTYPE SaveApprovalNotes(BSTR* Notes, BSTR* UserID, LONG* RevID) override {
    return call(&Class::SaveApprovalNotes, Notes, UserID, RevID);
  }
  HRESULT STDMETHODCALLTYPE SetAsCurrentRevision(_kvRecordset** rsRevision,
                                                 _kvRecordset** rsDocuments,
                                                 VARIANT_BOOL* SendActions) override {
    return call(&Class::SetAsCurrentRevision, rsRevision, rsDocuments, SendActions);
  }
  HRESULT STDMETHODCALLTYPE RevStatusDescription(_kvRecordset** rs, BSTR* result) override {
    return call(&Class::RevStatusDescription, rs, result);
  }
};

}  // namespace

Wrapped* makeObject(Ref<clsVeskRevision> object) { return new RevisionObject(std::move(object)); }

}  // namespace kv::com
