// SPDX-License-Identifier: Apache-2.0
#include "desk/manuals/manual_lookup.h"

#include "common/text.h"
#include "data/table_value.h"
#include "desk/refusal.h"
#include "recordset/text_field.h"

namespace kv::desk {

ManualKey findManual(const Session& session, const std::string& manual) {
  const auto with = [&](const char* column, const std::string& value) {
    return openOwn(session.database(),
                   std::string("Select ManualID, ManualName From Manuals Where ") + column +
                       " = '" + doubledQuotes(value) + "'",
                   kReadOnly);
  };
  auto found = with("ManualID", manual);
  if (found->RecordCount() == 0) {
    found = with("ManualName", manual);
    if (found->RecordCount() == 0) refuse("There is no manual '" + manual + "'.");
    if (found->RecordCount() > 1)
      refuse("Several manuals have the name '" + manual + "'; give the manual's identifier.");
  }
  ManualKey key{.id = fieldText(*found, "ManualID"),
                .joined = doubledQuotes(fieldText(*found, "ManualID")),
                .name = fieldText(*found, "ManualName")};
  if (key.id.empty()) refuse("The manual '" + manual + "' has no identifier.");
  // What is done to an identifier is done to every manual that has it.
  if (with("ManualID", key.id)->RecordCount() > 1)
    refuse("Several manuals have the identifier '" + key.id + "'.");
  return key;
}

}  // namespace kv::desk
