// SPDX-License-Identifier: Apache-2.0
#include "desk/copies/view_copies.h"

#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/answer_set.h"
#include "desk/copies/copy_list.h"
#include "desk/documents/document_access.h"
#include "desk/manuals/manual_lookup.h"
#include "desk/people/user_lookup.h"
#include "desk/queries/query_lookup.h"

namespace kv::desk {

namespace {

CopyFilter filterOf(const Session& session, const CopyListing& listing) {
  CopyFilter filter;
  filter.hard = listing.kinds.hard;
  filter.listed = listing.kinds.listed;
  if (listing.user) filter.user = doubledQuotes(findUser(session.database(), *listing.user));
  if (listing.manual) filter.manual = findManual(session, *listing.manual).joined;
  if (listing.document) filter.document = findDocument(session, *listing.document).joined;
  if (listing.manualQuery)
    filter.manualQuery = findQuery(session, *listing.manualQuery, kManualQueries);
  if (listing.documentQuery) filter.documentQuery = findQuery(session, *listing.documentQuery);
  return filter;
}

// Copies are of documents, come with manuals, and users have them.
void requireRights(const Session& session) {
  for (const auto right : {urViewDocumentList, urViewManualList, urVIEWUSERLIST})
    session.requireRight(right);
}

}  // namespace

Ref<Recordset> listCopies(const Session& session, const CopyListing& listing) {
  requireRights(session);
  const CopyFilter filter = filterOf(session, listing);
  const UserNames names(session.database());
  AnswerSet answer({{"ReleaseID", kTypeInteger},
                    {"UserID", kTypeVarWChar},
                    {"UserName", kTypeVarWChar},
                    {"HardCopy", kTypeBoolean},
                    {"ManualName", kTypeVarWChar},
                    {"CopyNumber", kTypeVarWChar},
                    {"DocumentID", kTypeVarWChar},
                    {"DocumentNumber", kTypeVarWChar},
                    {"DocumentTitle", kTypeLongVarWChar},
                    {"RevisionLevel", kTypeVarWChar},
                    {"CurrentRevisionLevel", kTypeVarWChar},
                    {"State", kTypeVarWChar}});
  for (const auto& copy : copiesHeld(session, filter))
    if (!listing.staleOnly || copy.state == CopyState::Stale)
      answer.add({copy.release, copy.userId, names.of(copy.userId), copy.hard, copy.manual,
                  copy.number, copy.documentId, copy.documentNumber, copy.title, copy.level,
                  copy.currentLevel, copy.stateText()});
  sortCopies(session, answer, "UserName, UserID");
  return answer.take();
}

Ref<Recordset> listHoldings(const Session& session, const std::optional<std::string>& user,
                            CopyKinds kinds) {
  CopyFilter filter;
  filter.hard = kinds.hard;
  filter.listed = kinds.listed;
  filter.user = doubledQuotes(userToLookAt(session, user));
  AnswerSet answer({{"ReleaseID", kTypeInteger},
                    {"HardCopy", kTypeBoolean},
                    {"ManualName", kTypeVarWChar},
                    {"CopyNumber", kTypeVarWChar},
                    {"DocumentID", kTypeVarWChar},
                    {"DocumentNumber", kTypeVarWChar},
                    {"DocumentTitle", kTypeLongVarWChar},
                    {"RevisionLevel", kTypeVarWChar},
                    {"CurrentRevisionLevel", kTypeVarWChar},
                    {"State", kTypeVarWChar}});
  for (const auto& copy : copiesHeld(session, filter))
    answer.add({copy.release, copy.hard, copy.manual, copy.number, copy.documentId,
                copy.documentNumber, copy.title, copy.level, copy.currentLevel, copy.stateText()});
  sortCopies(session, answer);
  return answer.take();
}

}  // namespace kv::desk
