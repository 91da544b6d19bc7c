// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include "common/text.h"
#include "jet/emit/dialect.h"
#include "jet/emit/texts.h"

namespace kv::jet {

namespace {

// The kv_ functions and the kv_keys table are registered by the engine on every connection.
class SqliteDialect final : public Dialect {
 public:
  std::string parameter(int n) const override { return fmt::format("?{}", n); }

  std::string parameter(int n, ValueKind) const override { return parameter(n); }

  // Numbered ones are looked up one after the other.
  int mostParameters() const override { return 1000; }

  std::string text(std::string_view value) const override {
    if (value.find('\0') == std::string_view::npos) return "'" + doubledQuotes(value) + "'";
    // Order keys hold a zero byte, which a statement's text cannot.
    std::string out = "CAST(x'";
    for (const char c : value) out += fmt::format("{:02x}", static_cast<unsigned char>(c));
    return out + "' AS TEXT)";
  }

  std::string date(Date value) const override { return "'" + isoText(value) + "'"; }

  std::string fold(const std::string& sql) const override { return "kv_fold(" + sql + ")"; }
  std::vector<std::string> order(const std::string& sql) const override {
    return {"kv_order(" + sql + ")"};
  }
  std::vector<ParamUse::Form> orderForms() const override { return {ParamUse::Form::Order}; }
  ParamUse::Form patternForm() const override { return ParamUse::Form::Plain; }
  std::string likeLiteral(const std::string& value, const std::string& pattern) const override {
    return like(value, pattern);
  }
  std::string like(const std::string& value, const std::string& pattern) const override {
    return fmt::format("kv_like({}, {})", value, pattern);
  }
  std::string textExtreme(const std::string& sql, bool greatest) const override {
    return fmt::format("{}({})", greatest ? "kv_max" : "kv_min", sql);
  }
  std::string anySpelling(const std::string& sql) const override { return "min(" + sql + ")"; }

  std::string stored(const std::string& condition) const override { return "-(" + condition + ")"; }
  std::string operand(const std::string& sql, ColumnType) const override { return sql; }
  std::string dayCount(const std::string& sql) const override { return "kv_days(" + sql + ")"; }
  std::string convert(const std::string& sql, ColumnType, ColumnType to) const override {
    return fmt::format("kv_convert({}, '{}')", sql, typeName(to));
  }
  std::string direction(bool descending) const override { return descending ? " DESC" : ""; }

  std::string keyList(std::size_t) const override { return "kv_keys(?1) AS k"; }
  std::string inKeyListOrder() const override { return {}; }
  std::string noNewColumns(const TableInfo&, const std::string&) const override { return {}; }
  std::string forUpdate() const override { return {}; }

  std::string columnDefinition(const ColumnInfo& c) const override {
    const std::string name = quotedName(c.name);
    if (c.counter) return name + " INTEGER PRIMARY KEY AUTOINCREMENT";
    std::string out = name + " ";
    switch (c.type) {
      case ColumnType::Boolean: out += "BOOLEAN NOT NULL"; break;
      case ColumnType::Int16: out += "SMALLINT"; break;
      case ColumnType::Int32: out += "INTEGER"; break;
      case ColumnType::Single: out += "REAL"; break;
      case ColumnType::Double: out += "DOUBLE"; break;
      case ColumnType::Date: out += "DATETIME"; break;
      case ColumnType::Text: out += fmt::format("VARCHAR({})", c.size); break;
      case ColumnType::Memo: out += "LONGTEXT"; break;
    }
    if (!c.initial.empty())
      out += " DEFAULT " + (isTextType(c.type) ? text(c.initial) : c.initial);
    else if (c.type == ColumnType::Boolean)
      out += " DEFAULT 0";
    // Constraint names tell the engine which well-known error a violation is.
    if (c.type == ColumnType::Boolean)
      out += fmt::format(" CONSTRAINT {} CHECK ({} IN (-1, 0))", quotedName("kv_bool_" + c.name),
                         name);
    if (c.type == ColumnType::Text)
      out += fmt::format(" CONSTRAINT {} CHECK (length({}) <= {})", quotedName("kv_size_" + c.name),
                         name, c.size);
    return out;
  }

  std::string hiddenKeyDefinition(const std::string& name) const override {
    return quotedName(name) + " INTEGER PRIMARY KEY AUTOINCREMENT";
  }

  std::string orderIndexTail(const TableInfo&) const override { return {}; }
};

}  // namespace

const Dialect& sqliteDialect() {
  static const SqliteDialect instance;
  return instance;
}

}  // namespace kv::jet
