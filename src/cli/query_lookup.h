// Stored queries as people name them on the command line.
#pragma once

#include <cstdint>
#include <string>

#include "cli/options.h"

namespace kv::cli {

// The query without criteria that every new register has, and that documents are listed by.
inline constexpr const char* kAllDocuments = "All documents";

// Where the queries of one kind are stored.
struct QueryTable {
  const char* table;
  const char* kind;
};
inline constexpr QueryTable kDocumentQueries{"DocumentQuerys", "document"};
inline constexpr QueryTable kUserQueries{"UserQuerys", "user"};

// The number of the query with this number or, when there is none, with this name. Raises 5 when
// there is none, and when several have the name.
[[nodiscard]] std::int32_t findQuery(const Session& session, const std::string& query,
                                     const QueryTable& from = kDocumentQueries);

// Whether a document query, another one than `except`, has this name.
[[nodiscard]] bool isQueryName(const Session& session, const std::string& name,
                               std::int32_t except = -1);

}  // namespace kv::cli
