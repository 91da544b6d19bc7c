#include <iostream>

#include "cli/answer_set.h"
#include "cli/client_transaction.h"
#include "cli/detail.h"
#include "cli/document_access.h"
#include "cli/given_options.h"
#include "cli/revision_life.h"
#include "cli/revision_lookup.h"
#include "cli/terminal.h"
#include "cli/user_lookup.h"
#include "cli/verbs.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/recordset/text_field.h"
#include "revisions/revision_status.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kKey = "RevisionID";

struct RevisionFields {
  std::optional<std::string> level;
  std::optional<std::string> field1;
  std::optional<std::string> field2;
  std::optional<std::string> description;
  std::optional<std::string> location;
  std::optional<std::string> effective;

  [[nodiscard]] bool any() const {
    return level || field1 || field2 || description || location || effective;
  }
};

void addFields(Command& verb, RevisionFields& fields) {
  addText(verb, "--level", fields.level, "The level, such as A or 2");
  addText(verb, "--field1", fields.field1, "The first data field");
  addText(verb, "--field2", fields.field2, "The second data field");
  addText(verb, "--description", fields.description, "What changes");
  addText(verb, "--location", fields.location, "The path of the revision's file");
  addDateOrNone(verb, "--effective", fields.effective, "Since when it is effective");
}

int show(const Options& options, std::int32_t revision) {
  const Session session(options);
  session.requireRight(urViewRevisionDetail);
  const auto row = findRevision(session, revision).row;
  const auto value = [&](const char* column) { return row->Fields(column)->Value(); };
  AnswerSet answer({{kKey, kTypeInteger},
                    {"DocumentID", kTypeVarWChar},
                    {"RevisionLevel", kTypeVarWChar},
                    {"Status", kTypeLongVarWChar},
                    {"RevisionStatus", kTypeSmallInt},
                    {"RoutingStatus", kTypeSmallInt},
                    {"EffectiveDate", kTypeDate},
                    {"ResponsibleID", kTypeVarWChar},
                    {"RevUser1", kTypeVarWChar},
                    {"RevUser2", kTypeVarWChar},
                    {"Location", kTypeVarWChar},
                    {"ChangeDescription", kTypeLongVarWChar}});
  answer.add({revision, value("DocumentID"), value("RevisionLevel"), statusText(session, revision),
              value("RevisionStatus"), value("RoutingStatus"), value("EffectiveDate"),
              value("ResponsibleID"), value("RevUser1"), value("RevUser2"), value("Location"),
              value("ChangeDescription")});
  answer.rows().MoveFirst();
  writeDetail(std::cout, answer.rows(), options.format,
              labelsIn(session.database(), "RevisionConfig"));
  return kDone;
}

int add(const Options& options, const std::string& document, const RevisionFields& fields,
        const std::optional<std::string>& responsible) {
  const Session session(options);
  ClientTransaction transaction(session);
  const DocumentKey found = findDocument(session, document);
  requireOwner(found.owned);
  const std::string user = responsible ? findAndHoldUser(session, transaction, *responsible)
                                       : session.profile()->UserID();
  const DocumentKey key = findAndHoldDocument(session, transaction, found.id);
  const std::int32_t id = session->Revision()->Add(
      key.joined, fields.level.value_or(""), fields.field1.value_or(""), fields.field2.value_or(""),
      fields.description.value_or(""), fields.location.value_or(""), false, doubledQuotes(user),
      fields.effective.value_or(""));
  transaction.commit();
  writeDone(std::cout, "added the revision " + std::to_string(id) + " to " + key.id,
            {{kKey, id}, {"DocumentID", key.id}}, options.format);
  return kDone;
}

void requireRights(const Session& session, bool owned, const RevisionFields& fields) {
  // No right names these two.
  if (fields.level || fields.location) requireOwner(owned);
  if (fields.description) session.requireRight(urEditChangeDescription);
  if (fields.effective) session.requireRight(urEditEffectiveDate);
  if (fields.field1) session.requireRight(urEditRevUser1);
  if (fields.field2) session.requireRight(urEditRevUser2);
}

bool isCurrentOf(const Session& session, const std::string& document, std::int32_t revision) {
  const Variant current = session->Document()->Value(document, "CurrentRevID");
  return compareValues(current, revision) == 0;
}

int edit(const Options& options, std::int32_t revision, const RevisionFields& fields) {
  if (!fields.any()) throw UsageError("nothing to change: give at least one field");
  const Session session(options);
  ClientTransaction transaction(session);
  transaction.lock("Revisions", "RevisionID", std::int64_t{revision});
  const FoundRevision found = findRevision(session, revision);
  requireRights(session, found.owned, fields);
  const auto& row = *found.row;
  session->Revision()->SaveData(revision, fields.level.value_or(fieldText(row, "RevisionLevel")),
                                fields.field1.value_or(fieldText(row, "RevUser1")),
                                fields.field2.value_or(fieldText(row, "RevUser2")),
                                fields.description.value_or(fieldText(row, "ChangeDescription")),
                                fields.location.value_or(fieldText(row, "Location")),
                                fields.effective.value_or(fieldText(row, "EffectiveDate")));
  transaction.lock("Documents", "DocumentID", found.documentId);
  // A document repeats level and date of its revision in force.
  const std::string document = doubledQuotes(found.documentId);
  if (isCurrentOf(session, document, revision)) {
    const auto saved = session->Revision()->GetRevRS(revision);
    for (const char* column : {"RevisionLevel", "EffectiveDate"})
      session->Document()->SetValue(document, column, saved->Fields(column)->Value());
  }
  transaction.commit();
  writeDone(std::cout, "changed the revision " + std::to_string(revision), {{kKey, revision}},
            options.format);
  return kDone;
}

int remove(const Options& options, std::int32_t revision) {
  const Session session(options);
  ClientTransaction transaction(session);
  transaction.lock("Revisions", "RevisionID", std::int64_t{revision});
  const FoundRevision found = findRevision(session, revision);
  requireOwner(found.owned);
  const auto current = static_cast<std::int16_t>(RevisionStatus::Current);
  if (compareValues(found.row->Fields("RevisionStatus")->Value(), current) == 0 ||
      isCurrentOf(session, doubledQuotes(found.documentId), revision))
    throw Error(kInvalidCall, "kvvesk",
                "Revision " + std::to_string(revision) +
                    " is in force; a document does not lose its current revision this way.");
  if (!session->Revision()->DeleteRevision(revision))
    throw Error(kEngineFailure, "kvvesk",
                "Revision " + std::to_string(revision) + " could not be deleted.");
  transaction.commit();
  writeDone(std::cout, "deleted the revision " + std::to_string(revision), {{kKey, revision}},
            options.format);
  return kDone;
}

void addShow(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("show", "Show all fields of a revision");
  const auto options = std::make_shared<Options>();
  const auto revision = std::make_shared<std::int32_t>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addRevisionKey(*sub, *revision);
  sub->callback([&chosen, options, revision] {
    chosen = [options, revision] { return show(*options, *revision); };
  });
}

void addAdd(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("add", "Add a revision that is being prepared to a document");
  const auto options = std::make_shared<Options>();
  const auto document = std::make_shared<std::string>();
  const auto fields = std::make_shared<RevisionFields>();
  const auto responsible = std::make_shared<std::optional<std::string>>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  sub->addOption("document", *document, "The document, by identifier or number")->required();
  addFields(*sub, *fields);
  addText(*sub, "--responsible", *responsible,
          "Who prepares it, by ID or name; whoever logs in when left out");
  sub->callback([&chosen, options, document, fields, responsible] {
    chosen = [options, document, fields, responsible] {
      return add(*options, *document, *fields, *responsible);
    };
  });
}

void addEdit(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("edit", "Change fields of a revision");
  const auto options = std::make_shared<Options>();
  const auto revision = std::make_shared<std::int32_t>();
  const auto fields = std::make_shared<RevisionFields>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addRevisionKey(*sub, *revision);
  addFields(*sub, *fields);
  sub->footer(
      "Fields that are not given stay as they are; an empty text empties a field.\n"
      "A revision that has a location is saved only while there is a file; paths that do not "
      "begin\n"
      "at the root count from the current folder.");
  sub->callback([&chosen, options, revision, fields] {
    chosen = [options, revision, fields] { return edit(*options, *revision, *fields); };
  });
}

void addDelete(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand(
      "delete", "Delete a revision, not the file at its location; never the one in force");
  const auto options = std::make_shared<Options>();
  const auto revision = std::make_shared<std::int32_t>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addRevisionKey(*sub, *revision);
  sub->callback([&chosen, options, revision] {
    chosen = [options, revision] { return remove(*options, *revision); };
  });
}

}  // namespace

void addRevisionKey(Command& verb, std::int32_t& revision) {
  addNumber(verb, "revision", revision, "The revision's number, as 'kvvesk revisions' lists it")
      ->required();
}

void addRevision(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand("revision", "Show, add, change, approve or delete one revision");
  verb->requireSubcommand();
  addShow(*verb, chosen);
  addAdd(*verb, chosen);
  addEdit(*verb, chosen);
  addRevisionLife(*verb, chosen);
  addDelete(*verb, chosen);
}

}  // namespace kv::cli
