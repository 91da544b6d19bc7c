#include "cli/csv.h"

#include <algorithm>
#include <utility>

namespace kv::cli {

namespace {

constexpr char kQuote = '"';
constexpr char kSeparator = ',';

bool endsLine(char c) { return c == '\r' || c == '\n'; }

// Takes what stands in quotation marks from the front of the text, two of them for one; false when
// there is no end, or something else behind it than the end of a field.
bool takeQuoted(std::string_view& text, std::string& field) {
  for (;;) {
    const auto end = text.find(kQuote, 1);
    if (end == std::string_view::npos) return false;
    field += text.substr(1, end - 1);
    text.remove_prefix(end + 1);
    if (!text.starts_with(kQuote)) break;
    field += kQuote;
  }
  return text.empty() || text.front() == kSeparator || endsLine(text.front());
}

bool takePlain(std::string_view& text, std::string& field) {
  const auto end = std::min(text.find_first_of(",\r\n\""), text.size());
  field = text.substr(0, end);
  text.remove_prefix(end);
  return !text.starts_with(kQuote);
}

}  // namespace

bool readCsv(std::string_view text, std::vector<std::vector<std::string>>& records) {
  while (!text.empty()) {
    if (endsLine(text.front())) {
      text.remove_prefix(1);
      continue;
    }
    std::vector<std::string> record;
    for (;;) {
      std::string field;
      if (!(text.starts_with(kQuote) ? takeQuoted(text, field) : takePlain(text, field)))
        return false;
      record.push_back(std::move(field));
      if (!text.starts_with(kSeparator)) break;
      text.remove_prefix(1);
    }
    records.push_back(std::move(record));
  }
  return true;
}

std::string csvField(std::string_view text) {
  std::string out(1, kQuote);
  for (const char c : text) {
    if (c == kQuote) out += kQuote;
    out += c;
  }
  return out + kQuote;
}

}  // namespace kv::cli
