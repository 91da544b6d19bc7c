// Registers of a given size to measure on.
#pragma once

#include <string>

namespace kv::bench {

// The path of a register with `documents` documents, made when first asked for and removed at the
// end of the program. Titles are in no order, every document has one revision, and holders are
// spread evenly.
[[nodiscard]] const std::string& sampleRegister(int documents);

// The DocumentID of document `n` (from 0).
[[nodiscard]] std::string documentId(int n);

}  // namespace kv::bench
