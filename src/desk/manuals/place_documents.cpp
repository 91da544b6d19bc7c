// SPDX-License-Identifier: Apache-2.0
#include "desk/manuals/place_documents.h"

#include <fmt/format.h>

#include "classes/rights/rights.h"
#include "common/text.h"
#include "desk/documents/document_access.h"
#include "desk/manuals/manual_lookup.h"
#include "desk/refusal.h"
#include "desk/transaction.h"
#include "recordset/text_field.h"

namespace kv::desk {

namespace {

// The place of a document in a manual, counted from 1; 0 when it is not in it.
std::int32_t placeIn(const Session& session, const ManualKey& manual, const DocumentKey& document) {
  const auto contents = session->Manual()->Contents(manual.joined);
  for (std::int32_t place = 1; !contents->Eof(); contents->MoveNext(), ++place)
    if (equalNoCase(fieldText(*contents, "DocumentID"), document.id)) return place;
  return 0;
}

// Moves a document that is in the manual. The register keeps an order, not places, so where the
// document is now is for it to say.
std::int32_t moved(const Session& session, const ManualKey& manual, const DocumentKey& document,
                   std::int32_t place) {
  const std::int32_t documents = session->Manual()->Contents(manual.joined)->RecordCount();
  if (place < 1 || place > documents)
    refuse(fmt::format("The manual has the places 1 to {}, not {}.", documents, place));
  session->Manual()->RepositionContents(manual.joined, document.joined,
                                        static_cast<std::int16_t>(place));
  return placeIn(session, manual, document);
}

}  // namespace

Placed putIntoManual(const Session& session, const std::string& manual, const std::string& document,
                     std::optional<std::int32_t> place) {
  Transaction transaction(session);
  const ManualKey into = findManual(session, manual);
  const DocumentKey what = findDocument(session, document);
  Placed placed{.manualId = into.id, .documentId = what.id};
  session->DocumentManualRelation(into.joined, what.joined, false, placed.copies);
  placed.place = place ? moved(session, into, what, *place) : placeIn(session, into, what);
  transaction.commit();
  return placed;
}

Placed takeOutOfManual(const Session& session, const std::string& manual,
                       const std::string& document) {
  Transaction transaction(session);
  const ManualKey from = findManual(session, manual);
  const DocumentKey what = findDocument(session, document);
  Placed placed{.manualId = from.id, .documentId = what.id};
  session->DocumentManualRelation(from.joined, what.joined, true, placed.copies);
  transaction.commit();
  return placed;
}

Placed moveInManual(const Session& session, const std::string& manual, const std::string& document,
                    std::int32_t place) {
  Transaction transaction(session);
  const ManualKey in = findManual(session, manual);
  transaction.lock("Manuals", "ManualID", in.id);
  const DocumentKey what = findDocument(session, document);
  requireFieldRight(session, what, urAddDocumentsToManualContents, orAddToManuals);
  if (placeIn(session, in, what) == 0)
    refuse("The document " + what.id + " is not in the manual " + in.id + ".");
  Placed placed{.manualId = in.id, .documentId = what.id};
  placed.place = moved(session, in, what, place);
  transaction.commit();
  return placed;
}

}  // namespace kv::desk
