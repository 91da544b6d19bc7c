#include <chrono>
#include <iostream>
#include <thread>

#include "cli/answers/answer_set.h"
#include "cli/answers/detail.h"
#include "cli/documents/document_access.h"
#include "cli/documents/document_edit.h"
#include "cli/documents/document_fields.h"
#include "cli/program/client_transaction.h"
#include "cli/program/given_options.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
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
      session.profile()->UserID(), f.title.value_or(""), f.number.value_or(""),
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

struct Show : RegisterVerb {
  std::string document;

  void describe(Command& verb) { addKey(verb, document); }
  [[nodiscard]] int run() const { return show(options, document); }
};

struct Add : RegisterVerb {
  NewDocument given;

  void describe(Command& verb) {
    addDocumentFields(verb, given.fields);
    addText(verb, "--level", given.level, "The level of the first revision");
    addDate(verb, "--effective", given.effective, "Since when, or from when, it is effective");
    verb.addFlag("--current", given.current,
                 "The first revision is in force; since today unless --effective says otherwise");
  }
  [[nodiscard]] int run() const { return add(options, given); }
};

struct Edit : RegisterVerb {
  std::string document;
  DocumentFields fields;

  void describe(Command& verb) {
    addKey(verb, document);
    addDocumentFields(verb, fields);
  }
  [[nodiscard]] int run() const { return edit(options, document, fields); }
};

struct Delete : RegisterVerb {
  std::string document;

  void describe(Command& verb) { addKey(verb, document); }
  [[nodiscard]] int run() const { return remove(options, document); }
};

}  // namespace

void documentShow(Command& verb) { declare<Show>(verb); }
void documentAdd(Command& verb) { declare<Add>(verb); }
void documentEdit(Command& verb) { declare<Edit>(verb); }
void documentDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
