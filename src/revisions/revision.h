// clsVeskRevision: the revisions of documents and their way through approval.
//
// Sets that are handed out are open; the caller closes them. Identifiers that would change the
// statement they are joined into raise -2147217900. An operation that writes is one transaction.
#pragma once

#include <cstdint>
#include <string>

#include "common/ref.h"
#include "common/variant.h"
#include "kvdata/data_server.h"

namespace kv {

class clsVesk;

class clsVeskRevision : public Object {
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

 private:
  // What a revision's status is told as; `text` stays for a status that has no text.
  void tellStatus(Recordset& revision, Recordset& approvers, std::string& text);

  Ref<clsVesk> oVesk_;
  Ref<kvDataServer> dataServer_;
};

}  // namespace kv
