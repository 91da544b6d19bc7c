// SPDX-License-Identifier: Apache-2.0
#include "desk/queries/query_criteria.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "common/text.h"
#include "desk/refusal.h"

namespace kv::desk {

namespace {

constexpr std::size_t kTriple = 3;

// The reports' own copy of the level.
constexpr const char* kReportLevel = "Field7";
constexpr const char* kKind = "DocType";

// By code; text, and then numbers and dates, each read the codes in their own way.
constexpr auto kOperators = std::to_array<std::string_view>({"=", "contains", ">", "<", "<>"});
constexpr auto kOrderOperators = std::to_array<std::string_view>({"=", ">", "<", "between"});
enum OrderCode : std::int16_t { kOn = 0, kAfter = 1, kBefore = 2, kBetween = 3 };
// By code; all documents have none.
constexpr auto kKinds = std::to_array<std::string_view>({"controlled", "uncontrolled"});
constexpr std::string_view kAllKinds = "all";
constexpr std::string_view kRange = "..";

bool isEffective(const QueryColumn& column) { return column.option == "effective"; }

template <std::size_t N>
std::optional<std::int16_t> codeIn(const std::array<std::string_view, N>& names,
                                   std::string_view name) {
  for (std::size_t i = 0; i < N; ++i)
    if (equalNoCase(names[i], name)) return static_cast<std::int16_t>(i);
  return std::nullopt;
}

void setCriterion(StoredQuery& query, const QueryColumn& column, const Variant& value,
                  const Variant& code, const Variant& upper = Null) {
  query.SetQueryValue(column.criterion, value);
  query.SetQueryValue(column.code, code);
  if (!column.upper.empty()) query.SetQueryValue(column.upper, upper);
  if (column.option == "level") query.SetQueryValue(kReportLevel, value);
}

Variant dateIn(const std::string& text) { return *parseDate(text); }

// One end of what a user's field is compared with, as the statement takes it. The classes double
// the apostrophes of documents' and manuals' criteria, and join those of users as they stand.
std::string userValue(UserFieldType type, const std::string& text) {
  if (type == UserFieldType::Text) return doubledQuotes(text);
  if (type == UserFieldType::Number) {
    if (!parseNumber(text)) throw WrongInput("'" + text + "' is not a number");
    return text;
  }
  const auto date = parseDate(text);
  if (!date) throw WrongInput("'" + text + "' is not a date such as 2024-03-09");
  return joinText(*date);
}

void setUserCriterion(StoredQuery& query, const QueryColumn& column, UserFieldType type,
                      const std::string& op, const std::string& value) {
  const bool text = type == UserFieldType::Text;
  const auto code = text ? codeIn(kOperators, op) : codeIn(kOrderOperators, op);
  const bool range = !text && code == kBetween;
  if (!code || (range && type == UserFieldType::Number))
    throw WrongInput("'" + op + "' does not go with the column '" + column.option +
                     "', which is a " +
                     (text                            ? "text: =, contains, >, <, <>"
                      : type == UserFieldType::Number ? "number: =, >, <"
                                                      : "date: =, >, <, between"));
  if (!range) {
    setCriterion(query, column, userValue(type, value), *code);
    return;
  }
  const std::size_t at = value.find(kRange);
  if (at == std::string::npos)
    throw WrongInput("between takes two dates, such as 2024-01-01..2024-12-31");
  setCriterion(query, column, userValue(type, value.substr(0, at)), *code,
               userValue(type, value.substr(at + kRange.size())));
}

}  // namespace

void checkCriteria(const QueryCriteria& criteria, Queried of) {
  if (of != Queried::Documents &&
      (criteria.kind || criteria.on || criteria.after || criteria.before))
    throw WrongInput("--kind, --on, --after and --before are for queries of documents");
  if (criteria.kind && *criteria.kind != kAllKinds && !codeIn(kKinds, *criteria.kind))
    throw WrongInput("--kind takes controlled, uncontrolled or all, not '" + *criteria.kind + "'");
  if (criteria.on && (criteria.after || criteria.before))
    throw WrongInput("--on does not go with --after and --before");
  std::vector<const QueryColumn*> seen;
  const auto take = [&](const std::string& name) -> const QueryColumn& {
    const QueryColumn& column = queryColumn(of, name);
    if (std::find(seen.begin(), seen.end(), &column) != seen.end())
      throw WrongInput("the column '" + name +
                       "' is named twice; a query has one criterion for it");
    seen.push_back(&column);
    return column;
  };
  for (std::size_t i = 0; i + kTriple <= criteria.where.size(); i += kTriple) {
    const std::string& op = criteria.where[i + 1];
    if (isEffective(take(criteria.where[i])))
      throw WrongInput("the effective date is searched by with --on, --after and --before");
    if (!codeIn(kOperators, op) && (of != Queried::Users || !codeIn(kOrderOperators, op)))
      throw WrongInput("there is no operator '" + op + "': =, contains, >, <, <>");
    if (criteria.where[i + 2].empty())
      throw WrongInput("an empty value is no criterion for '" + criteria.where[i] + "'");
  }
  for (const auto& name : criteria.drop)
    if (isEffective(take(name)) && (criteria.on || criteria.after || criteria.before))
      throw WrongInput("the effective date cannot be dropped and set");
}

void applyCriteria(const QueryCriteria& criteria, Queried of, const TypeOfColumn& typeOf,
                   StoredQuery& query) {
  if (criteria.kind) {
    const auto code = codeIn(kKinds, *criteria.kind);
    query.SetQueryValue(kKind, code ? Variant(*code) : Variant(Null));
  }
  for (const auto& name : criteria.drop) setCriterion(query, queryColumn(of, name), Null, Null);
  for (std::size_t i = 0; i + kTriple <= criteria.where.size(); i += kTriple) {
    const QueryColumn& column = queryColumn(of, criteria.where[i]);
    const std::string& op = criteria.where[i + 1];
    const std::string& value = criteria.where[i + 2];
    if (of == Queried::Users)
      setUserCriterion(query, column, typeOf(column), op, value);
    else
      setCriterion(query, column, value, *codeIn(kOperators, op));
  }
  if (!criteria.on && !criteria.after && !criteria.before) return;
  const QueryColumn& effective = queryColumn(of, "effective");
  if (criteria.on)
    setCriterion(query, effective, dateIn(*criteria.on), std::int16_t{kOn});
  else if (criteria.after && criteria.before)
    setCriterion(query, effective, dateIn(*criteria.after), std::int16_t{kBetween},
                 dateIn(*criteria.before));
  else if (criteria.after)
    setCriterion(query, effective, dateIn(*criteria.after), std::int16_t{kAfter});
  else
    setCriterion(query, effective, dateIn(*criteria.before), std::int16_t{kBefore});
}

std::string kindOf(const StoredQuery& query) {
  const Variant kind = query.GetQueryValue(kKind);
  for (std::size_t code = 0; code < kKinds.size(); ++code)
    if (kind == Variant(static_cast<std::int16_t>(code))) return std::string(kKinds[code]);
  return std::string(kAllKinds);
}

}  // namespace kv::desk
