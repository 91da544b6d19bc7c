// clsVeskUser: the users of a register.
#pragma once

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

 private:
  Ref<clsVesk> oVesk_;
};

}  // namespace kv
