// SPDX-License-Identifier: Apache-2.0
// What is in a manual, in which order, and which manuals somebody has.
#include <cmath>
#include <limits>
#include <vector>

#include "classes/manuals/manual.h"
#include "classes/manuals/manual_errors.h"
#include "classes/session/vesk.h"
#include "common/convert.h"
#include "data/operation.h"
#include "data/sql_text.h"

namespace kv {

namespace {

// Places are kept apart at least this far, and spread over 0 to 99 when they come closer.
constexpr double kCloseTogether = 0.00005;
constexpr double kRange = 99;

// A place that is no number, which other programs can have stored, is behind all others.
double placeOf(const Recordset& contents) {
  const Variant position = contents.Fields("Position")->Value();
  if (position.isNull()) return 0;
  const double place = toDouble(position);
  return std::isnan(place) ? std::numeric_limits<double>::infinity() : place;
}

// Gives the rows of a manual's contents even places, in their order. The one at `moved` goes behind
// every row whose place is at most `place`.
void spread(Recordset& contents, const Variant& moved, double place) {
  std::vector<Variant> rows;
  std::size_t behind = 0;
  for (contents.MoveFirst(); !contents.Eof(); contents.MoveNext()) {
    const Variant row = contents.Bookmark();
    if (row == moved) continue;
    rows.push_back(row);
    if (placeOf(contents) <= place) behind = rows.size();
  }
  if (!moved.isEmpty()) rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(behind), moved);
  const double step = kRange / static_cast<double>(rows.size());
  for (std::size_t row = 0; row < rows.size(); ++row) {
    contents.Bookmark(rows[row]);
    contents.Fields("Position")->Value(static_cast<double>(row) * step);
  }
  contents.Update();
}

// An identifier as a pattern that it alone matches: its own wildcards stand for themselves.
std::string patternOf(const std::string& id) {
  std::string out;
  for (const char c : inQuotes(id)) {
    const bool special = c == '%' || c == '_' || c == '[';
    out += special ? std::string("[") + c + "]" : std::string(1, c);
  }
  return out;
}

// Hard copies alone, virtual copies alone, or both. Without hard copies it is virtual ones,
// whatever is asked for.
std::string heldBy(const std::string& user, bool virtualCopies, bool hardCopies) {
  const char* kind = "";
  if (!hardCopies)
    kind = " and (HardCopy = False)";
  else if (!virtualCopies)
    kind = " and (HardCopy <> 0)";
  return " FROM Personals INNER JOIN Manuals ON Personals.ManualID = Manuals.ManualID WHERE "
         "(((Personals.UserID) Like '" +
         patternOf(user) + "')" + kind + ") ORDER BY Manuals.ManualName";
}

}  // namespace

Ref<Recordset> clsVeskManual::Contents(const std::string& Manid, bool AllFields, bool WithManID) {
  return dataServer_->open(
      std::string("Select Documents.*") + (WithManID ? ", ManualContents.ManualID" : "") +
      " from ManualContents Inner Join Documents On ManualContents.DocumentID = "
      "Documents.DocumentID Where ManualContents.ManualID = '" +
      inQuotes(Manid) + "' Order By " +
      (AllFields ? "Documents.DocumentNumber" : "ManualContents.Position"));
}

Ref<Recordset> clsVeskManual::PersonalManuals(const std::string& id, bool VirtualCopies,
                                              bool HardCopies) {
  return dataServer_->open(
      "SELECT DISTINCT Manuals.ManualID, Manuals.ManualName, Personals.CopyNumber, "
      "Personals.HardCopy" +
      heldBy(id, VirtualCopies, HardCopies));
}

Ref<Recordset> clsVeskManual::PersonalManualsForView(const std::string& id, bool VirtualCopies,
                                                     bool HardCopies) {
  return dataServer_->open("SELECT DISTINCTROW Manuals.*" + heldBy(id, VirtualCopies, HardCopies));
}

bool clsVeskManual::AddDocument(const std::string& Manid, const std::string& docid) {
  return oVesk_->DocumentManualRelation(Manid, docid, false);
}

bool clsVeskManual::RemoveDocument(const std::string& Manid, const std::string& docid) {
  return oVesk_->DocumentManualRelation(Manid, docid, true);
}

void clsVeskManual::RepositionContents(const std::string& ManualID, const std::string& docid,
                                       std::int16_t position) {
  const std::string inOrder = "Select * From ManualContents Where ManualID = '" +
                              inQuotes(ManualID) + "' Order by Position";
  const std::string document = "DocumentID = '" + inQuotes(docid) + "'";
  Operation operation(dataServer_->Connection(), "Manuals", "ManualID", outOfQuotes(ManualID));
  auto contents = dataServer_->open(inOrder);
  if (contents->RecordCount() <= 0) raise(kManualIsEmpty);
  contents->MoveFirst();
  contents->Move(position - 1);
  const double target = placeOf(*contents);
  contents->MovePrevious();
  const double previous = contents->Bof() ? target / 2 : placeOf(*contents);
  // Not halfway between the two; registers are ordered by what this gives.
  const double place = previous > 0 ? previous / 2 + target : 0;
  contents->MoveFirst();
  contents->Find(document);
  const Variant moved = contents->Eof() ? Variant() : contents->Bookmark();
  if (previous > 0 && !(place > target && std::isfinite(place))) {
    // Every move to the end makes places grow, up to where no number is behind the target's.
    spread(*contents, moved, place);
  } else {
    if (!moved.isEmpty()) contents->Fields("Position")->Value(place);
    contents->Update();
    if (place - previous < kCloseTogether) {
      contents->Close();
      contents = dataServer_->open(inOrder);
      spread(*contents, {}, place);
    }
  }
  contents->Close();
  operation.commit();
}

}  // namespace kv
