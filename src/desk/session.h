// SPDX-License-Identifier: Apache-2.0
// The session that every use case works in: a root object that is open and logged in.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "classes/session/vesk.h"
#include "common/ref.h"

namespace kv::desk {

// Neither opens nor closes anything: whoever logged in does that.
class Session {
 public:
  explicit Session(Ref<clsVesk> vesk) : vesk_(std::move(vesk)) {}

  clsVesk* operator->() const { return vesk_.get(); }
  [[nodiscard]] const Ref<kvProfile>& profile() const { return vesk_->DataServer()->Profile(); }
  [[nodiscard]] bool isAdministrator() const { return profile()->Administrator() == -1; }
  // For reads of the use cases' own, which no observer sees.
  [[nodiscard]] const std::shared_ptr<Database>& database() const {
    return vesk_->DataServer()->Connection()->database();
  }
  // Raises 70 with the reason when the user is no administrator.
  void requireAdministrator(std::string_view why) const;
  // Raises 70 with the right's text when the user does not hold it; numbers as in rights/rights.h.
  void requireRight(std::int16_t right) const;

 private:
  Ref<clsVesk> vesk_;
};

}  // namespace kv::desk
