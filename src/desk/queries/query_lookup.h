// SPDX-License-Identifier: Apache-2.0
// Stored queries as people name them.
#pragma once

#include <cstdint>
#include <string>

#include "classes/rights/rights.h"
#include "desk/session.h"

namespace kv::desk {

// The query without criteria that every new register has, and that documents are listed by.
inline constexpr const char* kAllDocuments = "All documents";

enum class Queried : std::uint8_t { Documents, Manuals, Users };

// The queries of one kind: where they are stored and who may see and change them.
struct QueryKind {
  Queried of;
  const char* table;
  const char* kind;
  std::int16_t viewRight;
  std::int16_t changeRight;
};
inline constexpr QueryKind kDocumentQueries{Queried::Documents, "DocumentQuerys", "document",
                                            urViewDocumentList, urCreateNewdocumentquery};
inline constexpr QueryKind kManualQueries{Queried::Manuals, "ManualQuerys", "manual",
                                          urViewManualList, urCreateNewManualQuery};
inline constexpr QueryKind kUserQueries{Queried::Users, "UserQuerys", "user", urVIEWUSERLIST,
                                        urCreateNewUserQuery};

// The number of the query with this number or, when there is none, with this name. Raises 5 when
// there is none, and when several have the name.
[[nodiscard]] std::int32_t findQuery(const Session& session, const std::string& query,
                                     const QueryKind& from = kDocumentQueries);

// The same by the name alone.
[[nodiscard]] std::int32_t findQueryNamed(const Session& session, const std::string& query,
                                          const QueryKind& from);
// Whether a query of this kind, another one than `except`, has this name.
[[nodiscard]] bool isQueryName(const Session& session, const std::string& name,
                               const QueryKind& from = kDocumentQueries, std::int32_t except = -1);

}  // namespace kv::desk
