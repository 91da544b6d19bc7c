// SPDX-License-Identifier: Apache-2.0
// Taking copies of documents and manuals back from users. The library tests the rights.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "desk/copies/give_copies.h"

namespace kv::desk {

// A hard copy of a document by its release number. Raises 5 when there is none, when it is on a
// personal list, and when it belongs to a copy of a manual.
DocumentCopy collectDocument(const Session& session, std::int32_t release);

// A user's hard copy of a manual with this number, or every one that he has.
ManualCopy collectManual(const Session& session, const std::string& manual, const Holder& user,
                         const std::optional<std::string>& number = {});

// What is on a user's personal list.
DocumentCopy takeDocumentOffList(const Session& session, const std::string& document,
                                 const Holder& user);
ManualCopy takeManualOffList(const Session& session, const std::string& manual, const Holder& user);

}  // namespace kv::desk
