// Rights and options as the command line shows and names them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kv::cli {

enum class SettingKind { UserRight, OwnerRight, UserOption, ApplicationOption };

// "user right" and so on.
[[nodiscard]] std::string_view kindText(SettingKind kind) noexcept;
// What a setting allows or does; empty for a number that is none of its kind, and for the headings
// among the rights.
[[nodiscard]] std::string settingText(SettingKind kind, std::int16_t number);
// All numbers of a kind, in order.
[[nodiscard]] std::vector<std::int16_t> settingsOf(SettingKind kind);

// Reads "1,30,90-96"; numbers in a range that are no settings are passed over. Raises UsageError
// for anything else and for single numbers that are no settings.
[[nodiscard]] std::vector<std::int16_t> readSettings(SettingKind kind, const std::string& list);

// A text of "0" and "1" with some places, from 1, overwritten; filled up with "0" as far as needed.
[[nodiscard]] std::string withSettings(std::string text, const std::vector<std::int16_t>& places,
                                       bool on);

}  // namespace kv::cli
