// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/answers/answer_set.h"
#include "cli/answers/detail.h"
#include "cli/manuals/manual_fields.h"
#include "cli/program/verbs.h"
#include "desk/manuals/add_manual.h"
#include "desk/manuals/delete_manual.h"
#include "desk/manuals/edit_manual.h"
#include "desk/manuals/view_manuals.h"
#include "desk/refusal.h"

namespace kv::cli {

namespace {

constexpr const char* kKey = "ManualID";

void addKey(Command& verb, std::string& manual) {
  verb.addOption("manual", manual, "The manual, by identifier or name")->required();
}

struct Show : RegisterVerb {
  std::string manual;

  void describe(Command& verb) { addKey(verb, manual); }
  void run(const Session& session) const {
    writeDetail(std::cout, desk::viewManual(session, manual), options.format);
  }
};

struct Add : RegisterVerb {
  ManualFields fields;

  void describe(Command& verb) { addManualFields(verb, fields); }
  void check() const { desk::requireManualName(fields); }
  void run(const Session& session) const {
    const std::string id = desk::addManual(session, fields);
    writeDone(std::cout, "added the manual " + id, {{kKey, id}}, options.format);
  }
};

struct Edit : RegisterVerb {
  std::string manual;
  ManualFields fields;

  void describe(Command& verb) {
    addKey(verb, manual);
    addManualFields(verb, fields);
  }
  void check() const { desk::requireChange(fields.any()); }
  void run(const Session& session) const {
    const std::string id = desk::editManual(session, manual, fields);
    writeDone(std::cout, "changed the manual " + id, {{kKey, id}}, options.format);
  }
};

struct Delete : RegisterVerb {
  std::string manual;

  void describe(Command& verb) { addKey(verb, manual); }
  void run(const Session& session) const {
    const std::string id = desk::deleteManual(session, manual);
    writeDone(std::cout, "deleted the manual " + id, {{kKey, id}}, options.format);
  }
};

}  // namespace

void manualShow(Command& verb) { declare<Show>(verb); }
void manualAdd(Command& verb) { declare<Add>(verb); }
void manualEdit(Command& verb) { declare<Edit>(verb); }
void manualDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
