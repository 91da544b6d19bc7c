// SPDX-License-Identifier: Apache-2.0
#include "desk/unique_identifier.h"

#include <chrono>
#include <thread>

#include "common/clock.h"
#include "common/text.h"
#include "desk/refusal.h"
#include "desk/transaction.h"

namespace kv::desk {

namespace {

void waitForNextSecond() {
  for (const Date from = now(); now() == from;)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

}  // namespace

std::string addUnique(const Session& session, const Addable& thing) {
  constexpr int kAttempts = 60;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    {
      Transaction transaction(session);
      transaction.lockNewNames();
      std::string id = thing.add();
      if (thing.withIdentifier(doubledQuotes(id))->RecordCount() == 1) {
        transaction.commit();
        return id;
      }
    }
    waitForNextSecond();
  }
  refuse(std::string("Others added a ") + thing.name +
         " in every second of the last minute; try again.");
}

}  // namespace kv::desk
