// SPDX-License-Identifier: Apache-2.0
#include "desk/register/users_file.h"

#include <filesystem>

#include "common/path.h"
#include "desk/refusal.h"
#include "engine/open.h"

namespace kv::desk {

std::string storedLocation(const std::string& place) {
  if (engine::isServer(place)) return place;
  std::string out = pathText(std::filesystem::absolute(pathOf(place)).lexically_normal());
  // Which ends a value in a connection string; quotation marks mean something only at its
  // beginning.
  if (out.find(';') != std::string::npos)
    throw WrongInput("the path of a file for users must not contain ;");
  return out;
}

}  // namespace kv::desk
