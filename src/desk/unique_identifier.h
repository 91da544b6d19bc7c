// SPDX-License-Identifier: Apache-2.0
// Identifiers of documents and manuals are made of the user and the second.
#pragma once

#include <functional>
#include <string>

#include "desk/session.h"

namespace kv::desk {

// What is added: what it is called, how one is added, giving its identifier, and the rows that have
// an identifier.
struct Addable {
  const char* name;
  std::function<std::string()> add;
  std::function<Ref<Recordset>(const std::string& id)> withIdentifier;
};

// Adds one in a transaction of its own and returns its identifier. Several may be added in one
// second, and two of one identifier would be in each other's way for ever, so a second that is
// taken is let pass. Raises 5 when every second of a minute was.
[[nodiscard]] std::string addUnique(const Session& session, const Addable& thing);

}  // namespace kv::desk
