// SPDX-License-Identifier: Apache-2.0
// Who has which copies. Secured documents are listed for administrators and their owners only.
#pragma once

#include <optional>
#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

struct CopyKinds {
  bool hard = true;
  bool listed = true;  // on personal lists
};

struct CopyListing {
  std::optional<std::string> user;           // by ID or name
  std::optional<std::string> manual;         // by identifier or name
  std::optional<std::string> document;       // by identifier or number
  std::optional<std::string> manualQuery;    // by number or name
  std::optional<std::string> documentQuery;  // by number or name
  CopyKinds kinds;
  bool staleOnly = false;  // that are not of the revision in force
};

// The copies of all users. Takes the rights to view the lists of documents, manuals and users.
[[nodiscard]] Ref<Recordset> listCopies(const Session& session, const CopyListing& listing);

// What one user has, the logged-in one when none is named, who needs no right for it; for anybody
// else it takes the right to view user details.
[[nodiscard]] Ref<Recordset> listHoldings(const Session& session,
                                          const std::optional<std::string>& user,
                                          CopyKinds kinds = {});

}  // namespace kv::desk
