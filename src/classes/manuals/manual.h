// SPDX-License-Identifier: Apache-2.0
// clsVeskManual: the manuals of a register: named, ordered collections of documents, which are
// released to users as numbered copies.
//
// No operation of this class tests a right but those that link a manual with documents and users:
// they are the root object's, which tests them. Identifiers that would change the statement they
// are joined into raise -2147217900. An operation that writes is one transaction. Sets handed in
// stay open, whatever happens.
#pragma once

#include <cstdint>
#include <string>

#include "classes/queries/manual_query.h"
#include "common/export.h"
#include "common/ref.h"
#include "common/variant.h"
#include "data/data_server.h"

namespace kv {

class clsVesk;
struct NotFoundErrors;

class KVVESK_API clsVeskManual : public Object {
 public:
  clsVeskManual();

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

  // A list of manuals: over `cSQL` when it is not blank, as it stands; over all manuals for
  // `filterid` -1; over that saved query otherwise, 0 included, whose condition is written back
  // into `cSQL`. In the order of `SortFields` (ManualName when empty), with the columns `Fields`
  // (all when empty). Raises 3021 for a query that does not exist.
  [[nodiscard]] Ref<Recordset> Records(std::int32_t filterid, const std::string& SortFields,
                                       std::string& cSQL, const std::string& Fields = {});
  [[nodiscard]] Ref<Recordset> Records(std::int32_t filterid = 0,
                                       const std::string& SortFields = {},
                                       const std::string& cSQL = {},
                                       const std::string& Fields = {});
  // The same of manuals joined with the documents in them, by default in the order of the contents.
  // There is no number for all: -1 is a query like any other.
  [[nodiscard]] Ref<Recordset> RecordsWithContents(std::int32_t filterid,
                                                   const std::string& SortFields, std::string& cSQL,
                                                   const std::string& Fields = {});
  [[nodiscard]] Ref<Recordset> RecordsWithContents(std::int32_t filterid = 0,
                                                   const std::string& SortFields = {},
                                                   const std::string& cSQL = {},
                                                   const std::string& Fields = {});
  // The set of one manual's row.
  [[nodiscard]] Ref<Recordset> Record(const std::string& ManualID);
  // Reads a manual's fields; Null reads as "". With `rs` the manual is looked for in that set,
  // which then stands on it; without, in the database. Raises 2701 to 2703 when it is not there, or
  // there more than once.
  void LoadData(const std::string& ManualID, std::string& ManualName, std::string& user1,
                std::string& user2, std::string& user3, std::string& user4, std::string& Notes,
                const Ref<Recordset>& rs = {});
  // Writes them; empty text is stored as Null. Finds the manual as LoadData does, raising 2704 to
  // 2706.
  void SaveData(const std::string& ManualID, const std::string& ManualName,
                const std::string& user1, const std::string& user2, const std::string& user3,
                const std::string& user4, const std::string& Notes, const Ref<Recordset>& rs = {});
  // Adds a manual; returns its identifier, which is the logged-in user's followed by the present
  // moment. Two that a user adds within one second have the same.
  std::string Add(const std::string& ManualName, const std::string& user1, const std::string& user2,
                  const std::string& user3, const std::string& user4, const std::string& Notes,
                  const Ref<Recordset>& rs = {});
  // A column of a manual's row; Empty when there is no such manual, 3265 for an unknown column.
  [[nodiscard]] Variant Value(const std::string& ManualID, const std::string& FieldName);
  // Raises 3219 for every manual there is and changes nothing: it closes the row without storing
  // it, and clients know it so. SaveData is the way to write. Does nothing when there is no such
  // manual; the result is then Empty.
  Variant SetValue(const std::string& ManualID, const std::string& FieldName, const Variant& Value);
  // As Value, by the row's number.
  [[nodiscard]] Variant IDValue(std::int32_t id, const std::string& FieldName);
  [[nodiscard]] bool HasContents(const std::string& ManualID);
  // Deletes a manual, its contents and its copies. With `rs` the manual's row is deleted from that
  // set; one that has rows and not this manual leaves the row where it is, and the rest goes all
  // the same. When a step fails, the steps before it stay done.
  void Delete(const std::string& id, const Ref<Recordset>& rs = {});

  // ---- contents ----

  // The documents in a manual, with all their columns and, when asked for, ManualID behind them: in
  // the manual's own order, or, with `AllFields`, as a list of documents by DocumentNumber.
  [[nodiscard]] Ref<Recordset> Contents(const std::string& Manid, bool AllFields = false,
                                        bool WithManID = false);
  // Moves a document to a place of the manual, counted from 1. A place is kept as a number
  // of its own; when these come too close, or one would leave its type, all are given new ones.
  // Raises 2730 for a manual without contents, 3021 for a place outside them. A document that is
  // not in the manual is not moved.
  void RepositionContents(const std::string& ManualID, const std::string& docid,
                          std::int16_t position);
  // The root object's DocumentManualRelation.
  bool AddDocument(const std::string& Manid, const std::string& docid);
  bool RemoveDocument(const std::string& Manid, const std::string& docid);

  // ---- copies ----

  // Who has hard copies, with the copies' numbers, or who has the manual on his personal list, by
  // identifier. With `AllFields` the users' records instead, or for `Users` their profiles.
  [[nodiscard]] Ref<Recordset> Copies(const std::string& Manid, bool AllFields = false);
  [[nodiscard]] Ref<Recordset> Users(const std::string& Manid, bool AllFields = false);
  // The manuals that a user has, by ManualName: one row for each copy with its number and kind, or,
  // for a view, each manual's row once. Without hard copies only virtual ones are listed, whatever
  // `VirtualCopies` says. `id` is compared by Like; wildcards in it stand for themselves.
  [[nodiscard]] Ref<Recordset> PersonalManuals(const std::string& id, bool VirtualCopies = true,
                                               bool HardCopies = true);
  [[nodiscard]] Ref<Recordset> PersonalManualsForView(const std::string& id,
                                                      bool VirtualCopies = true,
                                                      bool HardCopies = true);
  // The number for the manual's next hard copy: "0001" for the first, otherwise one more than that
  // of the last copy listed, and the first from there on that is not in use. It stays free only
  // within a transaction; clsVeskUser::ReleaseMan takes one and releases under it.
  [[nodiscard]] std::string NextCopyNumber(const std::string& Manid);
  [[nodiscard]] bool DuplicateCopyNumber(const std::string& ManualID, const std::string& CopyNum);
  // Gives copies another number, whether or not that is in use.
  void ChangeCopyNumber(const std::string& ManualID, const std::string& OldNumber,
                        const std::string& NewNumber);
  // The root object's ManualUserRelation: for hard copies, and for personal lists.
  bool ReleaseCopy(const std::string& Manid, const std::string& UserID,
                   const std::string& CopyNumber);
  bool CollectCopy(const std::string& Manid, const std::string& UserID,
                   const std::string& CopyNumber);
  bool AddUser(const std::string& Manid, const std::string& UserID);
  bool RemoveUser(const std::string& Manid, const std::string& UserID);

  // ---- saved queries ----

  // Raises 3021 for a query that does not exist.
  [[nodiscard]] Ref<clsManualQuery> GetQuery(std::int32_t QueryID);
  // A new stored query, named "<<New Query>>".
  [[nodiscard]] Ref<clsManualQuery> NewQuery();
  // Raises 3021 when the stored query is gone.
  void SaveQuery(const Ref<clsManualQuery>& oquery);

 private:
  // A set that stands on the manual's row: `rs`, or one of this object's when that is empty.
  [[nodiscard]] Ref<Recordset> find(const std::string& ManualID, const Ref<Recordset>& rs,
                                    const NotFoundErrors& errors);

  Ref<clsVesk> oVesk_;
  Ref<kvDataServer> dataServer_;
};

}  // namespace kv
