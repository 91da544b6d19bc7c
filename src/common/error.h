// SPDX-License-Identifier: Apache-2.0
// The one exception type that crosses public functions, and the numbers it carries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "common/cause.h"
#include "common/export.h"

namespace kv {

// Base of the library's own codes: what a component adds to its error codes (hexadecimal 80040000).
inline constexpr std::int32_t kErrorBase = -2147221504;

// Numbers of the host language. They are raised plain; only the COM face adds 0x800A0000.
enum HostError : std::int32_t {
  kInvalidCall = 5,     // Invalid procedure call or argument
  kOverflow = 6,        // Overflow
  kTypeMismatch = 13,   // Type mismatch
  kPermission = 70,     // Permission denied
  kObjectNotSet = 91,   // Object variable or With block variable not set
  kInvalidNull = 94,    // Invalid use of Null
  kDuplicateKey = 457,  // This key is already associated with an element of this collection
};

// Numbers of the record-set layer, plain as well.
enum RecordsetError : std::int32_t {
  kBadArgument = 3001,
  kNoCurrentRow = 3021,
  kNotAllowed = 3219,
  kNotAvailable = 3251,
  kNoSuchItem = 3265,
  kWrongType = 3421,
  kClosed = 3704,
  kAlreadyOpen = 3705,
  kNoConnection = 3709,
};

// Numbers of the database engine layer.
enum DatabaseError : std::int32_t {
  kUnknownName = -2147217904,    // a column or parameter nobody knows
  kSyntax = -2147217900,         // malformed statement, undefined function, refused value
  kRowDeleted = -2147217885,     // row deleted by someone else
  kMismatch = -2147217913,       // data type mismatch
  kUnknownTable = -2147217865,   // no such table
  kRowChanged = -2147217864,     // row changed by someone else
  kValueOverflow = -2147217833,  // a number its column cannot hold
  kEngineFailure = -2147467259,  // locked, read-only, full, not a register, lost, duplicate key
};

// Position of a fault in a statement's text; offset is in bytes from 0, npos means none.
struct TextRange {
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);
  std::size_t offset = npos;
  std::size_t length = 0;
};

class KVVESK_API Error : public std::exception {
 public:
  Error(std::int32_t number, std::string source, std::string description, TextRange where = {},
        Cause cause = Cause::None);

  [[nodiscard]] std::int32_t number() const noexcept { return number_; }
  [[nodiscard]] const std::string& source() const noexcept { return source_; }
  [[nodiscard]] const std::string& description() const noexcept { return description_; }
  // Where in the statement text the fault lies; for programs that draw a caret under it.
  [[nodiscard]] TextRange where() const noexcept { return where_; }
  // What an engine's failure (-2147467259 and the like) comes from; None for all others.
  [[nodiscard]] Cause cause() const noexcept { return cause_; }
  // The description, for catch sites that only know std::exception.
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string source_;
  std::string description_;
  TextRange where_;
  Cause cause_;
};

// Raises a host or record-set number with its well-known text. `detail`, when given, follows the
// text after a blank: a name, a value, a reason.
[[noreturn]] KVVESK_API void raise(std::int32_t number, std::string_view detail = {});

// Raises an engine's failure, -2147467259: the cause's own sentence and, when given, the engine's
// words behind it.
[[noreturn]] KVVESK_API void raise(Cause cause, std::string_view native = {});
// The same with a sentence that says more than the cause's own.
[[noreturn]] KVVESK_API void raise(Cause cause, std::string sentence, std::string_view native);

// The well-known text of a host or record-set number; empty for numbers without one.
[[nodiscard]] KVVESK_API std::string_view wellKnownText(std::int32_t number) noexcept;

}  // namespace kv
