// SPDX-License-Identifier: Apache-2.0
#include "desk/register/import/import_register.h"

#include <utility>

namespace kv::desk {

ImportReport importRegister(const Session& session, const std::string& folder, Date asOf,
                            Importer::ProgressCall progress) {
  session.requireAdministrator("only administrators may import");
  Importer importer(session->DataServer()->Connection(), asOf, session.profile()->UserID(),
                    std::move(progress));
  return importer.run(folder);
}

}  // namespace kv::desk
