// SPDX-License-Identifier: Apache-2.0
#include "cli/documents/document_fields.h"

#include "cli/program/given_options.h"

namespace kv::cli {

void addDocumentFields(Command& verb, DocumentFields& fields) {
  addText(verb, "--title", fields.title, "The title");
  addText(verb, "--number", fields.number, "The document number");
  addText(verb, "--field1", fields.field1, "The first data field");
  addText(verb, "--field2", fields.field2, "The second data field");
  addText(verb, "--field3", fields.field3, "The third data field");
  addText(verb, "--field4", fields.field4, "The fourth data field");
  addText(verb, "--notes", fields.notes, "The notes");
  addText(verb, "--location", fields.location, "Where the document is kept");
  addYesNo(verb, "--secured", fields.secured,
           "Whether only administrators and the document's owners may see it");
  addYesNo(verb, "--controlled", fields.controlled,
           "Whether the document has revisions, approvers and holders of copies");
}

}  // namespace kv::cli
