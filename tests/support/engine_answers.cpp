// SPDX-License-Identifier: Apache-2.0
#include "support/engine_answers.h"

#include <array>

#include "recordset/database.h"

namespace kv::test {

namespace {

std::string sqlitePlan(engine::Engine& engine, const std::string& text) {
  const auto explain = engine.prepare("EXPLAIN QUERY PLAN " + text);
  engine::RowBlock rows;
  rows.reset(4);
  std::vector<std::int64_t> none;
  const std::array<ColumnType, 4> types = {ColumnType::Int32, ColumnType::Int32, ColumnType::Int32,
                                           ColumnType::Text};
  (void)explain->fetch(rows, types, none, 0, 100);
  std::string out;
  for (std::size_t i = 0; i < rows.rows(); ++i)
    out += std::string(rows.text(rows.cell(i, 3))) + "\n";
  return out;
}

// Test registers are small, and a small table is read faster than its index: that is forbidden
// here, so that only a table without a fitting index is read.
std::string serverPlan(const std::string& location, const jet::SqlText& text) {
  std::string arguments;
  for (std::size_t i = 0; i < text.params.size(); ++i) arguments += i == 0 ? "(NULL" : ", NULL";
  if (!arguments.empty()) arguments += ")";
  return TestServer::run(location,
                         "SET enable_seqscan = off; SET enable_sort = off; SET plan_cache_mode = "
                         "force_generic_plan; PREPARE kv_plan AS " +
                             text.text + "; EXPLAIN EXECUTE kv_plan" + arguments);
}

}  // namespace

std::vector<std::string> numbersWithoutEnd() {
  if (onServer()) return {"'Infinity'", "'NaN'"};
  return {"9e999"};
}

bool countersGoBack() { return !onServer(); }
bool oneWriterAtATime() { return !onServer(); }

std::string planOf(const TestRegister& reg, const std::string& sql) {
  const auto& database = reg.connection()->database();
  const auto statement = database->prepare(sql);
  const auto& emitted = statement.shape->emitted;
  const auto& text = emitted.keys.text.empty() ? emitted.whole : emitted.keys;
  return onServer() ? serverPlan(reg.path(), text) : sqlitePlan(database->engine(), text.text);
}

bool scansATable(const std::string& plan) {
  return plan.find(onServer() ? "Seq Scan" : "SCAN") != std::string::npos;
}

bool sorts(const std::string& plan) {
  return plan.find(onServer() ? "Sort" : "TEMP B-TREE") != std::string::npos;
}

}  // namespace kv::test
