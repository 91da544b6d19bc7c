// SPDX-License-Identifier: Apache-2.0
// clsVeskDocument: the documents of a register.
//
// No operation of this class tests a right but those that link a document with manuals and users:
// they are the root object's, which tests them. Everything else is its caller's part. Identifiers
// that would change the statement they are joined into raise -2147217900. An operation that writes
// is one transaction. Sets handed in stay open, whatever happens.
#pragma once

#include <cstdint>
#include <string>

#include "classes/queries/document_query.h"
#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "data/data_server.h"

namespace kv {

class clsVesk;
struct NotFoundErrors;

class KVVESK_API clsVeskDocument : public Object {
 public:
  clsVeskDocument();

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

  // ---- records ----

  // A list of documents: over `cSQL` when it is not blank, as it stands; otherwise over the saved
  // query `filterid`, in the order of `SortFields` (DocumentTitle when empty) and with the columns
  // `Fields` (all when empty), without the secured documents unless an administrator is logged in.
  // The condition of the query is written back into `cSQL`. Without either there is no set.
  [[nodiscard]] Ref<Recordset> Records(std::int32_t filterid, const std::string& SortFields,
                                       std::string& cSQL, const std::string& Fields = {});
  [[nodiscard]] Ref<Recordset> Records(std::int32_t filterid = 0,
                                       const std::string& SortFields = {},
                                       const std::string& cSQL = {},
                                       const std::string& Fields = {});
  // The set of one document's row.
  [[nodiscard]] Ref<Recordset> Record(const std::string& id);
  // Reads a document's fields; Null reads as "", and leaves `currentRevID` as it is. With `rs` the
  // document is looked for in that set, which then stands on it; without, in the database. Raises
  // 2601 to 2603 when it is not there, or there more than once.
  void LoadData(const std::string& docid, std::string& title, std::string& number,
                std::string& RevisionLevel, std::string& EffectiveDate, std::string& user1,
                std::string& user2, std::string& user3, std::string& user4, std::string& Notes,
                bool& securitylevel, std::string& location, bool& Controlled,
                std::int32_t& currentRevID, const Ref<Recordset>& rs = {});
  // Adds a document and its first revision, in one; returns the document's identifier, which is the
  // user's followed by the present moment. `RevReady` makes the revision the current one.
  // `securitylevel` has no effect: `Secured` says whether the document is secured. A document that
  // is not `Controlled` gets the revision level "Uncontrolled" and no current revision.
  std::string Add(const std::string& UserID, const std::string& title, const std::string& number,
                  const std::string& user1, const std::string& user2, const std::string& user3,
                  const std::string& user4, const std::string& Notes, std::int16_t securitylevel,
                  const std::string& location, const std::string& RevisionLevel,
                  const std::string& EffectiveDate, bool RevReady, bool Controlled = false,
                  bool Secured = false, const Ref<Recordset>& rs = {});
  // Writes a document's fields; empty text is stored as Null. Finds the document as LoadData does,
  // raising 2604 to 2606. The result is always 0.
  std::int16_t SaveData(const std::string& id, const std::string& title, const std::string& number,
                        const std::string& user1, const std::string& user2,
                        const std::string& user3, const std::string& user4,
                        const std::string& Notes, bool Secured, bool Controlled,
                        const std::string& location, const Ref<Recordset>& rs = {});
  // A column of a document's row; Empty when there is no such document, 3265 for an unknown column.
  [[nodiscard]] Variant Value(const std::string& docid, const std::string& FieldName);
  // Stores a value there as it is; does nothing when there is no such document.
  void SetValue(const std::string& docid, const std::string& FieldName, const Variant& Value);
  // As Value, by the row's number.
  [[nodiscard]] Variant IDValue(std::int32_t id, const std::string& FieldName);
  [[nodiscard]] bool HasCurrentRevision(const std::string& DocumentID);
  // Takes a document out of every manual, collects its hard copies, empties its approval list and
  // deletes its revisions but the current one. The document's own row is the caller's to change.
  void MakeUnControlled(const std::string& docid);
  // Deletes what hangs off a document, and with `DeleteFromDocTable` its row. When a step fails,
  // the steps before it stay done.
  void Delete(const std::string& id, bool DeleteFromDocTable = false);

  // ---- lists ----
  //
  // Each lists what belongs to a document; with `AllFields` the manuals' whole rows, or in place of
  // the rows that name users those users' own records, each once.

  // Hard copies with their manuals and revisions.
  [[nodiscard]] Ref<Recordset> Copies(const std::string& docid, bool AllFields = false);
  // The manuals that it is in.
  [[nodiscard]] Ref<Recordset> Manuals(const std::string& docid, bool AllFields = false);
  // IncludeDocID has no effect.
  [[nodiscard]] Ref<Recordset> Owners(const std::string& docid, bool AllFields = false,
                                      bool IncludeDocID = false);
  // In the order in which they approve; those without a place come first.
  [[nodiscard]] Ref<Recordset> Approvers(const std::string& docid, bool AllFields = false);
  // Who has it on his personal list.
  [[nodiscard]] Ref<Recordset> Users(const std::string& docid, bool AllFields = false);
  // Its revisions by the date on which they took effect.
  [[nodiscard]] Ref<Recordset> DocRevisions(const std::string& docid);
  // The documents that a user has, by manual, and within one by number or title, as the register's
  // options say. `Personals` lists copies with their revisions; without hard copies only virtual
  // ones, whatever `VirtualCopies` says.
  [[nodiscard]] Ref<Recordset> PersonalDocuments(const std::string& id);
  [[nodiscard]] Ref<Recordset> Personals(const std::string& id, bool VirtualCopies = true,
                                         bool HardCopies = true);

  // ---- links ----
  //
  // The root object's relations: DocumentUserRelation for hard copies and personal lists,
  // DocumentManualRelation, OwnsRelation, ApprovesRelation.

  bool ReleaseCopy(const std::string& docid, const std::string& UserID, std::int32_t& ReleaseID);
  bool AddUser(const std::string& docid, const std::string& UserID, std::int32_t& ReleaseID);
  bool CollectCopy(std::int32_t cReleaseID);
  // Names no user, so that it takes the right to others' personal lists, one's own included.
  bool RemoveUser(std::int32_t cReleaseID);
  bool IntoManual(const std::string& docid, const std::string& ManualID);
  bool OutofManual(const std::string& docid, const std::string& ManualID);
  bool AddOwner(const std::string& docid, const std::string& UserID);
  bool RemoveOwner(const std::string& docid, const std::string& UserID);
  bool AddApprover(const std::string& docid, const std::string& UserID);
  bool RemoveApprover(const std::string& docid, const std::string& UserID);
  // Moves the approver OldPosition to just before the approver NewPosition: both are users'
  // identifiers. His place becomes the middle between those of his new neighbours; when places come
  // too close all of them are given new ones. Raises 3021 for a user who is not on the list. The
  // result is always False.
  bool ChangeListOrder(const std::string& docid, const std::string& OldPosition,
                       const std::string& NewPosition);

  // ---- saved queries ----

  // A query of an identifier that does not exist has every criterion Null.
  [[nodiscard]] Ref<clsDocumentQuery> GetQuery(std::int32_t QueryID);
  // A new stored query, named "<<New Query>>".
  [[nodiscard]] Ref<clsDocumentQuery> AddQuery();
  // Raises 3021 when the stored query is gone.
  void SaveQuery(const Ref<clsDocumentQuery>& oquery);
  void DeleteQuery(std::int32_t id);

 private:
  // A set that stands on the document's row: `rs`, or one of this object's when that is empty.
  [[nodiscard]] Ref<Recordset> find(const std::string& docid, const Ref<Recordset>& rs,
                                    const NotFoundErrors& errors);
  // The records of the users whom a statement names.
  [[nodiscard]] Ref<Recordset> usersOf(const std::string& statement);
  [[nodiscard]] Variant valueIn(const std::string& sql, const std::string& column);

  Ref<clsVesk> oVesk_;
  Ref<kvDataServer> dataServer_;
};

}  // namespace kv
