// Who owns a document, and who must approve its revisions.
#include <algorithm>
#include <iostream>

#include "cli/answer_set.h"
#include "cli/client_transaction.h"
#include "cli/document_access.h"
#include "cli/given_options.h"
#include "cli/output.h"
#include "cli/user_lookup.h"
#include "cli/verbs.h"
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
  const std::string which = findDocument(session, words.document).id;
  const std::string user = findAndHoldUser(session, transaction, words.user);
  const DocumentKey document = findAndHoldDocument(session, transaction, which);
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
  const std::string which = findDocument(session, words.document).id;
  const std::string user = findAndHoldUser(session, transaction, words.user);
  const DocumentKey document = findAndHoldDocument(session, transaction, which);
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
  const DocumentKey document = findAndHoldDocument(session, transaction, words.document);
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

using Change = int (*)(const Options& options, const Words& words);

void addChange(Command& verb, Action& chosen, const char* name, const char* help, Change change,
               bool orders, bool mustOrder) {
  auto* sub = verb.addSubcommand(name, help);
  const auto options = std::make_shared<Options>();
  const auto words = std::make_shared<Words>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  sub->addOption("document", words->document, "The document, by identifier or number")->required();
  sub->addOption("user", words->user, "The user, by ID or name")->required();
  if (orders)
    addText(*sub, "--before", words->before, "The approver who is asked next, by ID or name")
        ->typeName("USER")
        ->required(mustOrder);
  sub->callback([&chosen, options, words, change] {
    chosen = [options, words, change] { return change(*options, *words); };
  });
}

void addShow(Command& verb, Action& chosen, List list, const char* help) {
  auto* sub = verb.addSubcommand("show", help);
  const auto options = std::make_shared<Options>();
  const auto document = std::make_shared<std::string>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  sub->addOption("document", *document, "The document, by identifier or number")->required();
  sub->callback([&chosen, list, options, document] {
    chosen = [list, options, document] { return show(*options, list, *document); };
  });
}

}  // namespace

void addOwners(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand("owners", "Show or change who owns a document");
  verb->requireSubcommand();
  addShow(*verb, chosen, ownersOf, "Show the owners of a document");
  addChange(*verb, chosen, "add", "Make a user an owner of a document", addOwner, false, false);
  addChange(*verb, chosen, "remove", "Let a user be an owner no longer", removeOwner, false, false);
}

void addApprovers(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand(
      "approvers", "Show or change who must approve the revisions of a document, in which order");
  verb->requireSubcommand();
  addShow(*verb, chosen, approversOf, "Show the approval list of a document, in its order");
  addChange(*verb, chosen, "add",
            "Put a user into the approval list of a document: behind the last, or before another",
            addApprover, true, false);
  addChange(*verb, chosen, "remove", "Take a user out of the approval list of a document",
            removeApprover, false, false);
  addChange(*verb, chosen, "move", "Have an approver asked before another", moveApprover, true,
            true);
}

}  // namespace kv::cli
