// SPDX-License-Identifier: Apache-2.0
// A session with documents in its register, and their fields as one text.
#pragma once

#include <fmt/format.h>

#include <string>

#include "support/session_test.h"

namespace kv::test {

// What LoadData writes into; the values before it tell whether it did.
struct LoadedDocument {
  std::string title = "?", number = "?", level = "?", date = "?", user1 = "?", user2 = "?",
              user3 = "?", user4 = "?", notes = "?", location = "?";
  bool secured = false;
  bool controlled = false;
  std::int32_t current = -7;

  void from(clsVeskDocument& document, const std::string& id, const Ref<Recordset>& rs = {}) {
    document.LoadData(id, title, number, level, date, user1, user2, user3, user4, notes, secured,
                      location, controlled, current, rs);
  }
  [[nodiscard]] std::string text() const {
    return fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}", title, number, level, date, user1,
                       user2, user3, user4, notes, secured ? "secured" : "open", location,
                       controlled ? "controlled" : "uncontrolled", current);
  }
};

inline const char* const kUntouched = "?|?|?|?|?|?|?|?|?|open|?|uncontrolled|-7";

// What a session with documents can do, on either kind of session.
template <class Session>
class DocumentSession : public Session {
 protected:
  [[nodiscard]] clsVeskDocument& document() { return *this->vesk_->Document(); }

  void addDocument(const std::string& id, const std::string& title = "Title",
                   const std::string& more = "Controlled = True") {
    this->reg_.execute("Insert Into Documents (DocumentID, DocumentTitle) Values ('" + id + "', '" +
                       title + "')");
    this->reg_.execute("Update Documents Set " + more + " Where DocumentID = '" + id + "'");
  }

  // Everything that can hang off a document, twice where there is more than one kind of it.
  void addEverythingOf(const std::string& id) {
    for (int manual = 1; manual <= 2; ++manual)
      this->reg_.execute(fmt::format(
          "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M{}', '{}', 100)",
          manual, id));
    for (int status = 0; status <= 5; ++status)
      this->reg_.execute(fmt::format(
          "Insert Into Revisions (DocumentID, RevisionLevel, RevisionStatus) Values ('{}', 'S{}', "
          "{})",
          id, status, status));
    this->reg_.execute("Insert Into Owners (DocumentID, UserID) Values ('" + id + "', 'User1')");
    for (int place = 1; place <= 2; ++place)
      this->reg_.execute(fmt::format(
          "Insert Into Routing (DocumentID, UserID, ListOrder) Values ('{}', 'User{}', {})", id,
          place, place));
    for (const char* hard : {"True", "False"})
      this->reg_.execute(
          fmt::format("Insert Into Personals (UserID, DocumentID, ManualID, "
                      "HardCopy) Values ('User1', '{}', '0', {})",
                      id, hard));
  }
  // How many rows hang off a document: in manuals, revisions, owners, approvers, copies.
  [[nodiscard]] std::string linksOf(const std::string& id) const {
    std::string out;
    for (const char* table : {"ManualContents", "Revisions", "Owners", "Routing", "Personals"})
      out +=
          (out.empty() ? "" : " ") + this->reg_.value(std::string("Select Count(*) From ") + table +
                                                      " Where DocumentID = '" + id + "'");
    return out;
  }
  [[nodiscard]] std::string row(const std::string& id) const {
    return this->reg_.value(
        "Select DocumentTitle, DocumentNumber, RevisionLevel, EffectiveDate, DocUser1, DocUser2, "
        "DocUser3, DocUser4, DocumentNotes, SecurityLevel, Location, Controlled, CurrentRevID "
        "From Documents Where DocumentID = '" +
        id + "'");
  }
  // Saves a document whose fields all come from one word.
  std::int16_t save(const std::string& id, const std::string& word, const Ref<Recordset>& rs = {}) {
    return document().SaveData(id, word + " title", word + " number", word + "1", word + "2",
                               word + "3", word + "4", word + " notes", true, true,
                               word + " location", rs);
  }
};

}  // namespace kv::test
