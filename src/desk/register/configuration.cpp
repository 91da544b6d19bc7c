// SPDX-License-Identifier: Apache-2.0
#include "desk/register/configuration.h"

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "data/table_value.h"
#include "desk/register/users_file.h"

namespace kv::desk {

namespace {

constexpr const char* kTable = "VeskConfig";

// These say what the file is; changing them changes nothing but whether it can be opened.
bool isVersion(const std::string& key) {
  return equalNoCase(key, "DatabaseVersion") || equalNoCase(key, "Version");
}

void store(const Session& session, const std::string& key, const std::string& value) {
  const auto config = session->DataServer()->Config();
  const Variant given = value.empty() ? Variant(Null) : Variant(value);
  if (equalNoCase(key, "ExternalActionSystem"))
    session->SetExternalActionSystem(!given.isNull() && toBoolean(given),
                                     joinText(config->Value("UserDBLocation")));
  else if (equalNoCase(key, "UserDBLocation") && !value.empty())
    session->SetExternalActionSystem(true, storedLocation(value));
  else
    config->Store(key, given);
}

}  // namespace

Ref<Recordset> configuration(const Session& session, const std::string& key) {
  const std::string what =
      key.empty() ? "*" : "[" + columnOf(*session.database(), kTable, key) + "]";
  return openOwn(session.database(), "Select " + what + " From " + kTable, kReadOnly);
}

Variant setConfiguration(const Session& session, const std::string& key, const std::string& value) {
  session.requireAdministrator("only administrators may set configuration values");
  if (isVersion(key))
    throw Error(kPermission, "kvvesk", "The version of a register is not a setting.");
  store(session, key, value);
  return session->DataServer()->Config()->Value(key);
}

}  // namespace kv::desk
