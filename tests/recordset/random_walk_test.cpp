// SPDX-License-Identifier: Apache-2.0
// Seeded random walks of moves, edits, finds, bookmarks, additions and deletions, each step
// compared with a plain model.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "common/convert.h"
#include "support/error_check.h"
#include "support/model.h"
#include "support/scale.h"
#include "support/test_register.h"

namespace kv {
namespace {

using test::ModelSet;

constexpr std::size_t kFields = 2;  // ManualName, ManUser1

std::optional<std::string> textOf(const Variant& value) {
  if (value.isNull()) return std::nullopt;
  return toText(value);
}

class Walk {
 public:
  Walk(Ref<Recordset> rs, ModelSet model, unsigned seed)
      : rs_(std::move(rs)), model_(std::move(model)), random_(seed) {}

  void step() {
    switch (random_() % 16) {
      case 0:
        both(
            "MoveFirst", [&] { rs_->MoveFirst(); }, model_.moveFirst());
        break;
      case 1:
        both(
            "MoveLast", [&] { rs_->MoveLast(); }, model_.moveLast());
        break;
      case 2:
      case 3:
      case 4:
        both(
            "MoveNext", [&] { rs_->MoveNext(); }, model_.moveNext());
        break;
      case 5:
      case 6:
        both(
            "MovePrevious", [&] { rs_->MovePrevious(); }, model_.movePrevious());
        break;
      case 7: {
        const int n = static_cast<int>(random_() % 41) - 20;
        both(
            fmt::format("Move {}", n), [&] { rs_->Move(n); }, model_.move(n));
        break;
      }
      case 8: find(); break;
      case 9: bookmark(); break;
      case 10:
      case 11:
      case 12: assign(); break;
      case 13: add(); break;
      case 14:
        if (random_() % 2 == 0)
          both(
              "Update", [&] { rs_->Update(); }, model_.update());
        else
          both(
              "CancelUpdate", [&] { rs_->CancelUpdate(); }, model_.cancel());
        break;
      case 15:
        if (random_() % 3 == 0)
          both(
              "Delete", [&] { rs_->Delete(); }, model_.remove());
        break;
      default: break;
    }
    compare();
  }

  void finish() {
    both(
        "Update", [&] { rs_->Update(); }, model_.update());
  }
  [[nodiscard]] const ModelSet& model() const { return model_; }

 private:
  // The model has done it already; the set must raise the same.
  void both(const std::string& what, const std::function<void()>& operation, int expected) {
    trace_ = what;
    EXPECT_EQ(test::numberOf(operation), expected) << what;
  }

  std::string someText() {
    return fmt::format("{}{}", random_() % 2 == 0 ? "Text " : "TEXT ", random_() % 40);
  }

  void find() {
    const std::string text = someText();
    const bool forward = random_() % 3 != 0;
    both(
        "Find " + text,
        [&] { rs_->Find("ManUser1 = '" + text + "'", 0, forward ? kForward : kBackward); },
        model_.find(1, text, forward));
  }

  void bookmark() {
    if (bookmarks_.empty() || random_() % 2 == 0) {
      if (model_.current() != nullptr && !model_.adding())
        bookmarks_[model_.slot()] = rs_->Bookmark();
      return;
    }
    auto at = bookmarks_.begin();
    std::advance(at, static_cast<std::ptrdiff_t>(random_() % bookmarks_.size()));
    both(
        fmt::format("to bookmark {}", at->first), [&] { rs_->Bookmark(at->second); },
        model_.goTo(at->first));
  }

  void assign() {
    const std::size_t field = random_() % kFields;
    const bool null = random_() % 10 == 0;
    const std::string text = someText();
    both(
        "assign",
        [&] {
          rs_->Fields(field == 0 ? "ManualName" : "ManUser1")
              ->Value(null ? Variant(Null) : Variant(text));
        },
        model_.set(field, null ? std::nullopt : std::optional(text)));
  }

  void add() {
    rs_->AddNew();
    const Variant id = rs_->Fields("ID")->Value();
    (void)model_.addNew(id.isNull() ? 0 : toInt32(id));
  }

  void compare() {
    SCOPED_TRACE("after " + trace_);
    ASSERT_EQ(rs_->Bof(), model_.bof());
    ASSERT_EQ(rs_->Eof(), model_.eof());
    ASSERT_EQ(rs_->RecordCount(), model_.count());
    ASSERT_EQ(rs_->EditMode(), model_.adding()    ? kEditAdd
                               : model_.editing() ? kEditInProgress
                                                  : kEditNone);
    const auto* row = model_.current();
    if (row == nullptr) {
      ASSERT_EQ(test::numberOf([&] { (void)rs_->Fields("ManualName")->Value(); }), 3021);
      return;
    }
    ASSERT_EQ(textOf(rs_->Fields("ManualName")->Value()), row->fields[0]);
    ASSERT_EQ(textOf(rs_->Fields("ManUser1")->Value()), row->fields[1]);
  }

  Ref<Recordset> rs_;
  ModelSet model_;
  std::mt19937 random_;
  std::map<std::size_t, Variant> bookmarks_;
  std::string trace_;
};

std::vector<ModelSet::Row> modelRows(int count) {
  std::vector<ModelSet::Row> rows;
  for (int i = 1; i <= count; ++i)
    rows.push_back({i, {fmt::format("M{}", i), fmt::format("Text {}", i % 40)}, false});
  return rows;
}

class RandomWalk : public testing::TestWithParam<int> {};

TEST_P(RandomWalk, ASetOverATableBehavesLikeTheModel) {
  const int rows = GetParam();
  const unsigned seed = 1899U + static_cast<unsigned>(rows);
  SCOPED_TRACE(fmt::format("seed {}", seed));
  const test::TestRegister reg;
  for (const auto& row : modelRows(rows))
    reg.execute(fmt::format("Insert Into Manuals (ManualName, ManUser1) Values ('{}', '{}')",
                            *row.fields[0], *row.fields[1]));
  // One transaction, so that the walk is not a measure of the disk.
  reg.connection()->BeginTrans();
  Walk walk(reg.open("Select * From Manuals Order By ID"), ModelSet(modelRows(rows)), seed);
  for (int i = 0; i < test::steps(20000) && !testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE(fmt::format("step {}", i));
    walk.step();
  }
  walk.finish();
  reg.connection()->CommitTrans();

  std::vector<std::string> expected;
  std::vector<ModelSet::Row> left = walk.model().rows();
  std::sort(left.begin(), left.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
  for (const auto& row : left)
    if (!row.hole)
      expected.push_back(fmt::format("{}|{}|{}", row.id, row.fields[0].value_or("~"),
                                     row.fields[1].value_or("~")));
  EXPECT_EQ(reg.rows("Select ID, ManualName, ManUser1 From Manuals Order By ID"), expected);
}

TEST_P(RandomWalk, AFreeStandingSetBehavesLikeTheModel) {
  const int rows = GetParam();
  const unsigned seed = 4711U + static_cast<unsigned>(rows);
  SCOPED_TRACE(fmt::format("seed {}", seed));
  const auto rs = Recordset::create();
  rs->Fields().Append("ID", kTypeInteger);
  rs->Fields().Append("ManualName", kTypeVarWChar, 50);
  rs->Fields().Append("ManUser1", kTypeVarWChar, 50);
  rs->Open();
  for (const auto& row : modelRows(rows)) {
    rs->AddNew();
    rs->Fields("ManualName")->Value(*row.fields[0]);
    rs->Fields("ManUser1")->Value(*row.fields[1]);
    rs->Update();
  }
  if (rows > 0) rs->MoveFirst();
  Walk walk(rs, ModelSet(modelRows(rows)), seed);
  for (int i = 0; i < test::steps(20000) && !testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE(fmt::format("step {}", i));
    walk.step();
  }
}

// Empty, within one block, more than a head, several blocks.
INSTANTIATE_TEST_SUITE_P(Sizes, RandomWalk, testing::Values(0, 7, 201, 700));

}  // namespace
}  // namespace kv
