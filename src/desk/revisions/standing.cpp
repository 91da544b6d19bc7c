// SPDX-License-Identifier: Apache-2.0
#include "desk/revisions/standing.h"

#include "common/convert.h"
#include "common/error.h"
#include "desk/answer_set.h"

namespace kv::desk {

std::string standingText(const Session& session, const Ref<Recordset>& revision) {
  try {
    // No status has no words, like one that is not known; unlike that it is a fault to be told.
    (void)toInt16(revision->Fields("RevisionStatus")->Value());
    return session->Revision()->RevStatusDescription(revision);
  } catch (const Error& e) {
    return "(" + e.description() + ")";
  }
}

Ref<Recordset> standingOf(const Session& session, std::int32_t revision) {
  AnswerSet answer({{"RevisionID", kTypeInteger},
                    {"DocumentID", kTypeVarWChar},
                    {"Status", kTypeLongVarWChar},
                    {"RevisionStatus", kTypeSmallInt},
                    {"RoutingStatus", kTypeSmallInt}});
  const auto row = session->Revision()->GetRevRS(revision);
  answer.add({revision, row->Fields("DocumentID")->Value(), standingText(session, row),
              row->Fields("RevisionStatus")->Value(), row->Fields("RoutingStatus")->Value()});
  return answer.take();
}

}  // namespace kv::desk
