// SPDX-License-Identifier: Apache-2.0
// A manual of 5,000 documents that 1,000 users hold: five million lines, in which operations still
// have to come to an end soon. Built with the other tests and run by hand, as it takes one minute
// in a file and three on a server, or five where others work beside it:
//   build/debug/tests/heavy_test
//   scripts/with-postgres build/debug/tests/heavy_test
// It says how long each operation took. What to expect is in docs/measures.md.
#include "classes/relations/large_manual.h"
#include "recordset/database.h"

namespace kv {
namespace {

using LargeManual = test::LargeManual;

TEST_F(LargeManual, OfFiveThousandDocumentsIsHeldByAThousandUsers) { run(5000, 1000, true); }

}  // namespace
}  // namespace kv
