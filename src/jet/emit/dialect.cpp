// SPDX-License-Identifier: Apache-2.0
#include "jet/emit/dialect.h"

#include "common/error.h"

namespace kv::jet {

const Dialect& dialectNamed(std::string_view name) {
  if (name == "sqlite") return sqliteDialect();
  if (name == "postgres") return postgresDialect();
  raise(kInvalidCall, name);
}

}  // namespace kv::jet
