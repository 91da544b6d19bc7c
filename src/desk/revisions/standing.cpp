#include "desk/revisions/standing.h"

#include "common/error.h"
#include "desk/answer_set.h"

namespace kv::desk {

std::string standingText(const Session& session, const Ref<Recordset>& revision) {
  try {
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
