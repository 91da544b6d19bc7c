// SPDX-License-Identifier: Apache-2.0
#include "floor_distribution.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <stdexcept>

#include "common/clock.h"
#include "common/text.h"
#include "holdings_statement.h"

namespace kv::bench {

int FloorDistribution::revisionToGive(const std::string& document) {
  document_.bind(1, document);
  if (!document_.step() || document_.number(0) == 0 || document_.number(1) <= 0)
    throw std::runtime_error("not to be given: " + document);
  const int revision = document_.number(1);
  document_.reset();
  return revision;
}

// An owner's right goes before anybody's.
void FloorDistribution::readOwner(const std::string& document) {
  owner_.bind(1, document);
  owner_.step();
  owner_.reset();
  ownerRights_.step();
  benchmark::DoNotOptimize(ownerRights_.readRow());
  ownerRights_.reset();
}

int FloorDistribution::place(const std::string& manual, const std::string& document) {
  place_.bind(1, manual);
  place_.bind(2, document);
  const int key = place_.step() ? place_.number(0) : 0;
  place_.reset();
  return key;
}

void FloorDistribution::putInto(const std::string& manual, const std::string& document) {
  begin_.run();
  const int revision = revisionToGive(document);
  if (place(manual, document) != 0) throw std::runtime_error("in the manual already");
  put_.bind(1, manual);
  put_.bind(2, document);
  put_.run();
  toHolders_.bind(1, manual);
  toHolders_.bind(2, document);
  toHolders_.bind(3, revision);
  toHolders_.run();
  commit_.run();
}

void FloorDistribution::takeOut(const std::string& manual, const std::string& document) {
  begin_.run();
  (void)revisionToGive(document);
  const int key = place(manual, document);
  if (key == 0) throw std::runtime_error("not in the manual");
  takeOut_.bind(1, key);
  takeOut_.run();
  fromHolders_.bind(1, manual);
  fromHolders_.bind(2, document);
  fromHolders_.run();
  commit_.run();
}

void FloorDistribution::requireContents(const std::string& manual) {
  contents_.bind(1, manual);
  if (!contents_.step()) throw std::runtime_error("nothing in it");
  contents_.reset();
}

void FloorDistribution::giveManual(const std::string& manual) {
  begin_.run();
  requireContents(manual);
  holds_.bind(1, std::string(kReader));
  holds_.bind(2, manual);
  holds_.bind(3, std::string(kCopyNumber));
  if (holds_.step()) throw std::runtime_error("held already");
  holds_.reset();
  giveManual_.bind(1, std::string(kReader));
  giveManual_.bind(2, manual);
  giveManual_.bind(3, std::string(kCopyNumber));
  giveManual_.run();
  commit_.run();
}

void FloorDistribution::takeManual(const std::string& manual) {
  begin_.run();
  requireContents(manual);
  takeManual_.bind(1, std::string(kReader));
  takeManual_.bind(2, manual);
  takeManual_.bind(3, std::string(kCopyNumber));
  takeManual_.run();
  if (sqlite3_changes(db_.get()) == 0) throw std::runtime_error("not held");
  commit_.run();
}

void FloorDistribution::readHeld(const std::string& document) {
  held_.bind(1, document);
  held_.bind(2, std::string(kReader));
  while (held_.step()) benchmark::DoNotOptimize(held_.readRow());
  held_.reset();
}

int FloorDistribution::giveDocument(const std::string& document) {
  begin_.run();
  readOwner(document);
  const int revision = revisionToGive(document);
  readHeld(document);
  give_.bind(1, std::string(kReader));
  give_.bind(2, document);
  give_.bind(3, revision);
  give_.run();
  const int release = static_cast<int>(sqlite3_last_insert_rowid(db_.get()));
  commit_.run();
  return release;
}

int FloorDistribution::giveDocumentInSteps(const std::string& document) {
  begin_.run();
  readOwner(document);
  const int revision = revisionToGive(document);
  readHeld(document);
  if (!number_.step()) throw std::runtime_error("no counter");
  const int release = number_.number(0);
  number_.reset();
  const std::string key = fmt::format("{}-{:016x}", stampText(now()), release);
  giveUnderKey_.bind(1, release);
  giveUnderKey_.bind(2, key);
  giveUnderKey_.run();
  underKey_.bind(1, key);
  if (!underKey_.step()) throw std::runtime_error("not found again");
  benchmark::DoNotOptimize(underKey_.readRow());
  underKey_.reset();
  complete_.bind(1, release);
  complete_.bind(2, std::string(kReader));
  complete_.bind(3, document);
  complete_.bind(4, revision);
  complete_.run();
  commit_.run();
  return release;
}

void FloorDistribution::takeDocument(int release) {
  begin_.run();
  released_.bind(1, release);
  if (!released_.step()) throw std::runtime_error("not released");
  const std::string document(released_.text(0));
  released_.reset();
  readOwner(document);
  (void)revisionToGive(document);
  takeBack_.bind(1, release);
  takeBack_.run();
  commit_.run();
}

FloorHoldings::FloorHoldings(const std::string& path, Holdings what)
    : readsOptions_(readsOptions(what)),
      db_(path),
      rows_(db_, holdingsStatement(
                     what, {.fold = [](const std::string& c) { return "kv_fold(" + c + ")"; },
                            .order = [](const std::string& c) { return "kv_order(" + c + ")"; },
                            .user = "kv_fold(?1)"})) {}

std::size_t FloorHoldings::list(const std::string& user) {
  std::size_t sum = 0;
  if (readsOptions_) {
    options_.step();
    sum += options_.readRow();
    options_.reset();
  }
  rows_.bind(1, user);
  while (rows_.step()) sum += rows_.readRow();
  rows_.reset();
  return sum;
}

}  // namespace kv::bench
