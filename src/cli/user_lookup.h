// Users as people name them on the command line.
#pragma once

#include <memory>
#include <string>

#include "kvdata/recordset/database.h"

namespace kv::cli {

// The ID of the user with this ID or, when there is none, with this name. Raises 5 when there is
// none, and for a name or an ID that several users have: which of them was meant is not for us to
// guess.
[[nodiscard]] std::string findUser(const std::shared_ptr<Database>& database,
                                   const std::string& user);

// Whether another user than the one with the ID `except` goes by this name, or by this ID.
[[nodiscard]] bool isUser(const std::shared_ptr<Database>& database, const std::string& name,
                          const std::string& except = {});

}  // namespace kv::cli
