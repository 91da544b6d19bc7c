// clsVeskUser: the users of a register.
#pragma once

#include <string>

#include "common/ref.h"
#include "common/variant.h"

namespace kv {

class clsVesk;

class clsVeskUser : public Object {
 public:
  // The root object, through which this class reaches everything. Root and child hold each other
  // until the root's CloseSession.
  [[nodiscard]] const Ref<clsVesk>& oVesk() const noexcept { return oVesk_; }
  void oVesk(const Ref<clsVesk>& vesk) { oVesk_ = vesk; }

  // The name of a user as the profiles have it; "" for one without a profile.
  [[nodiscard]] std::string getUserName(const std::string& id);

 private:
  Ref<clsVesk> oVesk_;
};

}  // namespace kv
