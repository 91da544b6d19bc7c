#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/detail.h"
#include "cli/documents/document_fields.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "desk/documents/add_document.h"
#include "desk/documents/delete_document.h"
#include "desk/documents/edit_document.h"
#include "desk/documents/view_documents.h"
#include "desk/refusal.h"

namespace kv::cli {

namespace {

using desk::NewDocument;

constexpr const char* kKey = "DocumentID";

int show(const Options& options, const std::string& document) {
  const Session session(options);
  writeDetail(std::cout, desk::viewDocument(session, document), options.format);
  return kDone;
}

int add(const Options& options, const NewDocument& given) {
  given.check();
  const Session session(options);
  const std::string id = desk::addDocument(session, given);
  writeDone(std::cout, "added the document " + id, {{kKey, id}}, options.format);
  return kDone;
}

int edit(const Options& options, const std::string& document, const DocumentFields& fields) {
  desk::requireChange(fields.any());
  const Session session(options);
  const std::string id = desk::editDocument(session, document, fields);
  writeDone(std::cout, "changed the document " + id, {{kKey, id}}, options.format);
  return kDone;
}

int remove(const Options& options, const std::string& document) {
  const Session session(options);
  const std::string id = desk::deleteDocument(session, document);
  writeDone(std::cout, "deleted the document " + id, {{kKey, id}}, options.format);
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
