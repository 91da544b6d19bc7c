// SPDX-License-Identifier: Apache-2.0
// What a LifeModel begins with, read from a register, and what of a register it is compared with.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "classes/revisions/life_model.h"
#include "support/test_register.h"

namespace kv::test {

// Columns in the order in which the model's rows tell them.
inline const std::string kRevisionCells =
    "RevisionID, DocumentID, RevisionLevel, RevUser1, RevUser2, ChangeDescription, Location, "
    "EffectiveDate, ResponsibleID, RoutingStatus, RevisionStatus";
inline const std::string kApprovalCells =
    "UserID, ListOrder, ApprovalStatus, ApprovedBy, DateApproved, Notes";
inline const std::string kActionCells =
    "AssigneeID, Assignee, Subject, Description, Originator, OriginatorID, DateOpened, DateDue, "
    "DateCompleted, DateClosed, ReferenceID, Reference, ActionType";
inline const std::string kDocumentCells =
    "DocumentTitle, RevisionLevel, EffectiveDate, CurrentRevID";
inline const std::string kCopyCells = "UserID, DocumentID, HardCopy, RevisionID";

// The rows of a set, value by value.
[[nodiscard]] std::vector<std::vector<Cell>> cellsOf(Recordset& rs);
[[nodiscard]] LifeAction actionOf(const std::vector<Cell>& cells, std::size_t from);

void load(LifeModel& model, const TestRegister& reg);

// Every row that the life of revisions changes, table by table.
using LifeRows = std::map<std::string, std::vector<std::string>>;
[[nodiscard]] LifeRows rowsOf(const LifeModel& model);
[[nodiscard]] LifeRows rowsOf(const TestRegister& reg);
// Tells, of each table, the first rows that are not the same; "" when all are.
[[nodiscard]] std::string difference(const LifeRows& model, const LifeRows& reg);
// Every row and column that it does not change.
[[nodiscard]] std::vector<std::string> untouched(const TestRegister& reg);

}  // namespace kv::test
