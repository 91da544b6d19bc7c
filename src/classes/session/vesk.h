// SPDX-License-Identifier: Apache-2.0
// clsVesk: the root object, and the only one a client creates. It owns one session: the data server
// with connection and profile, the user component, and the objects through which clients reach
// documents, manuals, users and revisions.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "classes/documents/document.h"
#include "classes/manuals/manual.h"
#include "classes/revisions/revision.h"
#include "classes/users/user.h"
#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "data/data_server.h"
#include "user/main_user.h"

namespace kv {

struct ReleaseRights;

class KVVESK_API clsVesk : public Object, public std::enable_shared_from_this<clsVesk> {
  struct Private {};

 public:
  // A root object with its children, unconnected. Root and children hold each other: without
  // CloseSession they stay in memory. `cost` is what verifying a password costs; only tests have a
  // reason to change it.
  [[nodiscard]] static Ref<clsVesk> create(PasswordCost cost = {});
  explicit clsVesk(Private) noexcept {}
  ~clsVesk() override;
  clsVesk(const clsVesk&) = delete;
  clsVesk& operator=(const clsVesk&) = delete;
  clsVesk(clsVesk&&) = delete;
  clsVesk& operator=(clsVesk&&) = delete;

  // Empty after CloseSession; DataServer also after a version check that failed.
  [[nodiscard]] const Ref<clsVeskDocument>& Document() const noexcept { return document_; }
  [[nodiscard]] const Ref<clsVeskManual>& Manual() const noexcept { return manual_; }
  [[nodiscard]] const Ref<kvUser>& MainUser() const noexcept { return mainUser_; }
  [[nodiscard]] const Ref<clsVeskUser>& User() const noexcept { return user_; }
  [[nodiscard]] const Ref<kvDataServer>& DataServer() const noexcept { return dataServer_; }
  [[nodiscard]] const Ref<clsVeskRevision>& Revision() const noexcept { return revision_; }

  // The library's version: "major.minor", with the flag "major.minor.revision".
  [[nodiscard]] std::string Version(bool bIncludeRevisionLevel) const;

  // Closes the connection for all who share it and lets go of the six objects. The object is then
  // spent: operations that reach for one of them raise 91, and so does a second CloseSession.
  void CloseSession();

  // Opens the register and the children's data servers on it, and the database of users and actions
  // where the configuration names one. Success shows in that nothing is raised; the result is False
  // all the same, and clients rely on that. Raises 2501, 2502, 2503 for versions that do not go
  // together. When the database of users cannot be opened, the users of the register itself are
  // taken, the session is open, and that failure is raised with "The Following Error Occured
  // Opening External User/Action DataSource : " before its description. Whoever was
  // logged in is so no longer, and has no right, until the next log-in.
  bool OpenConnection(const std::string& ConnectionString = {},
                      const Ref<kvProfile>& oProfile = {});

  // Logs a user in, opening the connection first when none is open. Raises 2505 without anything to
  // open, 2506 for a name and password that do not belong together; the connection then stays open.
  // The result is always Empty.
  Variant Login(const std::string& UserName, const std::string& Password,
                const std::string& ConnectionString = {}, const Ref<kvProfile>& oProfile = {});

  // Opens an updatable record set over a SELECT.
  [[nodiscard]] Ref<Recordset> GetRecordset(const std::string& cSQL);

  // Executes a statement; returns how many rows it changed. Options is accepted and has no effect.
  std::int32_t Execute(const std::string& cSQL, std::int32_t Options = 1);

  // ---- rights and options; numbers as in rights/rights.h ----

  // What lists of rights show. Rights beyond the last give "End", other numbers without a text "".
  [[nodiscard]] std::string urDescription(std::int16_t UserRight) const;
  [[nodiscard]] std::string uoDescription(std::int16_t UserRight) const;  // always ""
  [[nodiscard]] std::string aoDescription(std::int16_t UserRight) const;  // always ""
  [[nodiscard]] std::string orDescription(std::int16_t UserRight) const;

  // Each test takes its setting in the first argument or, when that is not 0, in the second.
  // Settings beyond the stored text are off; 0 in both raises 5.

  // Whether the logged-in user holds a right.
  [[nodiscard]] bool UserAccess(std::int16_t Access = 0, std::int16_t naccess = 0) const;
  // Whether owners of documents hold a right. True for a user with the owner override, unless
  // `naccess` is 2000, which asks for what is configured under `Access`.
  [[nodiscard]] bool OwnerAccess(std::int16_t Access = 0, std::int16_t naccess = 0) const;
  [[nodiscard]] bool UserOption(std::int16_t opt = 0, std::int16_t nOpt = 0) const;
  [[nodiscard]] bool AppOption(std::int16_t opt = 0, std::int16_t nOpt = 0) const;
  // The setters raise 5 for a place beyond the stored text and store nothing then; only the
  // application options are first filled up to their eleven places.
  void SetOwnerAccess(std::int16_t Access, bool Setting);
  void SetUserOption(std::int16_t opt, bool Setting);
  void SetAppOption(std::int16_t opt, bool Setting);

  // ---- actions ----

  // Whether users and actions are kept in a database of their own from the next opening on.
  // `ConnectionString` says where it is; turning off keeps what is stored of that. Raises 2550 for
  // an empty one, and the failure with "Unable to connect to external Database :" and a line break
  // before its description when it cannot be opened; nothing is stored then.
  bool SetExternalActionSystem(bool TurnOn, const std::string& ConnectionString = {});

  // An empty free-standing set with the columns of Actions, to be filled and sent.
  [[nodiscard]] Ref<Recordset> ActionRecord();
  // Sends the actions of a set to the assignees they name; with `rsUsers` once to every user of
  // that set, who is written into the current action. All of them or none. The result is what the
  // sender last gave, Empty when nothing was sent. Raises 2524 when actions cannot be reached.
  Variant SendActions(const Ref<Recordset>& rsActions, const Ref<Recordset>& rsUsers = {});
  // The actions that this register has sent to a user, the logged-in one when left out; open ones
  // only, unless `IncludeClosed`. Raises 2525.
  [[nodiscard]] Ref<Recordset> GetActions(const std::string& UserID = {},
                                          bool IncludeClosed = false);
  // Whether a user has open actions of this register. Raises 2526.
  [[nodiscard]] bool HasActions(const std::string& UserID);
  // Records when an action was completed and, when given, closed. The result is always Empty.
  // Raises 2527.
  Variant CompleteCloseAction(const std::string& id, const Date& datecompleted,
                              const Variant& dateclosed = {});

  // ---- relations ----
  //
  // Each tests the logged-in user's rights, and an owner's where it names a document; each is one
  // transaction, and one that refuses changes nothing. Refusals are in relations/relation_errors.h.
  // Identifiers that would change a statement raise -2147217900 before anything runs. The result is
  // True: what cannot be done is raised.

  // Puts a document into a manual, or takes it out. Whoever holds a copy of the manual gets a line
  // for the document at its current revision, or loses it; `recordsaffected` receives how many
  // lines those were.
  bool DocumentManualRelation(const std::string& ManualID, const std::string& DocumentID,
                              bool Remove, std::int32_t& recordsaffected);
  bool DocumentManualRelation(const std::string& ManualID, const std::string& DocumentID,
                              bool Remove = false);
  // Makes a user an owner of a document, or takes that back. Documents of any kind have owners.
  bool OwnsRelation(const std::string& DocumentID, const std::string& UserID, bool Remove = false);
  // Puts a user on a document's approval list, without a place in its order, or takes him off.
  bool ApprovesRelation(const std::string& DocumentID, const std::string& UserID,
                        bool Remove = false);
  // Gives a document to a user, as a hard copy or on his personal list, and writes the new row's
  // number into `ReleaseID`; or takes back the copy with that number. Then an empty DocumentID
  // stands for the one of that release.
  bool DocumentUserRelation(const std::string& DocumentID, const std::string& UserID, bool HardCopy,
                            bool Remove, std::int32_t& ReleaseID);
  // Gives a manual to a user, as a numbered hard copy or on his personal list: one row for each of
  // its documents, at the document's current revision. Or takes it back, with an empty CopyNumber
  // every copy of that kind.
  bool ManualUserRelation(const std::string& ManualID, const std::string& UserID, bool HardCopy,
                          const std::string& CopyNumber, bool Remove);
  // A list of hard copies, or of virtual ones, with what their documents, held revisions and
  // manuals are: those that meet every condition given. Columns named Current... are of the
  // revision in force. Raises 3021 for a query that does not exist. A user query raises as soon as
  // it has a criterion: users are not in this list.
  [[nodiscard]] Ref<Recordset> Releases(const std::string& UserID = {},
                                        const std::string& ManualID = {},
                                        const std::string& DocumentID = {},
                                        std::int32_t manualqueryid = 0,
                                        std::int32_t documentqueryid = 0,
                                        std::int32_t userqueryid = 0, bool HardCopies = false);
  // A column of a release; Empty when there is no such release, 3265 for an unknown column.
  [[nodiscard]] Variant ReleaseValue(std::int32_t ReleaseID, const std::string& FieldName);

 private:
  void requireVersions();
  // Whether users and their actions can be reached.
  [[nodiscard]] bool hasActionSystem() const;
  // What the register signs its actions with, as it stands in statements.
  [[nodiscard]] std::string senderOfActions() const;
  // Of a document whose identifier can be joined into a statement: whether the logged-in user owns
  // it, and whether it is controlled.
  [[nodiscard]] bool isCurrentUsersDocument(const std::string& DocumentID) const;
  [[nodiscard]] bool isControlled(const std::string& DocumentID) const;
  // Raises the refusal unless the logged-in user may do this with the copies of `UserID`.
  void requireRelease(const ReleaseRights& rights, const std::string& UserID) const;
  // Whether users and actions are to be had from a database of their own.
  [[nodiscard]] bool hasUserDatabase() const;
  void openUsersAt(const std::string& ConnectionString);
  void requireUserVersion();

  Ref<kvDataServer> dataServer_;
  Ref<clsVeskDocument> document_;
  Ref<clsVeskManual> manual_;
  Ref<kvUser> mainUser_;
  Ref<clsVeskUser> user_;
  Ref<clsVeskRevision> revision_;
};

}  // namespace kv
