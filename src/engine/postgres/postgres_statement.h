// SPDX-License-Identifier: Apache-2.0
// A statement on a PostgreSQL connection. The first run sends its text, further ones run it
// prepared.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/engine.h"
#include "engine/postgres/postgres_connection.h"

namespace kv::engine {

class PostgresStatement final : public Statement {
 public:
  PostgresStatement(std::shared_ptr<PostgresConnection> connection, std::string sql);
  ~PostgresStatement() override;
  PostgresStatement(const PostgresStatement&) = delete;
  PostgresStatement& operator=(const PostgresStatement&) = delete;
  PostgresStatement(PostgresStatement&&) = delete;
  PostgresStatement& operator=(PostgresStatement&&) = delete;

  void bind(int parameter, const SqlValue& value) override;
  void bindCell(int parameter, const RowBlock& block, std::size_t row, std::size_t column) override;
  void bindKeys(int parameter, const KeyList& keys) override;
  std::int64_t run() override;
  std::size_t fetch(RowBlock& block, std::span<const ColumnType> types,
                    std::vector<std::int64_t>& keys, std::size_t keysPerRow,
                    std::size_t most) override;
  void fetchKeys(std::vector<std::int64_t>& keys, std::size_t keysPerRow) override;
  void reset() override { result_.reset(); }

 private:
  void give(int parameter, std::string value, bool null = false);
  // The name it is prepared under, or "" while it is run as a text.
  const std::string& ready();

  std::shared_ptr<PostgresConnection> connection_;
  std::string sql_;
  bool writes_;
  std::string name_;
  std::string unnamed_;
  std::uint64_t generation_ = 0;  // of the connection it is prepared on
  int runs_ = 0;
  PostgresParams params_;
  Result result_;  // rows that are still to be fetched
  int row_ = 0;
};

}  // namespace kv::engine
