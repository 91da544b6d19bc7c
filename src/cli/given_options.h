// Options that may be given or not, where an empty text is something else than none.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "common/date.h"

namespace kv::cli {

CLI::Option* addText(CLI::App& verb, const std::string& name, std::optional<std::string>& given,
                     const std::string& help);

// Takes a whole number.
CLI::Option* addNumber(CLI::App& verb, const std::string& name, std::int32_t& number,
                       const std::string& help);

// Takes yes and no.
CLI::Option* addYesNo(CLI::App& verb, const std::string& name, std::optional<bool>& given,
                      const std::string& help);

// Takes a date such as 2024-03-09, and keeps it in that form.
CLI::Option* addDate(CLI::App& verb, const std::string& name, std::optional<std::string>& given,
                     const std::string& help);
// The same, and an empty text for no date.
CLI::Option* addDateOrNone(CLI::App& verb, const std::string& name,
                           std::optional<std::string>& given, const std::string& help);

}  // namespace kv::cli
