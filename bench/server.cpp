// SPDX-License-Identifier: Apache-2.0
// The operations on PostgreSQL against hand-written libpq, with the round trips of each operation.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "bench_session.h"
#include "benches.h"
#include "common/text_key.h"
#include "data/connection.h"
#include "recordset/database.h"
#include "round_trips.h"
#include "sample_register.h"
#include "server_floor.h"

namespace kv::bench {

namespace {

// Registers last as long as the program; documents are added to one of their own.
const std::string& sample() {
  static const std::string location = serverRegister(kSmall);
  return location;
}
const std::string& sampleToAddTo() {
  static const std::string location = serverRegister(kSmall);
  return location;
}

std::string byIdentifier() {
  return "SELECT " + serverDocumentColumns() + R"( FROM "Documents" WHERE )" +
         serverFold("DocumentID") + R"( = $1 ORDER BY "ID")";
}

class Connected {
 public:
  explicit Connected(const std::string& location)
      : connection_(kvConnection::open("Data Source=" + location)) {}
  [[nodiscard]] kvConnection& connection() const { return *connection_; }
  [[nodiscard]] std::uint64_t roundTrips() const {
    return connection_->database()->engine().roundTrips();
  }

 private:
  Ref<kvConnection> connection_;
};

// ---- one document ----

void value(benchmark::State& state) {
  const BenchSession session(sample());
  measure(state, session, [&](int n) {
    benchmark::DoNotOptimize(session.documents().Value(documentId(n), "DocumentTitle"));
  });
}

void valueFloor(benchmark::State& state) {
  ServerFloor db(sample());
  db.prepare("one", R"(SELECT "DocumentTitle" FROM "Documents" WHERE )" + serverFold("DocumentID") +
                        R"( = $1 ORDER BY "ID")");
  measure(state, db, [&](int n) {
    benchmark::DoNotOptimize(textOf(db.run("one", {foldKey(documentId(n))}), 0, 0).size());
  });
}

void setValue(benchmark::State& state) {
  const BenchSession session(sample());
  int times = 0;
  measure(state, session, [&](int n) {
    session.documents().SetValue(documentId(n), "DocUser4", fmt::format("set {}", ++times));
  });
}

void setValueFloor(benchmark::State& state) {
  ServerFloor db(sample());
  FloorValue value(db);
  int times = 0;
  measure(state, db, [&](int n) { value.set(documentId(n), fmt::format("set {}", ++times)); });
}

void add(benchmark::State& state) {
  const BenchSession session(sampleToAddTo());
  measure(state, session, [&](int n) { addDocument(session, "User1", n); });
}

void addFloor(benchmark::State& state) {
  ServerFloor db(sampleToAddTo());
  FloorAddition addition(db);
  measure(state, db, [&](int n) { addition.add("User1", n); });
}

void loadData(benchmark::State& state) {
  const BenchSession session(sample());
  DocumentFields fields;
  measure(state, session, [&](int n) {
    load(session, documentId(n), fields);
    benchmark::DoNotOptimize(fields.size());
  });
}

void loadDataFloor(benchmark::State& state) {
  ServerFloor db(sample());
  db.prepare("row", byIdentifier());
  DocumentFields f;
  measure(state, db, [&](int n) {
    const auto row = db.run("row", {foldKey(documentId(n))});
    f = {.title = textOf(row, 0, 2),
         .number = textOf(row, 0, 3),
         .revisionLevel = textOf(row, 0, 4),
         .effectiveDate = textOf(row, 0, 5),
         .user1 = textOf(row, 0, 6),
         .user2 = textOf(row, 0, 7),
         .user3 = textOf(row, 0, 8),
         .user4 = textOf(row, 0, 9),
         .notes = textOf(row, 0, 10),
         .secured = numberOf(row, 0, 11) != 0,
         .location = textOf(row, 0, 12),
         .controlled = numberOf(row, 0, 13) != 0,
         .currentRevision = numberOf(row, 0, 14)};
    benchmark::DoNotOptimize(f.size());
  });
}

void saveData(benchmark::State& state) {
  const BenchSession session(sample());
  measure(state, session, [&](int n) {
    session.documents().SaveData(documentId(n), documentTitle(n, kSmall),
                                 fmt::format("WI-{:07}", n), "Department 7", "Procedure", "",
                                 fmt::format("saved {}", n), "Saved while measuring.", false, true,
                                 fmt::format("instructions/{}.pdf", n));
  });
}

void saveDataFloor(benchmark::State& state) {
  ServerFloor db(sample());
  db.prepare("begin", "BEGIN");
  db.prepare("row", byIdentifier() + " FOR UPDATE");
  db.prepare("write",
             R"(UPDATE "Documents" SET "DocumentTitle" = $2, "DocumentNumber" = $3, )"
             R"("DocUser1" = $4, "DocUser2" = $5, "DocUser3" = NULL, "DocUser4" = $6, )"
             R"("DocumentNotes" = $7, "SecurityLevel" = 0, "Controlled" = -1, "Location" = $8 )"
             R"(WHERE "ID" = $1::int)");
  db.prepare("commit", "COMMIT");
  measure(state, db, [&](int n) {
    db.run("begin", {});
    const auto row = db.run("row", {foldKey(documentId(n))});
    benchmark::DoNotOptimize(readRows(row));
    db.run("write", {textOf(row, 0, 0), documentTitle(n, kSmall), fmt::format("WI-{:07}", n),
                     "Department 7", "Procedure", fmt::format("saved {}", n),
                     "Saved while measuring.", fmt::format("instructions/{}.pdf", n)});
    db.run("commit", {});
  });
}

// ---- record sets ----

void oneField(benchmark::State& state) {
  const Connected connected(sample());
  measure(state, connected, [&](int n) {
    const auto rs = connected.connection().OpenRecordset(
        "Select DocumentTitle From Documents Where DocumentID = '" + documentId(n) + "'");
    benchmark::DoNotOptimize(rs->Fields("DocumentTitle")->Value());
  });
}

void editUpdate(benchmark::State& state) {
  const Connected connected(sample());
  int times = 0;
  measure(state, connected, [&](int n) {
    const auto rs = connected.connection().OpenRecordset(
        "Select * From Documents Where DocumentID = '" + documentId(n) + "'");
    rs->Fields("DocUser4")->Value(fmt::format("edit {}", ++times));
    rs->Update();
  });
}

void editUpdateFloor(benchmark::State& state) {
  ServerFloor db(sample());
  db.prepare("row", byIdentifier());
  db.prepare("write", R"(UPDATE "Documents" SET "DocUser4" = $2 WHERE "ID" = $1::int AND )"
                      R"(coalesce("DocUser4", '') COLLATE "C" = $3)");
  int times = 0;
  measure(state, db, [&](int n) {
    const auto row = db.run("row", {foldKey(documentId(n))});
    benchmark::DoNotOptimize(readRows(row));
    db.run("write", {textOf(row, 0, 0), fmt::format("edit {}", ++times), textOf(row, 0, 9)});
  });
}

template <bool all>
void byTitle(benchmark::State& state) {
  const Connected connected(sample());
  measure(state, connected, [&](int) {
    const auto rs =
        connected.connection().OpenRecordset("Select * From Documents Order By DocumentTitle");
    benchmark::DoNotOptimize(all ? readToEnd(*rs)
                                 : rs->Fields("DocumentTitle")->Text().size() +
                                       static_cast<std::size_t>(rs->RecordCount()));
  });
}

std::string inOrder(const std::string& condition) {
  return "SELECT " + serverDocumentColumns() + R"( FROM "Documents" )" + condition + " ORDER BY " +
         serverOrder("DocumentTitle");
}

template <bool all>
void byTitleFloor(benchmark::State& state) {
  ServerFloor db(sample());
  db.prepare("rows", inOrder(""));
  measure(state, db, [&](int) {
    const auto rows = db.run("rows", {});
    benchmark::DoNotOptimize(all ? readRows(rows) : readRow(rows, 0));
  });
}

template <bool withCriteria, bool all>
void records(benchmark::State& state) {
  const BenchSession session(sample());
  const auto query = addQuery(session, withCriteria);
  measure(state, session, [&](int) {
    benchmark::DoNotOptimize(all ? readToEnd(*session.documents().Records(query))
                                 : readFirst(session, query));
  });
  session.documents().DeleteQuery(query);
}

template <bool withCriteria, bool all>
void recordsFloor(benchmark::State& state) {
  const BenchSession session(sample());
  const auto number = addQuery(session, withCriteria);
  ServerFloor db(sample());
  db.prepare("query", R"(SELECT * FROM "DocumentQuerys" WHERE "QueryID" = $1::int)");
  db.prepare("rows", inOrder(withCriteria ? R"(WHERE "Controlled" <> 0 AND )" +
                                                serverFold("DocumentTitle") + " ~ $1"
                                          : ""));
  measure(state, db, [&](int) {
    benchmark::DoNotOptimize(readRows(db.run("query", {std::to_string(number)})));
    const auto rows =
        withCriteria ? db.run("rows", {fmt::format("^.*{}.*$", kTitlePart)}) : db.run("rows", {});
    benchmark::DoNotOptimize(all ? readRows(rows) : readRow(rows, 0));
  });
  session.documents().DeleteQuery(number);
}

}  // namespace

void registerServer() {
  const Pair pairs[] = {
      {"read all by title", byTitle<true>, byTitleFloor<true>},
      {"open by title, count, first row", byTitle<false>, byTitleFloor<false>},
      {"one field", oneField, valueFloor},
      {"edit and update", editUpdate, editUpdateFloor},
      {"Document.Value", value, valueFloor},
      {"Document.SetValue", setValue, setValueFloor},
      {"Document.Add", add, addFloor},
      {"Document.LoadData", loadData, loadDataFloor},
      {"Document.SaveData", saveData, saveDataFloor},
      {"Records, criteria: open, first row", records<true, false>, recordsFloor<true, false>},
      {"Records, criteria: read all", records<true, true>, recordsFloor<true, true>},
      {"Records, all: open, first row", records<false, false>, recordsFloor<false, false>},
      {"Records, all: read all", records<false, true>, recordsFloor<false, true>},
  };
  for (const auto& pair : pairs) registerPair(pair, {kSmall});
  registerServerRevisions();
  registerServerDistribution();
}

}  // namespace kv::bench
