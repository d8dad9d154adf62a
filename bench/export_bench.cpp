// The CSV and XML exports over 10,000 and 100,000 entries of a 100,000-entry
// store: the whole export, walk and filter included, into a real file.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "interchange/csv_export.h"
#include "interchange/xml_export.h"
#include "platform/data_folder.h"
#include "platform/object_store.h"
#include "store/note_text.h"
#include "bench/bench_volume.h"

namespace quillora {
namespace {

constexpr int kEntries = 100'000;
constexpr int kEntriesPerDay = 8;

SystemTime FirstDay() { return MakeSystemTime(2015, 1, 1); }

TimeEntry SampleEntry(int n) {
  TimeEntry e;
  FileTime base = 0;
  SystemTimeToFileTime(MakeSystemTime(2015, 1, 1, 9, 0, 1), &base);
  e.start = base + static_cast<FileTime>(n / kEntriesPerDay) * kTicksPerDay +
            static_cast<FileTime>(n % kEntriesPerDay) * kTicksPerHour;
  e.client = u"Client " + std::u16string(1, static_cast<char16_t>(u'A' + n % 20));
  e.project = u"Project " + std::u16string(1, static_cast<char16_t>(u'a' + n % 7));
  e.phase = u"Build";
  e.task = u"Development";
  e.duration = 25 + n % 400;
  e.rate = 9500;
  e.billable = n % 3 != 0;
  e.currency = u"USD";
  e.billTo = u"Accounts Payable";
  if (n % 10 == 0) {
    const auto note =
        NoteBlobFromText(u"Met with the team about the release plan.\nFollow up.");
    SetNote(&e, static_cast<std::int32_t>(note.size()), note.data());
  }
  return e;
}

struct Fixture : BenchVolume {
  Fixture() : BenchVolume(kEntries, SampleEntry) {}

  // The days that hold the first `count` entries (the range starts the day
  // before, since the walk begins strictly after its start).
  EntryFilter Criteria(int count) const {
    FileTime first = 0;
    SystemTimeToFileTime(FirstDay(), &first);
    SystemTime start;
    SystemTime end;
    FileTimeToSystemTime(first - kTicksPerDay, &start);
    FileTimeToSystemTime(
        first + static_cast<FileTime>(count / kEntriesPerDay - 1) * kTicksPerDay, &end);
    end.hour = 23;
    end.minute = 59;
    end.second = 59;
    return MakeExportCriteria({start, end}, EntryFilter());
  }
};

Fixture& Shared() {
  static Fixture fixture;
  return fixture;
}

template <bool (*Export)(const std::string&, const EntryFilter&, ExportSources&)>
void RunExport(benchmark::State& state, std::uint16_t encoding) {
  Fixture& f = Shared();
  f.settings.encoding = encoding;
  ExportSources sources{*f.entries, f.settings, *f.locale, FileSystem::Posix()};
  const EntryFilter criteria = f.Criteria(static_cast<int>(state.range(0)));
  const std::string path = f.dir.File("export.out");
  for (auto _ : state) {
    if (!Export(path, criteria, sources)) state.SkipWithError("export failed");
  }
  std::string bytes;
  FileSystem::Posix().ReadWholeFile(path, &bytes, SIZE_MAX);
  state.counters["MB"] = static_cast<double>(bytes.size()) / 1e6;
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ExportCsv(benchmark::State& state) { RunExport<ExportCsv>(state, 0); }
BENCHMARK(BM_ExportCsv)->Arg(10'000)->Arg(kEntries)->Unit(benchmark::kMillisecond);

void BM_ExportXml(benchmark::State& state) { RunExport<ExportXml>(state, 0); }
BENCHMARK(BM_ExportXml)->Arg(10'000)->Arg(kEntries)->Unit(benchmark::kMillisecond);

void BM_ExportXmlUtf16(benchmark::State& state) {
  RunExport<ExportXml>(state, kXmlEncodingUtf16);
}
BENCHMARK(BM_ExportXmlUtf16)->Arg(kEntries)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillora
