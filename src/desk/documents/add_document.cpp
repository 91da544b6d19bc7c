// SPDX-License-Identifier: Apache-2.0
#include "desk/documents/add_document.h"

#include "classes/rights/rights.h"
#include "common/clock.h"
#include "common/text.h"
#include "desk/refusal.h"
#include "desk/unique_identifier.h"

namespace kv::desk {

namespace {

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

}  // namespace

void NewDocument::check() const {
  if (!fields.any() && !level)
    throw WrongInput("nothing to add: give a title, a number or another field");
}

std::string addDocument(const Session& session, const NewDocument& given) {
  given.check();
  session.requireRight(urCreateNewDocument);
  if (given.current) session.requireRight(urSetCurrentRevision);
  return addUnique(
      session,
      {.name = "document",
       .add = [&] { return addOne(session, given); },
       .withIdentifier = [&](const std::string& id) { return session->Document()->Record(id); }});
}

}  // namespace kv::desk
