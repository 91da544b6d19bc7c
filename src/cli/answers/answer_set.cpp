// SPDX-License-Identifier: Apache-2.0
#include "cli/answers/answer_set.h"

#include <ostream>

#include "cli/answers/output.h"
#include "recordset/recordset.h"

namespace kv::cli {

void writeDone(std::ostream& out, const std::string& sentence,
               const std::vector<std::pair<const char*, Variant>>& keys, Format format) {
  if (format == Format::Table) {
    out << sentence << '\n';
    return;
  }
  const auto rs = Recordset::create();
  for (const auto& [name, value] : keys)
    rs->Fields().Append(name, value.isText()                      ? kTypeLongVarWChar
                              : value.kind() == VariantKind::Date ? kTypeDate
                                                                  : kTypeInteger);
  rs->Open();
  rs->AddNew();
  for (const auto& [name, value] : keys) rs->Fields(name)->Value(value);
  rs->Update();
  writeRows(out, *rs, format);
}

}  // namespace kv::cli
