// SPDX-License-Identifier: Apache-2.0
// Joining values into statement texts. The texts are part of the interface, so values go in as they
// are; what a value must not do is change the shape of the statement around it. These functions
// know where a value goes, give it back when it can go there, and raise -2147217900 when it cannot;
// the statement is then never run.
#pragma once

#include <string>
#include <string_view>

namespace kv {

// A value between apostrophes: every run of apostrophes in it must be of even length. O''Brien
// passes, O'Brien and x' or 'a'='a do not.
[[nodiscard]] std::string inQuotes(std::string_view value);

// What such a value says: two apostrophes are one. For where a value that is joined into one
// statement is stored in a field, compared with one or locked by.
[[nodiscard]] std::string outOfQuotes(std::string_view value);

// A value outside quotes: what a statement reads as one number, with an optional sign and blanks
// around it.
[[nodiscard]] std::string asNumber(std::string_view value);

// A value between number signs: what a statement reads as one date there, such as 3/9/2001,
// 25/7/2018, 20 Jan 2001 or 2:05 PM.
[[nodiscard]] std::string asDate(std::string_view value);

// A value outside quotes that must be the name of a column: letters, digits and underscores, not
// beginning with a digit, or any name in brackets.
[[nodiscard]] std::string asColumnName(std::string_view value);

}  // namespace kv
