// SPDX-License-Identifier: Apache-2.0
// A session with manuals in its register, and their fields as one text.
#pragma once

#include <fmt/format.h>

#include <string>

#include "support/session_test.h"

namespace kv::test {

// What LoadData writes into; the values before it tell whether it did.
struct LoadedManual {
  std::string name = "?", user1 = "?", user2 = "?", user3 = "?", user4 = "?", notes = "?";

  void from(clsVeskManual& manual, const std::string& id, const Ref<Recordset>& rs = {}) {
    manual.LoadData(id, name, user1, user2, user3, user4, notes, rs);
  }
  [[nodiscard]] std::string text() const {
    return fmt::format("{}|{}|{}|{}|{}|{}", name, user1, user2, user3, user4, notes);
  }
};

inline const char* const kUntouchedManual = "?|?|?|?|?|?";

template <class Session>
class ManualSession : public Session {
 protected:
  [[nodiscard]] clsVeskManual& manual() { return *this->vesk_->Manual(); }

  void addManual(const std::string& id, const std::string& name = "Name") {
    this->reg_.execute("Insert Into Manuals (ManualID, ManualName) Values ('" + id + "', '" + name +
                       "')");
  }
  // A document's place in a manual, and a copy of it that came with the manual.
  void addContents(const std::string& id, const std::string& document, double position) {
    this->reg_.execute(fmt::format(
        "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('{}', '{}', {})", id,
        document, position));
    this->reg_.execute(
        fmt::format("Insert Into Personals (UserID, DocumentID, ManualID, HardCopy, CopyNumber) "
                    "Values ('User1', '{}', '{}', True, '1')",
                    document, id));
  }
  // How many rows belong to a manual: its own, contents, copies.
  [[nodiscard]] std::string rowsOfManual(const std::string& id) const {
    std::string out;
    for (const char* table : {"Manuals", "ManualContents", "Personals"})
      out += this->reg_.value(std::string("Select Count(*) From ") + table + " Where ManualID = '" +
                              id + "'");
    return out;
  }
  [[nodiscard]] std::string row(const std::string& id) const {
    return this->reg_.value(
        "Select ManualName, ManUser1, ManUser2, ManUser3, ManUser4, ManUserMemo From Manuals "
        "Where ManualID = '" +
        id + "'");
  }
  // Saves a manual whose fields all come from one word.
  void save(const std::string& id, const std::string& word, const Ref<Recordset>& rs = {}) {
    manual().SaveData(id, word + " name", word + "1", word + "2", word + "3", word + "4",
                      word + " notes", rs);
  }
  [[nodiscard]] Ref<Recordset> all() {
    return manual().Records(0, "", "Select * From Manuals Order By ID");
  }
};

}  // namespace kv::test
