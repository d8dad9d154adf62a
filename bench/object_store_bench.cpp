// The entry store on 100,000 entries: adding one durable entry, walking every
// entry the way the views and exports do, seeking by object id, and the floor
// that SQLite itself sets: a plain SELECT of the same rows.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <memory>
#include <string>

#include "platform/data_folder.h"
#include "platform/object_store.h"
#include "store/note_text.h"
#include "store/time_entry.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

constexpr int kEntries = 100'000;

FileTime Day(int n) {
  FileTime base = 0;
  SystemTimeToFileTime(MakeSystemTime(2015, 1, 1, 9, 0, 1), &base);
  return base + static_cast<FileTime>(n / 8) * kTicksPerDay +
         static_cast<FileTime>(n % 8) * kTicksPerHour;
}

TimeEntry SampleEntry(int n) {
  TimeEntry e;
  e.start = Day(n);
  e.client = u"Client " + std::u16string(1, static_cast<char16_t>(u'A' + n % 20));
  e.project = u"Project " + std::u16string(1, static_cast<char16_t>(u'a' + n % 7));
  e.task = u"Development";
  e.duration = 25 + n % 400;
  e.rate = 9500;
  e.billable = n % 3 != 0;
  e.currency = u"USD";
  if (n % 10 == 0) {
    const auto note = NoteBlobFromText(u"Met with the team about the release plan.");
    SetNote(&e, static_cast<std::int32_t>(note.size()), note.data());
  }
  return e;
}

// One volume of 100,000 entries shared by the benchmarks of this file.
struct Fixture {
  testing::TempDir dir;
  std::unique_ptr<ObjectStore> volume;
  std::unique_ptr<EntryStore> entries;
  ObjectId some_id = 0;

  Fixture() {
    std::string error;
    volume = OpenSqliteObjectStore(dir.File(kVolumeFileName), &error);
    entries = std::make_unique<EntryStore>(*volume);
    entries->Open();
    volume->BeginBatch();
    for (int n = 0; n < kEntries; ++n) {
      AddEntry(*entries, SampleEntry(n));
      if (n == kEntries / 2) some_id = entries->current_record_id();
    }
    volume->CommitBatch();
  }
};

Fixture& Shared() {
  static Fixture fixture;
  return fixture;
}

void BM_AddOneEntryDurably(benchmark::State& state) {
  Fixture& f = Shared();
  int n = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(AddEntry(*f.entries, SampleEntry(kEntries + n++)));
  }
  // Leave the walk benchmarks their 100,000 entries.
  for (ObjectId id = f.entries->SeekValue(SeekType::kValueGreater,
                                          PropValue::Number(entry_prop::kStart, Day(kEntries)));
       id != 0; id = f.entries->Seek(SeekType::kCurrent, 1)) {
    f.entries->DeleteRecord(id);
  }
}
BENCHMARK(BM_AddOneEntryDurably)->Unit(benchmark::kMicrosecond);

void BM_WalkAllEntries(benchmark::State& state) {
  Fixture& f = Shared();
  std::int64_t read = 0;
  for (auto _ : state) {
    TimeEntry e;
    f.entries->SeekValue(SeekType::kValueGreater, PropValue::Number(entry_prop::kStart, 0));
    while (ReadEntry(*f.entries, &e) == 0) {
      ++read;
      benchmark::DoNotOptimize(e.duration);
      f.entries->Seek(SeekType::kCurrent, 1);
    }
  }
  state.counters["entries/walk"] = static_cast<double>(read) / state.iterations();
}
BENCHMARK(BM_WalkAllEntries)->Unit(benchmark::kMillisecond);

void BM_SeekByObjectId(benchmark::State& state) {
  Fixture& f = Shared();
  ObjectId id = f.some_id;
  for (auto _ : state) {
    benchmark::DoNotOptimize(f.entries->Seek(SeekType::kObjectId, id));
    id = f.some_id + (id - f.some_id + 7919) % 40000;
  }
}
BENCHMARK(BM_SeekByObjectId)->Unit(benchmark::kMicrosecond);

// The floor: the same rows in the same order straight from SQLite.
void BM_PlainSqliteSelect(benchmark::State& state) {
  Fixture& f = Shared();
  sqlite3* db = nullptr;
  sqlite3_open_v2(f.dir.File(kVolumeFileName).c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  sqlite3_stmt* stmt = nullptr;
  sqlite3_prepare_v2(db,
                     "SELECT oid, m0, k0, props FROM records WHERE db = "
                     "(SELECT oid FROM databases WHERE type = 79990001) "
                     "ORDER BY m0, k0, oid",
                     -1, &stmt, nullptr);
  std::int64_t read = 0;
  for (auto _ : state) {
    while (sqlite3_step(stmt) == SQLITE_ROW) {
      ++read;
      benchmark::DoNotOptimize(sqlite3_column_blob(stmt, 3));
      benchmark::DoNotOptimize(sqlite3_column_bytes(stmt, 3));
    }
    sqlite3_reset(stmt);
  }
  state.counters["entries/walk"] = static_cast<double>(read) / state.iterations();
  sqlite3_finalize(stmt);
  sqlite3_close(db);
}
BENCHMARK(BM_PlainSqliteSelect)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillora
