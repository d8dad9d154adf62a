// A list import adds each line through the catalogue's own add operations,
// which look through the client's names first; these measure how that grows
// with the size of the list, and what reading a large file costs.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "interchange/list_files.h"
#include "store/client_store.h"
#include "tests/temp_dir.h"

namespace {

using namespace quillora;

std::string ListOf(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "Contact number " + std::to_string(i) + "\r\n";
  return text;
}

// N new contacts for one client, from a fresh volume each time.
void BM_ImportContacts(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const auto locale = Locale::UsEnglish();
  testing::TempDir dir;
  const std::string path = dir.File("list.txt");
  testing::WriteFileBytes(path, ListOf(count));
  int round = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::string error;
    auto volume = OpenSqliteObjectStore(
        dir.File(std::string("v").append(std::to_string(round++)).append(".db")), &error);
    Catalogue catalogue(*volume, nullptr);
    catalogue.Open();
    AddClient(catalogue.clients, u"Acme");
    state.ResumeTiming();
    int added = 0;
    ImportListFile(catalogue, *locale, FileSystem::Posix(), path,
                   {ListKind::kContacts, 1}, &added);
    if (added != count) state.SkipWithError("not every name was added");
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_ImportContacts)
    ->Arg(1000)
    ->Arg(4000)
    ->Arg(16000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

// N clients: each takes a number from the counter and a name seek.
void BM_ImportClients(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const auto locale = Locale::UsEnglish();
  testing::TempDir dir;
  const std::string path = dir.File("list.txt");
  testing::WriteFileBytes(path, ListOf(count));
  int round = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::string error;
    auto volume = OpenSqliteObjectStore(
        dir.File(std::string("v").append(std::to_string(round++)).append(".db")), &error);
    Catalogue catalogue(*volume, nullptr);
    catalogue.Open();
    state.ResumeTiming();
    ImportListFile(catalogue, *locale, FileSystem::Posix(), path, {ListKind::kClients});
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_ImportClients)
    ->Arg(1000)
    ->Arg(4000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

// Reading and splitting a 10 MB file of 500,000 names.
void BM_ParseLargeListFile(benchmark::State& state) {
  const std::string bytes = ListOf(500000);
  for (auto _ : state) {
    std::vector<std::u16string> names;
    ParseListFile(bytes, 1252, &names);
    benchmark::DoNotOptimize(names.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK(BM_ParseLargeListFile)->Unit(benchmark::kMillisecond);

}  // namespace
