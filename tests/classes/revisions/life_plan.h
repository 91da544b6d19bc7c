// SPDX-License-Identifier: Apache-2.0
// A sequence of things to do with revisions that two programs work out alike from a seed: one does
// them, the other knows what must have become of it.
#pragma once

#include <cstdint>
#include <random>

namespace kv::test {

struct Deed {
  enum Kind { Route, Approve, Reject, SetCurrent };
  Kind kind = Route;
  int revision = 0;  // from 1
  int approver = 0;  // from 1
  bool send = false;
};

class LifePlan {
 public:
  LifePlan(std::uint32_t seed, int revisions, int approvers)
      : random_(seed), revisions_(revisions), approvers_(approvers) {}

  [[nodiscard]] Deed next() {
    static constexpr Deed::Kind kKinds[] = {Deed::Route,   Deed::Route,     Deed::Approve,
                                            Deed::Approve, Deed::Approve,   Deed::Approve,
                                            Deed::Reject,  Deed::SetCurrent};
    Deed out;
    out.kind = kKinds[upTo(7)];
    out.revision = static_cast<int>(upTo(static_cast<unsigned>(revisions_) - 1)) + 1;
    out.approver = static_cast<int>(upTo(static_cast<unsigned>(approvers_) - 1)) + 1;
    out.send = upTo(2) > 0;
    return out;
  }

 private:
  // Not a distribution of the library's: both programs must come to the same.
  unsigned upTo(unsigned most) { return static_cast<unsigned>(random_() % (most + 1)); }

  std::mt19937 random_;
  int revisions_;
  int approvers_;
};

}  // namespace kv::test
