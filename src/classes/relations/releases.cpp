// SPDX-License-Identifier: Apache-2.0
// What has been released: lists of copies with everything about them, and single values.
#include "classes/session/vesk.h"
#include "data/sql_text.h"
#include "recordset/found_row.h"

namespace kv {

namespace {

constexpr const char* kCopies =
    "SELECT Personals.*, Revisions.RevisionLevel, Revisions.EffectiveDate, Revisions.RevUser1, "
    "Revisions.RevUser2, Revisions.ChangeDescription, Revisions.RevisionStatus, "
    "Revisions.RoutingStatus, Revisions.Location AS RevisionLocation, Revisions.ResponsibleID, "
    "Documents.DocumentNumber, Documents.DocumentTitle, Documents.RevisionLevel AS "
    "CurrentRevisionLevel, Documents.EffectiveDate AS CurrentEffectiveDate, Documents.DocUser1, "
    "Documents.DocUser2, Documents.DocUser3, Documents.DocUser4, Documents.DocumentNotes, "
    "Documents.SecurityLevel, Documents.CurrentRevID, Documents.Controlled, Documents.Location, "
    "Manuals.ManualName, Manuals.ManUser1, Manuals.ManUser2, Manuals.ManUser3, Manuals.ManUser4, "
    "Manuals.ManUserMemo FROM ((Personals Left JOIN Manuals ON Personals.ManualID = "
    "Manuals.ManualID) Left JOIN Documents ON Personals.DocumentID = Documents.DocumentID) Left "
    "JOIN Revisions ON Personals.RevisionID = Revisions.RevisionID ";

// A stored query's condition. A query that is not there raises 3021 whatever its kind: without
// criteria it would list everything.
template <class Query>
std::string conditionOf(const Ref<kvDataServer>& server, std::int32_t id) {
  const auto rs = server->Queries()->Open(id);
  if (rs->RecordCount() <= 0) raise(kNoCurrentRow);
  Query query;
  query.LoadQuery(rs);
  if constexpr (requires { query.requireJoinable(); }) query.requireJoinable();
  return query.JetSQL();
}

// The same without its first word.
std::string continued(const std::string& condition) {
  constexpr std::size_t kWhere = 6;  // "Where "
  return condition.empty() ? std::string() : " and " + condition.substr(kWhere);
}

}  // namespace

Ref<Recordset> clsVesk::Releases(const std::string& UserID, const std::string& ManualID,
                                 const std::string& DocumentID, std::int32_t manualqueryid,
                                 std::int32_t documentqueryid, std::int32_t userqueryid,
                                 bool HardCopies) {
  std::string condition;
  if (manualqueryid != 0)
    condition = conditionOf<clsManualQuery>(manual_->DataServer(), manualqueryid);
  if (documentqueryid != 0)
    condition += continued(conditionOf<clsDocumentQuery>(document_->DataServer(), documentqueryid));
  if (userqueryid != 0)
    condition += continued(conditionOf<clsUserQuery>(mainUser_->DataServer(), userqueryid));
  if (!ManualID.empty()) condition += " and Personals.manualid = '" + inQuotes(ManualID) + "'";
  if (!DocumentID.empty())
    condition += " and Personals.documentid = '" + inQuotes(DocumentID) + "'";
  if (!UserID.empty()) condition += " and Personals.userid = '" + inQuotes(UserID) + "'";
  condition += HardCopies ? " and HardCopy <> 0" : " and HardCopy = 0";
  constexpr std::size_t kFirstWord = 5;  // " and " or "Where"
  return GetRecordset(kCopies + ("Where " + condition.substr(kFirstWord)));
}

Variant clsVesk::ReleaseValue(std::int32_t ReleaseID, const std::string& FieldName) {
  return firstValue(
      *dataServer_->open("Select * From Personals Where ReleaseID = " + std::to_string(ReleaseID)),
      FieldName);
}

}  // namespace kv
