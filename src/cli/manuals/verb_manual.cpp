#include <chrono>
#include <iostream>
#include <thread>

#include "cli/answers/answer_set.h"
#include "cli/answers/detail.h"
#include "cli/manuals/manual_fields.h"
#include "cli/manuals/manual_lookup.h"
#include "cli/program/client_transaction.h"
#include "cli/program/terminal.h"
#include "cli/program/verbs.h"
#include "common/clock.h"
#include "common/error.h"
#include "common/text.h"
#include "rights/rights.h"

namespace kv::cli {

namespace {

constexpr const char* kKey = "ManualID";

void requireRights(const Session& session, const ManualFields& fields) {
  const auto require = [&](bool given, std::int16_t right) {
    if (given) session.requireRight(right);
  };
  require(fields.name.has_value(), urEditManualName);
  require(fields.field1.has_value(), urEditManualUser1);
  require(fields.field2.has_value(), urEditManualUser2);
  require(fields.field3.has_value(), urEditManualUser3);
  require(fields.field4.has_value(), urEditManualUser4);
  require(fields.notes.has_value(), urEditManualNotes);
}

int show(const Options& options, const std::string& manual) {
  const Session session(options);
  session.requireRight(urViewManualdetail);
  const ManualKey key = findManual(session, manual);
  writeDetail(std::cout, *session->Manual()->Record(key.joined), options.format,
              labelsIn(session.database(), "ManualConfig"));
  return kDone;
}

void waitForNextSecond() {
  for (const Date from = now(); now() == from;)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

// Identifiers are made of the user and the second. Scripts add several manuals in one second, and
// two of one identifier would share their contents and copies, so a second that is taken is let
// pass.
std::string addUnique(const Session& session, const ManualFields& f) {
  constexpr int kAttempts = 60;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    {
      ClientTransaction transaction(session);
      std::string id = session->Manual()->Add(f.name.value_or(""), f.field1.value_or(""),
                                              f.field2.value_or(""), f.field3.value_or(""),
                                              f.field4.value_or(""), f.notes.value_or(""));
      if (session->Manual()->Record(doubledQuotes(id))->RecordCount() == 1) {
        transaction.commit();
        return id;
      }
    }
    waitForNextSecond();
  }
  throw Error(kInvalidCall, "kvvesk",
              "Others added a manual in every second of the last minute; try again.");
}

int add(const Options& options, const ManualFields& fields) {
  if (!fields.name || trimmed(*fields.name).empty())
    throw UsageError("nothing to add: give the manual's name");
  const Session session(options);
  session.requireRight(urCreateNewManual);
  const std::string id = addUnique(session, fields);
  writeDone(std::cout, "added the manual " + id, {{kKey, id}}, options.format);
  return kDone;
}

int edit(const Options& options, const std::string& manual, const ManualFields& fields) {
  if (!fields.any()) throw UsageError("nothing to change: give at least one field");
  const Session session(options);
  requireRights(session, fields);
  ClientTransaction transaction(session);
  const ManualKey key = findManual(session, manual);
  transaction.lock("Manuals", kKey, key.id);
  std::string name, user1, user2, user3, user4, notes;
  const auto& manuals = session->Manual();
  manuals->LoadData(key.joined, name, user1, user2, user3, user4, notes);
  manuals->SaveData(key.joined, fields.name.value_or(name), fields.field1.value_or(user1),
                    fields.field2.value_or(user2), fields.field3.value_or(user3),
                    fields.field4.value_or(user4), fields.notes.value_or(notes));
  transaction.commit();
  writeDone(std::cout, "changed the manual " + key.id, {{kKey, key.id}}, options.format);
  return kDone;
}

int remove(const Options& options, const std::string& manual) {
  const Session session(options);
  session.requireRight(urDeleteManual);
  ClientTransaction transaction(session);
  const ManualKey key = findManual(session, manual);
  transaction.lock("Manuals", kKey, key.id);
  session->Manual()->Delete(key.joined);
  transaction.commit();
  writeDone(std::cout, "deleted the manual " + key.id, {{kKey, key.id}}, options.format);
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
