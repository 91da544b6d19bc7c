#include <iostream>

#include "cli/answers/output.h"
#include "cli/program/verbs.h"
#include "desk/revisions/view_revisions.h"

namespace kv::cli {

namespace {

int list(const Options& options, const std::string& document) {
  const Session session(options);
  writeRows(std::cout, *desk::listRevisions(session, document), options.format);
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
