// SPDX-License-Identifier: Apache-2.0
#include "common/library_error.h"

#include <string>

#include "common/error.h"

namespace kv {

void raise(const LibraryError& error, std::string_view more) {
  throw Error(kErrorBase + error.code, std::string(error.source),
              std::string(error.description) + std::string(more));
}

}  // namespace kv
