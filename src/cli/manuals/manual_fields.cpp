// SPDX-License-Identifier: Apache-2.0
#include "cli/manuals/manual_fields.h"

#include "cli/program/given_options.h"

namespace kv::cli {

void addManualFields(Command& verb, ManualFields& fields) {
  addText(verb, "--name", fields.name, "The name");
  addText(verb, "--field1", fields.field1, "The first data field");
  addText(verb, "--field2", fields.field2, "The second data field");
  addText(verb, "--field3", fields.field3, "The third data field");
  addText(verb, "--field4", fields.field4, "The fourth data field");
  addText(verb, "--notes", fields.notes, "The notes");
}

}  // namespace kv::cli
