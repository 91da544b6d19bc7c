// SPDX-License-Identifier: Apache-2.0
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

void addKey(Command& verb, std::string& document) {
  verb.addOption("document", document, "The document, by identifier or number")->required();
}

struct Show : RegisterVerb {
  std::string document;

  void describe(Command& verb) { addKey(verb, document); }
  void run(const Session& session) const {
    writeDetail(std::cout, desk::viewDocument(session, document), options.format);
  }
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
  void check() const { given.check(); }
  void run(const Session& session) const {
    const std::string id = desk::addDocument(session, given);
    writeDone(std::cout, "added the document " + id, {{kKey, id}}, options.format);
  }
};

struct Edit : RegisterVerb {
  std::string document;
  DocumentFields fields;

  void describe(Command& verb) {
    addKey(verb, document);
    addDocumentFields(verb, fields);
  }
  void check() const { desk::requireChange(fields.any()); }
  void run(const Session& session) const {
    const std::string id = desk::editDocument(session, document, fields);
    writeDone(std::cout, "changed the document " + id, {{kKey, id}}, options.format);
  }
};

struct Delete : RegisterVerb {
  std::string document;

  void describe(Command& verb) { addKey(verb, document); }
  void run(const Session& session) const {
    const std::string id = desk::deleteDocument(session, document);
    writeDone(std::cout, "deleted the document " + id, {{kKey, id}}, options.format);
  }
};

}  // namespace

void documentShow(Command& verb) { declare<Show>(verb); }
void documentAdd(Command& verb) { declare<Add>(verb); }
void documentEdit(Command& verb) { declare<Edit>(verb); }
void documentDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
