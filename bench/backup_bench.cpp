// Backup and restore of 100,000 time entries and 50 clients: the backup
// (walk, build, write, read back and compare) and the restore into a fresh
// volume (check, read every record, add it in batches).
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "backup/backup.h"
#include "platform/data_folder.h"
#include "platform/registry.h"
#include "store/note_text.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

constexpr int kBackupEntries = 100'000;
constexpr int kBackupClients = 50;

TimeEntry BackupSample(int n) {
  TimeEntry e;
  FileTime base = 0;
  SystemTimeToFileTime(MakeSystemTime(2015, 1, 1, 9, 0, 1), &base);
  e.start = base + static_cast<FileTime>(n / 8) * kTicksPerDay +
            static_cast<FileTime>(n % 8) * kTicksPerHour;
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

// A data store in its own folder.
struct Store {
  explicit Store(const std::string& folder) {
    std::string error;
    volume = OpenSqliteObjectStore(folder + "/" + kVolumeFileName, &error);
    catalogue = std::make_unique<Catalogue>(*volume, registry.get());
    entries = std::make_unique<EntryStore>(*volume);
    catalogue->Open();
    entries->Open();
  }
  std::unique_ptr<Registry> registry = OpenMemoryRegistry();
  std::unique_ptr<ObjectStore> volume;
  std::unique_ptr<Catalogue> catalogue;
  std::unique_ptr<EntryStore> entries;
  std::unique_ptr<Locale> locale = Locale::UsEnglish();
};

// The store backed up, and its backup file, shared by the benchmarks.
struct BackupFixture {
  testing::TempDir dir;
  Store store{dir.path()};
  std::string file = dir.File("bench.qrd");

  BackupFixture() {
    store.volume->BeginBatch();
    for (int n = 0; n < kBackupEntries; ++n) AddEntry(*store.entries, BackupSample(n));
    for (int c = 0; c < kBackupClients; ++c) {
      const std::u16string name =
          u"Client " + std::u16string(1, static_cast<char16_t>(u'A' + c));
      const ClientId number = AddClient(store.catalogue->clients, name);
      AddProject(store.catalogue->projects, *store.locale, number, u"Project", u"");
      AddItem(store.catalogue->tasks, *store.locale, number, u"Development");
      AddItem(store.catalogue->contacts, *store.locale, number, u"Accounts");
    }
    store.volume->CommitBatch();
    BackupWriter writer(*store.entries, *store.catalogue, *store.locale);
    Backup(writer, FileSystem::Posix(), file);
  }
};

BackupFixture& SharedBackup() {
  static BackupFixture fixture;
  return fixture;
}

void BM_Backup100k(benchmark::State& state) {
  BackupFixture& f = SharedBackup();
  const std::string out = f.dir.File("out.qrd");
  for (auto _ : state) {
    BackupWriter writer(*f.store.entries, *f.store.catalogue, *f.store.locale);
    if (!Backup(writer, FileSystem::Posix(), out)) state.SkipWithError("backup failed");
  }
  state.SetItemsProcessed(state.iterations() * kBackupEntries);
  std::string bytes;
  FileSystem::Posix().ReadWholeFile(out, &bytes, SIZE_MAX);
  state.counters["file_bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(BM_Backup100k)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_Restore100k(benchmark::State& state) {
  BackupFixture& f = SharedBackup();
  for (auto _ : state) {
    state.PauseTiming();
    auto dir = std::make_unique<testing::TempDir>();
    auto store = std::make_unique<Store>(dir->path());
    state.ResumeTiming();
    BackupWriter writer(*store->entries, *store->catalogue, *store->locale);
    if (Restore(writer, FileSystem::Posix(), f.file) != kRestoreOk) {
      state.SkipWithError("restore failed");
    }
    state.PauseTiming();
    store.reset();
    dir.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kBackupEntries);
}
BENCHMARK(BM_Restore100k)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace quillora
