#include "cli/users_file.h"

#include <filesystem>

#include "cli/terminal.h"
#include "common/path.h"
#include "kvdata/engine/open.h"

namespace kv::cli {

std::string storedLocation(const std::string& place) {
  if (engine::isServer(place)) return place;
  std::string out = pathText(std::filesystem::absolute(pathOf(place)).lexically_normal());
  // Which ends a value in a connection string; quotation marks mean something only at its
  // beginning.
  if (out.find(';') != std::string::npos)
    throw UsageError("the path of a file for users must not contain ;");
  return out;
}

}  // namespace kv::cli
