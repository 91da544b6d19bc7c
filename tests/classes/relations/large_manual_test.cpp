// SPDX-License-Identifier: Apache-2.0
// A manual of 500 documents that 100 users hold; tests/heavy has a larger one.
#include "classes/relations/large_manual.h"

namespace kv {
namespace {

using LargeManual = test::LargeManual;

TEST_F(LargeManual, IsChangedReleasedCollectedAndListed) { run(500, 100, false); }

}  // namespace
}  // namespace kv
