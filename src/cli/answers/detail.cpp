#include "cli/answers/detail.h"

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

#include "cli/answers/output.h"
#include "common/convert.h"
#include "common/text.h"
#include "kvdata/table_value.h"

namespace kv::cli {

Labels labelsIn(const std::shared_ptr<Database>& database, const std::string& table) {
  const auto rs = openOwn(database, "Select * From [" + table + "]", kReadOnly);
  Labels labels;
  if (rs->RecordCount() == 0) return labels;
  for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
    const std::string& column = rs->Fields(i)->Name();
    std::string label = joinText(rs->Fields(i)->Value());
    if (!label.empty() && !equalNoCase(label, column)) labels.emplace(column, std::move(label));
  }
  return labels;
}

void writeDetail(std::ostream& out, Recordset& rs, Format format, const Labels& labels) {
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

}  // namespace kv::cli
