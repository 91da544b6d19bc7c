// SPDX-License-Identifier: Apache-2.0
#include "engine/postgres/postgres_statement.h"

#include <fmt/format.h>

#include <atomic>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "common/error.h"

namespace kv::engine {

namespace {

// Rows up to this number are taken over in one piece; more are read as they come.
constexpr std::size_t kMostAtOnce = 4096;

std::int64_t wholeOf(std::string_view text) {
  std::int64_t whole = 0;
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), whole);
  if (problem == std::errc() && end == text.data() + text.size()) return whole;
  return static_cast<std::int64_t>(std::llround(std::strtod(std::string(text).c_str(), nullptr)));
}

std::string_view textOf(const PGresult* result, int row, int column) {
  return {PQgetvalue(result, row, column),
          static_cast<std::size_t>(PQgetlength(result, row, column))};
}

void readCell(RowBlock& block, ColumnType type, const PGresult* result, int row, int column) {
  if (PQgetisnull(result, row, column) != 0) {
    block.addNull();
    return;
  }
  const std::string_view text = textOf(result, row, column);
  switch (type) {
    case ColumnType::Text:
    case ColumnType::Memo: block.addText(text); return;
    case ColumnType::Boolean:
    case ColumnType::Int16:
    case ColumnType::Int32: block.addWhole(wholeOf(text)); return;
    // The nearest single to the digits, not the nearest double.
    case ColumnType::Single:
      block.addReal(static_cast<double>(std::strtof(text.data(), nullptr)));
      return;
    case ColumnType::Double: block.addReal(std::strtod(text.data(), nullptr)); return;
    case ColumnType::Date: {
      const auto date = parseIso(text);
      if (!date) raise(kMismatch, fmt::format("The register holds '{}' as a date.", text));
      block.addDate(*date);
      return;
    }
  }
}

std::int64_t readKey(const PGresult* result, int row, int column) {
  return PQgetisnull(result, row, column) != 0 ? kNoKey : wholeOf(textOf(result, row, column));
}

void readRow(RowBlock& block, std::span<const ColumnType> types, std::vector<std::int64_t>& keys,
             std::size_t keysPerRow, const PGresult* result, int row) {
  int column = 0;
  for (const ColumnType type : types) readCell(block, type, result, row, column++);
  block.endRow();
  for (std::size_t k = 0; k < keysPerRow; ++k) keys.push_back(readKey(result, row, column++));
}

}  // namespace

PostgresStatement::PostgresStatement(std::shared_ptr<PostgresConnection> connection,
                                     std::string sql)
    : connection_(std::move(connection)),
      sql_(std::move(sql)),
      writes_(!sql_.starts_with("SELECT") && !sql_.starts_with("WITH")) {}

PostgresStatement::~PostgresStatement() {
  if (!name_.empty() && generation_ == connection_->generation())
    connection_->forget(std::move(name_));
}

void PostgresStatement::give(int parameter, std::string value, bool null) {
  const auto place = static_cast<std::size_t>(parameter) - 1;
  if (params_.values.size() <= place) {
    params_.values.resize(place + 1);
    params_.nulls.resize(place + 1, true);
  }
  params_.values[place] = std::move(value);
  params_.nulls[place] = null;
}

void PostgresStatement::bind(int parameter, const SqlValue& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value))
    give(parameter, std::to_string(*whole));
  else if (const auto* real = std::get_if<double>(&value))
    give(parameter, fmt::format("{:.17g}", *real));
  else if (const auto* text = std::get_if<std::string>(&value))
    give(parameter, *text);
  else if (const auto* date = std::get_if<Date>(&value))
    give(parameter, isoText(*date));
  else
    give(parameter, {}, true);
}

void PostgresStatement::bindCell(int parameter, const RowBlock& block, std::size_t row,
                                 std::size_t column) {
  bind(parameter, block.value(row, column));
}

void PostgresStatement::bindKeys(int parameter, const KeyList& keys) {
  std::string list = "{";
  for (const auto key : keys.keys) {
    if (list.size() > 1) list += ',';
    list += key == kNoKey ? "NULL" : std::to_string(key);
  }
  give(parameter, list + "}");
}

const std::string& PostgresStatement::ready() {
  reset();
  // What is run once is not worth a round trip of its own.
  if (runs_++ == 0) return unnamed_;
  if (name_.empty() || generation_ != connection_->generation()) {
    static std::atomic<std::uint64_t> next = 0;  // connections may be on threads of their own
    std::string name = fmt::format("kv_{}", ++next);
    connection_->prepare(name, sql_);
    name_ = std::move(name);
    generation_ = connection_->generation();
  }
  return name_;
}

std::int64_t PostgresStatement::run() {
  const auto& name = ready();
  const Result result = connection_->run(sql_, name, params_, writes_);
  const std::string_view count = PQcmdTuples(result.get());
  return count.empty() ? 0 : wholeOf(count);
}

std::size_t PostgresStatement::fetch(RowBlock& block, std::span<const ColumnType> types,
                                     std::vector<std::int64_t>& keys, std::size_t keysPerRow,
                                     std::size_t most) {
  if (!result_ && most > kMostAtOnce) {
    const auto& name = ready();
    std::size_t rows = 0;
    connection_->stream(sql_, name, params_, [&](const PGresult* row) {
      readRow(block, types, keys, keysPerRow, row, 0);
      ++rows;
    });
    return rows;
  }
  if (!result_) {
    const auto& name = ready();
    result_ = connection_->run(sql_, name, params_, writes_);
    row_ = 0;
  }
  std::size_t rows = 0;
  try {
    while (rows < most && row_ < PQntuples(result_.get())) {
      readRow(block, types, keys, keysPerRow, result_.get(), row_);
      ++row_;
      ++rows;
    }
  } catch (...) {  // a value that cannot be read ends the statement
    reset();
    throw;
  }
  if (rows < most) reset();
  return rows;
}

void PostgresStatement::fetchKeys(std::vector<std::int64_t>& keys, std::size_t keysPerRow) {
  const auto& name = ready();
  connection_->stream(sql_, name, params_, [&](const PGresult* row) {
    for (std::size_t k = 0; k < keysPerRow; ++k)
      keys.push_back(readKey(row, 0, static_cast<int>(k)));
  });
}

}  // namespace kv::engine
