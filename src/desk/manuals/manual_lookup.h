// SPDX-License-Identifier: Apache-2.0
// Manuals as people name them.
#pragma once

#include <string>

#include "desk/session.h"

namespace kv::desk {

struct ManualKey {
  std::string id;      // as the register has it
  std::string joined;  // as the library joins it between apostrophes
  std::string name;
};

// The manual with this identifier or, when there is none, with this name. Raises 5 when there is
// none, and when there are several: which of them was meant is not for us to guess.
[[nodiscard]] ManualKey findManual(const Session& session, const std::string& manual);

}  // namespace kv::desk
