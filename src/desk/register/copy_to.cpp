// SPDX-License-Identifier: Apache-2.0
#include "desk/register/copy_to.h"

#include "desk/register/data_source.h"

namespace kv::desk {

std::vector<CopiedTable> copyTo(const Session& session, const std::string& place, CopyWhat what,
                                const CopyProgress& progress) {
  session.requireAdministrator("only administrators may copy a register");
  const auto connection = session->DataServer()->Connection();
  const std::string to = dataSource(place);
  return what == CopyWhat::Users ? copyUsers(connection, to, progress)
                                 : copyRegister(connection, to, progress);
}

}  // namespace kv::desk
