// SPDX-License-Identifier: Apache-2.0
// A session with revisions in its register, and their fields as one text.
#pragma once

#include <fmt/format.h>

#include <string>

#include "support/session_test.h"

namespace kv::test {

// What LoadRevisionData writes into; the values before it tell whether it did.
struct LoadedRevision {
  std::string document = "?", level = "?", user1 = "?", user2 = "?", date = "?", change = "?",
              location = "?", status = "?";
  std::int16_t routing = -7;
  std::int16_t state = -7;
  Ref<Recordset> approvals;

  bool from(clsVeskRevision& revision, std::int32_t id) {
    return revision.LoadRevisionData(id, document, routing, state, level, user1, user2, date,
                                     change, location, status, approvals);
  }
  [[nodiscard]] std::string text() const {
    return fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}", document, routing, state, level, user1,
                       user2, date, change, location, status);
  }
};

template <class Session>
class RevisionSession : public Session {
 protected:
  [[nodiscard]] clsVeskRevision& revision() { return *this->vesk_->Revision(); }

  // A revision of D1 with a status and, where they are given, more columns.
  std::int32_t addRevision(int status, const std::string& more = "RevisionLevel = 'B'") {
    this->reg_.execute(fmt::format(
        "Insert Into Revisions (DocumentID, RoutingStatus, RevisionStatus) Values ('D1', 0, {})",
        status));
    const std::string id = this->reg_.value("Select Max(RevisionID) From Revisions");
    this->reg_.execute("Update Revisions Set " + more + " Where RevisionID = " + id);
    return std::stoi(id);
  }
  void addApprover(std::int32_t id, const std::string& user, int place) {
    this->reg_.execute(fmt::format(
        "Insert Into ApprovalRouting (RevID, UserID, ListOrder, ApprovalStatus) Values ({}, '{}', "
        "{}, 0)",
        id, user, place));
  }
  [[nodiscard]] std::string row(std::int32_t id) const {
    return this->reg_.value(
        "Select DocumentID, RevisionLevel, RevUser1, RevUser2, ChangeDescription, Location, "
        "EffectiveDate, ResponsibleID, RoutingStatus, RevisionStatus From Revisions Where "
        "RevisionID = " +
        std::to_string(id));
  }
};

}  // namespace kv::test
