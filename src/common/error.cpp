// SPDX-License-Identifier: Apache-2.0
#include "common/error.h"

#include <array>
#include <utility>

namespace kv {

namespace {

struct KnownText {
  std::int32_t number;
  std::string_view source;
  std::string_view text;
};

constexpr std::string_view kHost = "KvVesk";
constexpr std::string_view kData = "kvData";

constexpr std::array kTexts = {
    KnownText{kInvalidCall, kHost, "Invalid procedure call or argument"},
    KnownText{kOverflow, kHost, "Overflow"},
    KnownText{kTypeMismatch, kHost, "Type mismatch"},
    KnownText{kPermission, kHost, "Permission denied"},
    KnownText{kObjectNotSet, kHost, "Object variable or With block variable not set"},
    KnownText{kInvalidNull, kHost, "Invalid use of Null"},
    KnownText{kDuplicateKey, kHost,
              "This key is already associated with an element of this collection"},
    KnownText{
        kBadArgument, kData,
        "Arguments are of the wrong type, are out of acceptable range, or are in conflict with "
        "one another."},
    KnownText{kNoCurrentRow, kData,
              "Either BOF or EOF is True, or the current record has been deleted. Requested "
              "operation requires a current record."},
    KnownText{kNotAllowed, kData, "Operation is not allowed in this context."},
    KnownText{kNotAvailable, kData,
              "Current Recordset does not support this operation on this column or row."},
    KnownText{kNoSuchItem, kData,
              "Item cannot be found in the collection corresponding to the requested name or "
              "ordinal."},
    KnownText{kWrongType, kData,
              "Application uses a value of the wrong type for the current operation."},
    KnownText{kClosed, kData, "Operation is not allowed when the object is closed."},
    KnownText{kAlreadyOpen, kData, "Operation is not allowed when the object is open."},
    KnownText{kNoConnection, kData,
              "The connection cannot be used to perform this operation. It is either closed or "
              "invalid in this context."},
    KnownText{kRowChanged, kData,
              "Row cannot be located for updating. Some values may have been changed since it was "
              "last read."},
    KnownText{kRowDeleted, kData, "The row has been deleted by someone else."},
    KnownText{kMismatch, kData, "Data type mismatch in criteria expression."},
};

const KnownText* find(std::int32_t number) noexcept {
  for (const auto& entry : kTexts)
    if (entry.number == number) return &entry;
  return nullptr;
}

}  // namespace

Error::Error(std::int32_t number, std::string source, std::string description, TextRange where,
             Cause cause)
    : number_(number),
      source_(std::move(source)),
      description_(std::move(description)),
      where_(where),
      cause_(cause) {}

void raise(std::int32_t number, std::string_view detail) {
  const KnownText* known = find(number);
  std::string text(known != nullptr ? known->text : std::string_view{});
  if (!detail.empty()) {
    if (!text.empty()) text += ' ';
    text += detail;
  }
  throw Error(number, std::string(known != nullptr ? known->source : kData), std::move(text));
}

void raise(Cause cause, std::string_view native) {
  raise(cause, std::string(sentenceOf(cause)), native);
}

void raise(Cause cause, std::string sentence, std::string_view native) {
  if (!native.empty()) {
    sentence += ' ';
    sentence += native;
  }
  throw Error(kEngineFailure, std::string(kData), std::move(sentence), {}, cause);
}

std::string_view wellKnownText(std::int32_t number) noexcept {
  const KnownText* known = find(number);
  return known != nullptr ? known->text : std::string_view{};
}

}  // namespace kv
