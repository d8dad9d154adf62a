// An HTML report over 100,000 entries: the walk and sort, building the
// document with MarkupDocument, and writing it to a file, for both report
// types.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "platform/data_folder.h"
#include "platform/file.h"
#include "platform/object_store.h"
#include "reports/html_report.h"
#include "store/note_text.h"
#include "store/time_entry.h"
#include "bench/bench_volume.h"

namespace quillora {
namespace {

constexpr int kEntries = 100'000;

TimeEntry SampleEntry(int n) {
  FileTime base = 0;
  SystemTimeToFileTime(MakeSystemTime(2015, 1, 1, 9, 0, 1), &base);
  TimeEntry e;
  e.start = base + static_cast<FileTime>(n / 8) * kTicksPerDay +
            static_cast<FileTime>(n % 8) * kTicksPerHour;
  e.client = u"Client " + std::u16string(1, static_cast<char16_t>(u'A' + n % 20));
  e.project = u"Project " + std::u16string(1, static_cast<char16_t>(u'a' + n % 7));
  e.task = u"Development";
  e.duration = 25 + n % 400;
  e.rate = 9500;
  e.billable = n % 3 != 0;
  e.paid = n % 5 == 0;
  e.currency = u"USD";
  if (n % 10 == 0) {
    const auto note = NoteBlobFromText(u"Met with the team about the release plan.");
    SetNote(&e, static_cast<std::int32_t>(note.size()), note.data());
  }
  return e;
}

struct Fixture : BenchVolume {
  Fixture() : BenchVolume(kEntries, SampleEntry) {}
};

Fixture& Shared() {
  static Fixture fixture;
  return fixture;
}

// Grouped by client (20 groups) or one table; seven columns: Entry Date,
// Client, Project, Task, Duration, Rate and Amount.
HtmlReportRequest Request(std::uint16_t detail_type) {
  HtmlReportRequest request;
  request.definition = NewReportDefinition();
  request.definition.detail_type = detail_type;
  request.definition.shown_fields |= 1u << kFieldClient;
  request.range = {MakeSystemTime(2014, 12, 31), MakeSystemTime(2060, 1, 1)};
  request.today = MakeSystemTime(2026, 11, 21);
  return request;
}

void BM_HtmlReport(benchmark::State& state) {
  Fixture& f = Shared();
  const HtmlReportRequest request = Request(static_cast<std::uint16_t>(state.range(0)));
  const std::string path = f.dir.File("report.htm");
  for (auto _ : state) {
    benchmark::DoNotOptimize(GenerateHtmlReport(*f.entries, FileSystem::Posix(), path,
                                                request, f.settings, *f.locale));
  }
  state.SetItemsProcessed(state.iterations() * kEntries);
}
BENCHMARK(BM_HtmlReport)
    ->Arg(kReportGroupByField)
    ->Arg(kReportTabular)
    ->Unit(benchmark::kMillisecond);

// The grouped report built but not written: the difference to
// BM_HtmlReport/0 is the cost of the conversion and the file.
void BM_HtmlReportBuild(benchmark::State& state) {
  Fixture& f = Shared();
  const HtmlReportRequest request = Request(kReportGroupByField);
  std::size_t chars = 0;
  for (auto _ : state) {
    chars = 0;
    StreamHtmlReport(*f.entries, request, f.settings, *f.locale,
                     [&](std::u16string_view piece) {
                       chars += piece.size();
                       return true;
                     });
  }
  state.counters["chars"] = static_cast<double>(chars);
}
BENCHMARK(BM_HtmlReportBuild)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillora
