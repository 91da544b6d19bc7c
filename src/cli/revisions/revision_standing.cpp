// SPDX-License-Identifier: Apache-2.0
#include "cli/revisions/revision_standing.h"

#include <ostream>

#include "cli/answers/output.h"
#include "recordset/text_field.h"

namespace kv::cli {

void writeStep(std::ostream& out, const std::string& sentence, const desk::RevisionStep& step,
               Format format) {
  if (format != Format::Table) {
    writeJson(out, *step.standing, "actions", *step.told);
    return;
  }
  out << sentence << ": " << fieldText(*step.standing, "Status") << '\n';
  Recordset& told = *step.told;
  if (told.RecordCount() == 0) out << "told nobody\n";
  for (; !told.Eof(); told.MoveNext()) {
    const std::string name = fieldText(told, "Assignee");
    const std::string id = fieldText(told, "AssigneeID");
    out << "told " << (name.empty() ? id : name + " (" + id + ")") << ": "
        << fieldText(told, "Subject") << '\n';
  }
}

}  // namespace kv::cli
