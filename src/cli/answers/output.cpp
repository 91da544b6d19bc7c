// SPDX-License-Identifier: Apache-2.0
#include "cli/answers/output.h"

#include <csv.h>

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "common/convert.h"
#include "common/text.h"

namespace kv::cli {

namespace {

using Json = nlohmann::ordered_json;

Json jsonOf(const Variant& value) {
  switch (value.kind()) {
    case VariantKind::Empty:
    case VariantKind::Null: return nullptr;
    case VariantKind::Int16: return *value.as<std::int16_t>();
    case VariantKind::Int32: return *value.as<std::int32_t>();
    case VariantKind::Boolean: return *value.as<bool>();
    // The digits a single has, not the ones it gains as a double.
    case VariantKind::Single: return std::strtod(numberText(*value.as<float>()).c_str(), nullptr);
    case VariantKind::Double: return *value.as<double>();
    case VariantKind::Date:
    case VariantKind::String:
    case VariantKind::Object: break;
  }
  return plainText(value);
}

std::string csvField(const std::string& text) {
  std::string out(text.size() * 2 + 2, '\0');
  out.resize(csv_write(out.data(), out.size(), text.data(), text.size()));
  return out;
}

bool isRightAligned(std::int32_t type) {
  return type == kTypeSmallInt || type == kTypeInteger || type == kTypeSingle ||
         type == kTypeDouble;
}

// One line for a terminal: line breaks shown as a mark, long text cut.
std::string cellText(const std::string& text) {
  constexpr std::size_t kWidest = 60;
  std::string out;
  for (const char c : text) {
    if (c == '\n')
      out += "\xE2\x86\xB5";  // a return arrow
    else if (c != '\r')
      out += c;
  }
  if (characterCount(out) <= kWidest) return out;
  return out.substr(0, byteOffset(out, kWidest - 1)) + "\xE2\x80\xA6";  // an ellipsis
}

void writeAligned(std::ostream& out, const std::vector<std::string>& heading,
                  const std::vector<std::vector<std::string>>& rows,
                  const std::vector<bool>& right) {
  std::vector<std::size_t> widths;
  widths.reserve(heading.size());
  for (const auto& name : heading) widths.push_back(characterCount(name));
  for (const auto& row : rows)
    for (std::size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], characterCount(row[i]));
  const auto line = [&](const std::vector<std::string>& cells) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const std::string pad(widths[i] - characterCount(cells[i]), ' ');
      if (i > 0) text += "  ";
      text += right[i] ? pad + cells[i] : cells[i] + pad;
    }
    text.erase(text.find_last_not_of(' ') + 1);
    out << text << '\n';
  };
  line(heading);
  std::vector<std::string> rule;
  rule.reserve(widths.size());
  for (const auto width : widths) rule.emplace_back(width, '-');
  line(rule);
  for (const auto& row : rows) line(row);
}

template <class Row>
void eachRow(Recordset& rs, Row row) {
  const std::int32_t count = rs.Fields().Count();
  std::vector<Ref<Field>> fields;
  fields.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) fields.push_back(rs.Fields(i));
  if (rs.RecordCount() > 0) rs.MoveFirst();
  for (; !rs.Eof(); rs.MoveNext()) row(fields);
}

Json namesOf(Recordset& rs) {
  Json names = Json::array();
  for (std::int32_t i = 0; i < rs.Fields().Count(); ++i) names.push_back(rs.Fields(i)->Name());
  return names;
}

Json rowOf(const std::vector<Ref<Field>>& fields) {
  Json row = Json::array();
  for (const auto& field : fields) row.push_back(jsonOf(field->Value()));
  return row;
}

// The two members of an object of columns and rows, a row to a line. Row by row, so that a large
// result needs no large memory.
void writeMembers(std::ostream& out, Recordset& rs, const std::string& indent) {
  out << indent << "\"columns\": " << namesOf(rs).dump() << ",\n" << indent << "\"rows\": [";
  bool first = true;
  eachRow(rs, [&](const auto& fields) {
    out << (first ? "\n" : ",\n") << indent << "  " << rowOf(fields).dump();
    first = false;
  });
  if (!first) out << '\n' << indent;
  out << ']';
}

}  // namespace

void writeRows(std::ostream& out, Recordset& rs, Format format) {
  std::vector<std::string> names;
  std::vector<bool> right;
  for (std::int32_t i = 0; i < rs.Fields().Count(); ++i) {
    names.push_back(rs.Fields(i)->Name());
    right.push_back(isRightAligned(rs.Fields(i)->Type()));
  }
  switch (format) {
    case Format::Json:
      out << "{\n";
      writeMembers(out, rs, "  ");
      out << "\n}\n";
      return;
    case Format::JsonLines: {
      out << "{\"columns\":" << namesOf(rs).dump() << ",\"rows\":[";
      bool first = true;
      eachRow(rs, [&](const auto& fields) {
        out << (first ? "" : ",") << rowOf(fields).dump();
        first = false;
      });
      out << "]}\n";
      return;
    }
    case Format::Csv: {
      const auto line = [&](const std::vector<std::string>& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) out << (i > 0 ? "," : "") << cells[i];
        out << "\r\n";
      };
      std::vector<std::string> cells;
      cells.reserve(names.size());
      for (const auto& name : names) cells.push_back(csvField(name));
      line(cells);
      eachRow(rs, [&](const auto& fields) {
        cells.clear();
        for (const auto& field : fields) {
          const Variant value = field->Value();
          // Nothing for Null, an empty pair of quotes for an empty text.
          cells.push_back(value.isNull()   ? std::string()
                          : value.isText() ? csvField(*value.template as<std::string>())
                                           : plainText(value));
        }
        line(cells);
      });
      return;
    }
    case Format::Table: {
      std::vector<std::vector<std::string>> rows;
      eachRow(rs, [&](const auto& fields) {
        auto& row = rows.emplace_back();
        for (const auto& field : fields) row.push_back(cellText(plainText(field->Value())));
      });
      writeAligned(out, names, rows, right);
      out << '(' << rows.size() << (rows.size() == 1 ? " row)\n" : " rows)\n");
      return;
    }
  }
}

void writeJson(std::ostream& out, Recordset& rs, const char* name, Recordset& more) {
  out << "{\n";
  writeMembers(out, rs, "  ");
  out << ",\n  " << Json(name).dump() << ": {\n";
  writeMembers(out, more, "    ");
  out << "\n  }\n}\n";
}

void writeAffected(std::ostream& out, std::int64_t affected, Format format) {
  if (format == Format::Json || format == Format::JsonLines)
    out << "{\"affected\":" << affected << "}\n";
  else
    out << affected << (affected == 1 ? " row changed\n" : " rows changed\n");
}

void writeErrorLine(std::ostream& out, const Error& error) {
  const Json json = {{"error",
                      {{"number", error.number()},
                       {"source", error.source()},
                       {"description", error.description()}}}};
  out << json.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

void writeTable(std::ostream& out, const std::vector<std::string>& heading,
                const std::vector<std::vector<std::string>>& rows) {
  writeAligned(out, heading, rows, std::vector<bool>(heading.size(), false));
}

}  // namespace kv::cli
