#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/documents/document_access.h"
#include "cli/program/verbs.h"
#include "cli/revisions/revision_lookup.h"
#include "common/convert.h"
#include "kvdata/table_value.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

int list(const Options& options, const std::string& document) {
  const Session session(options);
  session.requireRight(urViewRevisionDetail);
  const DocumentKey key = findDocument(session, document);
  const auto rs = openOwn(session.database(),
                          "Select RevisionID, RevisionLevel, EffectiveDate, ResponsibleID, "
                          "Location, ChangeDescription From Revisions Where DocumentID = '" +
                              key.joined + "' Order By RevisionID",
                          kReadOnly);
  AnswerSet answer({{"RevisionID", kTypeInteger},
                    {"RevisionLevel", kTypeVarWChar},
                    {"Status", kTypeLongVarWChar},
                    {"EffectiveDate", kTypeDate},
                    {"ResponsibleID", kTypeVarWChar},
                    {"Location", kTypeVarWChar},
                    {"ChangeDescription", kTypeLongVarWChar}});
  for (; !rs->Eof(); rs->MoveNext()) {
    const Variant id = rs->Fields("RevisionID")->Value();
    answer.add({id, rs->Fields("RevisionLevel")->Value(), statusText(session, toInt32(id)),
                rs->Fields("EffectiveDate")->Value(), rs->Fields("ResponsibleID")->Value(),
                rs->Fields("Location")->Value(), rs->Fields("ChangeDescription")->Value()});
  }
  writeRows(std::cout, answer.rows(), options.format);
  return kDone;
}

struct List : RegisterVerb {
  std::string document;

  void describe(Command& verb) {
    verb.addOption("document", document, "The document, by identifier or number")->required();
  }
  [[nodiscard]] int run() const { return list(options, document); }
};

}  // namespace

void revisionList(Command& verb) { declare<List>(verb); }

}  // namespace kv::cli
