// SPDX-License-Identifier: Apache-2.0
// A session on a register with documents, manuals and holders of copies, in which Bert is logged in
// with the rights that a test gives him.
#pragma once

#include <fmt/format.h>

#include <initializer_list>
#include <string>

#include "classes/rights/rights.h"
#include "support/session_test.h"

namespace kv::test {

// What is raised, and by whom.
struct Refusal {
  std::int32_t code;
  const char* source;
  const char* description;
};

inline void expectRefusal(const Refusal& expected, const std::function<void()>& operation) {
  const auto error = errorOf(operation);
  ASSERT_TRUE(error) << "not refused: " << expected.description;
  EXPECT_EQ(error->number(), kErrorBase + expected.code);
  EXPECT_EQ(error->source(), expected.source);
  EXPECT_EQ(error->description(), expected.description);
}

template <class Session>
class DistributionSession : public Session {
 protected:
  // A controlled document, whose current revision has this number.
  void addDocument(const std::string& id, int revision = 7, const std::string& number = "") {
    this->reg_.execute(
        fmt::format("Insert Into Documents (DocumentID, DocumentTitle, DocumentNumber, Controlled, "
                    "CurrentRevID) Values ('{}', 'Title of {}', '{}', True, {})",
                    id, id, number, revision));
  }
  void addManual(const std::string& id) {
    this->reg_.execute("Insert Into Manuals (ManualID, ManualName) Values ('" + id +
                       "', 'Name of " + id + "')");
  }
  void putInto(const std::string& manual, const std::string& document,
               const std::string& position) {
    this->reg_.execute("Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('" +
                       manual + "', '" + document + "', " + position + ")");
  }
  void hold(const std::string& user, const std::string& document, const std::string& manual,
            bool hard, const std::string& copy = "Null", int revision = 7) {
    this->reg_.execute(fmt::format(
        "Insert Into Personals (UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID) "
        "Values ('{}', '{}', '{}', {}, {}, {})",
        user, document, manual, hard, copy, revision));
  }
  void own(const std::string& user, const std::string& document) {
    this->reg_.execute("Insert Into Owners (UserID, DocumentID) Values ('" + user + "', '" +
                       document + "')");
  }

  // Gives the logged-in user these rights and no others.
  void grant(std::initializer_list<std::int16_t> rights) {
    std::string text(kRightsLength, '0');
    for (const auto right : rights) text[static_cast<std::size_t>(right - 1)] = '1';
    this->vesk_->DataServer()->Profile()->Rights(text);
  }
  // Lets owners do this and nothing else.
  void letOwners(std::initializer_list<std::int16_t> rights) {
    constexpr std::size_t kOwnerRights = 21;
    std::string text(kOwnerRights, '0');
    for (const auto right : rights) text[static_cast<std::size_t>(right - 1)] = '1';
    this->reg_.execute("Update VeskConfig Set OwnerRights = '" + text + "'");
  }

  [[nodiscard]] Texts copies() const {
    return this->reg_.rows(
        "Select UserID, DocumentID, ManualID, HardCopy, CopyNumber, RevisionID From Personals "
        "Order By ReleaseID");
  }
  [[nodiscard]] Texts contents() const {
    return this->reg_.rows("Select ManualID, DocumentID, [Position] From ManualContents");
  }
};

}  // namespace kv::test
