// SPDX-License-Identifier: Apache-2.0
// Changing a document's fields.
#pragma once

#include <string>

#include "desk/documents/document_fields.h"
#include "desk/session.h"

namespace kv::desk {

// Writes the fields given, after testing the right for each; returns the document's identifier. A
// document that stops being controlled loses its manuals, hard copies, approvers and every revision
// but the current one; one that becomes controlled again has its current revision back.
std::string editDocument(const Session& session, const std::string& document,
                         const DocumentFields& fields);

}  // namespace kv::desk
