// SPDX-License-Identifier: Apache-2.0
// Many clients of one server, each with a connection of its own, writing at once.

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <latch>
#include <memory>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include "bench_session.h"
#include "benches.h"
#include "common/text_key.h"
#include "sample_register.h"
#include "server_floor.h"

namespace kv::bench {

namespace {

constexpr auto kDuration = std::chrono::seconds(4);

// One client: does the operation for the n-th time, from 1.
using Client = std::function<void(int n)>;
using MakeClient = std::function<Client(int number)>;

struct Done {
  std::vector<int> times;  // of each client
  double seconds = 0;
  int failed = 0;  // clients that gave up
  [[nodiscard]] int all() const { return std::accumulate(times.begin(), times.end(), 0); }
};

Done runAtOnce(int clients, const MakeClient& make) {
  Done done{.times = std::vector<int>(static_cast<std::size_t>(clients))};
  std::latch ready(clients + 1);
  std::atomic<bool> stop = false;
  std::atomic<int> failed = 0;
  std::vector<std::thread> threads;
  for (int number = 0; number < clients; ++number)
    threads.emplace_back([&, number] {
      int& times = done.times[static_cast<std::size_t>(number)];
      Client client;
      try {
        client = make(number);
      } catch (const std::exception& problem) {
        ++failed;
        fmt::print(stderr, "bench: client {}: {}\n", number, problem.what());
      }
      ready.arrive_and_wait();
      try {
        while (client && !stop) {
          client(times + 1);
          ++times;
        }
      } catch (const std::exception& problem) {
        ++failed;
        fmt::print(stderr, "bench: client {}: {}\n", number, problem.what());
      }
    });
  ready.arrive_and_wait();
  const auto begun = std::chrono::steady_clock::now();
  std::this_thread::sleep_for(kDuration);
  stop = true;
  for (auto& thread : threads) thread.join();
  done.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
  done.failed = failed;
  return done;
}

std::string userOf(int number) { return fmt::format("Client{}_", number); }

MakeClient adding(const std::string& location) {
  return [location](int number) -> Client {
    const auto session = std::make_shared<BenchSession>(location);
    return [session, number](int n) { addDocument(*session, userOf(number), n); };
  };
}

MakeClient addingFloor(const std::string& location) {
  return [location](int number) -> Client {
    const auto db = std::make_shared<ServerFloor>(location);
    const auto addition = std::make_shared<FloorAddition>(*db);
    return [db, addition, number](int n) { addition->add(userOf(number), n); };
  };
}

// Every client goes round its own documents.
constexpr int kOwn = 50;
std::string ownDocument(int number, int n) { return documentId(number * kOwn + n % kOwn); }
std::string setText(int number, int n) { return fmt::format("client {} {}", number, n); }

MakeClient setting(const std::string& location) {
  return [location](int number) -> Client {
    const auto session = std::make_shared<BenchSession>(location);
    return [session, number](int n) {
      session->documents().SetValue(ownDocument(number, n), "DocUser4", setText(number, n));
    };
  };
}

MakeClient settingFloor(const std::string& location) {
  return [location](int number) -> Client {
    const auto db = std::make_shared<ServerFloor>(location);
    const auto value = std::make_shared<FloorValue>(*db);
    return [db, value, number](int n) { value->set(ownDocument(number, n), setText(number, n)); };
  };
}

// How many documents and revisions of each client are missing or too many, and revisions that still
// have the level they are found by.
int wrongAdditions(ServerFloor& db, const Done& done) {
  int wrong = 0;
  for (std::size_t number = 0; number < done.times.size(); ++number) {
    const std::string user = userOf(static_cast<int>(number));
    for (const char* table : {"Documents", "Revisions"})
      wrong += db.number(
                   fmt::format(R"(SELECT count(*) FROM "{}" WHERE starts_with("DocumentID", '{}'))",
                               table, user)) != done.times[number];
  }
  wrong += static_cast<int>(
      db.number(R"(SELECT count(*) FROM "Documents" d WHERE starts_with(d."DocumentID", 'Client') )"
                R"(AND NOT EXISTS (SELECT 1 FROM "Revisions" r WHERE r."RevisionID" = )"
                R"(d."CurrentRevID" AND r."DocumentID" = d."DocumentID"))"));
  return wrong;
}

// How many documents do not have what was set there last.
int wrongValues(ServerFloor& db, const Done& done) {
  db.prepare("has", R"(SELECT "ID" FROM "Documents" WHERE )" + serverFold("DocumentID") +
                        R"( = $1 AND "DocUser4" = $2)");
  int wrong = 0;
  for (std::size_t i = 0; i < done.times.size(); ++i) {
    const int number = static_cast<int>(i);
    for (int n = std::max(1, done.times[i] - kOwn + 1); n <= done.times[i]; ++n) {
      const auto found = db.run("has", {foldKey(ownDocument(number, n)), setText(number, n)});
      wrong += PQntuples(found.get()) != 1;
    }
  }
  return wrong;
}

struct Kind {
  const char* name;
  MakeClient (*ours)(const std::string&);
  MakeClient (*floor)(const std::string&);
  int (*wrong)(ServerFloor&, const Done&);
};

}  // namespace

bool measureClients() {
  fmt::print("| {:<18} | {:>7} | {:>15} | {:>14} | {:>5} | {:>12} | {:>13} |\n", "writing at once",
             "clients", "kvvesk, per s", "floor, per s", "ratio", "kvvesk, done", "missing");
  fmt::print("|{:-<20}|{:->8}:|{:->16}:|{:->15}:|{:->6}:|{:->13}:|{:->14}:|\n", "", "", "", "", "",
             "", "");
  bool good = true;
  for (const Kind& kind : {Kind{"Document.Add", adding, addingFloor, wrongAdditions},
                           Kind{"Document.SetValue", setting, settingFloor, wrongValues}})
    for (const int clients : {8, 64}) {
      double perSecond[2] = {};
      int wrong = 0;
      int all = 0;
      for (const bool ours : {true, false}) {
        const std::string location = serverRegister(kSmall);
        const Done done = runAtOnce(clients, (ours ? kind.ours : kind.floor)(location));
        ServerFloor db(location);
        wrong += kind.wrong(db, done) + done.failed;
        perSecond[ours ? 0 : 1] = done.all() / done.seconds;
        if (ours) all = done.all();
      }
      good = good && wrong == 0;
      fmt::print("| {:<18} | {:>7} | {:>15.0f} | {:>14.0f} | {:>5.2f} | {:>12} | {:>13} |\n",
                 kind.name, clients, perSecond[0], perSecond[1], perSecond[0] / perSecond[1], all,
                 wrong);
    }
  return good;
}

}  // namespace kv::bench
