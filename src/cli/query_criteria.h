// The criteria of a saved document query as options.
#pragma once

#include <optional>
#include <string>
#include <vector>
#include "cli/command.h"

#include "queries/document_query.h"

namespace kv::cli {

struct QueryCriteria {
  std::optional<std::string> kind;
  std::vector<std::string> where;  // column, operator, value, and so on
  std::vector<std::string> drop;   // columns that lose their criterion
  std::optional<std::string> on;
  std::optional<std::string> after;
  std::optional<std::string> before;

  [[nodiscard]] bool any() const {
    return kind || !where.empty() || !drop.empty() || on || after || before;
  }
};

// --kind, --where, --on, --after and --before.
void addCriteria(Command& verb, QueryCriteria& criteria);
// --drop, for a query that has criteria already.
void addDropping(Command& verb, QueryCriteria& criteria);

// Raises UsageError for what makes no criterion; then nothing is set.
void checkCriteria(const QueryCriteria& criteria);
// Sets the criteria given in a query; the others stay.
void applyCriteria(const QueryCriteria& criteria, clsDocumentQuery& query);

// Which documents a query is for: controlled, uncontrolled or all.
[[nodiscard]] std::string kindOf(const clsDocumentQuery& query);

}  // namespace kv::cli
