// SPDX-License-Identifier: Apache-2.0
// Where a revision stands (Revisions.RevisionStatus).
#pragma once

#include <cstdint>

namespace kv {

enum class RevisionStatus : std::int16_t {
  OutOfDate = 0,         // a newer revision is current
  Current = 1,           // in force
  BeingRevised = 2,      // in preparation by its responsible user
  AwaitingApproval = 3,  // with its approvers
  Approved = 4,
  Rejected = 5,
};

}  // namespace kv
