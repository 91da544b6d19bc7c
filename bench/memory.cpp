// SPDX-License-Identifier: Apache-2.0
// What an open set over a million documents takes: the process's memory before it is opened, after
// opening, and after reading to the end. In a process of its own, so that nothing else is counted.

#include <fmt/format.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "bench_session.h"
#include "benches.h"
#include "floor.h"
#include "sample_register.h"

namespace kv::bench {

namespace {

struct Memory {
  double own = 0;   // MB of the process itself
  double file = 0;  // MB of files mapped into it, which the system may take back
};

Memory memoryNow() {
  std::ifstream status("/proc/self/status");
  Memory out;
  std::string word;
  while (status >> word) {
    constexpr double kPerMegabyte = 1024;
    double amount = 0;
    if (word == "RssAnon:" && status >> amount) out.own = amount / kPerMegabyte;
    if (word == "RssFile:" && status >> amount) out.file = amount / kPerMegabyte;
  }
  return out;
}

void show(const char* who, const char* what) {
  const Memory memory = memoryNow();
  fmt::print("| {:<8} | {:<42} | {:>9.1f} | {:>12.1f} |\n", who, what, memory.own, memory.file);
}

void ours() {
  const BenchSession session(sampleRegister(kLarge));
  const auto query = addQuery(session, false);
  show("kvvesk", "logged in, before the set is opened");
  const auto rs = session.documents().Records(query);
  show("kvvesk", fmt::format("open over {} documents", rs->RecordCount()).c_str());
  std::size_t sum = readToEnd(*rs);
  show("kvvesk", "read to the end");
  rs->MoveFirst();
  sum += readToEnd(*rs);
  show("kvvesk", fmt::format("read to the end again{}", sum == 0 ? ", nothing there" : "").c_str());
  session.documents().DeleteQuery(query);
}

void floorOnly() {
  FloorDatabase db(sampleRegister(kLarge));
  show("floor", "connected");
  FloorStatement all(db,
                     fmt::format("SELECT {} FROM Documents ORDER BY kv_order(DocumentTitle), ID",
                                 kDocumentColumns));
  std::size_t sum = 0;
  while (all.step()) sum += all.readRow();
  show("floor", sum == 0 ? "nothing there" : "read to the end, row by row");
}

void apart(void (*measure)()) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    int status = 0;
    try {
      measure();
    } catch (const std::exception& problem) {
      fmt::print(stderr, "bench: {}\n", problem.what());
      status = 1;
    }
    std::fflush(stdout);
    _exit(status);  // the registers belong to the process that made them
  }
  int ended = 0;
  waitpid(child, &ended, 0);
}

}  // namespace

void measureMemory() {
  (void)sampleRegister(kLarge);
  malloc_trim(0);  // what making it has left
  fmt::print("| {:<8} | {:<42} | {:>9} | {:>12} |\n", "", "memory in MB", "own", "mapped files");
  fmt::print("|{:-<10}|{:-<44}|{:->10}:|{:->13}:|\n", "", "", "", "");
  apart(ours);
  apart(floorOnly);
  fmt::print("\n");
}

}  // namespace kv::bench
