// SPDX-License-Identifier: Apache-2.0
// Record sets against the floor: reading everything in order, opening and the first row, one field
// by identifier, editing.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <memory>

#include "bench_session.h"
#include "benches.h"
#include "common/convert.h"
#include "data/connection.h"
#include "floor.h"
#include "recordset/database.h"
#include "sample_register.h"

namespace kv::bench {

namespace {

int sizeOf(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

void readAll(benchmark::State& state) {
  const auto connection = kvConnection::open(sampleRegister(sizeOf(state)));
  std::size_t rows = 0;
  for (auto _ : state) {
    const auto rs = connection->OpenRecordset("Select * From Documents Order By DocumentTitle");
    rows += static_cast<std::size_t>(rs->RecordCount());
    const std::size_t sum = readToEnd(*rs);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(rows));
}

void readAllFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement all(db,
                     fmt::format("SELECT {} FROM Documents ORDER BY kv_order(DocumentTitle), ID",
                                 kDocumentColumns));
  std::size_t rows = 0;
  for (auto _ : state) {
    std::size_t sum = 0;
    for (; all.step(); ++rows) sum += all.readRow();
    all.reset();
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(rows));
}

void openFirst(benchmark::State& state, const char* order) {
  const auto connection = kvConnection::open(sampleRegister(sizeOf(state)));
  for (auto _ : state) {
    const auto rs =
        connection->OpenRecordset(fmt::format("Select * From Documents Order By {}", order));
    benchmark::DoNotOptimize(rs->Fields("DocumentTitle")->Text().size() +
                             static_cast<std::size_t>(rs->RecordCount()));
  }
}

// Whole rows sorted, the first one read: no index has this order.
void openFirstSortedFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement all(db, fmt::format("SELECT {} FROM Documents ORDER BY kv_order(DocUser1), ID",
                                     kDocumentColumns));
  for (auto _ : state) {
    all.step();
    benchmark::DoNotOptimize(all.text(2).size());
    all.reset();
  }
}

// In the order of an index, with the exact count and the membership that a keyset promises: all
// rows stepped through.
void openFirstIndexedFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement all(db,
                     fmt::format("SELECT {} FROM Documents ORDER BY kv_order(DocumentTitle), ID",
                                 kDocumentColumns));
  for (auto _ : state) {
    std::size_t first = 0;
    std::size_t count = 0;
    while (all.step())
      if (count++ == 0) first = all.text(2).size();
    all.reset();
    benchmark::DoNotOptimize(first + count);
  }
}

void oneField(benchmark::State& state) {
  const auto connection = kvConnection::open(sampleRegister(sizeOf(state)));
  int n = 0;
  for (auto _ : state) {
    n = (n + 7919) % sizeOf(state);
    const auto rs = connection->OpenRecordset(
        "Select DocumentTitle From Documents Where DocumentID = '" + documentId(n) + "'");
    benchmark::DoNotOptimize(rs->Fields("DocumentTitle")->Value());
  }
}

void oneFieldFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement one(
      db,
      "SELECT DocumentTitle FROM Documents WHERE kv_fold(DocumentID) = kv_fold(?1) ORDER BY ID");
  int n = 0;
  for (auto _ : state) {
    n = (n + 7919) % sizeOf(state);
    one.bind(1, documentId(n));
    one.step();
    const std::string title(one.text(0));
    benchmark::DoNotOptimize(title.size());
    one.reset();
  }
}

// Reads a row by identifier, changes a field, stores it if nobody has changed it meanwhile: one
// durable commit each.
void editUpdate(benchmark::State& state) {
  const auto connection = kvConnection::open(sampleRegister(sizeOf(state)));
  int n = 0;
  for (auto _ : state) {
    n = (n + 7919) % sizeOf(state);
    const auto rs = connection->OpenRecordset("Select * From Documents Where DocumentID = '" +
                                              documentId(n) + "'");
    rs->Fields("DocUser4")->Value(newText());
    rs->Update();
  }
}

void editUpdateFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement read(
      db, fmt::format("SELECT {} FROM Documents WHERE kv_fold(DocumentID) = kv_fold(?1)",
                      kDocumentColumns));
  FloorStatement write(db, "UPDATE Documents SET DocUser4 = ?1 WHERE ID = ?2 AND DocUser4 IS ?3");
  int n = 0;
  for (auto _ : state) {
    n = (n + 7919) % sizeOf(state);
    read.bind(1, documentId(n));
    read.step();
    const int id = read.number(0);
    const bool null = sqlite3_column_type(read.get(), 9) == SQLITE_NULL;
    const std::string before = null ? std::string() : std::string(read.text(9));
    benchmark::DoNotOptimize(read.readRow());
    read.reset();
    write.bind(1, newText());
    write.bind(2, id);
    if (null)
      sqlite3_bind_null(write.get(), 3);
    else
      write.bind(3, before);
    write.run();
  }
}

// The same through one open set, row after row.
void lexAndFind(benchmark::State& state) {
  const auto connection = kvConnection::open(sampleRegister(10000));
  const auto& database = *connection->database();
  (void)database;
  int n = 0;
  for (auto _ : state) {
    n = (n + 7919) % 10000;
    const auto statement = connection->database()->prepare(
        "Select DocumentTitle From Documents Where DocumentID = '" + documentId(n) + "'");
    benchmark::DoNotOptimize(statement.shape.get());
  }
}

// What joining the text and making the identifier costs by itself, to be taken off the one above.
void joinTextOnly(benchmark::State& state) {
  int n = 0;
  for (auto _ : state) {
    n = (n + 7919) % 10000;
    const std::string text =
        "Select DocumentTitle From Documents Where DocumentID = '" + documentId(n) + "'";
    benchmark::DoNotOptimize(text.data());
  }
}

}  // namespace

void registerRecordSets(bool large) {
  const Pair pairs[] = {
      {"read all by title", readAll, readAllFloor},
      {"open sorted, first row", [](auto& state) { openFirst(state, "DocUser1"); },
       openFirstSortedFloor},
      {"open by title, count, first row", [](auto& state) { openFirst(state, "DocumentTitle"); },
       openFirstIndexedFloor},
      {"one field", oneField, oneFieldFloor},
      {"edit and update", editUpdate, editUpdateFloor},
  };
  for (const auto& pair : pairs) registerPair(pair, {kSmall, large ? kLarge : kMedium});
  if (!large) registerPair({"join, lex and find shape", lexAndFind, joinTextOnly}, {});
}

}  // namespace kv::bench
