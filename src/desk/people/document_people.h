// SPDX-License-Identifier: Apache-2.0
// The two lists of people that a document has: its owners and its approvers.
#pragma once

#include <string>
#include <vector>

#include "desk/documents/document_access.h"
#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// The IDs in such a list, in its order.
[[nodiscard]] std::vector<std::string> membersIn(const Ref<Recordset>& list);

// A user, or somebody in the list who is none any more, or is still to be named.
[[nodiscard]] std::string findMember(const Session& session,
                                     const std::vector<std::string>& members,
                                     const std::string& user);

// Place, ID and name of each.
[[nodiscard]] Ref<Recordset> namedMembers(const Session& session,
                                          const std::vector<std::string>& members);

}  // namespace kv::desk
