// SPDX-License-Identifier: Apache-2.0
#include "cli/people/user_fields.h"

#include "cli/program/given_options.h"

namespace kv::cli {

void addUserFields(Command& verb, UserFields& fields) {
  addText(verb, "--name", fields.name, "The name, by which the user logs in");
  addText(verb, "--alias", fields.alias, "The alias");
  addText(verb, "--title", fields.title, "The title");
  addText(verb, "--email", fields.email, "The e-mail address");
  addText(verb, "--workgroup", fields.workgroup,
          "The workgroup, by number or title; -1 makes an administrator, any other ends being one")
      ->typeName("GROUP");
}

}  // namespace kv::cli
