// SPDX-License-Identifier: Apache-2.0
// Edit: what an operation assigns in a set that may be its caller's, kept as one.
#pragma once

#include <memory>

#include "recordset/recordset.h"

namespace kv {

// When the operation raises before all of it is assigned, nothing of it stays pending: the caller's
// next move would store half of what he asked for. What he had pending himself is his again, on
// the row where he had it: an operation that moves the set saves it before it begins.
class Edit {
 public:
  explicit Edit(Ref<Recordset> rs);
  ~Edit();
  Edit(const Edit&) = delete;
  Edit& operator=(const Edit&) = delete;
  Edit(Edit&&) = delete;
  Edit& operator=(Edit&&) = delete;

  // From here on the edit is as good as the caller's own: should storing it fail, it is still
  // there.
  void keep() noexcept { kept_ = true; }

 private:
  Ref<Recordset> rs_;
  Recordset::Position position_;
  std::unique_ptr<Recordset::Pending> callers_;
  bool kept_ = false;
};

}  // namespace kv
