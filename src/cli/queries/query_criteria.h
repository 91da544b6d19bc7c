// SPDX-License-Identifier: Apache-2.0
// The criteria of saved queries as options.
#pragma once

#include "cli/program/command.h"
#include "desk/queries/query_criteria.h"

namespace kv::cli {

using desk::QueryCriteria;

// --kind, --where, --on, --after and --before.
void addCriteria(Command& verb, QueryCriteria& criteria);
// --drop, for a query that has criteria already.
void addDropping(Command& verb, QueryCriteria& criteria);

}  // namespace kv::cli
