#include "cli/user_lookup.h"

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "kvdata/table_value.h"

namespace kv::cli {

namespace {

[[noreturn]] void refuse(const std::string& why) { throw Error(kInvalidCall, "kvvesk", why); }

}  // namespace

std::string findUser(const std::shared_ptr<Database>& database, const std::string& user) {
  const auto with = [&](const char* column, const std::string& value) {
    return openOwn(database,
                   std::string("Select UserID From Users Where ") + column + " = '" +
                       doubledQuotes(value) + "'",
                   kReadOnly);
  };
  auto found = with("UserID", user);
  if (found->RecordCount() == 0) {
    found = with("UserName", user);
    if (found->RecordCount() == 0) refuse("There is no user '" + user + "'.");
    if (found->RecordCount() > 1)
      refuse("Several users have the name '" + user + "'; give the user's ID.");
  }
  std::string id = joinText(found->Fields(0)->Value());
  if (id.empty()) refuse("The user '" + user + "' has no identifier.");
  // What is done to an identifier is done to everybody who has it.
  if (with("UserID", id)->RecordCount() > 1)
    refuse("Several users have the identifier '" + id + "'.");
  return id;
}

bool isUser(const std::shared_ptr<Database>& database, const std::string& name,
            const std::string& except) {
  const std::string quoted = "'" + doubledQuotes(name) + "'";
  const auto rs =
      openOwn(database,
              "Select UserID From Users Where (UserName = " + quoted + " or UserID = " + quoted +
                  ") and UserID <> '" + doubledQuotes(except) + "'",
              kReadOnly);
  return rs->RecordCount() > 0;
}

}  // namespace kv::cli
