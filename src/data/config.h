// SPDX-License-Identifier: Apache-2.0
// Config: values that the administrator sets, by key. The keys are the columns of a one-row table.
#pragma once

#include <string>

#include "common/export.h"
#include "common/ref.h"
#include "data/connection.h"

namespace kv {

class KVVESK_API kvConfig : public Object {
 public:
  kvConfig(Ref<kvConnection> connection, std::string table)
      : connection_(std::move(connection)), table_(std::move(table)) {}

  // Keys are found without regard to case. A Null value reads as Empty; an unknown key raises 3265.
  [[nodiscard]] Variant Value(const std::string& Key) const;
  void Store(const std::string& Key, const Variant& Value);
  // The display label kept under a key, as text. Form 0 is the label as configured, which is the
  // only one there is; others raise 3001.
  [[nodiscard]] std::string Label(const std::string& Key, std::int16_t Form) const;

 private:
  Ref<kvConnection> connection_;
  std::string table_;
};

}  // namespace kv
