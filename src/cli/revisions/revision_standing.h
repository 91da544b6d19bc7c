// Where a revision stands, and what a verb has made of it.
#pragma once

#include <cstdint>
#include <string>

#include "cli/answers/answer_set.h"
#include "cli/people/sent_actions.h"
#include "cli/program/options.h"

namespace kv::cli {

// Where the revision stands on whose row a set is, in the register's own words; for a row that
// they cannot be found for the reason in parentheses.
[[nodiscard]] std::string standingText(const Session& session, const Ref<Recordset>& revision);

// The one row that a verb about a revision's way answers with.
[[nodiscard]] AnswerSet standingOf(const Session& session, std::int32_t revision);

// What a verb did, where the revision stands now, and who was told.
void writeStep(std::ostream& out, const Session& session, const std::string& sentence,
               std::int32_t revision, const SentActions& sent, Format format);

}  // namespace kv::cli
