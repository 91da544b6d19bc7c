// SPDX-License-Identifier: Apache-2.0
// Options that may be given or not, where an empty text is something else than none.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include "cli/program/command.h"

#include "common/date.h"

namespace kv::cli {

Argument* addText(Command& verb, const std::string& name, std::optional<std::string>& given,
                  const std::string& help);

// Takes a whole number.
Argument* addNumber(Command& verb, const std::string& name, std::int32_t& number,
                    const std::string& help);
Argument* addNumber(Command& verb, const std::string& name, std::optional<std::int32_t>& given,
                    const std::string& help);

// Takes yes and no.
Argument* addYesNo(Command& verb, const std::string& name, std::optional<bool>& given,
                   const std::string& help);

// Takes a date such as 2024-03-09, and keeps it in that form.
Argument* addDate(Command& verb, const std::string& name, std::optional<std::string>& given,
                  const std::string& help);
// The same, and an empty text for no date.
Argument* addDateOrNone(Command& verb, const std::string& name, std::optional<std::string>& given,
                        const std::string& help);

}  // namespace kv::cli
