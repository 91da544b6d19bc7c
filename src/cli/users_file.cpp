#include "cli/users_file.h"

#include <filesystem>

#include "cli/terminal.h"
#include "kvdata/engine/open.h"

namespace kv::cli {

std::string storedLocation(const std::string& place) {
  if (engine::isServer(place)) return place;
  const auto path = std::filesystem::absolute(reinterpret_cast<const char8_t*>(place.c_str()))
                        .lexically_normal()
                        .u8string();
  std::string out(path.begin(), path.end());
  if (out.find_first_of(";\"'") != std::string::npos)
    throw UsageError("the path of a file for users must not contain ; or quotation marks");
  return out;
}

}  // namespace kv::cli
