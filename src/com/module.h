// SPDX-License-Identifier: Apache-2.0
// The DLL itself: where it is, and whether anybody still needs it.
#pragma once

#include <atomic>

#include "com/platform.h"

namespace kv::com {

// The module's handle, from which it finds its own file.
[[nodiscard]] HINSTANCE module() noexcept;

// How many objects and locks there are; the DLL may be unloaded when there are none.
class Uses {
 public:
  static void add() noexcept { ++count_; }
  static void drop() noexcept { --count_; }
  [[nodiscard]] static bool any() noexcept { return count_ != 0; }

 private:
  static inline std::atomic<long> count_ = 0;
};

// Something that keeps the DLL loaded.
class Use {
 public:
  Use() noexcept { Uses::add(); }
  ~Use() { Uses::drop(); }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;
  Use(Use&&) = delete;
  Use& operator=(Use&&) = delete;
};

}  // namespace kv::com
