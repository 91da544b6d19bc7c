// SPDX-License-Identifier: Apache-2.0
// What is raised inside the library, as the platform reports it.
#pragma once

#include "com/platform.h"

namespace kv::com {

// Thrown for a missing pointer.
struct NullPointer {};

// For a catch (...) block: the number that the exception stands for. Source and description go to
// the thread's error object, where callers look for them. Numbers of the host language and of
// record sets get 0x800A0000 added, as hosts know them; all others are what they are.
[[nodiscard]] HRESULT reportException() noexcept;

// Runs something that may throw.
template <class Work>
[[nodiscard]] HRESULT guarded(Work&& work) noexcept {
  try {
    work();
    return S_OK;
  } catch (...) {
    return reportException();
  }
}

// Moves the thread's error object into an EXCEPINFO; false when there is none.
bool takeErrorInfo(HRESULT number, EXCEPINFO& out) noexcept;

}  // namespace kv::com
