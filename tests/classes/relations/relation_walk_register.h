// SPDX-License-Identifier: Apache-2.0
// The real register that is walked through, the model beside it, those who act in it, and chance.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "classes/relations/relation_model.h"
#include "classes/relations/relation_rows.h"
#include "support/session_test.h"

namespace kv::test {

// KVVESK_WALK_SEED, or always the same.
[[nodiscard]] std::uint32_t walkSeed();

// Somebody who acts, in a session of his own, and in one that shares its connection with everybody,
// for a client's transaction.
struct Acting {
  RelationActor actor;
  TestSession alone;
  TestSession together;

  void setRights(const std::string& rights) {
    actor.rights = rights;
    alone->DataServer()->Profile()->Rights(rights);
    together->DataServer()->Profile()->Rights(rights);
  }
};

class RelationWalkRegister : public testing::Test {
 protected:
  RelationWalkRegister() : random_(walkSeed()) {}

  // Imports the files of a folder and logs everybody in.
  void begin(const std::string& folder);
  void load();
  static std::string text(const Recordset& rs, const std::string& name);
  static int number(const Recordset& rs, const std::string& name);
  static Holding holdingOf(const Recordset& rs);
  void openSessions();

  // ---- who acts, and chance ----

  [[nodiscard]] const RelationActor& actor() const { return acting_[who_].actor; }
  [[nodiscard]] clsVesk& vesk() const;
  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
  bool oneIn(int n) { return upTo(n - 1) == 0; }
  template <class List>
  const auto& anyOf(const List& list) {
    return *std::next(list.begin(), upTo(static_cast<int>(list.size()) - 1));
  }
  void becomeAnybody();
  std::string anybody();
  std::string anyDocument();
  std::string anyManual();
  std::string oneIn(const Places& places) { return anyOf(places).first; }
  int anyRelease() { return anyOf(model_.holdings).first; }
  int releaseOf(bool single, bool hard);
  std::string anyNumber();

  // ---- what was answered ----

  void count(const std::string& what) { ++counts_[what]; }
  // Does it, and compares what was answered.
  void expectAnswer(const RelationAnswer& expected, bool result,
                    const std::function<bool()>& operation);
  // New rows get the register's numbers; in which order, is not promised. Nothing else is new.
  void takeAdded();

  TestRegister reg_;
  std::mt19937 random_;
  RelationModel model_;
  Ref<kvConnection> shared_;
  std::deque<Acting> acting_;
  std::size_t who_ = 0;
  bool together_ = false;
  Texts documents_;
  Texts manuals_;
  std::set<std::string> users_;
  int last_ = 0;           // the newest release
  std::vector<int> gone_;  // releases taken back
  std::map<std::string, int> counts_;
  std::string what_;
};

}  // namespace kv::test
