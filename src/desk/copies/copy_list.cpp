// SPDX-License-Identifier: Apache-2.0
#include "desk/copies/copy_list.h"

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "desk/documents/document_access.h"
#include "recordset/text_field.h"

namespace kv::desk {

namespace {

CopyState stateOf(Recordset& copies) {
  const Variant controlled = copies.Fields("Controlled")->Value();
  if (controlled.isNull()) return CopyState::Stale;  // there is no such document
  if (!toBoolean(controlled)) return CopyState::Uncontrolled;
  // None is kept as Null or as 0.
  const auto revision = [&](const char* column) {
    const Variant number = copies.Fields(column)->Value();
    return number.isNull() ? 0 : toInt32(number);
  };
  return revision("RevisionID") == revision("CurrentRevID") ? CopyState::Current : CopyState::Stale;
}

void addCopies(const Session& session, const CopyFilter& filter, bool hard,
               const HiddenDocuments& hidden, std::vector<HeldCopy>& out) {
  const auto rs = session->Releases(filter.user, filter.manual, filter.document, filter.manualQuery,
                                    filter.documentQuery, 0, hard);
  for (; !rs->Eof(); rs->MoveNext()) {
    if (hidden.contains(fieldText(*rs, "DocumentID"))) continue;
    const auto value = [&](const char* column) { return rs->Fields(column)->Value(); };
    out.push_back({.release = value("ReleaseID"),
                   .userId = value("UserID"),
                   .hard = hard,
                   .manual = value("ManualName"),
                   // Copies on personal lists have no number; what they have in its place is the
                   // same for all of them.
                   .number = hard ? value("CopyNumber") : Variant(Null),
                   .documentId = value("DocumentID"),
                   .documentNumber = value("DocumentNumber"),
                   .title = value("DocumentTitle"),
                   .level = value("RevisionLevel"),
                   .currentLevel = value("CurrentRevisionLevel"),
                   .state = stateOf(*rs)});
  }
}

}  // namespace

const char* HeldCopy::stateText() const noexcept {
  switch (state) {
    case CopyState::Current: return "current";
    case CopyState::Stale: return "stale";
    case CopyState::Uncontrolled: return "uncontrolled";
  }
  return "";
}

std::vector<HeldCopy> copiesHeld(const Session& session, const CopyFilter& filter) {
  const HiddenDocuments hidden(session);
  std::vector<HeldCopy> copies;
  if (filter.hard) addCopies(session, filter, true, hidden, copies);
  if (filter.listed) addCopies(session, filter, false, hidden, copies);
  return copies;
}

void sortCopies(const Session& session, AnswerSet& answer, const std::string& first) {
  const char* document = session->AppOption(aoDocSortByNum) ? "DocumentNumber" : "DocumentTitle";
  answer.rows().Sort((first.empty() ? "" : first + ", ") + "HardCopy, ManualName, CopyNumber, " +
                     document + ", ReleaseID");
}

}  // namespace kv::desk
