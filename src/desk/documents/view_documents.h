// SPDX-License-Identifier: Apache-2.0
// Looking at documents: one in full, or a list of many.
#pragma once

#include <optional>
#include <string>

#include "desk/register/field_labels.h"
#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// The document's row. Takes the right to view document details.
[[nodiscard]] Detail viewDocument(const Session& session, const std::string& document);

struct DocumentListing {
  std::optional<std::string> query;  // by number or name; the one for all documents without it
  // Columns separated by commas, each with asc or desc behind it; when empty the title, or the
  // number where the register says so.
  std::string sort;
  // Columns separated by commas; * for all.
  std::string fields =
      "DocumentID, DocumentNumber, DocumentTitle, RevisionLevel, EffectiveDate, "
      "Controlled";
};

// The documents that a saved query finds, secured ones for administrators only. Takes the right to
// view the list of documents.
[[nodiscard]] Ref<Recordset> listDocuments(const Session& session, const DocumentListing& listing);

}  // namespace kv::desk
