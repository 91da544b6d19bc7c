// Comma-separated values, as RFC 4180 has them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv::cli {

// Adds the records of a text, each a list of fields. Lines end as on any system, and empty ones are
// passed over; blanks belong to the field they stand in. False when a quotation mark is out of
// place: then those before it have been added.
[[nodiscard]] bool readCsv(std::string_view text, std::vector<std::vector<std::string>>& records);

// A text as a field in quotation marks.
[[nodiscard]] std::string csvField(std::string_view text);

}  // namespace kv::cli
