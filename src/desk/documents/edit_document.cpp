// SPDX-License-Identifier: Apache-2.0
#include "desk/documents/edit_document.h"

#include "classes/revisions/revision_status.h"
#include "classes/rights/rights.h"
#include "data/table_value.h"
#include "desk/documents/document_access.h"
#include "desk/refusal.h"
#include "desk/transaction.h"

namespace kv::desk {

namespace {

void requireRights(const Session& session, const DocumentKey& document,
                   const DocumentFields& fields) {
  const auto require = [&](bool given, std::int16_t userRight, std::int16_t ownerRight) {
    if (given) requireFieldRight(session, document, userRight, ownerRight);
  };
  require(fields.title.has_value(), urEditDocumentTitles, orEditDocumentTitle);
  require(fields.number.has_value(), ureditdocumentnumbers, orEditDocumentNumber);
  require(fields.field1.has_value(), urEditdocumentuser1, orEditDepartment);
  require(fields.field2.has_value(), urEditdocumentuser2, orEditCategory);
  require(fields.field3.has_value(), urEditdocumentuser3, orEditReference);
  require(fields.field4.has_value(), urEditdocumentuser4, orEditKeywords);
  require(fields.notes.has_value(), urEditDocumentNotes, orEditDocumentNotes);
  require(fields.location.has_value(), urEditDocumentLocation, orEditDocumentLocation);
  require(fields.secured.has_value(), urEditDocumentSecurityLevels, orChangeSecurityLevel);
  require(fields.controlled.has_value(), urchangecontrolledsetting, orchangecontrolledsetting);
}

// What a document's row says of its revision in force.
void setCurrent(const Session& session, const DocumentKey& document, const Variant& revision,
                const Variant& level, const Variant& effective) {
  session->Document()->SetValue(document.joined, "CurrentRevID", revision);
  session->Document()->SetValue(document.joined, "RevisionLevel", level);
  session->Document()->SetValue(document.joined, "EffectiveDate", effective);
}

void takeOutOfControl(const Session& session, const DocumentKey& document) {
  session->Document()->MakeUnControlled(document.joined);
  setCurrent(session, document, 0, "Uncontrolled", Null);
}

void bringUnderControl(const Session& session, const DocumentKey& document) {
  const auto current = openOwn(
      session.database(),
      "Select RevisionID, RevisionLevel, EffectiveDate From Revisions Where DocumentID = '" +
          document.joined + "' and RevisionStatus = " +
          std::to_string(static_cast<int>(RevisionStatus::Current)) + " Order By RevisionID Desc",
      kReadOnly);
  if (current->RecordCount() == 0)
    setCurrent(session, document, 0, Null, Null);
  else
    setCurrent(session, document, current->Fields(0)->Value(), current->Fields(1)->Value(),
               current->Fields(2)->Value());
}

void write(const Session& session, const DocumentKey& document, const DocumentFields& fields) {
  requireRights(session, document, fields);
  std::string title, number, level, effective, user1, user2, user3, user4, notes, location;
  bool secured = false;
  bool controlled = false;
  std::int32_t current = 0;
  const auto& documents = session->Document();
  documents->LoadData(document.joined, title, number, level, effective, user1, user2, user3, user4,
                      notes, secured, location, controlled, current);
  const bool willBeControlled = fields.controlled.value_or(controlled);
  documents->SaveData(document.joined, fields.title.value_or(title), fields.number.value_or(number),
                      fields.field1.value_or(user1), fields.field2.value_or(user2),
                      fields.field3.value_or(user3), fields.field4.value_or(user4),
                      fields.notes.value_or(notes), fields.secured.value_or(secured),
                      willBeControlled, fields.location.value_or(location));
  if (controlled && !willBeControlled) takeOutOfControl(session, document);
  if (!controlled && willBeControlled) bringUnderControl(session, document);
}

}  // namespace

std::string editDocument(const Session& session, const std::string& document,
                         const DocumentFields& fields) {
  requireChange(fields.any());
  Transaction transaction(session);
  const DocumentKey key = findDocument(session, document);
  transaction.lock("Documents", "DocumentID", key.id);
  write(session, key, fields);
  transaction.commit();
  return key.id;
}

}  // namespace kv::desk
