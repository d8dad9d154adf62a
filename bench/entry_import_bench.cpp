// Importing a consultant's history from another tracker: 100,000 Timewarrior
// intervals and 100,000 CSV rows, read and imported into a fresh volume
// (entries, new clients, the catalogue's growth, batched commits).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>

#include "interchange/csv_entries.h"
#include "interchange/entry_import.h"
#include "interchange/timewarrior_export.h"
#include "tests/fake_prompt.h"
#include "tests/temp_dir.h"

namespace {

using namespace quillora;

// Four intervals a day from 2015 on, 40 clients, 25 projects, 12 tasks.
std::string TimewarriorExport(int count) {
  std::string text = "[\n";
  char line[320];
  for (int i = 0; i < count; ++i) {
    const int day = i / 4;
    const int year = 2015 + day / 336, month = 1 + day / 28 % 12, mday = 1 + day % 28;
    const int hour = 8 + (i % 4) * 2;
    std::snprintf(
        line, sizeof line,
        "%s{\"id\":%d,\"start\":\"%04d%02d%02dT%02d0000Z\",\"end\":\"%04d%02d%02dT%02d"
        "%02d00Z\",\"tags\":[\"client:Client %d\",\"project:Project %d\",\"Task %d\","
        "\"billable\"],\"annotation\":\"Worked on item %d\"}\n",
        i == 0 ? "" : ",", count - i, year, month, mday, hour, year, month, mday,
        hour + 1, i % 60, i % 40, i % 25, i % 12, i);
    text += line;
  }
  return text + "]\n";
}

std::string CsvExport(int count) {
  std::string text =
      "User,Email,Client,Project,Task,Description,Billable,Start date,Start time,End "
      "date,"
      "End time,Duration,Tags,Amount (USD)\n";
  char line[320];
  for (int i = 0; i < count; ++i) {
    const int day = i / 4;
    const int year = 2015 + day / 336, month = 1 + day / 28 % 12, mday = 1 + day % 28;
    const int hour = 8 + (i % 4) * 2;
    std::snprintf(
        line, sizeof line,
        "Ann,ann@example.com,Client %d,Project %d,Task %d,\"Worked on item %d\",Yes,"
        "%04d-%02d-%02d,%02d:00:00,%04d-%02d-%02d,%02d:%02d:00,01:%02d:00,urgent,"
        "80.00\n",
        i % 40, i % 25, i % 12, i, year, month, mday, hour, year, month, mday, hour + 1,
        i % 60, i % 60);
    text += line;
  }
  return text;
}

void RunImport(benchmark::State& state, bool timewarrior) {
  const int count = static_cast<int>(state.range(0));
  const std::string bytes = timewarrior ? TimewarriorExport(count) : CsvExport(count);
  const auto locale = Locale::UsEnglish();
  testing::TempDir dir;
  int round = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::string error;
    auto volume =
        OpenSqliteObjectStore(dir.File("v" + std::to_string(round++) + ".db"), &error);
    Catalogue catalogue(*volume, nullptr);
    EntryStore entries(*volume);
    catalogue.Open();
    entries.Open();
    testing::FakePrompt prompt;
    state.ResumeTiming();
    const ImportedFile file = timewarrior
                                  ? ReadTimewarriorExport(bytes, Settings{}, {})
                                  : ReadCsvEntries(bytes, {}, Settings{}, 1252).file;
    const ImportSummary summary =
        ImportEntries({entries, catalogue, *locale, prompt}, file.rows, false);
    if (summary.imported != count) state.SkipWithError("not every entry was imported");
  }
  state.SetItemsProcessed(state.iterations() * count);
  state.counters["MB"] = static_cast<double>(bytes.size()) / 1e6;
}

void BM_ImportTimewarrior(benchmark::State& state) { RunImport(state, true); }
void BM_ImportCsv(benchmark::State& state) { RunImport(state, false); }
BENCHMARK(BM_ImportTimewarrior)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK(BM_ImportCsv)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
