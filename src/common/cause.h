// SPDX-License-Identifier: Apache-2.0
// Why a database engine, or what stands below it, said no: a value for programs that decide what to
// do next, and the sentence that people read first.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/export.h"

namespace kv {

enum class Cause : std::uint8_t {
  None,  // no engine was asked, or the number says it all
  // Worth trying again, now or later.
  Locked,
  ConnectionLost,
  OutcomeUnknown,  // the connection was lost while a change was being kept
  Interrupted,
  TransactionEnded,  // by an earlier failure
  TablesChanged,
  NoConnectionLeft,
  // Something has to be done first.
  ReadOnly,
  Full,
  DiskError,
  Damaged,
  NoMemory,
  NoSuchPlace,     // no file, or no database on the server
  SomethingThere,  // where a register is to be made
  NotARegister,
  CannotOpen,
  Denied,
  LockProtocol,
  ChangedMeanwhile,  // a file that is read as unchanging was written
  // The values were wrong.
  DuplicateKey,
  NullValue,
  TooLong,
  BreaksRule,
  TooLarge,
  // Anything else; the engine's own words say what.
  Refused,
};

// The sentence by which an engine's failure begins; empty where each place has one of its own.
[[nodiscard]] KVVESK_API std::string_view sentenceOf(Cause cause) noexcept;

}  // namespace kv
