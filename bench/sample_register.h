// SPDX-License-Identifier: Apache-2.0
// Registers of a given size to measure on.
#pragma once

#include <string>

namespace kv::bench {

// The path of a register with `documents` documents, made when first asked for and removed at the
// end of the program. Titles are in no order, every document has one revision, holders are spread
// evenly, and Anna with the password "secret" is an administrator. With another `purpose` it is
// another register of that kind. KVVESK_BENCH_FOLDER names a
// folder in which registers are kept from run to run.
[[nodiscard]] const std::string& sampleRegister(int documents, const std::string& purpose = {});

// The DocumentID of document `n` (from 0).
[[nodiscard]] std::string documentId(int n);
// The DocumentTitle of document `n` of `documents`.
[[nodiscard]] std::string documentTitle(int n, int documents);

// A text that no document has yet: SQLite does not write, nor wait for the disk, when nothing
// changes.
[[nodiscard]] std::string newText();

}  // namespace kv::bench
