// The quick summary of a year holding 100,000 entries (with a thousand more
// on either side of it): the walk of the period's entries, the sums over
// them and the rows, as `quillora summary` does in one pass and as the
// dialog does from the view's record ids.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "periods/period_entries.h"
#include "periods/quick_summary.h"
#include "platform/data_folder.h"
#include "store/note_text.h"
#include "store/time_entry.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

constexpr int kYearEntries = 100'000;
constexpr int kOutside = 1'000;  // before and after the year each

// Spread evenly over 2024 (about 273 a day), each with a start time.
FileTime InYear(int n) {
  FileTime base = 0;
  SystemTimeToFileTime(MakeSystemTime(2024, 1, 1, 0, 0, 1), &base);
  const FileTime year = 366 * kTicksPerDay - kTicksPerMinute;
  return base + year / kYearEntries * static_cast<FileTime>(n);
}

TimeEntry SampleEntry(FileTime start, int n) {
  TimeEntry e;
  e.start = start;
  e.client = u"Client " + std::u16string(1, static_cast<char16_t>(u'A' + n % 20));
  // 24 projects, each in two spellings that differ in case only.
  std::u16string project =
      u"Project " + std::u16string(1, static_cast<char16_t>(u'a' + n % 24));
  if (n % 5 == 0) {
    for (char16_t& c : project) c = c >= u'a' && c <= u'z' ? c - 32 : c;
  }
  e.project = project;
  e.task = u"Development";
  e.duration = 25 + n % 400;
  e.rate = 9500;
  e.rateType = n % 17 == 0 ? kRateFixed : kRateNormal;
  e.billable = n % 3 != 0;
  e.paid = n % 4 == 0;
  e.currency = u"USD";
  if (n % 10 == 0) {
    const auto note = NoteBlobFromText(u"Met with the team about the release plan.");
    SetNote(&e, static_cast<std::int32_t>(note.size()), note.data());
  }
  return e;
}

struct Fixture {
  testing::TempDir dir;
  std::unique_ptr<ObjectStore> volume;
  std::unique_ptr<EntryStore> entries;
  std::unique_ptr<Locale> locale = Locale::UsEnglish();
  Settings settings;
  EntryFilter filter;
  CustomPeriod year{MakeSystemTime(2024, 1, 1), MakeSystemTime(2024, 12, 31)};

  Fixture() {
    std::string error;
    volume = OpenSqliteObjectStore(dir.File(kVolumeFileName), &error);
    entries = std::make_unique<EntryStore>(*volume);
    entries->Open();
    volume->BeginBatch();
    for (int n = 0; n < kOutside; ++n) {
      AddEntry(*entries, SampleEntry(InYear(0) - kTicksPerDay * (n + 1), n));
      AddEntry(*entries,
               SampleEntry(InYear(0) + 366 * kTicksPerDay + kTicksPerDay * n, n));
    }
    for (int n = 0; n < kYearEntries; ++n) AddEntry(*entries, SampleEntry(InYear(n), n));
    volume->CommitBatch();
  }
};

Fixture& Shared() {
  static Fixture fixture;
  return fixture;
}

// `quillora summary`: each entry is added as the walk reads it.
void BM_QuickSummaryOfAYear(benchmark::State& state) {
  Fixture& f = Shared();
  std::size_t items = 0;
  for (auto _ : state) {
    QuickSummarySums sums(f.settings, *f.locale);
    items = 0;
    WalkPeriodEntries(*f.entries, f.year.GetViewRange(), f.filter, *f.locale,
                      [&](const TimeEntry& e) {
                        ++items;
                        sums.Add(e);
                        return true;
                      });
    const auto rows =
        BuildQuickSummaryRows(SummaryPeriodOf(f.year), items, sums, *f.locale);
    benchmark::DoNotOptimize(rows.data());
  }
  state.counters["entries"] = static_cast<double>(items);
}
BENCHMARK(BM_QuickSummaryOfAYear)->Unit(benchmark::kMillisecond);

// The dialog: the view's record ids, then each entry sought by id and read.
void BM_QuickSummaryOfAYearByIds(benchmark::State& state) {
  Fixture& f = Shared();
  std::vector<ObjectId> ids;
  ListPeriodEntryIds(*f.entries, f.year.GetViewRange(), f.filter, *f.locale, &ids);
  for (auto _ : state) {
    const auto rows =
        QuickSummaryRows(*f.entries, SummaryPeriodOf(f.year), ids, f.settings, *f.locale);
    benchmark::DoNotOptimize(rows.data());
  }
  state.counters["entries"] = static_cast<double>(ids.size());
}
BENCHMARK(BM_QuickSummaryOfAYearByIds)->Unit(benchmark::kMillisecond);

// The walk alone: what a view pays to list the year.
void BM_ListPeriodEntryIdsOfAYear(benchmark::State& state) {
  Fixture& f = Shared();
  std::vector<ObjectId> ids;
  for (auto _ : state) {
    ListPeriodEntryIds(*f.entries, f.year.GetViewRange(), f.filter, *f.locale, &ids);
    benchmark::DoNotOptimize(ids.data());
  }
  state.counters["entries"] = static_cast<double>(ids.size());
}
BENCHMARK(BM_ListPeriodEntryIdsOfAYear)->Unit(benchmark::kMillisecond);

// The sums alone over entries in memory: the project map's collation and
// the amounts.
void BM_QuickSummarySumsInMemory(benchmark::State& state) {
  Fixture& f = Shared();
  std::vector<TimeEntry> entries;
  entries.reserve(kYearEntries);
  for (int n = 0; n < kYearEntries; ++n) entries.push_back(SampleEntry(InYear(n), n));
  for (auto _ : state) {
    QuickSummarySums sums(f.settings, *f.locale);
    for (const TimeEntry& e : entries) sums.Add(e);
    benchmark::DoNotOptimize(sums.billable_hours());
  }
  state.SetItemsProcessed(state.iterations() * kYearEntries);
}
BENCHMARK(BM_QuickSummarySumsInMemory)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillora
