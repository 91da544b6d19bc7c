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

struct Words {
  std::string document;
  std::string user;
  std::optional<std::string> before;
};

// One of the two lists of a document.
using List = Ref<Recordset> (*)(const desk::Session& session, const std::string& document);

int show(const Options& options, List list, const std::string& document) {
  const Session session(options);
  writeRows(std::cout, *list(session, document), options.format);
  return kDone;
}

int done(const Options& options, const std::string& sentence, const std::string& document,
         const std::string& user) {
  writeDone(std::cout, sentence, {{"DocumentID", document}, {"UserID", user}}, options.format);
  return kDone;
}

int addOwner(const Options& options, const Words& words) {
  const Session session(options);
  const auto [document, user] = desk::addOwner(session, words.document, words.user);
  return done(options, user + " now owns the document " + document, document, user);
}

int removeOwner(const Options& options, const Words& words) {
  const Session session(options);
  const auto [document, user] = desk::removeOwner(session, words.document, words.user);
  return done(options, user + " no longer owns the document " + document, document, user);
}

int addApprover(const Options& options, const Words& words) {
  const Session session(options);
  const auto [document, user, before] =
      desk::addApprover(session, words.document, words.user, words.before);
  return done(options,
              user + " now approves the document " + document +
                  (before.empty() ? "" : ", before " + before),
              document, user);
}

int removeApprover(const Options& options, const Words& words) {
  const Session session(options);
  const auto [document, user, before] = desk::removeApprover(session, words.document, words.user);
  return done(options, user + " no longer approves the document " + document, document, user);
}

int moveApprover(const Options& options, const Words& words) {
  const Session session(options);
  const auto [document, user, before] =
      desk::moveApprover(session, words.document, words.user, *words.before);
  return done(options, user + " now approves the document " + document + ", before " + before,
              document, user);
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

void ownerShow(Command& verb) { declare<Show<desk::listOwners>>(verb); }
void ownerAdd(Command& verb) { declare<Change<addOwner>>(verb); }
void ownerRemove(Command& verb) { declare<Change<removeOwner>>(verb); }
void approverShow(Command& verb) { declare<Show<desk::listApprovers>>(verb); }
void approverAdd(Command& verb) { declare<Change<addApprover, Order::Optional>>(verb); }
void approverRemove(Command& verb) { declare<Change<removeApprover>>(verb); }
void approverMove(Command& verb) { declare<Change<moveApprover, Order::Required>>(verb); }

}  // namespace kv::cli
