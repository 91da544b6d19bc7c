// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include "common/text.h"
#include "jet/emit/dialect.h"
#include "jet/emit/texts.h"

namespace kv::jet {

namespace {

constexpr const char* kFirstDay = "1899-12-30";

// Every text key is an expression that PostgreSQL calls immutable, so that it can stand in an
// index. Nothing here needs an extension or a function of ours.
class PostgresDialect final : public Dialect {
 public:
  std::string parameter(int n) const override { return fmt::format("${}", n); }

  std::string parameter(int n, ValueKind kind) const override {
    switch (kind) {
      case ValueKind::Whole: return fmt::format("${}::bigint", n);
      case ValueKind::Real: return fmt::format("${}::double precision", n);
      case ValueKind::Text: return fmt::format("${}::text", n);
      case ValueKind::Date: return fmt::format("${}::timestamp", n);
    }
    return {};
  }

  // The protocol counts them in 16 bits; every statement is a round trip.
  int mostParameters() const override { return 60000; }

  std::string text(std::string_view value) const override {
    return "'" + doubledQuotes(value) + "'";
  }

  std::string date(Date value) const override { return "TIMESTAMP '" + isoText(value) + "'"; }

  // The root locale lowers a sigma at the end of a word to the final one; the key has one sigma.
  std::string fold(const std::string& sql) const override {
    return fmt::format(R"((replace(lower(({}) COLLATE "und-x-icu"), 'ς', 'σ') COLLATE "C"))", sql);
  }
  std::vector<std::string> order(const std::string& sql) const override {
    const std::string key = fold(sql);
    return {
        fmt::format(
            R"((regexp_replace(normalize({}, NFD), '[\u0300-\u036F]', '', 'g') COLLATE "C"))", key),
        key};
  }
  std::vector<ParamUse::Form> orderForms() const override {
    return {ParamUse::Form::OrderBase, ParamUse::Form::Fold};
  }

  ParamUse::Form patternForm() const override { return ParamUse::Form::Pattern; }
  std::string likeLiteral(const std::string& value, const std::string& pattern) const override {
    return fmt::format("({} ~ {})", fold(value), pattern);
  }
  // Takes the pattern apart into lists and single characters and writes each as a regular
  // expression has it.
  std::string like(const std::string& value, const std::string& pattern) const override {
    constexpr std::string_view kExpression =
        R"((SELECT '^' || coalesce(string_agg(CASE)"
        R"( WHEN t.p = '%' THEN '.*' WHEN t.p = '_' THEN '.')"
        R"( WHEN t.p = '[]' THEN '' WHEN t.p = '[!]' THEN '!')"
        R"( WHEN left(t.p, 2) = '[!' AND right(t.p, 1) = ']' THEN)"
        R"( '[^' || regexp_replace(substr(t.p, 3, length(t.p) - 3), '([\\^[])', '\\\1', 'g') || ']')"
        R"( WHEN left(t.p, 1) = '[' AND right(t.p, 1) = ']' THEN)"
        R"( '[' || regexp_replace(substr(t.p, 2, length(t.p) - 2), '([\\^[])', '\\\1', 'g') || ']')"
        R"( ELSE regexp_replace(t.p, '([^[:alnum:]])', '\\\1') END, '' ORDER BY t.n), '') || '$')"
        R"( FROM (SELECT m.a[1] AS p, m.n FROM regexp_matches()";
    const std::string key = fold(pattern);
    return fmt::format(R"(({} ~ CASE WHEN {} IS NULL THEN NULL ELSE {}{}, '\[[^\]]*\]|.', 'g'))"
                       R"( WITH ORDINALITY AS m(a, n)) AS t) END))",
                       fold(value), key, kExpression, key);
  }

  std::string textExtreme(const std::string& sql, bool greatest) const override {
    std::string by;
    for (const auto& key : order(sql)) by += key + (greatest ? " DESC, " : ", ");
    return fmt::format(
        R"(((array_agg({0} ORDER BY {1}({0}) COLLATE "C") FILTER (WHERE {0} IS NOT NULL))[1]))",
        sql, by);
  }
  std::string anySpelling(const std::string& sql) const override {
    return fmt::format(R"(min(({}) COLLATE "C"))", sql);
  }

  std::string stored(const std::string& condition) const override {
    return fmt::format("(-(({})::int))", condition);
  }

  std::string operand(const std::string& sql, ColumnType type) const override {
    switch (type) {
      case ColumnType::Boolean:
      case ColumnType::Int16:
      case ColumnType::Int32: return fmt::format("({})::bigint", sql);
      case ColumnType::Single: return fmt::format("({})::double precision", sql);
      case ColumnType::Double:
      case ColumnType::Date:
      case ColumnType::Text:
      case ColumnType::Memo: break;
    }
    return sql;
  }

  // The time of day is a fraction without a sign: before the first day it counts downwards.
  std::string dayCount(const std::string& sql) const override {
    return fmt::format(
        "((({0})::date - DATE '{1}') + CASE WHEN ({0})::date < DATE '{1}' THEN -1 ELSE 1 END * "
        "(extract(epoch FROM ({0})::time)::double precision / 86400))",
        sql, kFirstDay);
  }

  std::string convert(const std::string& sql, ColumnType from, ColumnType to) const override {
    switch (to) {
      case ColumnType::Text:
      case ColumnType::Memo: return asText(sql, from);
      case ColumnType::Date: return asDate(sql, from);
      case ColumnType::Boolean:
        return fmt::format("(CASE WHEN {} <> 0 THEN -1 ELSE 0 END)::smallint", asReal(sql, from));
      case ColumnType::Int16: return fmt::format("round({})::smallint", asReal(sql, from));
      case ColumnType::Int32: return fmt::format("round({})::integer", asReal(sql, from));
      case ColumnType::Single: return fmt::format("({})::real", asReal(sql, from));
      case ColumnType::Double: return asReal(sql, from);
    }
    return {};
  }

  std::string direction(bool descending) const override {
    return descending ? " DESC NULLS LAST" : " NULLS FIRST";
  }

  std::string keyList(std::size_t keysPerRow) const override {
    if (keysPerRow == 1) return "unnest($1::bigint[]) WITH ORDINALITY AS k(k1, n)";
    std::string columns;
    for (std::size_t i = 1; i <= keysPerRow; ++i)
      columns += fmt::format("l.a[(i - 1) * {} + {}] AS k{}, ", keysPerRow, i, i);
    return fmt::format(
        "(SELECT {}i AS n FROM (SELECT $1::bigint[] AS a) AS l, "
        "generate_series(1, cardinality(l.a) / {}) AS i) AS k",
        columns, keysPerRow);
  }
  std::string inKeyListOrder() const override { return " ORDER BY k.n"; }
  std::string forUpdate() const override { return " FOR UPDATE"; }

  // Asked once for each run. What is no number cannot be made one, and says which it is.
  std::string noNewColumns(const TableInfo& table, const std::string& watch) const override {
    if (table.columnsSoFar == 0) return {};
    return fmt::format(
        "({} = 0 OR ('{}' || nullif((SELECT relnatts FROM pg_catalog.pg_class WHERE oid = "
        "{}::regclass), {}))::integer IS NULL)",
        watch, kColumnsMark, text(quotedName(table.name)), table.columnsSoFar);
  }

  std::string columnDefinition(const ColumnInfo& c) const override {
    const std::string name = quotedName(c.name);
    if (c.counter) return name + " integer GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY";
    std::string out = name + " ";
    switch (c.type) {
      case ColumnType::Boolean: out += "smallint NOT NULL"; break;
      case ColumnType::Int16: out += "smallint"; break;
      case ColumnType::Int32: out += "integer"; break;
      case ColumnType::Single: out += "real"; break;
      case ColumnType::Double: out += "double precision"; break;
      case ColumnType::Date: out += "timestamp(3)"; break;
      // Without a length of its own: the server would cut off blanks that are too many.
      case ColumnType::Text: out += "varchar"; break;
      case ColumnType::Memo: out += "text"; break;
    }
    if (!c.initial.empty())
      out += " DEFAULT " + (isTextType(c.type) ? text(c.initial) : c.initial);
    else if (c.type == ColumnType::Boolean)
      out += " DEFAULT 0";
    // The catalog and the errors are read from the names of these constraints.
    if (c.type == ColumnType::Boolean)
      out += fmt::format(" CONSTRAINT {} CHECK ({} IN (-1, 0))", quotedName("kv_bool_" + c.name),
                         name);
    if (c.type == ColumnType::Text)
      out += fmt::format(" CONSTRAINT {} CHECK (char_length({}) <= {})",
                         quotedName("kv_size_" + c.name), name, c.size);
    return out;
  }

  std::string hiddenKeyDefinition(const std::string& name) const override {
    return quotedName(name) + " bigint GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY";
  }

  // Lists in order have the key as their last word; with it in the index nothing is left to sort.
  std::string orderIndexTail(const TableInfo& table) const override {
    return ", " + quotedName(table.key);
  }

 private:
  static std::string asText(const std::string& sql, ColumnType from) {
    switch (from) {
      case ColumnType::Text:
      case ColumnType::Memo: return sql;
      // By way of the type that writes fifteen digits.
      case ColumnType::Single:
      case ColumnType::Double:
        return fmt::format("trim_scale((({})::double precision)::numeric)::text", sql);
      case ColumnType::Date:
        return fmt::format(
            "(to_char({0}, 'YYYY-MM-DD') || CASE WHEN ({0})::time = TIME '00:00' THEN '' ELSE "
            "to_char({0}, ' HH24:MI:SS') END)",
            sql);
      case ColumnType::Boolean:
      case ColumnType::Int16:
      case ColumnType::Int32: break;
    }
    return fmt::format("({})::text", sql);
  }

  static std::string asDate(const std::string& sql, ColumnType from) {
    if (from == ColumnType::Date) return sql;
    if (isTextType(from)) return fmt::format("({})::timestamp(3)", sql);
    return fmt::format(
        "(TIMESTAMP '{1}' + trunc(({0})::double precision) * INTERVAL '1 day' + "
        "abs(({0})::double precision - trunc(({0})::double precision)) * INTERVAL '1 "
        "day')::timestamp(3)",
        sql, kFirstDay);
  }

  std::string asReal(const std::string& sql, ColumnType from) const {
    if (from == ColumnType::Date) return dayCount(sql);
    return fmt::format("({})::double precision", sql);
  }
};

}  // namespace

const Dialect& postgresDialect() {
  static const PostgresDialect instance;
  return instance;
}

}  // namespace kv::jet
