// SPDX-License-Identifier: Apache-2.0
// Distribution on PostgreSQL against hand-written libpq, with the round trips of each operation.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "benches.h"
#include "common/clock.h"
#include "common/text.h"
#include "common/text_key.h"
#include "distribution_turns.h"
#include "holdings_statement.h"
#include "round_trips.h"
#include "server_floor.h"

namespace kv::bench {

namespace {

std::string prepared(int documents) {
  std::string location = serverRegister(documents);
  prepareDistribution(location, documents);
  ServerFloor(location).run("ANALYZE");
  return location;
}
const std::string& distributionRegister() {
  static const std::string location = prepared(kSmall);
  return location;
}

class ServerFloorDistribution {
 public:
  explicit ServerFloorDistribution(int) : db_(distributionRegister()) {
    const std::string document = serverFold("DocumentID");
    const std::string manual = serverFold("ManualID");
    const std::string user = serverFold("UserID");
    const std::string number = serverFold("CopyNumber");
    db_.prepare("begin", "BEGIN");
    db_.prepare("commit", "COMMIT");
    db_.prepare("lock_manual",
                R"(SELECT "ID" FROM "Manuals" WHERE )" + manual + " = $1 FOR UPDATE");
    db_.prepare("document", R"(SELECT "Controlled", "CurrentRevID" FROM "Documents" WHERE )" +
                                document + " = $1 FOR UPDATE");
    db_.prepare("owner", R"(SELECT 1 FROM "Owners" WHERE )" + document + " = $1 AND " + user +
                             " = 'user1' LIMIT 1");
    db_.prepare("owner_rights", R"(SELECT "OwnerRights" FROM "VeskConfig")");
    db_.prepare("place", R"(SELECT "kv_key" FROM "ManualContents" WHERE )" + manual + " = $1 AND " +
                             document + " = $2");
    db_.prepare("put", R"(INSERT INTO "ManualContents" ("ManualID", "DocumentID", "Position") )"
                       R"(VALUES ($1, $2, 100))");
    db_.prepare("to_holders",
                R"(INSERT INTO "Personals" ("UserID", "ManualID", "HardCopy", "CopyNumber", )"
                R"("DocumentID", "RevisionID") SELECT min("UserID"), min("ManualID"), "HardCopy", )"
                R"(min("CopyNumber"), $2, $3::int FROM "Personals" WHERE )" +
                    manual + " = $1 GROUP BY " + user + R"(, "HardCopy", )" + number);
    db_.prepare("take_out", R"(DELETE FROM "ManualContents" WHERE "kv_key" = $1::bigint)");
    db_.prepare("from_holders",
                R"(DELETE FROM "Personals" WHERE )" + manual + " = $1 AND " + document + " = $2");
    db_.prepare("contents", R"(SELECT 1 FROM "ManualContents" WHERE )" + manual + " = $1 LIMIT 1");
    db_.prepare("lock_documents", R"(SELECT "ID" FROM "Documents" WHERE )" + document +
                                      " IN (SELECT " + document +
                                      R"( FROM "ManualContents" WHERE )" + manual +
                                      R"( = $1) ORDER BY "ID" FOR UPDATE)");
    const std::string held =
        user + " = $1 AND " + manual + " = $2 AND " + number + R"( = $3 AND "HardCopy" = -1)";
    db_.prepare("holds", R"(SELECT 1 FROM "Personals" WHERE )" + held + " LIMIT 1");
    db_.prepare("take_manual", R"(DELETE FROM "Personals" WHERE )" + held);
    db_.prepare("give_manual",
                R"(INSERT INTO "Personals" ("ManualID", "DocumentID", "UserID", "RevisionID", )"
                R"("HardCopy", "CopyNumber") SELECT c."ManualID", c."DocumentID", $1, )"
                R"(d."CurrentRevID", -1, $3 FROM "ManualContents" c JOIN "Documents" d ON )" +
                    serverFoldOf(R"(c."DocumentID")") + " = " + serverFoldOf(R"(d."DocumentID")") +
                    " WHERE " + serverFoldOf(R"(c."ManualID")") + " = $2");
    db_.prepare("copies", R"(SELECT * FROM "Personals" WHERE )" + document + " = $1 AND " + user +
                              " = $2 AND " + manual + R"( = '0' AND "HardCopy" = -1)");
    db_.prepare("give", R"(INSERT INTO "Personals" ("UserID", "DocumentID", "ManualID", )"
                        R"("HardCopy", "RevisionID") VALUES ($1, $2, '0', -1, $3::int) RETURNING )"
                        R"("ReleaseID")");
    db_.prepare("release_number",
                R"(SELECT nextval(pg_get_serial_sequence('"Personals"', 'ReleaseID')))");
    db_.prepare("give_under_key",
                R"(INSERT INTO "Personals" ("ReleaseID", "UserID") VALUES ($1::int, $2))");
    db_.prepare("under_key", R"(SELECT * FROM "Personals" WHERE )" + user + " = $1");
    db_.prepare("complete",
                R"(UPDATE "Personals" SET "UserID" = $2, "DocumentID" = $3, "ManualID" = '0', )"
                R"("HardCopy" = -1, "RevisionID" = $4::int WHERE "ReleaseID" = $1::int)");
    db_.prepare("released", R"(SELECT "DocumentID" FROM "Personals" WHERE "ReleaseID" = $1::int)");
    db_.prepare("take_back", R"(DELETE FROM "Personals" WHERE "ReleaseID" = $1::int)");
  }

  void putInto(const std::string& manual, const std::string& document) {
    db_.run("begin", {});
    const std::string key = foldKey(manual);
    (void)db_.run("lock_manual", {key});
    const std::string revision = revisionToGive(document);
    if (PQntuples(db_.run("place", {key, foldKey(document)}).get()) > 0)
      throw std::runtime_error("in the manual already");
    (void)db_.run("put", {manual, document});
    (void)db_.run("to_holders", {key, document, revision});
    db_.run("commit", {});
  }

  void takeOut(const std::string& manual, const std::string& document) {
    db_.run("begin", {});
    const std::string key = foldKey(manual);
    const std::string of = foldKey(document);
    (void)db_.run("lock_manual", {key});
    (void)revisionToGive(document);
    const Answer place = db_.run("place", {key, of});
    (void)db_.run("take_out", {textOf(place, 0, 0)});
    (void)db_.run("from_holders", {key, of});
    db_.run("commit", {});
  }

  void giveManual(const std::string& manual) {
    const std::string key = foldKey(manual);
    beginWithManual(key);
    if (PQntuples(db_.run("holds", {foldKey(kReader), key, kCopyNumber}).get()) > 0)
      throw std::runtime_error("held already");
    (void)db_.run("give_manual", {kReader, key, kCopyNumber});
    db_.run("commit", {});
  }

  void takeManual(const std::string& manual) {
    const std::string key = foldKey(manual);
    beginWithManual(key);
    (void)db_.run("take_manual", {foldKey(kReader), key, kCopyNumber});
    db_.run("commit", {});
  }

  [[nodiscard]] int giveDocument(const std::string& document) {
    const std::string revision = beginToGive(document);
    const Answer release = db_.run("give", {kReader, document, revision});
    db_.run("commit", {});
    return numberOf(release, 0, 0);
  }

  // With the library's steps.
  [[nodiscard]] int giveDocumentInSteps(const std::string& document) {
    const std::string revision = beginToGive(document);
    const std::string release = textOf(db_.run("release_number", {}), 0, 0);
    const std::string key = fmt::format("{}-{:0>16}", stampText(now()), release);
    (void)db_.run("give_under_key", {release, key});
    if (readRows(db_.run("under_key", {foldKey(key)})) == 0)
      throw std::runtime_error("not found again");
    (void)db_.run("complete", {release, kReader, document, revision});
    db_.run("commit", {});
    return std::stoi(release);
  }

  void takeDocument(int number) {
    const std::string release = std::to_string(number);
    db_.run("begin", {});
    const std::string document = textOf(db_.run("released", {release}), 0, 0);
    readOwner(document);
    (void)revisionToGive(document);
    (void)db_.run("take_back", {release});
    db_.run("commit", {});
  }

  [[nodiscard]] std::uint64_t roundTrips() const { return db_.roundTrips(); }

 private:
  // Locked by the reading.
  std::string revisionToGive(const std::string& document) {
    const Answer row = db_.run("document", {foldKey(document)});
    if (numberOf(row, 0, 0) == 0 || numberOf(row, 0, 1) <= 0)
      throw std::runtime_error("not to be given: " + document);
    return textOf(row, 0, 1);
  }
  void readOwner(const std::string& document) {
    (void)db_.run("owner", {foldKey(document)});
    (void)db_.run("owner_rights", {});
  }
  std::string beginToGive(const std::string& document) {
    db_.run("begin", {});
    std::string revision = revisionToGive(document);
    readOwner(document);
    benchmark::DoNotOptimize(readRows(db_.run("copies", {foldKey(document), foldKey(kReader)})));
    return revision;
  }
  void beginWithManual(const std::string& key) {
    db_.run("begin", {});
    (void)db_.run("lock_manual", {key});
    (void)db_.run("lock_documents", {key});
    if (PQntuples(db_.run("contents", {key}).get()) == 0) throw std::runtime_error("nothing in it");
  }

  ServerFloor db_;
};

struct Ours : DistributionClient {
  explicit Ours(int) : DistributionClient(distributionRegister()) {}
};
using Floor = ServerFloorDistribution;
struct FloorInSteps : Floor {
  using Floor::Floor;
  [[nodiscard]] int giveDocument(const std::string& document) {
    return giveDocumentInSteps(document);
  }
};

template <Holdings what>
void holdings(benchmark::State& state) {
  const Ours client(kSmall);
  measure(state, client, [&](int) { benchmark::DoNotOptimize(client.list(what, kReader)); });
}

template <Holdings what>
void holdingsFloor(benchmark::State& state) {
  ServerFloor db(distributionRegister());
  db.prepare("options", R"(SELECT "ProgramOptions" FROM "VeskConfig")");
  db.prepare("rows",
             holdingsStatement(what, {.fold = serverFoldOf, .order = serverOrderOf, .user = "$1"}));
  measure(state, db, [&](int) {
    if (readsOptions(what)) benchmark::DoNotOptimize(readRows(db.run("options", {})));
    benchmark::DoNotOptimize(readRows(db.run("rows", {foldKey(kReader)})));
  });
}

}  // namespace

void registerServerDistribution() {
  constexpr auto kFirst = Measured::First;
  constexpr auto kSecond = Measured::Second;
  const Pair pairs[] = {
      {"into a manual, 0 holders", documentInManual<Ours, kFirst, 0>,
       documentInManual<Floor, kFirst, 0>},
      {"into a manual, 100 holders", documentInManual<Ours, kFirst, 1>,
       documentInManual<Floor, kFirst, 1>},
      {"into a manual, 10000 holders", documentInManual<Ours, kFirst, 2>,
       documentInManual<Floor, kFirst, 2>, kFewTimes},
      {"out of a manual, 0 holders", documentInManual<Ours, kSecond, 0>,
       documentInManual<Floor, kSecond, 0>},
      {"out of a manual, 100 holders", documentInManual<Ours, kSecond, 1>,
       documentInManual<Floor, kSecond, 1>},
      {"out of a manual, 10000 holders", documentInManual<Ours, kSecond, 2>,
       documentInManual<Floor, kSecond, 2>, kFewTimes},
      {"release a manual of 10", manualToUser<Ours, kFirst, 0>, manualToUser<Floor, kFirst, 0>},
      {"release a manual of 1000", manualToUser<Ours, kFirst, 1>, manualToUser<Floor, kFirst, 1>,
       kSeveralTimes},
      {"collect a manual of 10", manualToUser<Ours, kSecond, 0>, manualToUser<Floor, kSecond, 0>},
      {"collect a manual of 1000", manualToUser<Ours, kSecond, 1>, manualToUser<Floor, kSecond, 1>,
       kSeveralTimes},
      {"release a document", documentToUser<Ours, kFirst>, documentToUser<FloorInSteps, kFirst>},
      {"release a document, to one INSERT", documentToUser<Ours, kFirst>,
       documentToUser<Floor, kFirst>},
      {"collect a document", documentToUser<Ours, kSecond>, documentToUser<Floor, kSecond>},
      {"Releases", holdings<Holdings::Releases>, holdingsFloor<Holdings::Releases>},
      {"Personals", holdings<Holdings::Personals>, holdingsFloor<Holdings::Personals>},
      {"PersonalDocuments", holdings<Holdings::PersonalDocuments>,
       holdingsFloor<Holdings::PersonalDocuments>},
      {"HardCopies", holdings<Holdings::HardCopies>, holdingsFloor<Holdings::HardCopies>},
      {"VirtualCopies", holdings<Holdings::VirtualCopies>, holdingsFloor<Holdings::VirtualCopies>},
  };
  for (const auto& pair : pairs) registerPair(pair, {kSmall});
}

}  // namespace kv::bench
