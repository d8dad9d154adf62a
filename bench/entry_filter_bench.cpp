// The filter test and the list-item lines run once per entry of every view,
// export, report and summary; these measure them over 100,000 entries.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "periods/entry_filter.h"
#include "periods/entry_list_item.h"

namespace {

using namespace quillora;

std::vector<TimeEntry> Entries(int count) {
  std::vector<TimeEntry> entries(count);
  FileTime start = 0;
  SystemTimeToFileTime(MakeSystemTime(2024, 1, 1, 9, 0, 1), &start);
  for (int i = 0; i < count; ++i) {
    TimeEntry& e = entries[i];
    e.start = start + static_cast<FileTime>(i) * kTicksPerHour;
    e.client = i % 3 ? u"Acme Corporation" : u"Beta Industries";
    e.project = u"Website relaunch";
    e.phase = u"Design";
    e.task = u"Meetings";
    e.currency = u"USD";
    e.billable = i % 2;
    e.duration = 150;
  }
  return entries;
}

// Every text criterion set and met, so each entry pays for all nine
// comparisons that a kept entry needs.
void BM_MatchesEveryCriterion(benchmark::State& state) {
  const auto entries = Entries(static_cast<int>(state.range(0)));
  const auto locale = Locale::UsEnglish();
  EntryFilter f;
  f.range_start = MakeSystemTime(2024, 1, 1);
  f.range_end = MakeSystemTime(2040, 1, 1);
  f.client = u"Acme Corporation";
  f.project = u"Website relaunch";
  f.phase = u"Design";
  f.task = u"Meetings";
  f.currency = u"USD";
  for (auto _ : state) {
    int kept = 0;
    for (const TimeEntry& e : entries) kept += Matches(f, e, *locale);
    benchmark::DoNotOptimize(kept);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_MatchesEveryCriterion)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_MatchesResetFilter(benchmark::State& state) {
  const auto entries = Entries(static_cast<int>(state.range(0)));
  const auto locale = Locale::UsEnglish();
  const EntryFilter f;
  for (auto _ : state) {
    int kept = 0;
    for (const TimeEntry& e : entries) kept += Matches(f, e, *locale);
    benchmark::DoNotOptimize(kept);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_MatchesResetFilter)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_ListItemLines(benchmark::State& state) {
  const auto entries = Entries(static_cast<int>(state.range(0)));
  const auto locale = Locale::UsEnglish();
  DisplayBlock display;
  display.entry_time_display = 1;
  display.display_flags = kDisplayClientName | kDisplayStatusIcon;
  for (auto _ : state) {
    std::size_t chars = 0;
    for (const TimeEntry& e : entries) {
      chars += BuildEntryListItem(e, 2, display, *locale).lines[0].size();
    }
    benchmark::DoNotOptimize(chars);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ListItemLines)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
