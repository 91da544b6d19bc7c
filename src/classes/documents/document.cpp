// SPDX-License-Identifier: Apache-2.0
#include "classes/documents/document.h"

#include "classes/session/vesk.h"

namespace kv {

clsVeskDocument::clsVeskDocument() : dataServer_(makeRef<kvDataServer>()) {}

Variant clsVeskDocument::OpenConnection(const std::string& ConnectionString,
                                        const Ref<kvProfile>& oProfile) {
  dataServer_->OpenConnection(ConnectionString, oProfile);
  dataServer_->SetTables("DocumentConfig", "VeskGroups", "DocumentQuerys", "", "", "VeskProfiles");
  return {};
}

Variant clsVeskDocument::Login() { return {}; }

}  // namespace kv
