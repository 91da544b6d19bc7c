// SPDX-License-Identifier: Apache-2.0
#include "classes/revisions/revision.h"

#include "classes/session/vesk.h"

namespace kv {

clsVeskRevision::clsVeskRevision() : dataServer_(makeRef<kvDataServer>()) {}

Variant clsVeskRevision::OpenConnection(const std::string& ConnectionString,
                                        const Ref<kvProfile>& oProfile) {
  dataServer_->OpenConnection(ConnectionString, oProfile);
  dataServer_->SetTables("RevisionConfig", "VeskGroups", "", "", "", "VeskProfiles");
  return {};
}

Variant clsVeskRevision::Login() { return {}; }

}  // namespace kv
