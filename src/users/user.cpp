#include "users/user.h"

#include "common/convert.h"
#include "kvdata/sql_text.h"
#include "session/vesk.h"

namespace kv {

std::string clsVeskUser::getUserName(const std::string& id) {
  const auto rs = oVesk_->GetRecordset("Select UserName From VeskProfiles Where UserID = '" +
                                       inQuotes(id) + "'");
  return rs->RecordCount() > 0 ? joinText(rs->Fields("UserName")->Value()) : std::string();
}

}  // namespace kv
