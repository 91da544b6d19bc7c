// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/revision_step.h"

#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/refusal.h"

namespace kv::desk {

FoundRevision lockedRevision(const Session& session, Transaction& transaction,
                             std::int32_t revision,
                             FoundRevision (*find)(const Session&, std::int32_t)) {
  transaction.lock("Revisions", "DocumentID", find(session, revision).documentId);
  return find(session, revision);
}

Ref<Recordset> controlledDocument(const Session& session, const std::string& id) {
  auto document = openOwn(session.database(),
                          "Select Controlled, CurrentRevID From Documents Where DocumentID = '" +
                              doubledQuotes(id) + "'",
                          kReadOnly);
  if (document->RecordCount() == 0) refuse("There is no document '" + id + "'.");
  if (!toBoolean(document->Fields("Controlled")->Value()))
    refuse("The document " + id + " is not controlled.");
  return document;
}

RevisionStep stepDone(const Session& session, const FoundRevision& found, std::int32_t revision,
                      const SentActions& sent) {
  return {.documentId = found.documentId,
          .standing = standingOf(session, revision),
          .told = sent.rows()};
}

}  // namespace kv::desk
