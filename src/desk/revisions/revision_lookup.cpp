// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/revision_lookup.h"

#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/documents/document_access.h"
#include "desk/refusal.h"
#include "recordset/text_field.h"

namespace kv::desk {

namespace {

bool isApprover(const Session& session, std::int32_t revision) {
  const auto rs =
      openOwn(session.database(),
              "Select UserID From ApprovalRouting Where RevID = " + std::to_string(revision) +
                  " and UserID = '" + doubledQuotes(session.profile()->UserID()) + "'",
              kReadOnly);
  return rs->RecordCount() > 0;
}

FoundRevision find(const Session& session, std::int32_t revision, bool toDecide) {
  FoundRevision found{.row = session->Revision()->GetRevRS(revision), .documentId = {}};
  const bool there = found.row->RecordCount() > 0;
  if (there) found.documentId = fieldText(*found.row, "DocumentID");
  if (!there ||
      (isHidden(session, found.documentId) && !(toDecide && isApprover(session, revision))))
    refuse("There is no revision " + std::to_string(revision) + ".");
  found.owned = isOwner(session, found.documentId);
  return found;
}

}  // namespace

FoundRevision findRevision(const Session& session, std::int32_t revision) {
  return find(session, revision, false);
}

FoundRevision findRevisionToDecide(const Session& session, std::int32_t revision) {
  return find(session, revision, true);
}

bool hasStatus(const FoundRevision& found, RevisionStatus status) {
  return compareValues(found.row->Fields("RevisionStatus")->Value(),
                       static_cast<std::int16_t>(status)) == 0;
}

bool isCurrentOf(const Session& session, const std::string& document, std::int32_t revision) {
  const Variant current = session->Document()->Value(document, "CurrentRevID");
  return compareValues(current, revision) == 0;
}

}  // namespace kv::desk
