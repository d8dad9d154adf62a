// A volume of sample time entries in a temporary folder, for the benchmarks
// that walk, export or report over many entries.
#ifndef QUILLORA_BENCH_BENCH_VOLUME_H_
#define QUILLORA_BENCH_BENCH_VOLUME_H_

#include <functional>
#include <memory>
#include <string>

#include "platform/data_folder.h"
#include "platform/locale.h"
#include "platform/object_store.h"
#include "store/settings.h"
#include "store/time_entry.h"
#include "tests/temp_dir.h"

namespace quillora {

struct BenchVolume {
  testing::TempDir dir;
  std::unique_ptr<ObjectStore> volume;
  std::unique_ptr<EntryStore> entries;
  Settings settings;
  std::unique_ptr<Locale> locale = Locale::UsEnglish();

  // Adds the `count` entries `sample(0)` .. `sample(count - 1)` in one batch.
  BenchVolume(int count, const std::function<TimeEntry(int)>& sample) {
    std::string error;
    volume = OpenSqliteObjectStore(dir.File(kVolumeFileName), &error);
    entries = std::make_unique<EntryStore>(*volume);
    entries->Open();
    volume->BeginBatch();
    for (int n = 0; n < count; ++n) AddEntry(*entries, sample(n));
    volume->CommitBatch();
  }
};

}  // namespace quillora

#endif  // QUILLORA_BENCH_BENCH_VOLUME_H_
