// SPDX-License-Identifier: Apache-2.0
#include "desk/manuals/view_manuals.h"

#include "classes/rights/rights.h"
#include "desk/answer_set.h"
#include "desk/column_list.h"
#include "desk/documents/document_access.h"
#include "desk/manuals/manual_lookup.h"
#include "desk/people/user_lookup.h"
#include "desk/queries/query_lookup.h"
#include "recordset/text_field.h"

namespace kv::desk {

namespace {

constexpr const char* kTable = "Manuals";
constexpr std::int32_t kEveryManual = -1;

}  // namespace

Detail viewManual(const Session& session, const std::string& manual) {
  session.requireRight(urViewManualdetail);
  const ManualKey key = findManual(session, manual);
  return {.row = session->Manual()->Record(key.joined),
          .labels = labelsIn(session.database(), "ManualConfig")};
}

Ref<Recordset> manualContents(const Session& session, const std::string& manual) {
  session.requireRight(urViewManualdetail);
  const ManualKey key = findManual(session, manual);
  const auto rs = session->Manual()->Contents(key.joined);
  const HiddenDocuments hidden(session);
  AnswerSet answer({{"Position", kTypeInteger},
                    {"DocumentID", kTypeVarWChar},
                    {"DocumentNumber", kTypeVarWChar},
                    {"DocumentTitle", kTypeLongVarWChar},
                    {"RevisionLevel", kTypeVarWChar},
                    {"EffectiveDate", kTypeDate}});
  for (std::int32_t place = 1; !rs->Eof(); rs->MoveNext(), ++place) {
    const auto value = [&](const char* column) { return rs->Fields(column)->Value(); };
    if (!hidden.contains(fieldText(*rs, "DocumentID")))
      answer.add({place, value("DocumentID"), value("DocumentNumber"), value("DocumentTitle"),
                  value("RevisionLevel"), value("EffectiveDate")});
  }
  return answer.take();
}

Ref<Recordset> manualCopies(const Session& session, const std::string& manual) {
  session.requireRight(urViewManualdetail);
  const ManualKey key = findManual(session, manual);
  const UserNames names(session.database());
  AnswerSet answer({{"UserID", kTypeVarWChar},
                    {"UserName", kTypeVarWChar},
                    {"HardCopy", kTypeBoolean},
                    {"CopyNumber", kTypeVarWChar}});
  const auto hard = session->Manual()->Copies(key.joined);
  for (; !hard->Eof(); hard->MoveNext()) {
    const Variant user = hard->Fields("UserID")->Value();
    answer.add({user, names.of(user), true, hard->Fields("CopyNumber")->Value()});
  }
  const auto listed = session->Manual()->Users(key.joined);
  for (; !listed->Eof(); listed->MoveNext()) {
    const Variant user = listed->Fields("UserID")->Value();
    answer.add({user, names.of(user), false, Null});
  }
  return answer.take();
}

Ref<Recordset> listManuals(const Session& session, const ManualListing& listing) {
  session.requireRight(urViewManualList);
  const auto& database = *session.database();
  const std::string sort = sortList(database, kTable, listing.sort);
  const std::string fields = selectList(database, kTable, listing.fields);
  const std::int32_t query =
      listing.query ? findQuery(session, *listing.query, kManualQueries) : kEveryManual;
  return session->Manual()->Records(query, sort, {}, fields);
}

}  // namespace kv::desk
