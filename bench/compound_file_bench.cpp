// Writing and reading a storage of many small streams, as a backup of many
// entries makes ("Records" with one ~100-byte "Record%d" stream each). The
// times must grow linearly with the count (see docs/performance.md).
#include <benchmark/benchmark.h>

#include <string>

#include "platform/compound_file.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

class CountingSink : public CompoundSink {
 public:
  bool Write(const char*, size_t size) override {
    bytes += size;
    return true;
  }
  bool Close() override { return true; }
  size_t bytes = 0;
};

// Fills a writer with `count` streams of about 100 bytes in "Records".
bool FillRecords(CompoundWriter& writer, int count) {
  CompoundStorage records;
  if (writer.CreateStorage(writer.root(), u"Records", &records) != CompoundResult::kOk) {
    return false;
  }
  std::string entry(100, 'e');
  for (int i = 0; i < count; ++i) {
    const std::string name = "Record" + std::to_string(i);
    CompoundStream stream;
    entry[0] = static_cast<char>(i);
    if (writer.CreateStream(records, std::u16string(name.begin(), name.end()), &stream) !=
            CompoundResult::kOk ||
        writer.Write(stream, entry.data(), entry.size() - i % 7) != CompoundResult::kOk) {
      return false;
    }
  }
  return true;
}

// Builds and lays out the container; the bytes go nowhere.
void BM_CompoundWriteRecords(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    CompoundWriter writer;
    auto sink = std::make_unique<CountingSink>();
    writer.Create(std::move(sink));
    if (!FillRecords(writer, count) || writer.Commit() != CompoundResult::kOk) {
      state.SkipWithError("write failed");
    }
  }
  state.SetComplexityN(count);
}
BENCHMARK(BM_CompoundWriteRecords)
    ->Arg(50'000)
    ->Arg(100'000)
    ->Arg(200'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

// The same into a real file, closed and synced.
void BM_CompoundWriteRecordsFile(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  testing::TempDir dir;
  for (auto _ : state) {
    CompoundWriter writer;
    if (writer.Create(dir.File("bench.qrd")) != CompoundResult::kOk ||
        !FillRecords(writer, count) || writer.Commit() != CompoundResult::kOk) {
      state.SkipWithError("write failed");
    }
  }
  state.SetComplexityN(count);
}
BENCHMARK(BM_CompoundWriteRecordsFile)
    ->Arg(50'000)
    ->Arg(100'000)
    ->Arg(200'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

// Opens the file, enumerates "Records", opens every element by its name and
// reads it, as restore does.
void BM_CompoundReadRecords(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  testing::TempDir dir;
  CompoundWriter writer;
  if (writer.Create(dir.File("bench.qrd")) != CompoundResult::kOk ||
      !FillRecords(writer, count) || writer.Commit() != CompoundResult::kOk) {
    state.SkipWithError("write failed");
    return;
  }
  for (auto _ : state) {
    CompoundReader reader;
    CompoundStorage records;
    if (reader.Open(dir.File("bench.qrd")) != CompoundResult::kOk ||
        reader.OpenStorage(reader.root(), u"Records", &records) != CompoundResult::kOk) {
      state.SkipWithError("open failed");
      break;
    }
    CompoundEnumerator it = reader.EnumElements(records);
    std::string bytes;
    int read = 0;
    for (CompoundElement e; it.Next(&e); ++read) {
      CompoundStream stream;
      if (reader.OpenStream(records, e.name, &stream) != CompoundResult::kOk ||
          reader.ReadStream(stream, &bytes) != CompoundResult::kOk) {
        state.SkipWithError("read failed");
      }
    }
    if (read != count) state.SkipWithError("wrong count");
  }
  state.SetComplexityN(count);
}
BENCHMARK(BM_CompoundReadRecords)
    ->Arg(50'000)
    ->Arg(100'000)
    ->Arg(200'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
}  // namespace quillora
