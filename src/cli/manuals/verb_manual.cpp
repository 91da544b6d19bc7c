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

int show(const Options& options, const std::string& manual) {
  const Session session(options);
  writeDetail(std::cout, desk::viewManual(session, manual), options.format);
  return kDone;
}

int add(const Options& options, const ManualFields& fields) {
  desk::requireManualName(fields);
  const Session session(options);
  const std::string id = desk::addManual(session, fields);
  writeDone(std::cout, "added the manual " + id, {{kKey, id}}, options.format);
  return kDone;
}

int edit(const Options& options, const std::string& manual, const ManualFields& fields) {
  desk::requireChange(fields.any());
  const Session session(options);
  const std::string id = desk::editManual(session, manual, fields);
  writeDone(std::cout, "changed the manual " + id, {{kKey, id}}, options.format);
  return kDone;
}

int remove(const Options& options, const std::string& manual) {
  const Session session(options);
  const std::string id = desk::deleteManual(session, manual);
  writeDone(std::cout, "deleted the manual " + id, {{kKey, id}}, options.format);
  return kDone;
}

void addKey(Command& verb, std::string& manual) {
  verb.addOption("manual", manual, "The manual, by identifier or name")->required();
}

struct Show : RegisterVerb {
  std::string manual;

  void describe(Command& verb) { addKey(verb, manual); }
  [[nodiscard]] int run() const { return show(options, manual); }
};

struct Add : RegisterVerb {
  ManualFields fields;

  void describe(Command& verb) { addManualFields(verb, fields); }
  [[nodiscard]] int run() const { return add(options, fields); }
};

struct Edit : RegisterVerb {
  std::string manual;
  ManualFields fields;

  void describe(Command& verb) {
    addKey(verb, manual);
    addManualFields(verb, fields);
  }
  [[nodiscard]] int run() const { return edit(options, manual, fields); }
};

struct Delete : RegisterVerb {
  std::string manual;

  void describe(Command& verb) { addKey(verb, manual); }
  [[nodiscard]] int run() const { return remove(options, manual); }
};

}  // namespace

void manualShow(Command& verb) { declare<Show>(verb); }
void manualAdd(Command& verb) { declare<Add>(verb); }
void manualEdit(Command& verb) { declare<Edit>(verb); }
void manualDelete(Command& verb) { declare<Delete>(verb); }

}  // namespace kv::cli
