#include "cli/user_lookup.h"

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/table_value.h"

namespace kv::cli {

std::string findUser(const std::shared_ptr<Database>& database, const std::string& user) {
  const std::string quoted = "'" + doubledQuotes(user) + "'";
  const auto byId = openOwn(database, "Select UserID From Users Where UserID = " + quoted);
  if (byId->RecordCount() > 0) return joinText(byId->Fields(0)->Value());
  const auto byName = openOwn(database, "Select UserID From Users Where UserName = " + quoted);
  if (byName->RecordCount() == 1) return joinText(byName->Fields(0)->Value());
  throw Error(kInvalidCall, "kvvesk",
              byName->RecordCount() == 0
                  ? "There is no user '" + user + "'."
                  : "Several users have the name '" + user + "'; give the user's ID.");
}

}  // namespace kv::cli
