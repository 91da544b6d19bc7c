// SPDX-License-Identifier: Apache-2.0
#include "support/proxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <stdexcept>

namespace kv::test {

namespace {

constexpr const char* kSocket = "/.s.PGSQL.5432";
constexpr const char* kHost = "host=";
constexpr int kWaitMilliseconds = 20;

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un out{};
  out.sun_family = AF_UNIX;
  if (path.size() >= sizeof(out.sun_path)) throw std::runtime_error("path too long: " + path);
  std::memcpy(out.sun_path, path.c_str(), path.size() + 1);
  return out;
}

bool readable(int socket) {
  pollfd wait{.fd = socket, .events = POLLIN, .revents = 0};
  return poll(&wait, 1, kWaitMilliseconds) > 0;
}

}  // namespace

Proxy::Proxy(const std::string& location) {
  const auto at = location.find(kHost) + std::strlen(kHost);
  server_ = location.substr(at) + kSocket;
  location_ = location.substr(0, at) + folder_.path().string();
  listener_ = socket(AF_UNIX, SOCK_STREAM, 0);
  const auto address = addressOf(folder_.path().string() + kSocket);
  if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
      listen(listener_, 8) != 0)
    throw std::runtime_error("the proxy cannot listen");
  thread_ = std::thread([this] { serve(); });
}

Proxy::~Proxy() {
  stopping_ = true;
  thread_.join();
  ::close(listener_);
}

void Proxy::loseAnswerTo(const std::string& text) {
  lost_ = text;
  losing_ = true;
}

// One connection at a time, which is all that a test needs.
void Proxy::serve() {
  while (!stopping_) {
    if (!readable(listener_)) continue;
    const int client = accept(listener_, nullptr, nullptr);
    if (client >= 0) pass(client);
  }
}

void Proxy::pass(int client) {
  const int server = socket(AF_UNIX, SOCK_STREAM, 0);
  const auto address = addressOf(server_);
  bool open = connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
  bool cut = false;
  while (open && !stopping_) {
    std::array<pollfd, 2> wait = {pollfd{.fd = client, .events = POLLIN, .revents = 0},
                                  pollfd{.fd = server, .events = POLLIN, .revents = 0}};
    if (poll(wait.data(), wait.size(), kWaitMilliseconds) <= 0) continue;
    std::array<char, 65536> bytes{};
    if (wait[0].revents != 0) {
      const auto count = ::read(client, bytes.data(), bytes.size());
      open = count > 0 && ::write(server, bytes.data(), static_cast<std::size_t>(count)) == count;
      if (open && losing_ &&
          std::string(bytes.data(), static_cast<std::size_t>(count)).find(lost_) !=
              std::string::npos) {
        cut = true;
        losing_ = false;
      }
    }
    if (open && wait[1].revents != 0) {
      const auto count = ::read(server, bytes.data(), bytes.size());
      open = count > 0 && !cut &&
             ::write(client, bytes.data(), static_cast<std::size_t>(count)) == count;
    }
  }
  ::close(server);
  ::close(client);
}

}  // namespace kv::test
