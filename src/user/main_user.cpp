// SPDX-License-Identifier: Apache-2.0
#include "user/main_user.h"

#include <algorithm>
#include <array>
#include <unordered_set>

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "common/text_key.h"
#include "data/sql_text.h"
#include "data/table_value.h"

namespace kv {

namespace {

// What everybody in workgroup 0, "View Only Users", may do: see lists and details.
constexpr std::array<std::size_t, 7> kViewingRights = {1, 10, 20, 30, 50, 70, 90};
// The workgroup whose members may do everything: "Super Users".
constexpr std::int32_t kSuperUsers = -1;
constexpr std::int32_t kViewOnlyUsers = 0;

std::string viewingRights() {
  std::string out(kRightsLength, '0');
  for (const auto right : kViewingRights) out[right - 1] = '1';
  return out;
}

// Equal in a time that does not tell how much of it is.
bool sameSecret(std::string_view a, std::string_view b) {
  unsigned difference = a.size() == b.size() ? 0 : 1;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
    difference |= static_cast<unsigned>(a[i] ^ b[i]);
  return difference == 0;
}

// Saves what a log-in tidies up. When somebody has changed the row since it was read, another
// log-in has done the same, or what was read no longer holds.
void saveUnlessChanged(Recordset& row) {
  try {
    row.Update();
  } catch (const Error& e) {
    if (e.number() != kRowChanged && e.number() != kRowDeleted) throw;
    row.CancelUpdate();
  }
}

const std::shared_ptr<Database>& databaseOf(const Ref<kvDataServer>& server) {
  const auto& connection = server->Profile()->connection();
  if (!connection || !connection->isOpen()) raise(kNoConnection);
  return connection->database();
}

}  // namespace

kvUser::kvUser(PasswordCost cost) : passwords_(cost), dataServer_(makeRef<kvDataServer>()) {}

void kvUser::OpenConnection(const std::string& ConnectionString, const Ref<kvProfile>& oProfile) {
  dataServer_->OpenConnection(ConnectionString, oProfile);
  dataServer_->SetTables("VeskConfig", "Groups", "UserQuerys", "Keywords", "", "VeskProfiles");
}

void kvUser::Login(const std::string& UserName, const std::string& Password,
                   const Ref<kvProfile>& oProfile) {
  if (oProfile) dataServer_->Profile(oProfile);
  const auto& database = databaseOf(dataServer_);
  Profile()->setUser({}, {}, {}, false);

  const auto keeper = database->keeperOf("Users");
  const bool usersWritable = !(keeper ? *keeper : *database).engine().readOnly();
  std::string userId;
  std::string userName;
  bool verified = false;
  if (isStorableText(UserName)) {
    // Names need not be unique: whose password it is may come in.
    const auto rs =
        openOwn(database, "Select UserID, UserName, Password From Users Where UserName = '" +
                              doubledQuotes(UserName) + "' Order By ID");
    for (; !rs->Eof() && userId.empty(); rs->MoveNext()) {
      const std::string stored = joinText(rs->Fields("Password")->Value());
      if (stored.empty() || Password.empty()) continue;
      const bool clearText = !Passwords::isHash(stored);
      bool right = false;
      if (clearText) {
        right = sameSecret(stored, Password);
        (void)passwords_.verifyNobody(Password);  // takes as long as the others
      } else {
        right = passwords_.verify(stored, Password);
      }
      verified = true;
      if (!right) continue;
      userId = joinText(rs->Fields("UserID")->Value());
      userName = joinText(rs->Fields("UserName")->Value());
      if (!userId.empty() && clearText && usersWritable) {
        rs->Fields("Password")->Value(passwords_.hash(Password));
        saveUnlessChanged(*rs);
      }
    }
  }
  if (!verified) (void)passwords_.verifyNobody(Password);
  if (userId.empty()) return;

  bool administrator = false;
  std::string rights = RightsOf(userId, administrator);
  if (!database->engine().readOnly()) keepName(userId, userName);
  Profile()->setUser(userId, userName, std::move(rights), administrator);
}

// Administrators hold every right. Otherwise the user's own rights count, else those of the
// workgroup, else for workgroup 0 the viewing rights, else none. A user without a profile row has
// none either: an empty text says so.
std::string kvUser::RightsOf(const std::string& userId, bool& administrator) const {
  const auto& database = databaseOf(dataServer_);
  const auto rs =
      openOwn(database, "Select Rights, GroupID, Administrator From VeskProfiles Where UserID = '" +
                            doubledQuotes(userId) + "'");
  administrator = false;
  if (rs->Eof()) return {};
  const Variant group = rs->Fields("GroupID")->Value();
  const std::int32_t groupId = group.isNull() ? kViewOnlyUsers : toInt32(group);
  if (toBoolean(rs->Fields("Administrator")->Value()) || groupId == kSuperUsers) {
    administrator = true;
    return std::string(kRightsLength, '1');
  }
  std::string own = joinText(rs->Fields("Rights")->Value());
  if (!own.empty()) return own;
  std::string ofGroup = joinText(tableValue(database, dataServer_->groupsTable(), "Rights",
                                            "GroupID = " + std::to_string(groupId)));
  if (!ofGroup.empty()) return ofGroup;
  return groupId == kViewOnlyUsers ? viewingRights() : std::string(kRightsLength, '0');
}

// Lists of documents show names from VeskProfiles, so a name that is missing there is copied.
void kvUser::keepName(const std::string& userId, const std::string& userName) const {
  const auto rs =
      openOwn(databaseOf(dataServer_),
              "Select UserName From VeskProfiles Where UserID = '" + doubledQuotes(userId) + "'");
  if (rs->Eof() || !joinText(rs->Fields(0)->Value()).empty() || userName.empty()) return;
  rs->Fields(0)->Value(userName);
  saveUnlessChanged(*rs);
}

bool kvUser::setPassword(const std::string& userId, std::string_view password) {
  // It takes a while; whoever logs in meanwhile must not be in the way of what is read after it.
  const Variant kept = password.empty() ? Variant(Null) : Variant(passwords_.hash(password));
  const auto rs = openOwn(databaseOf(dataServer_), "Select Password From Users Where UserID = '" +
                                                       doubledQuotes(userId) + "'");
  if (rs->Eof()) return false;
  rs->Fields(0)->Value(kept);
  rs->Update();
  return true;
}

Ref<kvSender> kvUser::Sender() const {
  const auto connection = dataServer_->Connection();
  return connection ? makeRef<kvSender>(connection) : Ref<kvSender>();
}

void kvUser::CloseAction(const std::string& ID, const Date& Completed,
                         const Variant& Closed) const {
  const auto rs =
      openOwn(databaseOf(dataServer_),
              "Select DateCompleted, DateClosed From Actions Where ActionID = " + asNumber(ID));
  if (rs->Eof()) return;
  rs->Fields("DateCompleted")->Value(Completed);
  if (!Closed.isEmpty() && !Closed.isNull()) rs->Fields("DateClosed")->Value(toDate(Closed));
  rs->Update();
}

Variant kvUser::UserValue(const std::string& UserID, const std::string& FieldName) const {
  return tableValue(databaseOf(dataServer_), "Users", FieldName,
                    "UserID = '" + doubledQuotes(UserID) + "'");
}

Ref<Recordset> kvUser::UserRecords(const Ref<Recordset>& rs) const {
  std::vector<std::string> ids;
  if (rs->RecordCount() > 0) {
    rs->readMany();
    const auto field = rs->Fields("UserID");
    for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) ids.push_back(joinText(field->Value()));
  }
  return recordsOf(ids);
}

Ref<Recordset> kvUser::recordsOf(const std::vector<std::string>& ids) const {
  std::string where;
  std::vector<std::string> order;
  std::unordered_set<std::string> seen;
  for (const auto& id : ids) {
    if (!seen.insert(foldKey(id)).second) continue;
    order.push_back(id);
    where += (where.empty() ? "UserID = '" : " or UserID = '") + doubledQuotes(id) + "'";
  }
  if (where.empty()) where = "ID = -1";
  auto records = openOwn(databaseOf(dataServer_), "Select * From Users Where " + where);
  records->readMany();
  records->arrange("UserID", order);
  return records;
}

Ref<Recordset> kvUser::UserRecords(const std::string& cSQL) const {
  return UserRecords(openOwn(databaseOf(dataServer_), cSQL));
}

}  // namespace kv
