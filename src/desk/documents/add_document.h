// SPDX-License-Identifier: Apache-2.0
// Adding a document and its first revision.
#pragma once

#include <optional>
#include <string>

#include "desk/documents/document_fields.h"
#include "desk/session.h"

namespace kv::desk {

struct NewDocument {
  DocumentFields fields;
  std::optional<std::string> level;      // of the first revision
  std::optional<std::string> effective;  // year-month-day
  // The first revision is in force, since today when no day is given.
  bool current = false;

  // Raises WrongInput when there is nothing to add.
  void check() const;
};

// Returns the document's identifier, which no other document has. Takes the right to create
// documents, and with a revision in force the one to set current revisions.
[[nodiscard]] std::string addDocument(const Session& session, const NewDocument& given);

}  // namespace kv::desk
