// Changing a document's fields.
#pragma once

#include "cli/documents/document_access.h"
#include "cli/documents/document_fields.h"

namespace kv::cli {

// Writes the fields given, after testing the right for each. Belongs in a transaction. A document
// that stops being controlled loses its manuals, hard copies, approvers and every revision but the
// current one; one that becomes controlled again has its current revision back.
void editDocument(const Session& session, const DocumentKey& document,
                  const DocumentFields& fields);

}  // namespace kv::cli
