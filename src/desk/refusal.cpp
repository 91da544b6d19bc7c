// SPDX-License-Identifier: Apache-2.0
#include "desk/refusal.h"

#include <utility>

namespace kv::desk {

namespace {

constexpr const char* kSource = "kvvesk";

}  // namespace

WrongInput::WrongInput(std::string description)
    : Error(kInvalidCall, kSource, std::move(description)) {}

void requireChange(bool any) {
  if (!any) throw WrongInput("nothing to change: give at least one field");
}

void refuse(std::string why) { throw Error(kInvalidCall, kSource, std::move(why)); }

void deny(std::string_view why) {
  throw Error(kPermission, kSource,
              std::string(wellKnownText(kPermission)) + ": " + std::string(why));
}

}  // namespace kv::desk
