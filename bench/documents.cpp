// SPDX-License-Identifier: Apache-2.0
// The record operations of documents against the floor: hand-written C that does the same reads and
// writes, those of one operation in one transaction.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <functional>

#include "bench_session.h"
#include "benches.h"
#include "common/clock.h"
#include "common/text.h"
#include "floor.h"
#include "sample_register.h"

namespace kv::bench {

namespace {

constexpr int kStep = 7919;  // from document to document, so that none is near the one before

int sizeOf(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

// Documents are added to a register of their own, so that the others keep their number; among a
// million a few more make no difference.
const std::string& registerToAddTo(int size) {
  return size < kLarge ? sampleRegister(size, "add") : sampleRegister(size);
}

std::string byIdentifier() {
  return fmt::format("SELECT {} FROM Documents WHERE kv_fold(DocumentID) = kv_fold(?1) ORDER BY ID",
                     kDocumentColumns);
}

// ---- Value ----

void value(benchmark::State& state) {
  const BenchSession session(sampleRegister(sizeOf(state)));
  int n = 0;
  for (auto _ : state) {
    n = (n + kStep) % sizeOf(state);
    benchmark::DoNotOptimize(session.documents().Value(documentId(n), "DocumentTitle"));
  }
}

// Only the column that is wanted.
void valueFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement one(
      db,
      "SELECT DocumentTitle FROM Documents WHERE kv_fold(DocumentID) = kv_fold(?1) ORDER BY ID");
  int n = 0;
  for (auto _ : state) {
    n = (n + kStep) % sizeOf(state);
    one.bind(1, documentId(n));
    one.step();
    const std::string title(one.text(0));
    benchmark::DoNotOptimize(title.size());
    one.reset();
  }
}

// ---- Add ----

void add(benchmark::State& state) {
  const BenchSession session(registerToAddTo(sizeOf(state)));
  int n = 0;
  for (auto _ : state) addDocument(session, "User1", ++n);
}

// Numbers from the counters, the revision under a level that only it has, found again by that,
// given its own values, then the document.
void addFloor(benchmark::State& state) {
  FloorDatabase db(registerToAddTo(sizeOf(state)));
  FloorStatement begin(db, "BEGIN IMMEDIATE");
  FloorStatement number(db,
                        "UPDATE sqlite_sequence SET seq = seq + 1 WHERE name = ?1 RETURNING seq");
  FloorStatement revision(db, "INSERT INTO Revisions (RevisionID, RevisionLevel) VALUES (?1, ?2)");
  FloorStatement find(
      db,
      "SELECT RevisionID, DocumentID, RevisionLevel, RevUser1, RevUser2, ChangeDescription, "
      "Location, EffectiveDate, ResponsibleID, RoutingStatus, RevisionStatus FROM Revisions WHERE "
      "kv_fold(RevisionLevel) = kv_fold(?1) ORDER BY RevisionID");
  FloorStatement change(
      db,
      "UPDATE Revisions SET RevisionLevel = 'A', Location = ?2, DocumentID = ?3, ResponsibleID = "
      "?4, EffectiveDate = '2024-03-09', RoutingStatus = 0, RevisionStatus = 1 WHERE RevisionID = "
      "?1");
  FloorStatement document(
      db,
      "INSERT INTO Documents (ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, "
      "EffectiveDate, DocUser1, DocUser2, DocumentNotes, SecurityLevel, Location, Controlled, "
      "CurrentRevID) VALUES (?1, ?2, ?3, ?4, 'A', '2024-03-09', 'Department 7', 'Procedure', "
      "'Added while measuring.', 0, ?5, -1, ?6)");
  FloorStatement commit(db, "COMMIT");
  const auto next = [&](const char* table) {
    number.bind(1, std::string(table));
    number.step();
    const int taken = number.number(0);
    number.reset();
    return taken;
  };
  int n = 0;
  for (auto _ : state) {
    ++n;
    begin.run();
    const int id = next("Documents");
    const std::string stamp = "User1" + stampText(now());
    const int revisionId = next("Revisions");
    revision.bind(1, revisionId);
    revision.bind(2, stamp);
    revision.run();
    find.bind(1, stamp);
    find.step();
    benchmark::DoNotOptimize(find.readRow());
    find.reset();
    const std::string location = fmt::format("added/{}.pdf", n);
    change.bind(1, revisionId);
    change.bind(2, location);
    change.bind(3, stamp);
    change.bind(4, std::string("User1"));
    change.run();
    document.bind(1, id);
    document.bind(2, stamp);
    document.bind(3, fmt::format("Added instruction {:07}", n));
    document.bind(4, fmt::format("AI-{:07}", n));
    document.bind(5, location);
    document.bind(6, revisionId);
    document.run();
    commit.run();
  }
}

// What there is to write and nothing else: each row once.
void addTwoInserts(benchmark::State& state) {
  FloorDatabase db(registerToAddTo(sizeOf(state)));
  FloorStatement begin(db, "BEGIN IMMEDIATE");
  FloorStatement revision(
      db,
      "INSERT INTO Revisions (RevisionLevel, Location, DocumentID, ResponsibleID, EffectiveDate, "
      "RoutingStatus, RevisionStatus) VALUES ('A', ?1, ?2, 'User1', '2024-03-09', 0, 1)");
  FloorStatement document(
      db,
      "INSERT INTO Documents (DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, "
      "EffectiveDate, DocUser1, DocUser2, DocumentNotes, SecurityLevel, Location, Controlled, "
      "CurrentRevID) VALUES (?1, ?2, ?3, 'A', '2024-03-09', 'Department 7', 'Procedure', "
      "'Added while measuring.', 0, ?4, -1, ?5)");
  FloorStatement commit(db, "COMMIT");
  int n = 0;
  for (auto _ : state) {
    ++n;
    const std::string id = "User1" + stampText(now());
    const std::string location = fmt::format("added/{}.pdf", n);
    begin.run();
    revision.bind(1, location);
    revision.bind(2, id);
    revision.run();
    document.bind(1, id);
    document.bind(2, fmt::format("Added instruction {:07}", n));
    document.bind(3, fmt::format("AI-{:07}", n));
    document.bind(4, location);
    document.bind(5, static_cast<int>(sqlite3_last_insert_rowid(db.get())));
    document.run();
    commit.run();
  }
}

// ---- LoadData, SaveData ----

void loadData(benchmark::State& state) {
  const BenchSession session(sampleRegister(sizeOf(state)));
  DocumentFields fields;
  int n = 0;
  for (auto _ : state) {
    n = (n + kStep) % sizeOf(state);
    load(session, documentId(n), fields);
    benchmark::DoNotOptimize(fields.size());
  }
}

std::string textOrEmpty(const FloorStatement& row, int column) {
  if (sqlite3_column_type(row.get(), column) == SQLITE_NULL) return {};
  return std::string(row.text(column));
}

void loadDataFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement row(db, byIdentifier());
  DocumentFields f;
  int n = 0;
  for (auto _ : state) {
    n = (n + kStep) % sizeOf(state);
    row.bind(1, documentId(n));
    row.step();
    f = {.title = textOrEmpty(row, 2),
         .number = textOrEmpty(row, 3),
         .revisionLevel = textOrEmpty(row, 4),
         .effectiveDate = textOrEmpty(row, 5),
         .user1 = textOrEmpty(row, 6),
         .user2 = textOrEmpty(row, 7),
         .user3 = textOrEmpty(row, 8),
         .user4 = textOrEmpty(row, 9),
         .notes = textOrEmpty(row, 10),
         .secured = row.number(11) != 0,
         .location = textOrEmpty(row, 12),
         .controlled = row.number(13) != 0,
         .currentRevision = row.number(14)};
    benchmark::DoNotOptimize(f.size());
    if (row.step()) state.SkipWithError("a document is there twice");
    row.reset();
  }
}

void saveData(benchmark::State& state) {
  const BenchSession session(sampleRegister(sizeOf(state)));
  int n = 0;
  for (auto _ : state) {
    n = (n + kStep) % sizeOf(state);
    session.documents().SaveData(documentId(n), documentTitle(n, sizeOf(state)),
                                 fmt::format("WI-{:07}", n), "Department 7", "Procedure", "",
                                 newText(), "Saved while measuring.", false, true,
                                 fmt::format("instructions/{}.pdf", n));
  }
}

void saveDataFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement begin(db, "BEGIN IMMEDIATE");
  FloorStatement row(db, byIdentifier());
  FloorStatement write(
      db,
      "UPDATE Documents SET DocumentTitle = ?2, DocumentNumber = ?3, DocUser1 = ?4, DocUser2 = ?5, "
      "DocUser3 = NULL, DocUser4 = ?6, DocumentNotes = ?7, SecurityLevel = 0, Controlled = -1, "
      "Location = ?8 WHERE ID = ?1");
  FloorStatement commit(db, "COMMIT");
  int n = 0;
  for (auto _ : state) {
    n = (n + kStep) % sizeOf(state);
    begin.run();
    row.bind(1, documentId(n));
    row.step();
    benchmark::DoNotOptimize(row.readRow());
    write.bind(1, row.number(0));
    if (row.step()) state.SkipWithError("a document is there twice");
    row.reset();
    write.bind(2, documentTitle(n, sizeOf(state)));
    write.bind(3, fmt::format("WI-{:07}", n));
    write.bind(4, std::string("Department 7"));
    write.bind(5, std::string("Procedure"));
    write.bind(6, newText());
    write.bind(7, std::string("Saved while measuring."));
    write.bind(8, fmt::format("instructions/{}.pdf", n));
    write.run();
    commit.run();
  }
}

// ---- Records ----

template <bool withCriteria>
void recordsFirst(benchmark::State& state) {
  const BenchSession session(sampleRegister(sizeOf(state)));
  const auto query = addQuery(session, withCriteria);
  for (auto _ : state) benchmark::DoNotOptimize(readFirst(session, query));
  session.documents().DeleteQuery(query);
}

template <bool withCriteria>
void recordsAll(benchmark::State& state) {
  const BenchSession session(sampleRegister(sizeOf(state)));
  const auto query = addQuery(session, withCriteria);
  for (auto _ : state) benchmark::DoNotOptimize(readToEnd(*session.documents().Records(query)));
  session.documents().DeleteQuery(query);
}

// The saved query's row, then the documents in order. For the first row all are stepped through,
// which is what knowing their number and keeping to these takes.
template <bool withCriteria, bool all>
void recordsFloor(benchmark::State& state) {
  std::int32_t number = 0;
  {
    const BenchSession session(sampleRegister(sizeOf(state)));
    number = addQuery(session, withCriteria);
  }
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement query(db, "SELECT * FROM DocumentQuerys WHERE QueryID = ?1");
  FloorStatement rows(
      db, fmt::format("SELECT {} FROM Documents {} ORDER BY kv_order(DocumentTitle), ID",
                      kDocumentColumns,
                      withCriteria ? "WHERE Controlled <> 0 AND kv_like(DocumentTitle, ?1)" : ""));
  if (withCriteria) rows.bind(1, fmt::format("%{}%", kTitlePart));
  for (auto _ : state) {
    query.bind(1, number);
    query.step();
    benchmark::DoNotOptimize(query.readRow());
    query.reset();
    std::size_t sum = 0;
    while (rows.step())
      if (all || sum == 0)
        sum += rows.readRow();
      else
        ++sum;
    rows.reset();
    benchmark::DoNotOptimize(sum);
  }
  FloorStatement gone(db, "DELETE FROM DocumentQuerys WHERE QueryID = ?1");
  gone.bind(1, number);
  gone.run();
}

}  // namespace

void registerDocuments(bool large) {
  const Pair pairs[] = {
      {"Document.Value", value, valueFloor},
      {"Document.Add", add, addFloor},
      {"Document.Add, to two INSERTs", add, addTwoInserts},
      {"Document.LoadData", loadData, loadDataFloor},
      {"Document.SaveData", saveData, saveDataFloor},
      {"Records, criteria: open, first row", recordsFirst<true>, recordsFloor<true, false>},
      {"Records, criteria: read all", recordsAll<true>, recordsFloor<true, true>},
      {"Records, all: open, first row", recordsFirst<false>, recordsFloor<false, false>},
      {"Records, all: read all", recordsAll<false>, recordsFloor<false, true>},
  };
  for (const auto& pair : pairs)
    registerPair(pair, large ? std::vector<int>{kSmall, kLarge} : std::vector<int>{kSmall});
}

}  // namespace kv::bench
