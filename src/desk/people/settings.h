// SPDX-License-Identifier: Apache-2.0
// Rights and options as they are shown and named.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kv::desk {

// Numbers of settings of one kind.
using Settings = std::vector<std::int16_t>;

enum class SettingKind { UserRight, OwnerRight, UserOption, ApplicationOption };

// "user right" and so on.
[[nodiscard]] std::string_view kindText(SettingKind kind) noexcept;
// What a setting allows or does; empty for a number that is none of its kind, and for the headings
// among the rights.
[[nodiscard]] std::string settingText(SettingKind kind, std::int16_t number);
// All numbers of a kind, in order.
[[nodiscard]] Settings settingsOf(SettingKind kind);

// Reads "1,30,90-96"; numbers in a range that are no settings are passed over. Raises WrongInput
// for anything else and for single numbers that are no settings.
[[nodiscard]] Settings readSettings(SettingKind kind, const std::string& list);

// A text of "0" and "1" with some places, from 1, overwritten; filled up with "0" as far as needed.
[[nodiscard]] std::string withSettings(std::string text, const Settings& places, bool on);

}  // namespace kv::desk
