// SPDX-License-Identifier: Apache-2.0
// Deleting a document with its revisions, owners, approvers and copies.
#pragma once

#include <string>

#include "desk/session.h"

namespace kv::desk {

// Returns its identifier. Takes the right to delete documents.
std::string deleteDocument(const Session& session, const std::string& document);

}  // namespace kv::desk
