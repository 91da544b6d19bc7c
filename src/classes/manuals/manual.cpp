// SPDX-License-Identifier: Apache-2.0
#include "classes/manuals/manual.h"

#include "classes/session/vesk.h"

namespace kv {

clsVeskManual::clsVeskManual() : dataServer_(makeRef<kvDataServer>()) {}

Variant clsVeskManual::OpenConnection(const std::string& ConnectionString,
                                      const Ref<kvProfile>& oProfile) {
  dataServer_->OpenConnection(ConnectionString, oProfile);
  dataServer_->SetTables("ManualConfig", "VeskGroups", "ManualQuerys", "", "", "VeskProfiles");
  return {};
}

Variant clsVeskManual::Login() { return {}; }

}  // namespace kv
