#include <chrono>
#include <iostream>
#include <thread>

#include "cli/answer_set.h"
#include "cli/client_transaction.h"
#include "cli/detail.h"
#include "cli/document_access.h"
#include "cli/document_edit.h"
#include "cli/document_fields.h"
#include "cli/given_options.h"
#include "cli/terminal.h"
#include "cli/verbs.h"
#include "common/clock.h"
#include "common/error.h"
#include "common/text.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kKey = "DocumentID";

struct NewDocument {
  DocumentFields fields;
  std::optional<std::string> level;
  std::optional<std::string> effective;
  bool current = false;
};

int show(const Options& options, const std::string& document) {
  const Session session(options);
  session.requireRight(urviewdocumentdetail);
  const DocumentKey key = findDocument(session, document);
  writeDetail(std::cout, *session->Document()->Record(key.joined), options.format,
              labelsIn(session.database(), "DocumentConfig"));
  return kDone;
}

std::string addOne(const Session& session, const NewDocument& given) {
  const DocumentFields& f = given.fields;
  std::string effective = given.effective.value_or("");
  // A revision in force always says since when.
  if (given.current && effective.empty()) effective = isoText(today());
  return session->Document()->Add(
      doubledQuotes(session.profile()->UserID()), f.title.value_or(""), f.number.value_or(""),
      f.field1.value_or(""), f.field2.value_or(""), f.field3.value_or(""), f.field4.value_or(""),
      f.notes.value_or(""), 0, f.location.value_or(""), given.level.value_or(""), effective,
      given.current, f.controlled.value_or(true), f.secured.value_or(false));
}

void waitForNextSecond() {
  for (const Date from = now(); now() == from;)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

// Identifiers are made of the user and the second. Scripts add several documents in one second, and
// two of one identifier would be in each other's way for ever, so a second that is taken is let
// pass.
std::string addUnique(const Session& session, const NewDocument& given) {
  constexpr int kAttempts = 60;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    {
      ClientTransaction transaction(session);
      transaction.lockNewNames();
      std::string id = addOne(session, given);
      if (session->Document()->Record(doubledQuotes(id))->RecordCount() == 1) {
        transaction.commit();
        return id;
      }
    }
    waitForNextSecond();
  }
  throw Error(kInvalidCall, "kvvesk",
              "Others added a document in every second of the last minute; try again.");
}

int add(const Options& options, const NewDocument& given) {
  if (!given.fields.any() && !given.level)
    throw UsageError("nothing to add: give a title, a number or another field");
  const Session session(options);
  session.requireRight(urCreateNewDocument);
  if (given.current) session.requireRight(urSetCurrentRevision);
  const std::string id = addUnique(session, given);
  writeDone(std::cout, "added the document " + id, {{kKey, id}}, options.format);
  return kDone;
}

int edit(const Options& options, const std::string& document, const DocumentFields& fields) {
  if (!fields.any()) throw UsageError("nothing to change: give at least one field");
  const Session session(options);
  ClientTransaction transaction(session);
  const DocumentKey key = findDocument(session, document);
  transaction.lock("Documents", "DocumentID", key.id);
  editDocument(session, key, fields);
  transaction.commit();
  writeDone(std::cout, "changed the document " + key.id, {{kKey, key.id}}, options.format);
  return kDone;
}

int remove(const Options& options, const std::string& document) {
  const Session session(options);
  session.requireRight(urdeletedocument);
  ClientTransaction transaction(session);
  const DocumentKey key = findDocument(session, document);
  transaction.lock("Documents", "DocumentID", key.id);
  session->Document()->Delete(key.joined, true);
  transaction.commit();
  writeDone(std::cout, "deleted the document " + key.id, {{kKey, key.id}}, options.format);
  return kDone;
}

void addKey(Command& verb, std::string& document) {
  verb.addOption("document", document, "The document, by identifier or number")->required();
}

void addShow(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("show", "Show all fields of a document");
  const auto options = std::make_shared<Options>();
  const auto document = std::make_shared<std::string>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addKey(*sub, *document);
  sub->callback([&chosen, options, document] {
    chosen = [options, document] { return show(*options, *document); };
  });
}

void addAdd(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("add", "Add a document and its first revision");
  const auto options = std::make_shared<Options>();
  const auto given = std::make_shared<NewDocument>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addDocumentFields(*sub, given->fields);
  addText(*sub, "--level", given->level, "The level of the first revision");
  addDate(*sub, "--effective", given->effective, "Since when, or from when, it is effective");
  sub->addFlag("--current", given->current,
               "The first revision is in force; since today unless --effective says otherwise");
  sub->footer(
      "A new document is controlled and not secured unless the options say otherwise.\n"
      "Its identifier is printed; show, edit, delete and revision take that or its number.");
  sub->callback(
      [&chosen, options, given] { chosen = [options, given] { return add(*options, *given); }; });
}

void addEdit(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("edit", "Change fields of a document");
  const auto options = std::make_shared<Options>();
  const auto document = std::make_shared<std::string>();
  const auto fields = std::make_shared<DocumentFields>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addKey(*sub, *document);
  addDocumentFields(*sub, *fields);
  sub->footer(
      "Fields that are not given stay as they are; an empty text empties a field.\n"
      "--controlled no takes the document out of every manual, collects its hard copies, empties "
      "its\napproval list and deletes its revisions but the current one.\n"
      "--controlled yes puts the revision in force that was kept, if there is one.");
  sub->callback([&chosen, options, document, fields] {
    chosen = [options, document, fields] { return edit(*options, *document, *fields); };
  });
}

void addDelete(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand(
      "delete", "Delete a document with its revisions, owners, approvers and copies");
  const auto options = std::make_shared<Options>();
  const auto document = std::make_shared<std::string>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addKey(*sub, *document);
  sub->callback([&chosen, options, document] {
    chosen = [options, document] { return remove(*options, *document); };
  });
}

}  // namespace

void addDocument(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand("document", "Show, add, change or delete one document");
  verb->requireSubcommand();
  addShow(*verb, chosen);
  addAdd(*verb, chosen);
  addEdit(*verb, chosen);
  addDelete(*verb, chosen);
}

}  // namespace kv::cli
