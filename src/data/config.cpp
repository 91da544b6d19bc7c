// SPDX-License-Identifier: Apache-2.0
#include "data/config.h"

#include "common/convert.h"
#include "common/error.h"
#include "data/table_value.h"

namespace kv {

Variant kvConfig::Value(const std::string& Key) const {
  return tableValue(connection_->database(), table_, Key);
}

void kvConfig::Store(const std::string& Key, const Variant& Value) {
  storeTableValue(connection_->database(), table_, Key, Value);
}

std::string kvConfig::Label(const std::string& Key, std::int16_t Form) const {
  if (Form != 0) raise(kBadArgument);
  return joinText(Value(Key));
}

}  // namespace kv
