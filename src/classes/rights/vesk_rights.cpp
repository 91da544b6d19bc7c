// SPDX-License-Identifier: Apache-2.0
// The root object's tests and setters of rights and options.
#include <string>

#include "classes/rights/rights.h"
#include "classes/session/vesk.h"
#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "data/operation.h"

namespace kv {

namespace {

constexpr const char* kOwnerRightsKey = "OwnerRights";
constexpr const char* kUserOptionsKey = "UserOptions";
constexpr const char* kProgramOptionsKey = "ProgramOptions";

void requirePlace(std::int16_t place) {
  if (place < 1) raise(kInvalidCall);
}

// There is no default place.
bool isOn(const Variant& settings, std::int16_t place) {
  requirePlace(place);
  return settingIsOn(joinText(settings), place);
}

// The text with one character overwritten; never longer than before.
std::string withSetting(const std::string& text, std::int16_t place, bool on) {
  requirePlace(place);
  const auto before = static_cast<std::size_t>(place) - 1;
  const auto from = byteOffset(text, before);
  if (from >= text.size()) raise(kInvalidCall);
  return text.substr(0, from) + (on ? '1' : '0') + text.substr(byteOffset(text, before + 1));
}

}  // namespace

std::string clsVesk::urDescription(std::int16_t UserRight) const {
  return std::string(userRightText(UserRight));
}

std::string clsVesk::uoDescription(std::int16_t) const { return {}; }

std::string clsVesk::aoDescription(std::int16_t) const { return {}; }

std::string clsVesk::orDescription(std::int16_t UserRight) const {
  return std::string(ownerRightText(UserRight));
}

bool clsVesk::UserAccess(std::int16_t Access, std::int16_t naccess) const {
  return dataServer_->Profile()->HasRight(naccess != 0 ? naccess : Access);
}

bool clsVesk::OwnerAccess(std::int16_t Access, std::int16_t naccess) const {
  if (naccess != kWithoutOverride && dataServer_->Profile()->OwnerOverride() == -1) return true;
  const bool byNumber = naccess != 0 && naccess != kWithoutOverride;
  return isOn(dataServer_->Config()->Value(kOwnerRightsKey), byNumber ? naccess : Access);
}

bool clsVesk::UserOption(std::int16_t opt, std::int16_t nOpt) const {
  return isOn(dataServer_->Profile()->Value(kUserOptionsKey), nOpt != 0 ? nOpt : opt);
}

bool clsVesk::AppOption(std::int16_t opt, std::int16_t nOpt) const {
  return isOn(dataServer_->Config()->Value(kProgramOptionsKey), nOpt != 0 ? nOpt : opt);
}

void clsVesk::SetOwnerAccess(std::int16_t Access, bool Setting) {
  const auto config = dataServer_->Config();
  Operation operation(dataServer_->Connection(), "VeskConfig");
  config->Store(kOwnerRightsKey,
                withSetting(joinText(config->Value(kOwnerRightsKey)), Access, Setting));
  operation.commit();
}

void clsVesk::SetUserOption(std::int16_t opt, bool Setting) {
  const auto profile = dataServer_->Profile();
  Operation operation(dataServer_->Connection(), "VeskProfiles", "UserID", profile->UserID());
  profile->Store(kUserOptionsKey,
                 withSetting(joinText(profile->Value(kUserOptionsKey)), opt, Setting));
  operation.commit();
}

void clsVesk::SetAppOption(std::int16_t opt, bool Setting) {
  const auto config = dataServer_->Config();
  Operation operation(dataServer_->Connection(), "VeskConfig");
  std::string options = joinText(config->Value(kProgramOptionsKey));
  const auto length = characterCount(options);
  if (length < kApplicationOptions) options.append(kApplicationOptions - length, '0');
  config->Store(kProgramOptionsKey, withSetting(options, opt, Setting));
  operation.commit();
}

}  // namespace kv
