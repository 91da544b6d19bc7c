// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/edit_revision.h"

#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/documents/document_access.h"
#include "desk/refusal.h"
#include "desk/revisions/revision_lookup.h"
#include "desk/transaction.h"
#include "recordset/text_field.h"

namespace kv::desk {

namespace {

void requireRights(const Session& session, bool owned, const RevisionFields& fields) {
  // No right names these two.
  if (fields.level || fields.location) requireOwner(owned);
  if (fields.description) session.requireRight(urEditChangeDescription);
  if (fields.effective) session.requireRight(urEditEffectiveDate);
  if (fields.field1) session.requireRight(urEditRevUser1);
  if (fields.field2) session.requireRight(urEditRevUser2);
}

}  // namespace

void editRevision(const Session& session, std::int32_t revision, const RevisionFields& fields) {
  requireChange(fields.any());
  Transaction transaction(session);
  transaction.lock("Revisions", "RevisionID", std::int64_t{revision});
  const FoundRevision found = findRevision(session, revision);
  requireRights(session, found.owned, fields);
  const auto& row = *found.row;
  session->Revision()->SaveData(revision, fields.level.value_or(fieldText(row, "RevisionLevel")),
                                fields.field1.value_or(fieldText(row, "RevUser1")),
                                fields.field2.value_or(fieldText(row, "RevUser2")),
                                fields.description.value_or(fieldText(row, "ChangeDescription")),
                                fields.location.value_or(fieldText(row, "Location")),
                                fields.effective.value_or(fieldText(row, "EffectiveDate")));
  transaction.lock("Documents", "DocumentID", found.documentId);
  const std::string document = doubledQuotes(found.documentId);
  if (isCurrentOf(session, document, revision)) {
    const auto saved = session->Revision()->GetRevRS(revision);
    for (const char* column : {"RevisionLevel", "EffectiveDate"})
      session->Document()->SetValue(document, column, saved->Fields(column)->Value());
  }
  transaction.commit();
}

}  // namespace kv::desk
