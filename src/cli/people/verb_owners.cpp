// SPDX-License-Identifier: Apache-2.0
// Who owns a document, and who must approve its revisions.
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/people/approvers.h"
#include "desk/people/owners.h"

namespace kv::cli {

namespace {

// One of the two lists of a document.
using List = Ref<Recordset> (*)(const desk::Session& session, const std::string& document);

template <List list>
struct Show : RegisterVerb {
  std::string document;

  void describe(Command& verb) {
    verb.addOption("document", document, "The document, by identifier or number")->required();
  }
  void run(const Session& session) const {
    writeRows(std::cout, *list(session, document), options.format);
  }
};

// A change of one of the lists.
struct ListChange : RegisterVerb {
  std::string document;
  std::string user;

  void describe(Command& verb) {
    verb.addOption("document", document, "The document, by identifier or number")->required();
    verb.addOption("user", user, "The user, by ID or name")->required();
  }

 protected:
  void done(const std::string& documentId, const std::string& userId, const std::string& what,
            const std::string& before = {}) const {
    writeDone(std::cout,
              userId + what + " the document " + documentId +
                  (before.empty() ? "" : ", before " + before),
              {{"DocumentID", documentId}, {"UserID", userId}}, options.format);
  }
};

struct AddOwner : ListChange {
  void run(const Session& session) const {
    const auto [documentId, userId] = desk::addOwner(session, document, user);
    done(documentId, userId, " now owns");
  }
};

struct RemoveOwner : ListChange {
  void run(const Session& session) const {
    const auto [documentId, userId] = desk::removeOwner(session, document, user);
    done(documentId, userId, " no longer owns");
  }
};

struct OrderedApprover : ListChange {
  std::optional<std::string> before;

 protected:
  Argument* addBefore(Command& verb) {
    return addText(verb, "--before", before, "The approver who is asked next, by ID or name")
        ->typeName("USER");
  }
};

struct AddApprover : OrderedApprover {
  void describe(Command& verb) {
    ListChange::describe(verb);
    addBefore(verb);
  }
  void run(const Session& session) const {
    const auto added = desk::addApprover(session, document, user, before);
    done(added.documentId, added.userId, " now approves", added.before);
  }
};

struct MoveApprover : OrderedApprover {
  void describe(Command& verb) {
    ListChange::describe(verb);
    addBefore(verb)->required();
  }
  void run(const Session& session) const {
    const auto moved = desk::moveApprover(session, document, user, *before);
    done(moved.documentId, moved.userId, " now approves", moved.before);
  }
};

struct RemoveApprover : ListChange {
  void run(const Session& session) const {
    const auto removed = desk::removeApprover(session, document, user);
    done(removed.documentId, removed.userId, " no longer approves");
  }
};

}  // namespace

void ownerShow(Command& verb) { declare<Show<desk::listOwners>>(verb); }
void ownerAdd(Command& verb) { declare<AddOwner>(verb); }
void ownerRemove(Command& verb) { declare<RemoveOwner>(verb); }
void approverShow(Command& verb) { declare<Show<desk::listApprovers>>(verb); }
void approverAdd(Command& verb) { declare<AddApprover>(verb); }
void approverRemove(Command& verb) { declare<RemoveApprover>(verb); }
void approverMove(Command& verb) { declare<MoveApprover>(verb); }

}  // namespace kv::cli
