// SPDX-License-Identifier: Apache-2.0
#include "engine/sqlite/sqlite_engine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

#include "recordset/database.h"
#include "schema/register_schema.h"
#include "support/error_check.h"
#include "support/test_register.h"

namespace kv::engine {
namespace {

using testing::StartsWith;

class SqliteEngine : public testing::Test {
 protected:
  SqliteEngine() { reg_.connection()->Close(); }
  std::unique_ptr<Engine> open(OpenOptions options = {}) {
    options.location = reg_.path();
    return engine::open(options);
  }
  static void run(Engine& engine, const std::string& sql) { engine.prepare(sql)->run(); }
  static std::int64_t number(Engine& engine, const std::string& sql) {
    std::vector<std::int64_t> out;
    engine.prepare(sql)->fetchKeys(out, 1);
    return out.at(0);
  }
  test::TestRegister reg_;
};

constexpr std::chrono::milliseconds kSoon{100};

TEST_F(SqliteEngine, DescribesTheTablesItHolds) {
  const auto engine = open();
  const auto tables = withSecondNames(engine->catalog());
  ASSERT_EQ(tables.size(), registerTables().size());
  for (std::size_t t = 0; t < tables.size(); ++t) {
    const TableInfo& is = tables[t];
    const TableInfo& shouldBe = registerTables()[t];
    EXPECT_EQ(is.name, shouldBe.name);
    EXPECT_EQ(is.key, shouldBe.key) << is.name;
    EXPECT_EQ(is.hiddenKey, shouldBe.hiddenKey) << is.name;
    ASSERT_EQ(is.columns.size(), shouldBe.columns.size()) << is.name;
    for (std::size_t c = 0; c < is.columns.size(); ++c) {
      EXPECT_EQ(is.columns[c].name, shouldBe.columns[c].name) << is.name;
      EXPECT_EQ(is.columns[c].type, shouldBe.columns[c].type)
          << is.name << "." << is.columns[c].name;
      EXPECT_EQ(is.columns[c].size, shouldBe.columns[c].size)
          << is.name << "." << is.columns[c].name;
      EXPECT_EQ(is.columns[c].counter, shouldBe.columns[c].counter)
          << is.name << "." << is.columns[c].name;
      EXPECT_EQ(is.columns[c].initial, shouldBe.columns[c].initial)
          << is.name << "." << is.columns[c].name;
    }
  }
}

TEST_F(SqliteEngine, GivesCountersToOneCallerOnly) {
  const auto one = open();
  const auto two = open();
  const TableInfo& documents = registerTables()[1];
  ASSERT_EQ(documents.name, "Documents");
  const auto take = [&](Engine& engine, std::int64_t count) {
    engine.begin(Access::Write);
    const auto first = engine.reserveCounter(documents, count);
    engine.commit();
    return first;
  };
  EXPECT_EQ(take(*one, 1), 1);
  EXPECT_EQ(take(*two, 5), 2);
  EXPECT_EQ(take(*one, 1), 7);
  run(*one, "INSERT INTO Documents (ID) VALUES (100)");
  EXPECT_EQ(take(*two, 1), 101) << "a number given explicitly moves the counter on";
}

TEST_F(SqliteEngine, AnUndoneTransactionGivesItsCountersBack) {
  const auto engine = open();
  engine->begin(Access::Write);
  EXPECT_EQ(engine->reserveCounter(registerTables()[1], 1), 1);
  engine->rollback();
  engine->begin(Access::Write);
  EXPECT_EQ(engine->reserveCounter(registerTables()[1], 1), 1);
  engine->rollback();
}

TEST_F(SqliteEngine, WaitsForAnotherWriterUntilTheTimeOut) {
  const auto one = open();
  const auto two = open({.lockTimeout = kSoon});
  std::thread([&] { one->begin(Access::Write); }).join();
  const auto start = std::chrono::steady_clock::now();
  const auto error = test::errorOf([&] { two->begin(Access::Write); });
  ASSERT_TRUE(error);
  EXPECT_GE(std::chrono::steady_clock::now() - start, kSoon);
  EXPECT_EQ(error->number(), kEngineFailure);
  EXPECT_THAT(error->description(), StartsWith("The register is locked by another process."));
  EXPECT_EQ(error->cause(), Cause::Locked);
  EXPECT_EQ(number(*two, "SELECT COUNT(*) FROM Documents"), 0) << "reading goes on meanwhile";
  one->commit();
  EXPECT_NO_THROW(two->begin(Access::Write));
  two->rollback();
}

TEST_F(SqliteEngine, DoesNotWaitForAWriterOfItsOwnThread) {
  const auto one = open();
  const auto two = open();
  one->begin(Access::Write);
  const auto start = std::chrono::steady_clock::now();
  const auto expectRefusal = [&](const std::function<void()>& write) {
    const auto error = test::errorOf(write);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), kEngineFailure);
    EXPECT_THAT(error->description(), StartsWith(std::string(kLockedByItself)));
  };
  expectRefusal([&] { two->begin(Access::Write); });
  expectRefusal([&] { run(*two, "INSERT INTO Documents (DocumentTitle) VALUES ('x')"); });
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
  one->rollback();
  EXPECT_NO_THROW(two->begin(Access::Write));
  two->commit();
  // Another file's lock is nobody's hindrance.
  const test::TestRegister other;
  const auto three = engine::open({.location = other.path()});
  one->begin(Access::Write);
  EXPECT_NO_THROW(three->begin(Access::Write));
  three->rollback();
  one->rollback();
}

TEST_F(SqliteEngine, AFullDiskLosesNothing) {
  const auto engine = open();
  run(*engine, "INSERT INTO Documents (DocumentTitle) VALUES ('kept')");
  const auto pages = number(*engine, "SELECT page_count FROM pragma_page_count");
  const auto limited = open({.pageLimit = static_cast<int>(pages) + 2});
  const auto insert = limited->prepare("INSERT INTO Documents (DocumentNotes) VALUES (?1)");
  insert->bind(1, std::string(100000, 'x'));
  const auto error = test::errorOf([&] { insert->run(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kEngineFailure);
  EXPECT_THAT(error->description(), StartsWith("The disk is full."));
  EXPECT_EQ(error->cause(), Cause::Full);
  EXPECT_EQ(number(*engine, "SELECT COUNT(*) FROM Documents"), 1);
  run(*limited, "INSERT INTO Documents (DocumentTitle) VALUES ('small')");
  EXPECT_EQ(number(*engine, "SELECT COUNT(*) FROM Documents"), 2) << "the connection goes on";
}

constexpr const char* kEndless =
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT COUNT(*) FROM n";

TEST_F(SqliteEngine, ARunningStatementCanBeInterrupted) {
  const auto engine = open();
  std::thread other([&] {
    std::this_thread::sleep_for(kSoon);
    engine->interrupt();
  });
  const auto error = test::errorOf([&] { (void)number(*engine, kEndless); });
  other.join();
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(), StartsWith("The statement was interrupted."));
  EXPECT_EQ(error->cause(), Cause::Interrupted);
  EXPECT_EQ(number(*engine, "SELECT 7"), 7);
}

TEST_F(SqliteEngine, ATimeLimitEndsAStatement) {
  const auto engine = open();
  engine->setTimeLimit(kSoon);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_RAISES(kEngineFailure, (void)number(*engine, kEndless));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(number(*engine, "SELECT 7"), 7) << "the next statement has its own time";
  engine->setTimeLimit(std::chrono::milliseconds{0});
  EXPECT_EQ(number(*engine, "SELECT 7"), 7);
}

TEST_F(SqliteEngine, ReadsRowsByKeyInTheOrderAskedFor) {
  const auto engine = open();
  for (int i = 1; i <= 5; ++i)
    run(*engine, "INSERT INTO Manuals (ManualName) VALUES ('M" + std::to_string(i) + "')");
  const auto rows = engine->prepare(
      "SELECT t.ManualName, t.ID FROM kv_keys(?1) AS k LEFT JOIN Manuals AS t ON t.ID = k.k1");
  const std::vector<std::int64_t> keys = {4, 99, 1, kNoKey, 4};
  const KeyList list{.keys = keys, .perRow = 1};
  rows->bindKeys(1, list);
  RowBlock block;
  block.reset(1);
  std::vector<std::int64_t> found;
  const std::array<ColumnType, 1> text = {ColumnType::Text};
  EXPECT_EQ(rows->fetch(block, text, found, 1, 10), 5U);
  EXPECT_EQ(found, (std::vector<std::int64_t>{4, kNoKey, 1, kNoKey, 4}));
  EXPECT_EQ(block.text(block.cell(0, 0)), "M4");
  EXPECT_EQ(block.cell(1, 0).kind, Cell::Kind::Null);
  EXPECT_EQ(block.text(block.cell(4, 0)), "M4");
}

TEST_F(SqliteEngine, NoticesChangesOfOthers) {
  const auto one = open();
  const auto two = open();
  const auto before = one->dataVersion();
  EXPECT_EQ(one->dataVersion(), before);
  run(*two, "INSERT INTO Manuals (ManualName) VALUES ('x')");
  EXPECT_NE(one->dataVersion(), before);
}

TEST_F(SqliteEngine, ARuleThatIsBrokenSaysWhich) {
  const auto engine = open();
  run(*engine, "INSERT INTO Documents (ID) VALUES (1)");
  EXPECT_THAT(
      test::descriptionOf([&] { run(*engine, "INSERT INTO Documents (ID) VALUES (1)"); }),
      StartsWith("The changes were not successful because they would create a duplicate key."));
  EXPECT_THAT(test::descriptionOf([&] {
                run(*engine, "INSERT INTO Documents (DocumentID) VALUES (printf('%060d', 1))");
              }),
              StartsWith("The field is too small to accept the amount of data"));
  EXPECT_THAT(
      test::descriptionOf([&] { run(*engine, "INSERT INTO Documents (Controlled) VALUES (1)"); }),
      StartsWith("The change breaks a rule of the table."));
  EXPECT_THAT(test::descriptionOf(
                  [&] { run(*engine, "INSERT INTO Documents (Controlled) VALUES (NULL)"); }),
              StartsWith("The field cannot contain a Null value."));
}

TEST_F(SqliteEngine, ADateThatIsNoneIsNotPassedOn) {
  const auto engine = open();
  run(*engine, "INSERT INTO Documents (EffectiveDate) VALUES ('someday')");
  const auto read = engine->prepare("SELECT EffectiveDate FROM Documents");
  RowBlock block;
  block.reset(1);
  std::vector<std::int64_t> none;
  const std::array<ColumnType, 1> date = {ColumnType::Date};
  EXPECT_RAISES(kMismatch, (void)read->fetch(block, date, none, 0, 10));
}

TEST_F(SqliteEngine, TheStockShellReadsAndDumpsButDoesNotWrite) {
  {
    const auto engine = open();
    run(*engine, "INSERT INTO Documents (DocumentID, DocumentTitle) VALUES ('D1', 'Title')");
  }
  const auto shell = [&](const std::string& sql) {
    const std::string out = reg_.folder().file("out.txt");
    const std::string command = "sqlite3 '" + reg_.path() + "' \"" + sql + "\" >'" + out + "' 2>&1";
    const int code = std::system(command.c_str());
    return std::to_string(code) + " " + test::contents(out);
  };
  EXPECT_EQ(shell("select DocumentID, DocumentTitle from Documents"), "0 D1|Title\n");
  EXPECT_THAT(shell(".dump"), testing::HasSubstr("CREATE TABLE IF NOT EXISTS \"Documents\""));
  EXPECT_THAT(shell("insert into Documents (DocumentID) values ('D2')"),
              testing::HasSubstr("kv_fold"));
  EXPECT_EQ(shell("select count(*) from Documents"), "0 1\n");
}

}  // namespace
}  // namespace kv::engine
