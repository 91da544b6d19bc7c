#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/program/verbs.h"
#include "desk/register/labels.h"

namespace kv::cli {

namespace {

using desk::Labelling;

int show(const Options& options) {
  const Session session(options);
  writeRows(std::cout, *desk::listLabels(session), options.format);
  return kDone;
}

int set(const Options& options, const Labelling& given) {
  given.check();
  const Session session(options);
  const Labelling now = desk::setLabel(session, given);
  const std::string named = "the field " + now.field + " of " + now.of;
  writeDone(
      std::cout,
      now.label.empty() ? "took the label off " + named : named + " is now called " + now.label,
      {{"Of", now.of}, {"Field", now.field}, {"Label", now.label}}, options.format);
  return kDone;
}

struct Show : RegisterVerb {
  [[nodiscard]] int run() const { return show(options); }
};

struct Set : RegisterVerb {
  Labelling given;

  void describe(Command& verb) {
    verb.addOption("of", given.of, "Whose field: of documents, revisions, manuals or users")
        ->required()
        ->typeName("KIND");
    verb.addOption("field", given.field, "The field, as 'kvvesk labels show' lists it")
        ->required()
        ->typeName("FIELD");
    verb.addOption("label", given.label, "The label; an empty text for none")->required();
  }
  [[nodiscard]] int run() const { return set(options, given); }
};

}  // namespace

void labelShow(Command& verb) { declare<Show>(verb); }
void labelSet(Command& verb) { declare<Set>(verb); }

}  // namespace kv::cli
