// SPDX-License-Identifier: Apache-2.0
// DataServer: a connection seen with one class's table names, and the profile that it is shared by.
#pragma once

#include <string>

#include "common/export.h"
#include "common/ref.h"
#include "data/config.h"
#include "data/profile.h"
#include "data/query_store.h"

namespace kv {

class KVVESK_API kvDataServer : public Object {
 public:
  // It always has a profile; a new one has nobody logged in and no connection.
  kvDataServer();

  // With a connection string: opens it and gives the connection to the profile, `oProfile` or the
  // own one; a connection that profile had before is closed. Without: takes over `oProfile` with
  // the connection it has. Raises 3709 when neither gives a connection.
  void OpenConnection(const std::string& ConnectionString = {},
                      const Ref<kvProfile>& oProfile = {});
  // The names of the tables it manages; an empty one means that there is none. The last two
  // positions belong to stores that this library does not have.
  void SetTables(const std::string& Config = {}, const std::string& Groups = {},
                 const std::string& Queries = {}, const std::string& Keywords = {},
                 const std::string& Reporting = {}, const std::string& Profiles = {},
                 const std::string& Reserved1 = {}, const std::string& Reserved2 = {});
  // Closes the connection, for all who share the profile; the profile stays.
  void Close();

  // The stores of the tables named; raise 91 where no table is named or no connection is open.
  [[nodiscard]] Ref<kvConfig> Config() const;
  [[nodiscard]] Ref<kvQueries> Queries() const;
  // Nothing while closed.
  [[nodiscard]] Ref<kvConnection> Connection() const;
  [[nodiscard]] const Ref<kvProfile>& Profile() const noexcept { return profile_; }
  // Raises 91 for nothing: there is always a profile.
  void Profile(const Ref<kvProfile>& profile);
  [[nodiscard]] std::string StatementLog() const;
  void StatementLog(const std::string& path);

  // For the classes that have a data server: an updatable set over a SELECT, and a statement
  // executed. Both raise 91 while closed.
  [[nodiscard]] Ref<Recordset> open(const std::string& sql) const;
  void execute(const std::string& sql) const;

  [[nodiscard]] const std::string& groupsTable() const noexcept { return groups_; }
  [[nodiscard]] const std::string& profilesTable() const noexcept { return profiles_; }

 private:
  [[nodiscard]] Ref<kvConnection> connected(const std::string& table) const;

  Ref<kvProfile> profile_;
  std::string config_;
  std::string groups_;
  std::string queries_;
  std::string keywords_;
  std::string reporting_;
  std::string profiles_;
};

}  // namespace kv
