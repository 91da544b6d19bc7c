// Who owns a document, and who must approve its revisions.
#include <algorithm>
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/documents/document_access.h"
#include "cli/people/user_lookup.h"
#include "cli/program/client_transaction.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "documents/document.h"
#include "kvdata/table_value.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

struct Words {
  std::string document;
  std::string user;
  std::optional<std::string> before;
};

// One of the two lists of a document.
using List = Ref<Recordset> (*)(const Session& session, const std::string& document);

Ref<Recordset> ownersOf(const Session& session, const std::string& document) {
  return session->Document()->Owners(document);
}

Ref<Recordset> approversOf(const Session& session, const std::string& document) {
  return session->Document()->Approvers(document);
}

std::vector<std::string> membersOf(const Session& session, List list, const DocumentKey& document) {
  std::vector<std::string> ids;
  for (const auto rs = list(session, document.joined); !rs->Eof(); rs->MoveNext())
    ids.push_back(joinText(rs->Fields("UserID")->Value()));
  return ids;
}

// A user, or somebody in the list who is none any more, or is still to be named.
std::string findIn(const std::vector<std::string>& members, const Session& session,
                   const std::string& user) {
  const auto found = std::find_if(members.begin(), members.end(), [&](const std::string& member) {
    return equalNoCase(member, user);
  });
  return found == members.end() ? findUser(session.database(), user) : *found;
}

// The same, who must be in the approval list: the library takes that for granted when it moves him.
std::string findApprover(const Session& session, const DocumentKey& document,
                         const std::string& user) {
  const auto members = membersOf(session, approversOf, document);
  std::string found = findIn(members, session, user);
  if (std::find(members.begin(), members.end(), found) == members.end())
    throw Error(kInvalidCall, "kvvesk",
                "The user '" + user + "' is not in the approval list of the document.");
  return found;
}

std::string nameOf(const Session& session, const std::string& user) {
  return session->User()->getUserName(doubledQuotes(user));
}

int show(const Options& options, List list, const std::string& which) {
  const Session session(options);
  session.requireRight(urviewdocumentdetail);
  const DocumentKey document = findDocument(session, which);
  AnswerSet answer(
      {{"Place", kTypeInteger}, {"UserID", kTypeVarWChar}, {"UserName", kTypeVarWChar}});
  std::int32_t place = 0;
  for (const auto& user : membersOf(session, list, document))
    answer.add({++place, user, nameOf(session, user)});
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

std::string placeOf(const DocumentKey& document, const std::string& user) {
  return "DocumentID = '" + doubledQuotes(document.id) + "' and UserID = '" + doubledQuotes(user) +
         "'";
}

// A new approver has no place yet, and none sorts before every other: the revisions would go to him
// first. He is given the place behind the last.
void putLast(const Session& session, const DocumentKey& document, const std::string& user) {
  const auto last = openOwn(
      session.database(),
      "Select Max(ListOrder) From Routing Where DocumentID = '" + doubledQuotes(document.id) + "'",
      kReadOnly);
  const Variant place = last->Fields(0)->Value();
  storeTableValue(session.database(), "Routing", "ListOrder",
                  static_cast<float>(place.isNull() ? 1 : toDouble(place) + 1),
                  placeOf(document, user));
}

void done(const Options& options, const std::string& sentence, const DocumentKey& document,
          const std::string& user) {
  writeDone(std::cout, sentence, {{"DocumentID", document.id}, {"UserID", user}}, options.format);
}

int addOwner(const Options& options, const Words& words) {
  const Session session(options);
  ClientTransaction transaction(session);
  const DocumentKey document = findDocument(session, words.document);
  const std::string user = findUser(session.database(), words.user);
  session->Document()->AddOwner(document.joined, doubledQuotes(user));
  transaction.commit();
  done(options, user + " now owns the document " + document.id, document, user);
  return kDone;
}

int removeOwner(const Options& options, const Words& words) {
  const Session session(options);
  ClientTransaction transaction(session);
  const DocumentKey document = findDocument(session, words.document);
  const std::string user = findIn(membersOf(session, ownersOf, document), session, words.user);
  session->Document()->RemoveOwner(document.joined, doubledQuotes(user));
  transaction.commit();
  done(options, user + " no longer owns the document " + document.id, document, user);
  return kDone;
}

// The list is one approver longer and in order, or as it was.
int addApprover(const Options& options, const Words& words) {
  const Session session(options);
  ClientTransaction transaction(session);
  const DocumentKey document = findDocument(session, words.document);
  transaction.lock("Documents", "DocumentID", document.id);
  const std::string user = findUser(session.database(), words.user);
  session->Document()->AddApprover(document.joined, doubledQuotes(user));
  putLast(session, document, user);
  std::string where;
  if (words.before) {
    const std::string before = findApprover(session, document, *words.before);
    session->Document()->ChangeListOrder(document.joined, doubledQuotes(user),
                                         doubledQuotes(before));
    where = ", before " + before;
  }
  transaction.commit();
  done(options, user + " now approves the document " + document.id + where, document, user);
  return kDone;
}

int removeApprover(const Options& options, const Words& words) {
  const Session session(options);
  ClientTransaction transaction(session);
  const DocumentKey document = findDocument(session, words.document);
  const std::string user = findIn(membersOf(session, approversOf, document), session, words.user);
  session->Document()->RemoveApprover(document.joined, doubledQuotes(user));
  transaction.commit();
  done(options, user + " no longer approves the document " + document.id, document, user);
  return kDone;
}

int moveApprover(const Options& options, const Words& words) {
  const Session session(options);
  ClientTransaction transaction(session);
  const DocumentKey document = findDocument(session, words.document);
  transaction.lock("Documents", "DocumentID", document.id);
  // The library leaves the order to whoever calls it; it is part of making the list.
  requireFieldRight(session, document, urassigndocumentapprovers, oraddremoveapprovers);
  const std::string user = findApprover(session, document, words.user);
  const std::string before = findApprover(session, document, *words.before);
  if (equalNoCase(user, before))
    throw Error(kInvalidCall, "kvvesk", "Nobody can be moved before himself.");
  session->Document()->ChangeListOrder(document.joined, doubledQuotes(user), doubledQuotes(before));
  transaction.commit();
  done(options, user + " now approves the document " + document.id + ", before " + before, document,
       user);
  return kDone;
}

template <List list>
struct Show : RegisterVerb {
  std::string document;

  void describe(Command& verb) {
    verb.addOption("document", document, "The document, by identifier or number")->required();
  }
  [[nodiscard]] int run() const { return show(options, list, document); }
};

enum class Order : std::uint8_t { None, Optional, Required };

template <int (*make)(const Options& options, const Words& words), Order order = Order::None>
struct Change : RegisterVerb {
  Words words;

  void describe(Command& verb) {
    verb.addOption("document", words.document, "The document, by identifier or number")->required();
    verb.addOption("user", words.user, "The user, by ID or name")->required();
    if (order != Order::None)
      addText(verb, "--before", words.before, "The approver who is asked next, by ID or name")
          ->typeName("USER")
          ->required(order == Order::Required);
  }
  [[nodiscard]] int run() const { return make(options, words); }
};

}  // namespace

void ownerShow(Command& verb) { declare<Show<ownersOf>>(verb); }
void ownerAdd(Command& verb) { declare<Change<addOwner>>(verb); }
void ownerRemove(Command& verb) { declare<Change<removeOwner>>(verb); }
void approverShow(Command& verb) { declare<Show<approversOf>>(verb); }
void approverAdd(Command& verb) { declare<Change<addApprover, Order::Optional>>(verb); }
void approverRemove(Command& verb) { declare<Change<removeApprover>>(verb); }
void approverMove(Command& verb) { declare<Change<moveApprover, Order::Required>>(verb); }

}  // namespace kv::cli
