// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/view_revisions.h"

#include "classes/rights/rights.h"
#include "data/table_value.h"
#include "desk/answer_set.h"
#include "desk/documents/document_access.h"
#include "desk/revisions/revision_lookup.h"
#include "desk/revisions/standing.h"
#include "recordset/text_field.h"

namespace kv::desk {

namespace {

const char* decisionText(const Variant& status) {
  if (compareValues(status, std::int16_t{0}) == 0) return "pending";
  if (compareValues(status, std::int16_t{1}) == 0) return "approved";
  if (compareValues(status, std::int16_t{2}) == 0) return "rejected";
  return "";
}

}  // namespace

Detail viewRevision(const Session& session, std::int32_t revision) {
  session.requireRight(urViewRevisionDetail);
  const auto row = findRevision(session, revision).row;
  const auto value = [&](const char* column) { return row->Fields(column)->Value(); };
  AnswerSet answer({{"RevisionID", kTypeInteger},
                    {"DocumentID", kTypeVarWChar},
                    {"RevisionLevel", kTypeVarWChar},
                    {"Status", kTypeLongVarWChar},
                    {"RevisionStatus", kTypeSmallInt},
                    {"RoutingStatus", kTypeSmallInt},
                    {"EffectiveDate", kTypeDate},
                    {"ResponsibleID", kTypeVarWChar},
                    {"RevUser1", kTypeVarWChar},
                    {"RevUser2", kTypeVarWChar},
                    {"Location", kTypeVarWChar},
                    {"ChangeDescription", kTypeLongVarWChar}});
  answer.add({revision, value("DocumentID"), value("RevisionLevel"), standingText(session, row),
              value("RevisionStatus"), value("RoutingStatus"), value("EffectiveDate"),
              value("ResponsibleID"), value("RevUser1"), value("RevUser2"), value("Location"),
              value("ChangeDescription")});
  return {.row = answer.take(), .labels = labelsIn(session.database(), "RevisionConfig")};
}

Ref<Recordset> listRevisions(const Session& session, const std::string& document) {
  session.requireRight(urViewRevisionDetail);
  const DocumentKey key = findDocument(session, document);
  const auto rs = openOwn(session.database(),
                          "Select RevisionID, RevisionLevel, EffectiveDate, ResponsibleID, "
                          "Location, ChangeDescription, RevisionStatus, RoutingStatus From "
                          "Revisions Where DocumentID = '" +
                              key.joined + "' Order By RevisionID",
                          kReadOnly);
  AnswerSet answer({{"RevisionID", kTypeInteger},
                    {"RevisionLevel", kTypeVarWChar},
                    {"Status", kTypeLongVarWChar},
                    {"EffectiveDate", kTypeDate},
                    {"ResponsibleID", kTypeVarWChar},
                    {"Location", kTypeVarWChar},
                    {"ChangeDescription", kTypeLongVarWChar}});
  for (; !rs->Eof(); rs->MoveNext()) {
    const auto value = [&](const char* column) { return rs->Fields(column)->Value(); };
    answer.add({value("RevisionID"), value("RevisionLevel"), standingText(session, rs),
                value("EffectiveDate"), value("ResponsibleID"), value("Location"),
                value("ChangeDescription")});
  }
  return answer.take();
}

RevisionStatusReport statusOfRevision(const Session& session, std::int32_t revision) {
  session.requireRight(urViewRevisionDetail);
  (void)findRevision(session, revision);
  AnswerSet approvals({{"UserID", kTypeVarWChar},
                       {"UserName", kTypeLongVarWChar},
                       {"Decision", kTypeVarWChar},
                       {"ApprovedBy", kTypeVarWChar},
                       {"DateApproved", kTypeDate},
                       {"Notes", kTypeLongVarWChar}});
  const auto list = session->Revision()->GetRevApprovalList(revision);
  for (; !list->Eof(); list->MoveNext()) {
    const auto value = [&](const char* column) { return list->Fields(column)->Value(); };
    approvals.add({value("UserID"),
                   textOrNull(joinText(
                       session->MainUser()->UserValue(fieldText(*list, "UserID"), "UserName"))),
                   decisionText(value("ApprovalStatus")), value("ApprovedBy"),
                   value("DateApproved"), value("Notes")});
  }
  return {.standing = standingOf(session, revision), .approvals = approvals.take()};
}

}  // namespace kv::desk
