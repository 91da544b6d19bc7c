// Record sets against the floor: reading everything in order, opening and the first row, one field
// by identifier, editing.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <memory>

#include "common/convert.h"
#include "floor.h"
#include "kvdata/connection.h"
#include "sample_register.h"

namespace kv::bench {

namespace {

constexpr const char* kFloorColumns =
    "ID, DocumentID, DocumentTitle, DocumentNumber, RevisionLevel, EffectiveDate, DocUser1, "
    "DocUser2, "
    "DocUser3, DocUser4, DocumentNotes, SecurityLevel, Location, Controlled, CurrentRevID";

int sizeOf(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

// Every field of the current row as what it is.
std::size_t readRow(const std::vector<Ref<Field>>& fields, const std::vector<bool>& isText) {
  std::size_t sum = 0;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (isText[i]) {
      sum += fields[i]->Text().size();
    } else {
      const Variant value = fields[i]->Value();
      if (const auto* number = value.as<std::int32_t>()) sum += static_cast<std::size_t>(*number);
    }
  }
  return sum;
}

void readAll(benchmark::State& state) {
  const auto connection = kvConnection::open(sampleRegister(sizeOf(state)));
  std::size_t rows = 0;
  for (auto _ : state) {
    const auto rs = connection->OpenRecordset("Select * From Documents Order By DocumentTitle");
    std::vector<Ref<Field>> fields;
    std::vector<bool> isText;
    for (std::int32_t i = 0; i < rs->Fields().Count(); ++i) {
      fields.push_back(rs->Fields(i));
      isText.push_back(fields.back()->Type() == kTypeVarWChar ||
                       fields.back()->Type() == kTypeLongVarWChar);
    }
    std::size_t sum = 0;
    for (; !rs->Eof(); rs->MoveNext(), ++rows) sum += readRow(fields, isText);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(rows));
}

void readAllFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement all(
      db,
      fmt::format("SELECT {} FROM Documents ORDER BY kv_order(DocumentTitle), ID", kFloorColumns));
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
  FloorStatement all(
      db, fmt::format("SELECT {} FROM Documents ORDER BY kv_order(DocUser1), ID", kFloorColumns));
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
  FloorStatement all(
      db,
      fmt::format("SELECT {} FROM Documents ORDER BY kv_order(DocumentTitle), ID", kFloorColumns));
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
    rs->Fields("DocUser4")->Value(fmt::format("edit {}", n));
    rs->Update();
  }
}

void editUpdateFloor(benchmark::State& state) {
  FloorDatabase db(sampleRegister(sizeOf(state)));
  FloorStatement read(
      db, fmt::format("SELECT {} FROM Documents WHERE kv_fold(DocumentID) = kv_fold(?1)",
                      kFloorColumns));
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
    write.bind(1, fmt::format("edit {}", n));
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

constexpr int kSmall = 10'000;
constexpr int kLarge = 100'000;

BENCHMARK(readAll)
    ->Name("read all by title/kvvesk")
    ->Arg(kSmall)
    ->Arg(kLarge)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(readAllFloor)
    ->Name("read all by title/floor")
    ->Arg(kSmall)
    ->Arg(kLarge)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(openFirst, sorted, "DocUser1")
    ->Name("open sorted, first row/kvvesk")
    ->Arg(kSmall)
    ->Arg(kLarge)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(openFirstSortedFloor)
    ->Name("open sorted, first row/floor")
    ->Arg(kSmall)
    ->Arg(kLarge)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(openFirst, indexed, "DocumentTitle")
    ->Name("open by title, count, first row/kvvesk")
    ->Arg(kSmall)
    ->Arg(kLarge)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(openFirstIndexedFloor)
    ->Name("open by title, count, first row/floor")
    ->Arg(kSmall)
    ->Arg(kLarge)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(oneField)->Name("one field/kvvesk")->Arg(kSmall)->Arg(kLarge);
BENCHMARK(oneFieldFloor)->Name("one field/floor")->Arg(kSmall)->Arg(kLarge);
BENCHMARK(editUpdate)->Name("edit and update/kvvesk")->Arg(kSmall)->Arg(kLarge);
BENCHMARK(editUpdateFloor)->Name("edit and update/floor")->Arg(kSmall)->Arg(kLarge);
BENCHMARK(lexAndFind)->Name("join, lex and find shape/kvvesk");
BENCHMARK(joinTextOnly)->Name("join, lex and find shape/floor");

}  // namespace

}  // namespace kv::bench
