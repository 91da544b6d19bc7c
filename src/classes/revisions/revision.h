// SPDX-License-Identifier: Apache-2.0
// clsVeskRevision: the revisions of documents and their way through approval.
//
// Sets that are handed out are open; the caller closes them. Identifiers that would change the
// statement they are joined into raise -2147217900. An operation that writes is one transaction.
#pragma once

#include <cstdint>
#include <string>

#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "data/data_server.h"

namespace kv {

class clsVesk;

class KVVESK_API clsVeskRevision : public Object {
 public:
  clsVeskRevision();

  // The root object. Root and child hold each other until the root's CloseSession.
  [[nodiscard]] const Ref<clsVesk>& oVesk() const noexcept { return oVesk_; }
  void oVesk(const Ref<clsVesk>& vesk) { oVesk_ = vesk; }
  // Through which this class reaches the database, with its own table names.
  [[nodiscard]] const Ref<kvDataServer>& DataServer() const noexcept { return dataServer_; }
  void DataServer(const Ref<kvDataServer>& server) { dataServer_ = server; }

  // Opens the data server and names this class's tables to it. The result is always Empty.
  Variant OpenConnection(const std::string& ConnectionString = {},
                         const Ref<kvProfile>& oProfile = {});
  // Does nothing; the result is always Empty.
  Variant Login();

  // Adds a revision; returns its number. Empty text is stored as Null. `current` gives it the
  // status 1, otherwise it has 2; the document is neither looked for nor changed.
  std::int32_t Add(const std::string& DocumentID, const std::string& RevisionLevel,
                   const std::string& user1, const std::string& user2,
                   const std::string& ChangeDescription, const std::string& location, bool current,
                   const std::string& responsibleid, const std::string& dateEffective = {});
  // Writes a revision's fields; one that does not exist is no error. A current revision without an
  // effective date gets today's. Raises 55666 when `location` is not blank and names no regular
  // file (relative paths count from the current folder); nothing is written then.
  void SaveData(std::int32_t RevisionID, const std::string& RevisionLevel, const std::string& user1,
                const std::string& user2, const std::string& ChangeDescription,
                const std::string& location, const std::string& EffectiveDate = {});
  // Reads a revision's fields and its approval list; Null reads as "". False, and nothing touched,
  // when there is no such revision. `statusstring` says where it stands, and is left alone for a
  // status that has no text.
  bool LoadRevisionData(std::int32_t RevisionID, std::string& DocumentID,
                        std::int16_t& RoutingStatus, std::int16_t& RevisionStatus,
                        std::string& RevisionLevel, std::string& user1, std::string& user2,
                        std::string& EffectiveDate, std::string& ChangeDescription,
                        std::string& location, std::string& statusstring,
                        Ref<Recordset>& approvals);
  // The set of the revision's row.
  [[nodiscard]] Ref<Recordset> GetRevRS(std::int32_t RevID);
  // The revision's approvers in their order; the two are one.
  [[nodiscard]] Ref<Recordset> GetRevApprovalList(std::int32_t id);
  [[nodiscard]] Ref<Recordset> approvals(std::int32_t RevisionID);
  // The revision's location as text; Empty when there is no such revision.
  [[nodiscard]] Variant GetRevFileName(const std::string& RevisionID);
  // Deletes the revision's row, not its approvals and not its file. False when that failed,
  // whatever the error; a revision that does not exist is no failure.
  bool DeleteRevision(std::int32_t id) noexcept;
  // Points a copy that a user holds at a revision. The result is always False.
  bool SetUsersRevisionTo(const std::string& ReleaseID, const std::string& RevisionID);

  // ---- approval ----

  // Begins an approval of the revision on which `rs` stands: its approvers are copied from the
  // document's list, or asked once more, and the first one is sent an action, whatever `sendaction`
  // says. Without approvers the revision counts as approved. Changes the current row's status; the
  // caller saves that row. The result is always Empty.
  Variant RouteForApproval(const Ref<Recordset>& rs, bool sendaction);
  // Looks where the revision stands with its approvers, `rsApprovals` in their order: rejected by
  // one, waiting for the first who has not decided, or approved by all. Both sets are read again
  // for that. Changes the current row of `rsrevisions`, which the caller saves, and tells whose
  // turn it is, or the responsible user, where `sendaction` and the options say so.
  void NotifyNextapprover(const Ref<Recordset>& rsrevisions, const Ref<Recordset>& rsApprovals,
                          bool sendaction);
  // Whether a user may now decide about a revision in an approver's place: administrators always,
  // owners with the owner right to override while it awaits approval, others for themselves when it
  // is their turn.
  [[nodiscard]] bool CanApprove(const std::string& UserID, std::int32_t RevisionID,
                                const std::string& ApprovingForID);
  // Records a decision and goes on as NotifyNextapprover does. The revision's row is saved with the
  // decision, so that where it stands always follows from the decisions there are; what the caller
  // has pending in the sets is saved first. Where approvers decide in order, False and nothing
  // changed when it is not that approver's turn; otherwise 3021 when he is not on the list.
  // -2147217864, and nothing changed, when somebody else has decided for that approver, or in order
  // for anybody, since the caller read the sets.
  bool ApproveRevision(const Ref<Recordset>& rsrevisions, const std::string& CurrentUserID,
                       const std::string& UserApproveForID, const Ref<Recordset>& rsApprovals,
                       bool sendaction = true);
  bool RejectRevision(const Ref<Recordset>& rsrevisions, const std::string& CurrentUserID,
                      const std::string& UserRejectforID, const Ref<Recordset>& rsApprovals,
                      bool sendaction = true);
  // An approver's remark; empty text is stored as Null. Does nothing for a user who is not on the
  // revision's list.
  void SaveApprovalNotes(const std::string& Notes, const std::string& UserID, std::int32_t RevID);
  // Puts a revision in force: the one in force before goes out of date, the document takes over
  // level and date and points at it, and the holders of copies are told where `SendActions` and the
  // options say so. `rsDocuments` is a set with the document, which keeps its position, or nothing,
  // in which case it receives one. Saves both rows; what the caller has pending in them is saved
  // first. Raises kErrorBase + 40 when the document is not in the set. When a step fails, the steps
  // before it stay done, and nothing of the others is pending in the sets.
  void SetAsCurrentRevision(const Ref<Recordset>& rsRevision, Ref<Recordset>& rsDocuments,
                            bool SendActions);
  // Where the revision on which `rs` stands stands, as lists show it; "" for a status without a
  // text.
  [[nodiscard]] std::string RevStatusDescription(const Ref<Recordset>& rs);

 private:
  struct Signature {
    Variant name;
    Variant id;
  };
  enum class Decision : std::int16_t { Pending = 0, Approved = 1, Rejected = 2 };

  // A setting of the register, as text.
  [[nodiscard]] std::string setting(const char* key) const;
  [[nodiscard]] std::string userName(const std::string& userId) const;
  // Who signs actions, by the setting Originator: `asUser` is the number that stands for the
  // logged-in user.
  [[nodiscard]] Signature signature(int asUser) const;
  // An action with everything that does not depend on what it is about.
  [[nodiscard]] Ref<Recordset> newAction(int signAsUser) const;
  void sendTo(const std::string& userId, const std::string& subject, const std::string& description,
              const Variant& reference);
  // Looks where the revision stands, assigns that to its current row and tells whom it concerns; in
  // an operation that has locked the revision.
  void settle(const Ref<Recordset>& rsrevisions, const Ref<Recordset>& rsApprovals,
              bool sendaction);
  bool decide(Decision decision, bool inOrder, const Ref<Recordset>& rsrevisions,
              const std::string& currentUser, const std::string& approver,
              const Ref<Recordset>& rsApprovals, bool sendaction);
  void tellHolders(Recordset& revision, Recordset& document);
  // What a revision's status is told as; `text` stays for a status that has no text.
  void tellStatus(Recordset& revision, Recordset& approvers, std::string& text);

  Ref<clsVesk> oVesk_;
  Ref<kvDataServer> dataServer_;
};

}  // namespace kv
