// SPDX-License-Identifier: Apache-2.0
#include "classes/session/vesk.h"

#include <fmt/format.h>

#include <optional>

#include "classes/session/vesk_errors.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "data/connection_string.h"
#include "kvvesk/version.h"
#include "recordset/database.h"
#include "schema/register_schema.h"

namespace kv {

namespace {

// The first characters of a layout version say which generation of the library it belongs to.
constexpr std::size_t kGenerationLength = 2;

// Values that the record-set layer knows: keyset, optimistic, and that the text is a statement.
constexpr std::int32_t kStatementText = 3;
constexpr std::int32_t kCommandText = 1;

}  // namespace

Ref<clsVesk> clsVesk::create(PasswordCost cost) {
  Ref<clsVesk> vesk(std::make_shared<clsVesk>(Private{}));
  vesk->dataServer_ = makeRef<kvDataServer>();
  vesk->document_ = makeRef<clsVeskDocument>();
  vesk->document_->oVesk(vesk);
  vesk->manual_ = makeRef<clsVeskManual>();
  vesk->manual_->oVesk(vesk);
  vesk->user_ = makeRef<clsVeskUser>();
  vesk->user_->oVesk(vesk);
  vesk->mainUser_ = makeRef<kvUser>(cost);
  vesk->revision_ = makeRef<clsVeskRevision>();
  vesk->revision_->oVesk(vesk);
  return vesk;
}

clsVesk::~clsVesk() {
  dataServer_.reset();
  document_.reset();
  manual_.reset();
  mainUser_.reset();
  user_.reset();
  revision_.reset();
}

std::string clsVesk::Version(bool bIncludeRevisionLevel) const {
  return bIncludeRevisionLevel
             ? fmt::format("{}.{}.{}", kVersionMajor, kVersionMinor, kVersionRevision)
             : fmt::format("{}.{}", kVersionMajor, kVersionMinor);
}

void clsVesk::CloseSession() {
  const auto server = dataServer_;
  if (server) server->Profile()->Close();
  dataServer_.reset();
  document_.reset();
  manual_.reset();
  mainUser_.reset();
  user_.reset();
  revision_.reset();
  // After a failed version check there is no data server to ask, but the children must be let go
  // all the same.
  if (!server) raise(kObjectNotSet);
}

bool clsVesk::OpenConnection(const std::string& ConnectionString, const Ref<kvProfile>& oProfile) {
  dataServer_->OpenConnection(ConnectionString, oProfile);
  dataServer_->SetTables("VeskConfig", "VeskGroups", "", "VeskKeywords", "VeskReporting",
                         "VeskProfiles", "", "");
  requireVersions();
  const bool apart = hasUserDatabase();
  std::optional<Error> failed;
  if (apart) {
    try {
      openUsersAt(std::string(kUserDatabaseAt) +
                  joinText(dataServer_->Config()->Value("UserDBLocation")));
    } catch (const Error& e) {
      failed = e;
    }
  } else {
    mainUser_->OpenConnection("", dataServer_->Profile());
  }
  // Everything is opened that can be, before the failure is told.
  try {
    if (failed) openUsersAt(dataServer_->Profile()->ConnectionString());
    requireUserVersion();
    if (apart && !failed)
      dataServer_->Connection()->keepUsersIn(mainUser_->DataServer()->Connection());
    document_->OpenConnection("", dataServer_->Profile());
    manual_->OpenConnection("", dataServer_->Profile());
    revision_->OpenConnection("", dataServer_->Profile());
  } catch (const Error& e) {
    // A version that is too old speaks for itself.
    if (!failed || e.number() == kErrorBase + kUserDataTooOld.code) throw;
    throw UserDatabaseError(e);
  }
  if (failed) throw UserDatabaseError(*failed);
  return false;
}

void clsVesk::requireVersions() {
  if (dataServer_->Connection()->database()->catalog()->find("Documents") == nullptr) {
    dataServer_->Close();
    throw Error(kEngineFailure, "kvData",
                "This is a database of users and actions, and no register.");
  }
  const Variant layout = dataServer_->Config()->Value("DatabaseVersion");
  if (compareValues(layout, kLayoutVersion) == -1) {
    dataServer_->Close();
    dataServer_.reset();
    raise(kLayoutTooOld, kLayoutVersion);
  }
  if (joinText(layout).substr(0, kGenerationLength) > kLayoutVersion.substr(0, kGenerationLength)) {
    dataServer_.reset();
    raise(kLayoutTooNew, kLayoutVersion);
  }
}

bool clsVesk::hasUserDatabase() const {
  const auto config = dataServer_->Config();
  if (!toBoolean(config->Value("ExternalActionSystem"))) return false;
  // A register that names itself has no other: two connections would wait for each other's writing.
  const std::string& own = dataServer_->Profile()->ConnectionString();
  return !engine::sameDatabase(joinText(config->Value("UserDBLocation")),
                               parseConnectionString(own).location);
}

// With a profile of its own: the one it has may be the register's, from an earlier log-in.
void clsVesk::openUsersAt(const std::string& ConnectionString) {
  mainUser_->OpenConnection(ConnectionString, makeRef<kvProfile>());
}

void clsVesk::requireUserVersion() {
  const Variant version = mainUser_->DataServer()->Config()->Value("Version");
  if (compareValues(version, kUserDataVersion) == -1) {
    dataServer_.reset();
    user_.reset();
    raise(kUserDataTooOld);
  }
}

Variant clsVesk::Login(const std::string& UserName, const std::string& Password,
                       const std::string& ConnectionString, const Ref<kvProfile>& oProfile) {
  if (!dataServer_) dataServer_ = makeRef<kvDataServer>();
  if (!dataServer_->Connection()) {
    if (trimmed(ConnectionString).empty() && !oProfile) raise(kUnconnected);
    OpenConnection(ConnectionString, oProfile);
  }
  mainUser_->ApplicationCode("D2");
  mainUser_->Login(UserName, Password, dataServer_->Profile());
  if (mainUser_->Profile()->UserID().empty()) raise(kWrongPassword);

  const Ref<kvProfile> profile = mainUser_->Profile();
  dataServer_->Profile(profile);
  // Which logs the children in: what they ask about the user, they ask the profile.
  document_->DataServer()->Profile(profile);
  manual_->DataServer()->Profile(profile);
  revision_->DataServer()->Profile(profile);
  // A user without a profile row has no right at all.
  if (profile->Rights().empty() && profile->Administrator() == 0)
    profile->Rights(std::string(kRightsLength, '0'));
  return {};
}

Ref<Recordset> clsVesk::GetRecordset(const std::string& cSQL) {
  return dataServer_->Connection()->OpenRecordset(cSQL, kKeyset, kOptimistic, kStatementText);
}

std::int32_t clsVesk::Execute(const std::string& cSQL, std::int32_t) {
  std::int32_t affected = 0;
  dataServer_->Connection()->Execute(cSQL, affected, kCommandText);
  return affected;
}

}  // namespace kv
