#include "kvdata/engine/postgres/postgres_error.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "common/error.h"
#include "common/text.h"

namespace kv::engine {

namespace {

struct Cause {
  std::string_view state;  // an SQLSTATE, or the class it begins with
  std::int32_t number;
  std::string_view text;
};

// The first that fits counts, so whole codes stand before their classes.
constexpr auto kCauses = std::to_array<Cause>({
    {"22001", kEngineFailure,
     "The field is too small to accept the amount of data you attempted to add. Try inserting or "
     "pasting less data."},
    {"22003", kValueOverflow, "Overflow."},
    {"22P02", kMismatch, "Data type mismatch in criteria expression."},
    {"22007", kMismatch, "Data type mismatch in criteria expression."},
    {"22008", kMismatch, "Data type mismatch in criteria expression."},
    {"23505", kEngineFailure,
     "The changes were not successful because they would create a duplicate key."},
    {"23502", kEngineFailure, "The field cannot contain a Null value."},
    {"23", kEngineFailure, "The change breaks a rule of the table."},
    {"25006", kEngineFailure, "The register is read-only."},
    {"28", kEngineFailure, "The server does not let this user in."},
    {"3D", kEngineFailure, "There is no such database on the server."},
    {"40", kEngineFailure, "The register is locked by another process."},
    {"42501", kEngineFailure, "The server does not allow this user to do that."},
    {"53100", kEngineFailure, "The disk is full."},
    {"53200", kEngineFailure, "There is not enough memory."},
    {"53300", kEngineFailure, "The server has no connection left to give."},
    {"54", kEngineFailure, "The value or statement is too large."},
    {"55P03", kEngineFailure, "The register is locked by another process."},
    {"57014", kEngineFailure, "The statement was interrupted."},
    {"57P", kEngineFailure, "The connection to the server was lost."},
    {"08", kEngineFailure, "The connection to the server was lost."},
    {"58", kEngineFailure, "The disk reported an error."},
    {"", kEngineFailure, "The database engine refused the statement."},
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

void raisePostgres(std::string_view cause, std::string_view message) {
  throw Error(kEngineFailure, "kvData", fmt::format("{} {}", cause, oneLine(message)));
}

void raiseLost(std::string_view message, bool outcomeUnknown) {
  raisePostgres(outcomeUnknown ? "The connection to the server was lost while a change was being "
                                 "kept; whether it was kept is unknown."
                               : "The connection to the server was lost.",
                message);
}

void raisePostgres(const PGresult* result) {
  const std::string_view state = field(result, PG_DIAG_SQLSTATE);
  const auto* known = std::find_if(kCauses.begin(), kCauses.end(),
                                   [&](const Cause& c) { return state.starts_with(c.state); });
  std::string_view text = known->text;
  if (field(result, PG_DIAG_CONSTRAINT_NAME).starts_with("kv_size_")) text = kCauses[0].text;
  throw Error(
      known->number, "kvData",
      fmt::format("{} {} ({})", text, oneLine(field(result, PG_DIAG_MESSAGE_PRIMARY)), state));
}

}  // namespace kv::engine
