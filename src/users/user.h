// clsVeskUser: the users of a register.
//
// No operation of this class tests a right; that is its caller's part. Identifiers that would
// change the statement they are joined into raise -2147217900. Sets handed in stay open.
#pragma once

#include <cstdint>
#include <string>

#include "common/ref.h"
#include "common/variant.h"
#include "kvdata/recordset/recordset.h"
#include "queries/user_query.h"

namespace kv {

class clsVesk;

class clsVeskUser : public Object {
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

  // Whether a user owns a document. The current user counts too: for one who may act as owner of
  // every document everybody is an owner.
  [[nodiscard]] bool UserIsOwner(const std::string& id, const std::string& DocumentID);

  // ---- saved queries ----

  // Raises 3021 for a query that does not exist.
  [[nodiscard]] Ref<clsUserQuery> GetQuery(std::int32_t QueryID);
  // A new stored query, named "<<New Query>>".
  [[nodiscard]] Ref<clsUserQuery> NewQuery();
  void SaveQuery(const Ref<clsUserQuery>& oquery);

 private:
  Ref<clsVesk> oVesk_;
};

}  // namespace kv
