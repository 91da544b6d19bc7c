// SPDX-License-Identifier: Apache-2.0
#include "desk/people/approvers.h"

#include <algorithm>

#include "classes/rights/rights.h"
#include "common/convert.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/people/document_people.h"
#include "desk/people/user_lookup.h"
#include "desk/refusal.h"
#include "desk/transaction.h"

namespace kv::desk {

namespace {

std::vector<std::string> approversOf(const Session& session, const DocumentKey& document) {
  return membersIn(session->Document()->Approvers(document.joined));
}

// Who must be in the approval list: the library takes that for granted when it moves him.
std::string findApprover(const Session& session, const DocumentKey& document,
                         const std::string& user) {
  const auto members = approversOf(session, document);
  std::string found = findMember(session, members, user);
  if (std::find(members.begin(), members.end(), found) == members.end())
    refuse("The user '" + user + "' is not in the approval list of the document.");
  return found;
}

// A new approver has no place yet, and none sorts before every other: the revisions would go to him
// first. He is given the place behind the last.
void putLast(const Session& session, const DocumentKey& document, const std::string& user) {
  const std::string ofDocument = "DocumentID = '" + document.joined + "'";
  const auto last = openOwn(session.database(),
                            "Select Max(ListOrder) From Routing Where " + ofDocument, kReadOnly);
  const Variant place = last->Fields(0)->Value();
  storeTableValue(session.database(), "Routing", "ListOrder",
                  static_cast<float>(place.isNull() ? 1 : toDouble(place) + 1),
                  ofDocument + " and UserID = '" + doubledQuotes(user) + "'");
}

}  // namespace

Ref<Recordset> listApprovers(const Session& session, const std::string& document) {
  session.requireRight(urviewdocumentdetail);
  return namedMembers(session, approversOf(session, findDocument(session, document)));
}

ListedApprover addApprover(const Session& session, const std::string& document,
                           const std::string& user, const std::optional<std::string>& before) {
  Transaction transaction(session);
  const std::string which = findDocument(session, document).id;
  const std::string id = findAndHoldUser(session, transaction, user);
  const DocumentKey key = findAndHoldDocument(session, transaction, which);
  session->Document()->AddApprover(key.joined, doubledQuotes(id));
  putLast(session, key, id);
  ListedApprover added{.documentId = key.id, .userId = id, .before = {}};
  if (before) {
    added.before = findApprover(session, key, *before);
    session->Document()->ChangeListOrder(key.joined, doubledQuotes(id),
                                         doubledQuotes(added.before));
  }
  transaction.commit();
  return added;
}

ListedApprover removeApprover(const Session& session, const std::string& document,
                              const std::string& user) {
  Transaction transaction(session);
  const DocumentKey key = findDocument(session, document);
  const std::string id = findMember(session, approversOf(session, key), user);
  session->Document()->RemoveApprover(key.joined, doubledQuotes(id));
  transaction.commit();
  return {.documentId = key.id, .userId = id, .before = {}};
}

ListedApprover moveApprover(const Session& session, const std::string& document,
                            const std::string& user, const std::string& before) {
  Transaction transaction(session);
  const DocumentKey key = findAndHoldDocument(session, transaction, document);
  // The library leaves the order to whoever calls it; it is part of making the list.
  requireFieldRight(session, key, urassigndocumentapprovers, oraddremoveapprovers);
  ListedApprover moved{.documentId = key.id,
                       .userId = findApprover(session, key, user),
                       .before = findApprover(session, key, before)};
  if (equalNoCase(moved.userId, moved.before)) refuse("Nobody can be moved before himself.");
  session->Document()->ChangeListOrder(key.joined, doubledQuotes(moved.userId),
                                       doubledQuotes(moved.before));
  transaction.commit();
  return moved;
}

}  // namespace kv::desk
