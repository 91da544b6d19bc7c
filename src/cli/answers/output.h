// SPDX-License-Identifier: Apache-2.0
// Results on standard output: readable tables, CSV, JSON.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "cli/program/options.h"
#include "common/error.h"
#include "common/plain_text.h"
#include "recordset/recordset.h"

namespace kv::cli {

// All rows of a set, from its first one, in the format asked for. JSON is one object
// {"columns":[...],"rows":[[...]]}, with JSON's own numbers, booleans and null; as JSON lines it
// stands on one line.
void writeRows(std::ostream& out, Recordset& rs, Format format);

// Two results as one JSON object: the columns and rows of the first, and those of the second as an
// object under a name.
void writeJson(std::ostream& out, Recordset& rs, const char* name, Recordset& more);

// {"affected":n}, or a line that says it.
void writeAffected(std::ostream& out, std::int64_t affected, Format format);

// {"error":{"number":...,"source":...,"description":...}} on one line.
void writeErrorLine(std::ostream& out, const Error& error);

// Rows of text under a heading, columns aligned; for verbs that show what they made themselves.
void writeTable(std::ostream& out, const std::vector<std::string>& heading,
                const std::vector<std::vector<std::string>>& rows);

}  // namespace kv::cli
