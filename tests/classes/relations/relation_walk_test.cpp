// SPDX-License-Identifier: Apache-2.0
// Distribution in a real register of 655 documents and 22 manuals: a seeded random walk through
// contents, copies, owners and approvers, by users of different rights, beside a plain model that
// knows only the rules. KVVESK_WALK_SEED walks another way.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "classes/relations/relation_steps.h"
#include "support/scale.h"
#include "support/shared_data.h"

namespace kv {
namespace {

constexpr int kFullLength = 24000;
// Unoptimized it is to be borne as well.
#ifdef NDEBUG
constexpr int kSteps = test::steps(kFullLength);
#else
constexpr int kSteps = std::min(test::steps(kFullLength), kFullLength / 4);
#endif

class RelationWalk : public test::RelationSteps {
 protected:
  void walk() {
    constexpr int kBetween = 500;  // steps from one whole comparison to the next
    int done = 0;
    while (done < kSteps && !HasFailure()) {
      // A client's transaction now and then fails: nothing of it has happened then.
      together_ = !oneIn(4);
      const bool undone = together_ && oneIn(10);
      const auto before = undone ? std::optional(model_) : std::nullopt;
      const auto goneBefore = gone_;
      const int lastBefore = last_;
      if (together_) shared_->BeginTrans();
      for (int more = together_ ? 60 : 12; more > 0 && done < kSteps; --more) {
        EXPECT_NO_THROW(step());
        ++done;
        if (!HasFailure() && done % kBetween == 0) {
          compareTables();
          compareLists(3);
        }
        if (HasFailure()) {
          ADD_FAILURE() << "seed " << test::walkSeed() << ", step " << done << ": " << what_;
          return;
        }
      }
      if (together_ && !undone) shared_->CommitTrans();
      if (!undone) continue;
      shared_->RollbackTrans();
      model_ = *before;
      gone_ = goneBefore;
      last_ = lastBefore;
      count("a client's transaction undone");
    }
    together_ = false;
  }
};

// How often each case comes at least in a walk of full length, so that none is left out unnoticed.
constexpr std::pair<const char*, int> kAtLeast[] = {
    {"a client's transaction undone", 22},
    {"a document changes", 200},
    {"a user's rights change", 250},
    {"approver added as owner", 250},
    {"approver added by right", 70},
    {"approver added: 2510", 70},
    {"approver added: 2511", 50},
    {"approver added: 2532", 190},
    {"approver moved", 1550},
    {"approver moved, all renumbered", 170},
    {"approver moved: no row", 300},
    {"approver removed as owner", 130},
    {"approver removed by right", 40},
    {"approver removed: 2511", 35},
    {"approver removed: 2512", 40},
    {"approver removed: 2532", 80},
    {"copy number changed", 350},
    {"copy number: not in use", 80},
    {"document given, hard as owner", 300},
    {"document given, hard by right", 80},
    {"document given, hard: 2515", 60},
    {"document given, hard: 2516", 80},
    {"document given, hard: 2531", 180},
    {"document given, virtual as owner", 200},
    {"document given, virtual by right", 90},
    {"document given, virtual on the own list", 10},
    {"document given, virtual, another's: 2531", 120},
    {"document given, virtual, own: 2531", 38},
    {"document given, virtual: 2515", 60},
    {"document given, virtual: 2516", 80},
    {"document given, virtual: 2519", 90},
    {"document moved", 450},
    {"document moved, all renumbered", 190},
    {"document moved, not in the manual", 30},
    {"document moved, not in the manual, all renumbered", 10},
    {"document moved: 2730", 100},
    {"document moved: no row", 180},
    {"document taken back, hard as owner", 200},
    {"document taken back, hard by right", 140},
    {"document taken back, hard: 2515", 10},
    {"document taken back, hard: 2516", 14},
    {"document taken back, hard: 2517", 15},
    {"document taken back, hard: 2518", 21},
    {"document taken back, hard: 2531", 250},
    {"document taken back, virtual as owner", 200},
    {"document taken back, virtual by right", 150},
    {"document taken back, virtual on the own list", 6},
    {"document taken back, virtual, another's: 2531", 180},
    {"document taken back, virtual, own: 2531", 50},
    {"document taken back, virtual: 2515", 35},
    {"document taken back, virtual: 2516", 60},
    {"document taken back, virtual: 2517", 21},
    {"document taken back, virtual: 2518", 12},
    {"into a manual as owner, held", 40},
    {"into a manual as owner, nobody holds it", 2},
    {"into a manual by right, held", 300},
    {"into a manual by right, nobody holds it", 36},
    {"into a manual: 2506", 100},
    {"into a manual: 2513", 70},
    {"into a manual: 2514", 80},
    {"into a manual: 2529", 250},
    {"manual given, hard by right", 300},
    {"manual given, hard by right, again", 70},
    {"manual given, hard: 2520", 40},
    {"manual given, hard: 2522", 31},
    {"manual given, hard: 2531", 300},
    {"manual given, virtual by right", 200},
    {"manual given, virtual on the own list", 15},
    {"manual given, virtual, another's: 2531", 190},
    {"manual given, virtual, own: 2531", 60},
    {"manual given, virtual: 2520", 33},
    {"manual given, virtual: 2522", 30},
    {"manual given, virtual: 2523", 70},
    {"manual taken back, hard by right", 170},
    {"manual taken back, hard by right, every copy", 50},
    {"manual taken back, hard: 2520", 3},
    {"manual taken back, hard: 2521", 40},
    {"manual taken back, hard: 2531", 190},
    {"manual taken back, virtual by right", 110},
    {"manual taken back, virtual by right, every copy", 80},
    {"manual taken back, virtual on the own list", 5},
    {"manual taken back, virtual on the own list, every copy", 3},
    {"manual taken back, virtual, another's: 2531", 140},
    {"manual taken back, virtual, own: 2531", 40},
    {"manual taken back, virtual: 2520", 4},
    {"manual taken back, virtual: 2521", 70},
    {"next number: another", 300},
    {"next number: the first", 120},
    {"out of a manual as owner", 35},
    {"out of a manual by right", 450},
    {"out of a manual: 2507", 80},
    {"out of a manual: 2513", 28},
    {"out of a manual: 2514", 40},
    {"out of a manual: 2528", 300},
    {"owner added as owner", 26},
    {"owner added by right", 200},
    {"owner added: 2508", 70},
    {"owner added: 2530", 160},
    {"owner removed as owner", 28},
    {"owner removed by right", 200},
    {"owner removed: 2509", 60},
    {"owner removed: 2530", 140},
    {"owners' rights change", 200},
    {"places in a manual change", 90},
    {"places of approvers are cleared", 110},
    {"renumbered from one place", 300},
};

TEST_F(RelationWalk, GoesAsTheRulesSay) {
  REQUIRE_SHARED_DATA(folder, "proposals-register");
  ASSERT_NO_FATAL_FAILURE(begin(folder));
  compareTables();
  ASSERT_FALSE(HasFailure()) << "before the walk";

  walk();
  if (HasFailure()) return;
  compareTables();
  compareLists(40);
  for (const auto& manual : manuals_) compareManual(manual);
  if (HasFailure()) ADD_FAILURE() << "seed " << test::walkSeed() << ", at the end";
  // In a shorter walk chance has more to say about what is rare.
  constexpr int kChance = kSteps < kFullLength ? 3 : 1;
  for (const auto& [what, times] : kAtLeast)
    EXPECT_GE(counts_[what], times * kSteps / kFullLength / kChance)
        << what << ", seed " << test::walkSeed();
}

}  // namespace
}  // namespace kv
