// SPDX-License-Identifier: Apache-2.0
// Making an empty register with an administrator, or a database of users and actions.
#pragma once

#include <string>

#include "recordset/database.h"

namespace kv::desk {

// Places are a file's path or a server's location.
struct NewRegister {
  std::string place;
  std::string administrator;  // the name
  std::string password;
  std::string users;  // where users and actions are kept; empty for in the register
};

// Who is known where the users are kept becomes administrator of the register if the password is
// his; raises 70 when it is not, and WrongInput for an empty password.
void makeRegister(const NewRegister& given);

// For registers to share.
void makeUsers(const std::string& place);

// The list of documents goes through a saved query, which hides the secured ones from those who may
// not see them; without one there would be nothing to list by.
void addQueryForAll(Database& database);

}  // namespace kv::desk
