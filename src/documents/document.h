// clsVeskDocument: the documents of a register.
#pragma once

#include <string>

#include "common/ref.h"
#include "common/variant.h"
#include "kvdata/data_server.h"

namespace kv {

class clsVesk;

class clsVeskDocument : public Object {
 public:
  clsVeskDocument();

  // The root object. Root and child hold each other until the root's CloseSession.
  [[nodiscard]] const Ref<clsVesk>& oVesk() const noexcept { return oVesk_; }
  void oVesk(const Ref<clsVesk>& vesk) { oVesk_ = vesk; }
  // Through which this class reaches the database, with its own table names.
  [[nodiscard]] const Ref<kvDataServer>& DataServer() const noexcept { return dataServer_; }
  void DataServer(const Ref<kvDataServer>& server) { dataServer_ = server; }

  // Opens the data server and names this class's tables to it. The result is always Empty.
  Variant OpenConnection(const std::string& ConnectionString = {},
                         const Ref<kvProfile>& oProfile = {});
  // Does nothing; the result is always Empty.
  Variant Login();

 private:
  Ref<clsVesk> oVesk_;
  Ref<kvDataServer> dataServer_;
};

}  // namespace kv
