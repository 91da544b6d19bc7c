// SPDX-License-Identifier: Apache-2.0
// What is particular to servers. Everything else about them is in the suites that run on both
// engines.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <thread>

#include "common/convert.h"
#include "common/like.h"
#include "common/text_key.h"
#include "engine/open.h"
#include "jet/emit/dialect.h"
#include "recordset/database.h"
#include "schema/copy_register.h"
#include "schema/create_register.h"
#include "support/error_check.h"
#include "support/proxy.h"
#include "support/test_register.h"
#include "support/test_server.h"

namespace kv {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string hexOf(std::string_view bytes) {
  std::string out;
  for (const char c : bytes) out += fmt::format("{:02x}", static_cast<unsigned char>(c));
  return out;
}

std::string utf8(std::uint32_t c) {
  std::string out;
  const auto tail = [&](unsigned shift) {
    out += static_cast<char>(0x80U | ((c >> shift) & 0x3FU));
  };
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0U | (c >> 6U));
    tail(0);
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0U | (c >> 12U));
    tail(6);
    tail(0);
  } else {
    out += static_cast<char>(0xF0U | (c >> 18U));
    tail(12);
    tail(6);
    tail(0);
  }
  return out;
}

// The keys by which text is compared and ordered are made in the server's SQL there and in this
// library here; a letter that one of them knew differently would be found on one engine only.
TEST(TextKeys, AreTheSameForEveryCodePoint) {
  const std::string database = test::TestServer::newDatabase();
  const auto& dialect = jet::postgresDialect();
  constexpr std::uint32_t kLast = 0x10FFFF;
  constexpr std::uint32_t kStep = 0x4000;
  int compared = 0;
  int different = 0;
  for (std::uint32_t from = 1; from <= kLast; from += kStep) {
    const auto to = std::min(from + kStep - 1, kLast);
    // With letters around it, so that what depends on the place in a word shows.
    const std::string letter = "('a' || chr(c) || 'B')";
    const auto keys = dialect.order(letter);
    const std::string answer = test::TestServer::run(
        database,
        fmt::format("SELECT c || ' ' || encode(convert_to({}, 'UTF8'), 'hex') || ' ' || "
                    "encode(convert_to({}, 'UTF8'), 'hex') FROM generate_series({}, {}) AS c WHERE "
                    "c NOT BETWEEN 55296 AND 57343",
                    keys[0], keys[1], from, to));
    std::size_t at = 0;
    while (at < answer.size()) {
      auto end = answer.find('\n', at);
      if (end == std::string::npos) end = answer.size();
      const std::string line = answer.substr(at, end - at);
      at = end + 1;
      const auto c = static_cast<std::uint32_t>(std::stoul(line));
      const std::string text = "a" + utf8(c) + "B";
      const std::string order = orderKey(text);
      const std::string base = order.substr(0, order.find('\0'));
      ++compared;
      const std::string here = fmt::format("{} {} {}", c, hexOf(base), hexOf(foldKey(text)));
      if (line != here && ++different <= 20)
        ADD_FAILURE() << "there " << line << "\nhere  " << here;
    }
  }
  EXPECT_EQ(compared, 0x10FFFF - 2048);
  EXPECT_EQ(different, 0);
  test::TestServer::drop(database);
}

TEST(TextKeys, KnowAFinalSigma) {
  const test::TestRegister reg;
  reg.execute("Insert Into Keywords Values ('ΟΔΟΣ', 'x')");
  EXPECT_EQ(reg.value("Select Count(*) From Keywords Where FieldName = 'οδος'"), "1");
  EXPECT_EQ(reg.value("Select Count(*) From Keywords Where FieldName = 'οδοσ'"), "1");
  EXPECT_EQ(reg.value("Select Count(*) From Keywords Where FieldName Like '%ΔΟΣ'"), "1");
}

TEST(Like, TakesPatternsThatAreKnownOnlyWhenTheStatementRuns) {
  const test::TestRegister reg;
  const std::pair<const char*, const char*> cases[] = {
      {"abc", "ABC"},   {"abc", "a%"},    {"a.c", "a.c"},    {"abc", "a.c"},      {"a%c", "a[%]c"},
      {"abc", "a_c"},   {"abc", "a[b]c"}, {"abc", "a[!b]c"}, {"adc", "a[!b-c]c"}, {"a[c", "a[[]c"},
      {"a\nc", "a_c"},  {"a^c", "a[^]c"}, {"a!c", "a[!]c"},  {"ac", "a[]c"},      {"ac", "%%a%%"},
      {"a\\c", "a\\c"}, {"", ""},         {"a(c", "a(c"},    {"a]c", "a]c"},      {"äc", "Ä_"}};
  for (const auto& [text, pattern] : cases) {
    reg.execute("Delete * From Keywords");
    const auto rs = reg.open("Select * From Keywords");
    rs->AddNew();
    rs->Fields("FieldName")->Value(text);
    rs->Fields("Keyword")->Value(pattern);
    rs->Update();
    const std::string known =
        reg.value(fmt::format("Select Count(*) From Keywords Where FieldName Like '{}'", pattern));
    EXPECT_EQ(reg.value("Select Count(*) From Keywords Where FieldName Like Keyword"), known)
        << text << " like " << pattern;
    EXPECT_EQ(known, LikePattern(pattern).matches(text) ? "1" : "0") << text << " like " << pattern;
  }
}

TEST(ServerErrors, SayWhatHappenedInAFirstSentence) {
  const test::TestRegister reg;
  struct Case {
    const char* state;
    std::int32_t number;
    Cause cause;
    const char* text;
  };
  const Case cases[] = {
      {"53100", kEngineFailure, Cause::Full, "The disk is full."},
      {"53200", kEngineFailure, Cause::NoMemory, "There is not enough memory."},
      {"53300", kEngineFailure, Cause::NoConnectionLeft,
       "The server has no connection left to give."},
      {"25006", kEngineFailure, Cause::ReadOnly, "The register is read-only."},
      {"55P03", kEngineFailure, Cause::Locked, "The register is locked by another process."},
      {"40P01", kEngineFailure, Cause::Locked, "The register is locked by another process."},
      {"40001", kEngineFailure, Cause::Locked, "The register is locked by another process."},
      {"57014", kEngineFailure, Cause::Interrupted, "The statement was interrupted."},
      {"42501", kEngineFailure, Cause::Denied, "The server does not allow this user to do that."},
      {"23505", kEngineFailure, Cause::DuplicateKey,
       "The changes were not successful because they would create a duplicate key."},
      {"22003", kValueOverflow, Cause::None, "Overflow."},
      {"22P02", kMismatch, Cause::None, "Data type mismatch in criteria expression."},
      {"58030", kEngineFailure, Cause::DiskError, "The disk reported an error."},
      {"XX000", kEngineFailure, Cause::Refused, "The database engine refused the statement."},
  };
  for (const auto& c : cases) {
    const auto error = test::errorOf([&] {
      reg.connection()->database()->engine().execute(fmt::format(
          "DO $$ BEGIN RAISE EXCEPTION 'its own words' USING ERRCODE = '{}'; END $$", c.state));
    });
    ASSERT_TRUE(error) << c.state;
    EXPECT_EQ(error->number(), c.number) << c.state;
    EXPECT_EQ(error->cause(), c.cause) << c.state;
    EXPECT_EQ(error->description(), fmt::format("{} its own words ({})", c.text, c.state));
  }
}

TEST(ServerRegister, IsMadeInAnEmptyDatabaseOnly) {
  const std::string database = test::TestServer::newDatabase();
  const auto none = test::errorOf([&] { (void)kvConnection::open(database); });
  ASSERT_TRUE(none);
  EXPECT_EQ(none->number(), kEngineFailure);
  EXPECT_THAT(none->description(), StartsWith("The database is not a register."));
  EXPECT_RAISES(kEngineFailure, (void)createRegister(database, [](const auto&) {
                  throw Error(kEngineFailure, "test", "no");
                }));
  EXPECT_EQ(test::TestServer::run(database,
                                  "SELECT count(*) FROM pg_class WHERE relnamespace = "
                                  "'public'::regnamespace"),
            "0")
      << "what could not be filled leaves nothing behind";
  createRegister(database)->Close();
  const auto twice = test::errorOf([&] { (void)createRegister(database); });
  ASSERT_TRUE(twice);
  EXPECT_THAT(twice->description(), StartsWith("There is a register in this database already."));
  EXPECT_EQ(kvConnection::open(database)->OpenRecordset("Select * From VeskConfig")->RecordCount(),
            1);
  test::TestServer::drop(database);
}

TEST(ServerRegister, IsRefusedInAnotherEncoding) {
  const std::string database = test::TestServer::newDatabase();
  test::TestServer::run(database, "CREATE DATABASE kv_latin TEMPLATE template0 ENCODING 'LATIN1'");
  const auto at = database.rfind('/', database.find('?'));
  const std::string latin =
      database.substr(0, at) + "/kv_latin" + database.substr(database.find('?'));
  const auto error = test::errorOf([&] { (void)createRegister(latin); });
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(), StartsWith("The database does not keep its text in UTF-8."));
  test::TestServer::drop(latin);
  test::TestServer::drop(database);
}

TEST(ServerRegister, ThatCannotBeWrittenIsReadAllTheSame) {
  const test::TestRegister reg;
  const std::string name = test::TestServer::run(reg.path(), "SELECT current_database()");
  test::TestServer::run(reg.path(),
                        "ALTER DATABASE " + name + " SET default_transaction_read_only = on");
  const auto connection = reg.openAnother();
  EXPECT_TRUE(connection->database()->engine().readOnly());
  EXPECT_EQ(connection->OpenRecordset("Select * From VeskConfig")->RecordCount(), 1);
  std::int32_t affected = 0;
  const auto error =
      test::errorOf([&] { connection->Execute("Delete * From Keywords", affected); });
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(), StartsWith("The register is read-only."));
}

TEST(ALostServer, IsSaidSoAndReachedAgainByTheNextStatement) {
  const test::TestRegister reg;
  reg.execute("Insert Into Keywords Values ('a', '1')");
  const auto rs = reg.open("Select * From Keywords");
  test::TestServer::crash();
  const auto lost = test::errorOf([&] { reg.execute("Insert Into Keywords Values ('a', '2')"); });
  ASSERT_TRUE(lost);
  EXPECT_EQ(lost->number(), kEngineFailure);
  EXPECT_THAT(lost->description(), StartsWith("The connection to the server was lost"));
  // Whether the server could still say that it went.
  EXPECT_THAT(lost->cause(), testing::AnyOf(Cause::ConnectionLost, Cause::OutcomeUnknown));
  const auto away = test::errorOf([&] { reg.execute("Insert Into Keywords Values ('a', '3')"); });
  ASSERT_TRUE(away);
  EXPECT_THAT(away->description(), StartsWith("The server cannot be reached"));
  EXPECT_EQ(away->cause(), Cause::CannotOpen);
  test::TestServer::start();
  reg.execute("Insert Into Keywords Values ('a', '4')");
  EXPECT_EQ(reg.rows("Select Keyword From Keywords Order By Keyword"),
            (std::vector<std::string>{"1", "4"}))
      << "nothing was done later, or twice";
  rs->MoveFirst();
  rs->Fields("Keyword")->Value("5");
  rs->Update();
  EXPECT_EQ(reg.value("Select Count(*) From Keywords Where Keyword = '5'"), "1")
      << "an open set goes on";
}

TEST(ALostServer, EndsATransactionThatWasUnderWay) {
  const test::TestRegister reg;
  reg.connection()->BeginTrans();
  reg.execute("Insert Into Keywords Values ('a', '1')");
  test::TestServer::crash();
  test::TestServer::start();
  EXPECT_RAISES(kEngineFailure, reg.execute("Insert Into Keywords Values ('a', '2')"));
  const auto error = test::errorOf([&] { reg.connection()->CommitTrans(); });
  ASSERT_TRUE(error);
  EXPECT_THAT(error->description(), StartsWith("The transaction was ended by an earlier failure."));
  EXPECT_EQ(error->cause(), Cause::TransactionEnded);
  EXPECT_EQ(reg.value("Select Count(*) From Keywords"), "0");
}

TEST(ALostAnswer, LeavesTheOutcomeOpenAndSaysSo) {
  const test::TestRegister reg;
  test::Proxy proxy(reg.path());
  const auto connection = kvConnection::open(proxy.location());
  std::int32_t affected = 0;
  connection->BeginTrans();
  connection->Execute("Insert Into Keywords Values ('a', '1')", affected);
  proxy.loseAnswerTo("COMMIT");
  const auto inTransaction = test::errorOf([&] { connection->CommitTrans(); });
  ASSERT_TRUE(inTransaction);
  EXPECT_EQ(inTransaction->number(), kEngineFailure);
  EXPECT_THAT(inTransaction->description(), HasSubstr("whether it was kept is unknown"));
  EXPECT_EQ(inTransaction->cause(), Cause::OutcomeUnknown);
  EXPECT_EQ(connection->OpenRecordset("Select * From Keywords")->RecordCount(), 1) << "here it was";

  // By themselves, and for the first time, so that their text is on the wire.
  proxy.loseAnswerTo("INSERT INTO");
  const auto alone = test::errorOf(
      [&] { connection->Execute("Insert Into VeskKeywords Values ('a', '1')", affected); });
  ASSERT_TRUE(alone);
  EXPECT_THAT(alone->description(), HasSubstr("whether it was kept is unknown"));
  EXPECT_EQ(connection->OpenRecordset("Select Keyword From VeskKeywords")->RecordCount(), 1)
      << "it was done once";
  proxy.loseAnswerTo("FieldName");
  const auto reading =
      test::errorOf([&] { (void)connection->OpenRecordset("Select FieldName From VeskKeywords"); });
  ASSERT_TRUE(reading);
  EXPECT_THAT(reading->description(), StartsWith("The connection to the server was lost."));
  EXPECT_EQ(reading->description().find("unknown"), std::string::npos);
}

TEST(RoundTrips, ALookUpTakesOne) {
  const test::TestRegister reg;
  reg.execute("Insert Into Documents (DocumentID, DocumentTitle) Values ('D1', 'One')");
  auto& engine = reg.connection()->database()->engine();
  const auto look = [&] {
    const auto before = engine.roundTrips();
    EXPECT_EQ(reg.value("Select DocumentTitle From Documents Where DocumentID = 'D1'"), "One");
    return engine.roundTrips() - before;
  };
  EXPECT_EQ(look(), 1U) << "the first time it goes as a text";
  EXPECT_EQ(look(), 2U) << "the second time it is prepared";
  EXPECT_EQ(look(), 1U);
}

TEST(RoundTrips, ATransactionAddsOneForItsEnd) {
  const test::TestRegister reg;
  auto& engine = reg.connection()->database()->engine();
  const auto before = engine.roundTrips();
  reg.connection()->BeginTrans();
  reg.execute("Insert Into Keywords Values ('a', '1')");
  reg.connection()->CommitTrans();
  EXPECT_EQ(engine.roundTrips() - before, 2U);
  const auto nothing = engine.roundTrips();
  reg.connection()->BeginTrans();
  reg.connection()->CommitTrans();
  EXPECT_EQ(engine.roundTrips(), nothing);
}

TEST(Copy, ThereAndBackIsIdentical) {
  const test::TestRegister reg;
  for (int i = 0; i < 130; ++i)
    reg.execute(
        fmt::format("Insert Into Documents (DocumentID, DocumentTitle, EffectiveDate, "
                    "Controlled) Values ('D{0}', 'Überschrift {0} ''x''', "
                    "#3/9/2001 2:05:0{1} PM#, {2})",
                    i, i % 10, i % 2 == 0 ? "True" : "False"));
  reg.execute("Insert Into Routing (DocumentID, UserID, ListOrder) Values ('D1', 'U', 0.1)");
  reg.execute(
      "Insert Into ManualContents (ManualID, DocumentID, [Position]) Values ('M', 'D1', 0.1)");
  reg.execute("Delete * From Documents Where ID > 120");
  const test::TempFolder folder;
  const auto shown = [](const std::vector<CopiedTable>& tables) {
    std::string out;
    for (const auto& t : tables) out += fmt::format("{} {} {:x}\n", t.name, t.rows, t.checksum);
    return out;
  };
  const std::string there = shown(copyRegister(reg.connection(), folder.file("there.kvv")));
  const auto file = kvConnection::open(folder.file("there.kvv"));
  EXPECT_EQ(shown(tablesOf(file)), there);
  const std::string database = test::TestServer::newDatabase();
  EXPECT_EQ(shown(copyRegister(file, database)), there);
  const auto back = kvConnection::open(database);
  EXPECT_EQ(shown(tablesOf(back)), shown(tablesOf(reg.connection())));
  const auto rs = back->OpenRecordset("Select * From Documents");
  rs->AddNew();
  EXPECT_EQ(rs->Fields("ID")->Value(), Variant(131)) << "numbers once given are not given again";
  rs->CancelUpdate();
  back->Close();
  test::TestServer::drop(database);
}

TEST(Copy, ThatFailsLeavesNothing) {
  const test::TestRegister reg;
  const std::string database = test::TestServer::newDatabase();
  reg.execute("Insert Into Keywords Values ('a', '1')");
  EXPECT_RAISES(kEngineFailure,
                (void)copyRegister(reg.connection(), database,
                                   [](std::int64_t, std::int64_t, const std::string& table) {
                                     if (table == "Keywords")
                                       throw Error(kEngineFailure, "test", "stop");
                                   }));
  EXPECT_EQ(test::TestServer::run(database,
                                  "SELECT count(*) FROM pg_class WHERE relnamespace = "
                                  "'public'::regnamespace"),
            "0");
  EXPECT_RAISES(kEngineFailure, (void)copyRegister(reg.connection(), reg.path()));
  EXPECT_EQ(reg.value("Select Count(*) From Keywords"), "1");
  test::TestServer::drop(database);
}

}  // namespace
}  // namespace kv
