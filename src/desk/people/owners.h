// SPDX-License-Identifier: Apache-2.0
// Who owns a document.
#pragma once

#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

// A user's tie to a document.
struct DocumentUser {
  std::string documentId;
  std::string userId;
};

// Place, ID and name of each owner. Takes the right to view document details.
[[nodiscard]] Ref<Recordset> listOwners(const Session& session, const std::string& document);

// The user is named by ID or name. The library tests the rights.
DocumentUser addOwner(const Session& session, const std::string& document, const std::string& user);
// Also somebody who is no user any more.
DocumentUser removeOwner(const Session& session, const std::string& document,
                         const std::string& user);

}  // namespace kv::desk
