// Users as people name them on the command line.
#pragma once

#include <memory>
#include <string>

#include "kvdata/recordset/database.h"

namespace kv::cli {

// The ID of the user with this ID or, when there is none, with this name. A name that several users
// have is refused: which of them was meant is not for us to guess.
[[nodiscard]] std::string findUser(const std::shared_ptr<Database>& database,
                                   const std::string& user);

}  // namespace kv::cli
