// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/detail.h"
#include "cli/program/given_options.h"
#include "cli/program/verbs.h"
#include "cli/revisions/revision_key.h"
#include "desk/refusal.h"
#include "desk/revisions/add_revision.h"
#include "desk/revisions/delete_revision.h"
#include "desk/revisions/edit_revision.h"
#include "desk/revisions/view_revisions.h"

namespace kv::cli {

namespace {

using desk::RevisionFields;

constexpr const char* kKey = "RevisionID";

void addFields(Command& verb, RevisionFields& fields) {
  addText(verb, "--level", fields.level, "The level, such as A or 2");
  addText(verb, "--field1", fields.field1, "The first data field");
  addText(verb, "--field2", fields.field2, "The second data field");
  addText(verb, "--description", fields.description, "What changes");
  addText(verb, "--location", fields.location, "The path of the revision's file");
  addDateOrNone(verb, "--effective", fields.effective, "Since when it is effective");
}

struct Show : RegisterVerb {
  std::int32_t revision = 0;

  void describe(Command& verb) { addRevisionKey(verb, revision); }
  void run(const Session& session) const {
    writeDetail(std::cout, desk::viewRevision(session, revision), options.format);
  }
};

struct Add : RegisterVerb {
  std::string document;
  RevisionFields fields;
  std::optional<std::string> responsible;

  void describe(Command& verb) {
    verb.addOption("document", document, "The document, by identifier or number")->required();
    addFields(verb, fields);
    addText(verb, "--responsible", responsible,
            "Who prepares it, by ID or name; whoever logs in when left out");
  }
  void run(const Session& session) const {
    const auto added = desk::addRevision(session, document, fields, responsible);
    writeDone(std::cout,
              "added the revision " + std::to_string(added.revision) + " to " + added.documentId,
              {{kKey, added.revision}, {"DocumentID", added.documentId}}, options.format);
  }
};

struct Edit : RegisterVerb {
  std::int32_t revision = 0;
  RevisionFields fields;

  void describe(Command& verb) {
    addRevisionKey(verb, revision);
    addFields(verb, fields);
  }
  void check() const { desk::requireChange(fields.any()); }
  void run(const Session& session) const {
    desk::editRevision(session, revision, fields);
    writeDone(std::cout, "changed the revision " + std::to_string(revision), {{kKey, revision}},
              options.format);
  }
};

struct Delete : RegisterVerb {
  std::int32_t revision = 0;

  void describe(Command& verb) { addRevisionKey(verb, revision); }
  void run(const Session& session) const {
    desk::deleteRevision(session, revision);
    writeDone(std::cout, "deleted the revision " + std::to_string(revision), {{kKey, revision}},
              options.format);
  }
};

}  // namespace

void addRevisionKey(Command& verb, std::int32_t& revision) {
  addNumber(verb, "revision", revision, "The revision's number, as 'kvvesk revisions' lists it")
      ->required();
}

void revisionShow(Command& verb) { declare<Show>(verb); }
void revisionAdd(Command& verb) { declare<Add>(verb); }
void revisionEdit(Command& verb) { declare<Edit>(verb); }
void revisionDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
