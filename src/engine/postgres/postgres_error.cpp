// SPDX-License-Identifier: Apache-2.0
#include "engine/postgres/postgres_error.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "common/error.h"
#include "common/text.h"
#include "engine/engine.h"

namespace kv::engine {

namespace {

struct State {
  std::string_view code;  // an SQLSTATE, or the class it begins with
  std::int32_t number;
  Cause cause;
  std::string_view text = {};  // where the cause's own sentence does not fit a server
};

constexpr std::string_view kMismatchText = "Data type mismatch in criteria expression.";

// The first that fits counts, so whole codes stand before their classes.
constexpr auto kStates = std::to_array<State>({
    {"22001", kEngineFailure, Cause::TooLong},
    // Our texts are right for the tables that they were written for: a server that does not take
    // one has others.
    {"0A000", kEngineFailure, Cause::TablesChanged},
    {"22003", kValueOverflow, Cause::None, "Overflow."},
    {"22P02", kMismatch, Cause::None, kMismatchText},
    {"22007", kMismatch, Cause::None, kMismatchText},
    {"22008", kMismatch, Cause::None, kMismatchText},
    {"23505", kEngineFailure, Cause::DuplicateKey},
    {"23502", kEngineFailure, Cause::NullValue},
    {"23", kEngineFailure, Cause::BreaksRule},
    {"25006", kEngineFailure, Cause::ReadOnly},
    {"28", kEngineFailure, Cause::Denied, "The server does not let this user in."},
    {"3D", kEngineFailure, Cause::NoSuchPlace, "There is no such database on the server."},
    {"40", kEngineFailure, Cause::Locked},
    {"42501", kEngineFailure, Cause::Denied, "The server does not allow this user to do that."},
    {"42P01", kUnknownTable, Cause::TablesChanged},
    {"42703", kUnknownName, Cause::TablesChanged},
    {"42", kEngineFailure, Cause::TablesChanged},
    {"53100", kEngineFailure, Cause::Full},
    {"53200", kEngineFailure, Cause::NoMemory},
    {"53300", kEngineFailure, Cause::NoConnectionLeft},
    {"54", kEngineFailure, Cause::TooLarge},
    {"55P03", kEngineFailure, Cause::Locked},
    {"57014", kEngineFailure, Cause::Interrupted},
    {"57P", kEngineFailure, Cause::ConnectionLost},
    {"08", kEngineFailure, Cause::ConnectionLost},
    {"58", kEngineFailure, Cause::DiskError},
    {"", kEngineFailure, Cause::Refused},
});

std::string_view field(const PGresult* result, int code) {
  const char* text = result != nullptr ? PQresultErrorField(result, code) : nullptr;
  return text == nullptr ? std::string_view() : std::string_view(text);
}

// A server's message without line breaks.
std::string oneLine(std::string_view message) {
  std::string out;
  for (const char c : message) {
    if (c != '\n' && c != '\r' && c != '\t')
      out += c;
    else if (!out.empty() && out.back() != ' ')
      out += ' ';
  }
  return std::string(trimmed(out));
}

}  // namespace

void raiseServer(Cause cause, std::string_view sentence, std::string_view message) {
  raise(cause, std::string(sentence) + " " + oneLine(message), {});
}

void raiseLost(std::string_view message, bool outcomeUnknown) {
  const Cause cause = outcomeUnknown ? Cause::OutcomeUnknown : Cause::ConnectionLost;
  raiseServer(cause, sentenceOf(cause), message);
}

void raisePostgres(const PGresult* result) {
  const std::string_view code = field(result, PG_DIAG_SQLSTATE);
  const auto* known = std::find_if(kStates.begin(), kStates.end(),
                                   [&](const State& s) { return code.starts_with(s.code); });
  if (field(result, PG_DIAG_CONSTRAINT_NAME).starts_with("kv_size_")) known = kStates.data();
  const std::string message = oneLine(field(result, PG_DIAG_MESSAGE_PRIMARY));
  // The statement has asked whether there are new columns, and failed because there are.
  const bool asked = message.find(kColumnsMark) != std::string::npos;
  const Cause cause = asked ? Cause::TablesChanged : known->cause;
  const std::string_view text = asked || known->text.empty() ? sentenceOf(cause) : known->text;
  std::string description = fmt::format("{} {} ({})", text, message, code);
  if (cause == Cause::TablesChanged)
    throw TablesChanged(asked ? kEngineFailure : known->number, std::move(description));
  throw Error(known->number, "kvData", std::move(description), {}, cause);
}

}  // namespace kv::engine
