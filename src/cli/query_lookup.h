// Stored document queries as people name them on the command line.
#pragma once

#include <cstdint>
#include <string>

#include "cli/options.h"

namespace kv::cli {

// The query without criteria that every new register has, and that documents are listed by.
inline constexpr const char* kAllDocuments = "All documents";

// The number of the document query with this number or, when there is none, with this name. Raises
// 5 when there is none, and when several have the name.
[[nodiscard]] std::int32_t findQuery(const Session& session, const std::string& query);

// Whether a query, another one than `except`, has this name.
[[nodiscard]] bool isQueryName(const Session& session, const std::string& name,
                               std::int32_t except = -1);

}  // namespace kv::cli
