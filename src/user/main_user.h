// SPDX-License-Identifier: Apache-2.0
// MainUser: users by name and number, and the log-in.
#pragma once

#include <string>

#include "common/export.h"
#include "common/ref.h"
#include "data/data_server.h"
#include "user/password.h"
#include "user/sender.h"

namespace kv {

class KVVESK_API kvUser : public Object {
 public:
  explicit kvUser(PasswordCost cost = {});

  // As kvDataServer::OpenConnection, for this object's own data server and its tables.
  void OpenConnection(const std::string& ConnectionString = {},
                      const Ref<kvProfile>& oProfile = {});
  [[nodiscard]] const Ref<kvDataServer>& DataServer() const noexcept { return dataServer_; }

  // Two characters by which applications of this family tell themselves apart.
  [[nodiscard]] const std::string& ApplicationCode() const noexcept { return applicationCode_; }
  void ApplicationCode(const std::string& code) { applicationCode_ = code; }

  // Logs a user in: fills `oProfile` (the own data server's when left out) and makes it this
  // object's. When name and password do not belong together the profile's UserID is empty
  // afterwards; nothing is raised. An empty password lets nobody in, and neither does a user's
  // missing one. A password that is still kept in clear text is replaced by its hash at the log-in
  // it lets through.
  void Login(const std::string& UserName, const std::string& Password,
             const Ref<kvProfile>& oProfile = {});
  [[nodiscard]] const Ref<kvProfile>& Profile() const noexcept { return dataServer_->Profile(); }

  // A column of a user's row in Users. Empty for a user who is not there, and for Null; 3265 for an
  // unknown column.
  [[nodiscard]] Variant UserValue(const std::string& UserID, const std::string& FieldName) const;
  // The records in Users of the users whose IDs are in the column UserID of a record set, or of the
  // result of a SELECT, in the order given, each once; IDs without a record are passed over. The
  // set is read from its first row to its end.
  [[nodiscard]] Ref<Recordset> UserRecords(const Ref<Recordset>& rs) const;
  [[nodiscard]] Ref<Recordset> UserRecords(const std::string& cSQL) const;

  // The rights text that a log-in gives a user, and whether as an administrator, who holds every
  // right: the user's own, else those of the workgroup. Empty for a user without a profile.
  [[nodiscard]] std::string RightsOf(const std::string& userId, bool& administrator) const;

  // What sends actions to users; nothing while no connection is open.
  [[nodiscard]] Ref<kvSender> Sender() const;
  // Records when an action was completed and, when `Closed` is a date, closed. An action that does
  // not exist is no error. Raises -2147217900 for an ID that is no number.
  void CloseAction(const std::string& ID, const Date& Completed, const Variant& Closed) const;

  // Gives a user a new password, or none for an empty text. False when there is no such user.
  bool setPassword(const std::string& userId, std::string_view password);

  [[nodiscard]] const Passwords& passwords() const noexcept { return passwords_; }

 private:
  [[nodiscard]] Ref<Recordset> recordsOf(const std::vector<std::string>& ids) const;
  void keepName(const std::string& userId, const std::string& userName) const;

  Passwords passwords_;
  Ref<kvDataServer> dataServer_;
  std::string applicationCode_;
};

}  // namespace kv
