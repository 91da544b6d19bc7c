// SPDX-License-Identifier: Apache-2.0
// clsVeskUser: the users of a register.
//
// No operation of this class tests a right but those that release, collect and assign: they are the
// root object's, which tests them. Everything else is its caller's part. Identifiers that would
// change the statement they are joined into raise -2147217900. Sets handed in stay open.
#pragma once

#include <cstdint>
#include <string>

#include "classes/queries/user_query.h"
#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "data/profile.h"
#include "recordset/recordset.h"

namespace kv {

class clsVesk;

class KVVESK_API clsVeskUser : public Object {
 public:
  // The root object, through which this class reaches everything. Root and child hold each other
  // until the root's CloseSession.
  [[nodiscard]] const Ref<clsVesk>& oVesk() const noexcept { return oVesk_; }
  void oVesk(const Ref<clsVesk>& vesk) { oVesk_ = vesk; }

  // ---- records ----

  // A list of users: over `cSQL` when it is not blank, as it stands; over all users for `filterid`
  // -1; over that saved query otherwise, whose condition is written back into `cSQL`. In the order
  // of `SortFields` (UserName when empty), with the columns `Fields` (all when empty). With neither
  // text nor filter there is no set. Values of a query that would change the statement raise
  // -2147217900.
  [[nodiscard]] Ref<Recordset> Records(std::int32_t filterid, const std::string& SortFields,
                                       std::string& cSQL, const std::string& Fields = {});
  [[nodiscard]] Ref<Recordset> Records(std::int32_t filterid = 0,
                                       const std::string& SortFields = {},
                                       const std::string& cSQL = {},
                                       const std::string& Fields = {});
  // The set of one user's row.
  [[nodiscard]] Ref<Recordset> Record(const std::string& id);
  // Gives no set and runs nothing; the root object's GetRecordset is the one to call.
  [[nodiscard]] Ref<Recordset> GetRecordset(const std::string& cSQL);
  // Keys and names of users; "" for those who are not there.
  [[nodiscard]] std::string UserIDFromID(std::int32_t id);
  [[nodiscard]] std::string UserID(const std::string& UserName);
  [[nodiscard]] std::string getUserName(const std::string& id);
  // Reads the fields of a user whom `rs` has at its current row or behind it; False, and nothing
  // touched, when it has not. WorkgroupID is "0" for a user without a profile.
  bool LoadUser(const Ref<Recordset>& rs, const std::string& UserID, std::string& UserName,
                std::string& Alias, std::string& Password, std::string& title, std::string& email,
                std::string& WorkgroupID);
  // Writes them there; empty text is stored as Null. False when the user is not found. The profile
  // is not touched.
  bool SaveUser(const Ref<Recordset>& rs, const std::string& UserID, const std::string& UserName,
                const std::string& Alias, const std::string& Password, const std::string& title,
                const std::string& email);
  // Adds a user to `rs`, and an empty profile; returns the new user's identifier. WorkgroupID has
  // no effect: a workgroup is given by itself.
  std::string NewUser(const Ref<Recordset>& rs, const std::string& UserName,
                      const std::string& Alias, const std::string& Password,
                      const std::string& title, const std::string& email,
                      const std::string& WorkgroupID);
  // Deletes a user with profile, places in approval lists, ownerships and copies. False when a step
  // failed, whatever the error; the steps before it stay done.
  bool DeleteUser(const std::string& id) noexcept;
  // The records of the users whose IDs `rs` has, which is read to its end; nothing for an empty
  // set.
  [[nodiscard]] Ref<Recordset> GetTheseUsers(const Ref<Recordset>& rs);

  // ---- what a user holds ----
  //
  // Lists of copies with their documents and manuals, of documents owned and of documents to
  // approve; those for views have the whole rows of documents or manuals, each once. By manual name
  // and copy number, and by the document's number or title, as the register's options say. Hard
  // copies are listed although their document is gone, virtual ones are not.

  [[nodiscard]] Ref<Recordset> HardCopies(const std::string& UserID);
  [[nodiscard]] Ref<Recordset> HardCopiesForViewDoc(const std::string& UserID);
  [[nodiscard]] Ref<Recordset> HardCopiesForViewMan(const std::string& UserID);
  [[nodiscard]] Ref<Recordset> VirtualCopies(const std::string& UserID);
  [[nodiscard]] Ref<Recordset> VirtualCopiesForViewDoc(const std::string& UserID);
  [[nodiscard]] Ref<Recordset> VirtualCopiesForViewMan(const std::string& UserID);
  [[nodiscard]] Ref<Recordset> Owns(const std::string& UserID);
  [[nodiscard]] Ref<Recordset> OwnsForView(const std::string& UserID);
  [[nodiscard]] Ref<Recordset> Approves(const std::string& UserID);
  [[nodiscard]] Ref<Recordset> ApprovesForView(const std::string& UserID);

  // The root object's relations, seen from the user. ReleaseDoc returns the release's number,
  // ReleaseMan the copy's, which is the manual's next one, for a personal list as well. ReturnDoc
  // takes back the hard copy whose number the text begins with; ReturnMan without a number takes
  // back every copy of that kind.
  std::int32_t ReleaseDoc(const std::string& UserID, const std::string& DocumentID, bool HardCopy);
  std::string ReleaseMan(const std::string& UserID, const std::string& ManualID, bool HardCopy);
  Variant SetOwner(const std::string& UserID, const std::string& DocumentID);
  Variant SetApprover(const std::string& UserID, const std::string& DocumentID);
  bool ReturnDoc(const std::string& ReleaseID);
  bool ReturnMan(const std::string& UserID, const std::string& ManualID, bool HardCopy,
                 const std::string& CopyNumber = {});
  bool UnSetOwner(const std::string& UserID, const std::string& DocumentID);
  bool UnSetApprover(const std::string& UserID, const std::string& DocumentID);
  // Whether a user owns a document. The current user counts too: for one who may act as owner of
  // every document everybody is an owner.
  [[nodiscard]] bool UserIsOwner(const std::string& id, const std::string& DocumentID);
  // Whether a user is on a document's approval list.
  [[nodiscard]] bool UserIsApprover(const std::string& id, const std::string& DocumentID);

  // ---- settings ----
  //
  // `ouser` and FieldType are accepted and have no effect.

  // Puts a user into a workgroup. The result is always Empty.
  Variant ChangeWorkGroup(const std::string& UserID, const std::string& WorkgroupID);
  // Title and number of a workgroup, "" for one there is not. -1 and 0 have their titles without a
  // row.
  [[nodiscard]] std::string WorkGroup(std::int32_t WorkgroupID);
  [[nodiscard]] std::string WorkgroupID(const std::string& WorkGroup);
  // The rows of VeskGroups; the others are about those of Groups.
  [[nodiscard]] Ref<Recordset> Workgroups();
  // The one row with the labels of the user fields.
  [[nodiscard]] Ref<Recordset> Labels(const Ref<kvProfile>& ouser);
  // Raises -2147217900 for a FieldName that is no column's name.
  void SaveLabel(const Ref<kvProfile>& ouser, const std::string& FieldName,
                 const std::string& FieldLabel, std::int16_t FieldType = 1);
  // The values that a field is validated by.
  [[nodiscard]] Ref<Recordset> Keywords(const Ref<kvProfile>& ouser, const std::string& FieldName);
  void AddKeyword(const Ref<kvProfile>& ouser, const std::string& FieldName,
                  const std::string& Keyword);
  void DeleteKeyword(const Ref<kvProfile>& ouser, const std::string& FieldName,
                     const std::string& Keyword);
  // Does nothing.
  void NewAction(const std::string& Subject, const Variant& Description, const std::string& Orig,
                 const std::string& Assignee);
  // The saved queries for actions that a user may run: his own, his workgroup's and everybody's.
  [[nodiscard]] Ref<Recordset> ActionUserQueries(const std::string& UserID,
                                                 const std::string& GroupID);

  // ---- saved queries ----

  // Raises 3021 for a query that does not exist.
  [[nodiscard]] Ref<clsUserQuery> GetQuery(std::int32_t QueryID);
  // A new stored query, named "<<New Query>>".
  [[nodiscard]] Ref<clsUserQuery> NewQuery();
  void SaveQuery(const Ref<clsUserQuery>& oquery);

 protected:
  // The rights of a workgroup. Raises -2147217913: the number is compared with text.
  [[nodiscard]] std::string GroupRights(const std::string& group);

 private:
  Ref<clsVesk> oVesk_;
};

}  // namespace kv
