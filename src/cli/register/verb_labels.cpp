// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/output.h"
#include "cli/program/verbs.h"
#include "desk/register/labels.h"

namespace kv::cli {

namespace {

using desk::Labelling;

struct Show : RegisterVerb {
  void run(const Session& session) const {
    writeRows(std::cout, *desk::listLabels(session), options.format);
  }
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
  void check() const { given.check(); }
  void run(const Session& session) const {
    const Labelling now = desk::setLabel(session, given);
    const std::string named = "the field " + now.field + " of " + now.of;
    writeDone(
        std::cout,
        now.label.empty() ? "took the label off " + named : named + " is now called " + now.label,
        {{"Of", now.of}, {"Field", now.field}, {"Label", now.label}}, options.format);
  }
};

}  // namespace

void labelShow(Command& verb) { declare<Show>(verb); }
void labelSet(Command& verb) { declare<Set>(verb); }

}  // namespace kv::cli
