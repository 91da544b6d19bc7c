// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/delete_revision.h"

#include "common/text.h"
#include "desk/documents/document_access.h"
#include "desk/refusal.h"
#include "desk/revisions/revision_lookup.h"
#include "desk/transaction.h"

namespace kv::desk {

void deleteRevision(const Session& session, std::int32_t revision) {
  Transaction transaction(session);
  transaction.lock("Revisions", "RevisionID", std::int64_t{revision});
  const FoundRevision found = findRevision(session, revision);
  requireOwner(found.owned);
  if (hasStatus(found, RevisionStatus::Current) ||
      isCurrentOf(session, doubledQuotes(found.documentId), revision))
    refuse("Revision " + std::to_string(revision) +
           " is in force; a document does not lose its current revision this way.");
  if (!session->Revision()->DeleteRevision(revision))
    throw Error(kEngineFailure, "kvvesk",
                "Revision " + std::to_string(revision) + " could not be deleted.");
  transaction.commit();
}

}  // namespace kv::desk
