// SPDX-License-Identifier: Apache-2.0
#include "data/data_server.h"

#include "common/error.h"
#include "common/text.h"

namespace kv {

kvDataServer::kvDataServer() : profile_(makeRef<kvProfile>()) {}

void kvDataServer::OpenConnection(const std::string& ConnectionString,
                                  const Ref<kvProfile>& oProfile) {
  const Ref<kvProfile> profile = oProfile ? oProfile : profile_;
  if (!trimmed(ConnectionString).empty()) {
    auto connection = kvConnection::open(ConnectionString);
    if (profile->connection()) profile->connection()->Close();
    profile->attach(std::move(connection));
    // Whoever was logged in was known to the register that was open before, and not to this one.
    profile->setUser({}, {}, {}, false);
  } else if (!profile->connection()) {
    raise(kNoConnection);
  }
  profile_ = profile;
}

void kvDataServer::SetTables(const std::string& Config, const std::string& Groups,
                             const std::string& Queries, const std::string& Keywords,
                             const std::string& Reporting, const std::string& Profiles,
                             const std::string&, const std::string&) {
  config_ = Config;
  groups_ = Groups;
  queries_ = Queries;
  keywords_ = Keywords;
  reporting_ = Reporting;
  profiles_ = Profiles;
}

void kvDataServer::Close() {
  if (profile_->connection()) profile_->connection()->Close();
  profile_->attach(nullptr);
}

Ref<kvConnection> kvDataServer::Connection() const {
  const auto& connection = profile_->connection();
  return connection && connection->isOpen() ? connection : Ref<kvConnection>();
}

Ref<Recordset> kvDataServer::open(const std::string& sql) const {
  return Connection()->OpenRecordset(sql);
}

void kvDataServer::execute(const std::string& sql) const {
  std::int32_t affected = 0;
  Connection()->Execute(sql, affected);
}

Ref<kvConnection> kvDataServer::connected(const std::string& table) const {
  auto connection = Connection();
  if (table.empty() || !connection) raise(kObjectNotSet);
  return connection;
}

Ref<kvConfig> kvDataServer::Config() const {
  return makeRef<kvConfig>(connected(config_), config_);
}

Ref<kvQueries> kvDataServer::Queries() const {
  return makeRef<kvQueries>(connected(queries_), queries_);
}

void kvDataServer::Profile(const Ref<kvProfile>& profile) {
  if (!profile) raise(kObjectNotSet);
  profile_ = profile;
}

std::string kvDataServer::StatementLog() const {
  const auto connection = Connection();
  return connection ? connection->StatementLog() : std::string();
}

void kvDataServer::StatementLog(const std::string& path) { Connection()->StatementLog(path); }

}  // namespace kv
