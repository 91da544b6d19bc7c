// SPDX-License-Identifier: Apache-2.0
// One record in full: a line for each of its fields.
#pragma once

#include <ostream>

#include "cli/program/options.h"
#include "desk/register/field_labels.h"
#include "recordset/recordset.h"

namespace kv::cli {

// The current row of a set of one row: as a table one field per line, whole texts, with its label
// behind the name of a field that has one; otherwise as writeRows.
void writeDetail(std::ostream& out, Recordset& rs, Format format, const desk::Labels& labels = {});
void writeDetail(std::ostream& out, const desk::Detail& detail, Format format);

}  // namespace kv::cli
