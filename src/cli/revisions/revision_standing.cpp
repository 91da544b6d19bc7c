#include "cli/revisions/revision_standing.h"

#include <ostream>

#include "cli/answers/output.h"
#include "common/error.h"
#include "kvdata/recordset/text_field.h"

namespace kv::cli {

std::string standingText(const Session& session, const Ref<Recordset>& revision) {
  try {
    return session->Revision()->RevStatusDescription(revision);
  } catch (const Error& e) {
    return "(" + e.description() + ")";
  }
}

AnswerSet standingOf(const Session& session, std::int32_t revision) {
  AnswerSet answer({{"RevisionID", kTypeInteger},
                    {"DocumentID", kTypeVarWChar},
                    {"Status", kTypeLongVarWChar},
                    {"RevisionStatus", kTypeSmallInt},
                    {"RoutingStatus", kTypeSmallInt}});
  const auto row = session->Revision()->GetRevRS(revision);
  answer.add({revision, row->Fields("DocumentID")->Value(), standingText(session, row),
              row->Fields("RevisionStatus")->Value(), row->Fields("RoutingStatus")->Value()});
  answer.rows().MoveFirst();
  return answer;
}

void writeStep(std::ostream& out, const Session& session, const std::string& sentence,
               std::int32_t revision, const SentActions& sent, Format format) {
  const AnswerSet standing = standingOf(session, revision);
  const auto told = sent.rows();
  if (format != Format::Table) {
    writeJson(out, standing.rows(), "actions", *told);
    return;
  }
  out << sentence << ": " << fieldText(standing.rows(), "Status") << '\n';
  if (told->RecordCount() == 0) out << "told nobody\n";
  for (; !told->Eof(); told->MoveNext()) {
    const std::string name = fieldText(*told, "Assignee");
    const std::string id = fieldText(*told, "AssigneeID");
    out << "told " << (name.empty() ? id : name + " (" + id + ")") << ": "
        << fieldText(*told, "Subject") << '\n';
  }
}

}  // namespace kv::cli
