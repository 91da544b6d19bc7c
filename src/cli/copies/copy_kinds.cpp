// SPDX-License-Identifier: Apache-2.0
#include "cli/copies/copy_kinds.h"

namespace kv::cli {

void addCopyKinds(Command& verb, desk::CopyKinds& kinds) {
  auto* hard = verb.addFlag(
      "--hard", [&kinds] { kinds.listed = false; }, "Only hard copies");
  verb.addFlag(
          "--virtual", [&kinds] { kinds.hard = false; }, "Only what is on personal lists")
      ->excludes(hard);
}

}  // namespace kv::cli
