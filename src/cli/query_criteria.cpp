#include "cli/query_criteria.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "cli/given_options.h"
#include "cli/terminal.h"
#include "common/text.h"

namespace kv::cli {

namespace {

constexpr std::size_t kTriple = 3;

struct Column {
  std::string_view option;
  std::string_view name;
  const char* criterion;
  const char* code;
};
constexpr auto kColumns = std::to_array<Column>({
    {"title", "DocumentTitle", "Field1", "Field1Key"},
    {"number", "DocumentNumber", "Field2", "Field2Key"},
    {"field1", "DocUser1", "Field3", "Field3Key"},
    {"field2", "DocUser2", "Field4", "Field4Key"},
    {"field3", "DocUser3", "Field5", "Field5Key"},
    {"field4", "DocUser4", "Field6", "Field6Key"},
    {"level", "RevisionLevel", "Rev1", "Rev1Key"},
    {"effective", "EffectiveDate", "Rev4", "Rev4Key"},
});
// The reports' own copy of the level.
constexpr const char* kReportLevel = "Field7";
constexpr const char* kRangeEnd = "Rev5";
constexpr const char* kKind = "DocType";

// By code.
constexpr auto kOperators = std::to_array<std::string_view>({"=", "contains", ">", "<", "<>"});
enum DateCode : std::int16_t { kOn = 0, kAfter = 1, kBefore = 2, kBetween = 3 };
// By code; all documents have none.
constexpr auto kKinds = std::to_array<std::string_view>({"controlled", "uncontrolled"});
constexpr std::string_view kAllKinds = "all";

const Column* find(std::string_view name) {
  const auto* found = std::find_if(kColumns.begin(), kColumns.end(), [&](const Column& column) {
    return equalNoCase(column.option, name) || equalNoCase(column.name, name);
  });
  return found == kColumns.end() ? nullptr : found;
}

const Column& columnNamed(const std::string& name) {
  const Column* column = find(name);
  if (column == nullptr)
    throw UsageError("there is no column '" + name +
                     "' to search by: title, number, field1 to field4, level, effective");
  return *column;
}

bool isDate(const Column& column) { return column.option == "effective"; }

template <std::size_t N>
std::optional<std::int16_t> codeIn(const std::array<std::string_view, N>& names,
                                   std::string_view name) {
  for (std::size_t i = 0; i < N; ++i)
    if (equalNoCase(names[i], name)) return static_cast<std::int16_t>(i);
  return std::nullopt;
}

void setText(clsDocumentQuery& query, const Column& column, const Variant& value,
             const Variant& code) {
  query.SetQueryValue(column.criterion, value);
  query.SetQueryValue(column.code, code);
  if (column.option == "level") query.SetQueryValue(kReportLevel, value);
}

void setDate(clsDocumentQuery& query, const Variant& from, const Variant& to, const Variant& code) {
  query.SetQueryValue("Rev4", from);
  query.SetQueryValue(kRangeEnd, to);
  query.SetQueryValue("Rev4Key", code);
}

Variant dateIn(const std::string& text) { return *parseDate(text); }

}  // namespace

void addCriteria(Command& verb, QueryCriteria& criteria) {
  addText(verb, "--kind", criteria.kind, "Which documents: controlled, uncontrolled or all")
      ->typeName("KIND");
  verb.addOption("--where", criteria.where,
                 "A column, an operator and a value; may be given once for each column")
      ->repeated(kTriple)
      ->typeName("COLUMN OP VALUE");
  addDate(verb, "--on", criteria.on, "Effective on this date");
  addDate(verb, "--after", criteria.after, "Effective after this date; with --before a range");
  addDate(verb, "--before", criteria.before, "Effective before this date");
  verb.footer(
      "Columns: title, number, field1, field2, field3, field4, level. Operators: =, contains, >, "
      "<, <>;\n"
      "> and < must be in quotation marks for most shells. Case does not matter in values.\n"
      "All criteria of a query must hold.");
}

void addDropping(Command& verb, QueryCriteria& criteria) {
  verb.addOption("--drop", criteria.drop,
                 "A column that loses its criterion, effective among them; may be repeated")
      ->repeated()
      ->typeName("COLUMN");
}

void checkCriteria(const QueryCriteria& criteria) {
  if (criteria.kind && *criteria.kind != kAllKinds && !codeIn(kKinds, *criteria.kind))
    throw UsageError("--kind takes controlled, uncontrolled or all, not '" + *criteria.kind + "'");
  if (criteria.on && (criteria.after || criteria.before))
    throw UsageError("--on does not go with --after and --before");
  std::vector<const Column*> seen;
  const auto take = [&](const std::string& name) -> const Column& {
    const Column& column = columnNamed(name);
    if (std::find(seen.begin(), seen.end(), &column) != seen.end())
      throw UsageError("the column '" + name +
                       "' is named twice; a query has one criterion for it");
    seen.push_back(&column);
    return column;
  };
  for (std::size_t i = 0; i + kTriple <= criteria.where.size(); i += kTriple) {
    if (isDate(take(criteria.where[i])))
      throw UsageError("the effective date is searched by with --on, --after and --before");
    if (!codeIn(kOperators, criteria.where[i + 1]))
      throw UsageError("there is no operator '" + criteria.where[i + 1] +
                       "': =, contains, >, <, <>");
    if (criteria.where[i + 2].empty())
      throw UsageError("an empty value is no criterion for '" + criteria.where[i] + "'");
  }
  for (const auto& name : criteria.drop)
    if (isDate(take(name)) && (criteria.on || criteria.after || criteria.before))
      throw UsageError("the effective date cannot be dropped and set");
}

void applyCriteria(const QueryCriteria& criteria, clsDocumentQuery& query) {
  if (criteria.kind) {
    const auto code = codeIn(kKinds, *criteria.kind);
    query.SetQueryValue(kKind, code ? Variant(*code) : Variant(Null));
  }
  for (const auto& name : criteria.drop) {
    const Column& column = columnNamed(name);
    if (isDate(column))
      setDate(query, Null, Null, Null);
    else
      setText(query, column, Null, Null);
  }
  for (std::size_t i = 0; i + kTriple <= criteria.where.size(); i += kTriple)
    setText(query, columnNamed(criteria.where[i]), criteria.where[i + 2],
            *codeIn(kOperators, criteria.where[i + 1]));
  if (criteria.on) setDate(query, dateIn(*criteria.on), Null, std::int16_t{kOn});
  if (criteria.after && criteria.before)
    setDate(query, dateIn(*criteria.after), dateIn(*criteria.before), std::int16_t{kBetween});
  else if (criteria.after)
    setDate(query, dateIn(*criteria.after), Null, std::int16_t{kAfter});
  else if (criteria.before)
    setDate(query, dateIn(*criteria.before), Null, std::int16_t{kBefore});
}

std::string kindOf(const clsDocumentQuery& query) {
  const Variant kind = query.GetQueryValue(kKind);
  for (std::size_t code = 0; code < kKinds.size(); ++code)
    if (kind == Variant(static_cast<std::int16_t>(code))) return std::string(kKinds[code]);
  return std::string(kAllKinds);
}

}  // namespace kv::cli
