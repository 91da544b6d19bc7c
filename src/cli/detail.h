// One record in full: a line for each of its fields.
#pragma once

#include <map>
#include <memory>
#include <ostream>
#include <string>

#include "cli/options.h"
#include "kvdata/recordset/database.h"
#include "kvdata/recordset/recordset.h"

namespace kv::cli {

// What a register calls its fields, by column.
using Labels = std::map<std::string, std::string>;

// The labels kept in the one row of a configuration table; none for a column that has no other name
// than its own.
[[nodiscard]] Labels labelsIn(const std::shared_ptr<Database>& database, const std::string& table);

// The current row of a set of one row: as a table one field per line, whole texts, with its label
// behind the name of a field that has one; otherwise as writeRows.
void writeDetail(std::ostream& out, Recordset& rs, Format format, const Labels& labels = {});

}  // namespace kv::cli
