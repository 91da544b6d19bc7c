// SPDX-License-Identifier: Apache-2.0
#include "data/profile.h"

#include "common/error.h"
#include "common/text.h"
#include "data/table_value.h"

namespace kv {

namespace {

constexpr const char* kProfiles = "VeskProfiles";

std::string ofUser(const std::string& userId) { return "UserID = '" + doubledQuotes(userId) + "'"; }

}  // namespace

bool kvProfile::HasRight(std::int16_t Number) const {
  if (Number < 1) raise(kInvalidCall);
  if (administrator_ == -1) return true;
  const auto place = static_cast<std::size_t>(Number) - 1;
  return place < rights_.size() && rights_[place] == '1';
}

Variant kvProfile::Value(const std::string& Key) const {
  if (!connection_) raise(kNoConnection);
  return tableValue(connection_->database(), kProfiles, Key, ofUser(userId_));
}

void kvProfile::Store(const std::string& Key, const Variant& Value) {
  if (!connection_) raise(kNoConnection);
  storeTableValue(connection_->database(), kProfiles, Key, Value, ofUser(userId_));
}

std::string kvProfile::ConnectionString() const {
  return connection_ ? connection_->ConnectionString() : std::string();
}

void kvProfile::Close() {
  if (connection_) connection_->Close();
  connection_.reset();
  setUser({}, {}, {}, false);
}

void kvProfile::setUser(std::string userId, std::string userName, std::string rights,
                        bool administrator) {
  userId_ = std::move(userId);
  userName_ = std::move(userName);
  rights_ = std::move(rights);
  administrator_ = administrator ? std::int16_t{-1} : std::int16_t{0};
  ownerOverride_ = administrator ? -1 : 0;
}

}  // namespace kv
