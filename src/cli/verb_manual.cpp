#include <chrono>
#include <iostream>
#include <thread>

#include "cli/answer_set.h"
#include "cli/client_transaction.h"
#include "cli/detail.h"
#include "cli/manual_contents.h"
#include "cli/manual_fields.h"
#include "cli/manual_lookup.h"
#include "cli/terminal.h"
#include "cli/verbs.h"
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
      transaction.lockNewNames();
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

void addShow(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("show", "Show all fields of a manual");
  const auto options = std::make_shared<Options>();
  const auto manual = std::make_shared<std::string>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addKey(*sub, *manual);
  sub->callback([&chosen, options, manual] {
    chosen = [options, manual] { return show(*options, *manual); };
  });
}

void addAdd(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("add", "Add a manual, without documents as yet");
  const auto options = std::make_shared<Options>();
  const auto fields = std::make_shared<ManualFields>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addManualFields(*sub, *fields);
  sub->footer("Its identifier is printed; the other verbs take that or its name.");
  sub->callback([&chosen, options, fields] {
    chosen = [options, fields] { return add(*options, *fields); };
  });
}

void addEdit(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand("edit", "Change fields of a manual");
  const auto options = std::make_shared<Options>();
  const auto manual = std::make_shared<std::string>();
  const auto fields = std::make_shared<ManualFields>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addKey(*sub, *manual);
  addManualFields(*sub, *fields);
  sub->footer("Fields that are not given stay as they are; an empty text empties a field.");
  sub->callback([&chosen, options, manual, fields] {
    chosen = [options, manual, fields] { return edit(*options, *manual, *fields); };
  });
}

void addDelete(Command& verb, Action& chosen) {
  auto* sub = verb.addSubcommand(
      "delete", "Delete a manual with its copies; the documents in it stay in the register");
  const auto options = std::make_shared<Options>();
  const auto manual = std::make_shared<std::string>();
  addCommon(*sub, *options);
  addFormats(*sub, *options, false);
  addKey(*sub, *manual);
  sub->callback([&chosen, options, manual] {
    chosen = [options, manual] { return remove(*options, *manual); };
  });
}

}  // namespace

void addManual(Command& app, Action& chosen) {
  auto* verb = app.addSubcommand(
      "manual", "Show, add, change or delete one manual; change which documents are in it");
  verb->requireSubcommand();
  addShow(*verb, chosen);
  addAdd(*verb, chosen);
  addEdit(*verb, chosen);
  addDelete(*verb, chosen);
  addManualContents(*verb, chosen);
}

}  // namespace kv::cli
