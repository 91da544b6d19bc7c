// SPDX-License-Identifier: Apache-2.0
// What comes of a step on a revision's way.
#pragma once

#include <cstdint>
#include <string>

#include "desk/revisions/revision_lookup.h"
#include "desk/revisions/sent_actions.h"
#include "desk/revisions/standing.h"
#include "desk/session.h"
#include "desk/transaction.h"

namespace kv::desk {

struct RevisionStep {
  std::string documentId;
  Ref<Recordset> standing;  // as standingOf gives it
  Ref<Recordset> told;      // the actions that the step has sent
};

// The revision, after which nobody else changes a revision of the same document, or tells anybody
// about one, until the transaction ends.
[[nodiscard]] FoundRevision lockedRevision(const Session& session, Transaction& transaction,
                                           std::int32_t revision,
                                           FoundRevision (*find)(const Session&, std::int32_t));

// A document that is not controlled has no revisions that anybody approves or puts in force.
// Raises 5 for one, and when there is no such document.
Ref<Recordset> controlledDocument(const Session& session, const std::string& id);

// What has come of it, once it is committed.
[[nodiscard]] RevisionStep stepDone(const Session& session, const FoundRevision& found,
                                    std::int32_t revision, const SentActions& sent);

}  // namespace kv::desk
