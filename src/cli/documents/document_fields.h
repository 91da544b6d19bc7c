// SPDX-License-Identifier: Apache-2.0
// The fields of a document as options: --title, --number and so on.
#pragma once

#include "cli/program/command.h"
#include "desk/documents/document_fields.h"

namespace kv::cli {

using desk::DocumentFields;

void addDocumentFields(Command& verb, DocumentFields& fields);

}  // namespace kv::cli
