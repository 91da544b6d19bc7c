// SPDX-License-Identifier: Apache-2.0
#include "cli/answers/detail.h"

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

#include "cli/answers/output.h"
#include "common/text.h"

namespace kv::cli {

void writeDetail(std::ostream& out, Recordset& rs, Format format, const desk::Labels& labels) {
  if (format != Format::Table) {
    writeRows(out, rs, format);
    return;
  }
  std::vector<std::pair<std::string, std::string>> fields;
  std::size_t widest = 0;
  for (std::int32_t i = 0; i < rs.Fields().Count(); ++i) {
    const auto field = rs.Fields(i);
    std::string name = field->Name();
    const auto label = labels.find(name);
    if (label != labels.end()) name += " (" + label->second + ")";
    widest = std::max(widest, characterCount(name));
    fields.emplace_back(std::move(name), plainText(field->Value()));
  }
  const std::string indent(widest + 2, ' ');
  for (const auto& [name, text] : fields) {
    std::istringstream lines(text);
    std::string left = name + indent.substr(characterCount(name));
    std::string line;
    do {
      line.clear();
      std::getline(lines, line);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      line.insert(0, left);
      line.erase(line.find_last_not_of(' ') + 1);
      out << line << '\n';
      left = indent;
    } while (lines.good());
  }
}

void writeDetail(std::ostream& out, const desk::Detail& detail, Format format) {
  writeDetail(out, *detail.row, format, detail.labels);
}

}  // namespace kv::cli
