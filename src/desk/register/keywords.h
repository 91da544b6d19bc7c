// SPDX-License-Identifier: Apache-2.0
// The values that validated fields may have.
#pragma once

#include <optional>
#include <string>

#include "desk/session.h"
#include "recordset/recordset.h"

namespace kv::desk {

struct Keyword {
  std::string field;
  std::string keyword;
};

// The keywords of one field, or of all.
[[nodiscard]] Ref<Recordset> listKeywords(const Session& session,
                                          const std::optional<std::string>& field = {});

// Raises WrongInput for a text that is no keyword.
void requireKeyword(const std::string& text);

// Both take the right to add keywords. Returns the keyword with the field as its table spells it;
// raises 5 for a field that no record has, and for a keyword that it has already.
Keyword addKeyword(const Session& session, const Keyword& keyword);
// Records that have it keep it. Raises 5 when there is no such keyword.
void deleteKeyword(const Session& session, const Keyword& keyword);

}  // namespace kv::desk
