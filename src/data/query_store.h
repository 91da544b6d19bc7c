// SPDX-License-Identifier: Apache-2.0
// Queries: the stored queries of one class, each a row of its table.
#pragma once

#include <cstdint>
#include <string>

#include "common/export.h"
#include "common/ref.h"
#include "data/connection.h"

namespace kv {

class KVVESK_API kvQueries : public Object {
 public:
  kvQueries(Ref<kvConnection> connection, std::string table)
      : connection_(std::move(connection)), table_(std::move(table)) {}

  // The record of a query, updatable; an empty set when there is none with that ID.
  [[nodiscard]] Ref<Recordset> Open(std::int32_t ID) const;
  // Adds a query that has a name and no criteria; returns its ID.
  [[nodiscard]] std::int32_t Add(const std::string& Name);
  // Deletes a query; one that is not there is no error.
  void Delete(std::int32_t ID);

 private:
  Ref<kvConnection> connection_;
  std::string table_;
};

}  // namespace kv
