// SPDX-License-Identifier: Apache-2.0
// The library's own errors: a code on top of the base, a source and a text, kept in tables.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/export.h"

namespace kv {

struct LibraryError {
  std::int32_t code;  // added to kErrorBase
  std::string_view source;
  std::string_view description;
};

// Raises it; `more` follows the description directly.
[[noreturn]] KVVESK_API void raise(const LibraryError& error, std::string_view more = {});

}  // namespace kv
