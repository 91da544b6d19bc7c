// SPDX-License-Identifier: Apache-2.0
// Who must approve the revisions of a document, in which order.
#pragma once

#include <optional>
#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

struct ListedApprover {
  std::string documentId;
  std::string userId;
  std::string before;  // who is asked next, where that was said
};

// Place, ID and name of each, in the order of the approval list. Takes the right to view document
// details.
[[nodiscard]] Ref<Recordset> listApprovers(const Session& session, const std::string& document);

// Users are named by ID or name. Puts one behind the last approver, or before another. The library
// tests the rights.
ListedApprover addApprover(const Session& session, const std::string& document,
                           const std::string& user, const std::optional<std::string>& before = {});
// Also somebody who is no user any more.
ListedApprover removeApprover(const Session& session, const std::string& document,
                              const std::string& user);
// Has an approver asked before another. Takes the right to assign approvers, as a user or as the
// document's owner.
ListedApprover moveApprover(const Session& session, const std::string& document,
                            const std::string& user, const std::string& before);

}  // namespace kv::desk
